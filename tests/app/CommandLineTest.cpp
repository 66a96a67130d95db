#include "app/CommandLine.h"

#include <gtest/gtest.h>

TEST(CommandLine, ReadsOptionsAndFiles)
{
    const std::tuple<QStringList, QVariantMap, bool> rows[] = {
        {{"-u", "master", "a.jpg"}, {{"udp", "master"}, {"files", QStringList{"a.jpg"}}}, true},
        {{"--udp=slave", "--adobeplugin"}, {{"udp", "slave"}, {"adobeplugin", true}}, true},
        {{"-c", "-t", "x", "y"},
         {{"customvlc", true}, {"touchtable", true}, {"files", QStringList{"x", "y"}}},
         true},
        {{"--", "-t"}, {{"files", QStringList{"-t"}}}, true},
        {{"--nonsense", "x"}, {{"files", QStringList{"x"}}}, false},
        {{"x", "-u"}, {{"files", QStringList{"x"}}}, false}};
    for (const auto &[arguments, options, understood] : rows) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const CommandLine result = parseCommandLine(QStringList("player") + arguments);
        QVariantMap given = result.options;
        for (const QVariant &absent : {QVariant(false), QVariant(QString())}) {
            for (const QString &key : given.keys(absent))
                given.remove(key);
        }
        EXPECT_EQ(given, options);
        EXPECT_EQ(result.error.isEmpty(), understood);
    }
    EXPECT_TRUE(parseCommandLine({"player"}).options.isEmpty());
    EXPECT_TRUE(parseCommandLine({"player", "--help"}).helpRequested);
    EXPECT_TRUE(parseCommandLine({"player", "-v"}).versionRequested);
}

TEST(CommandLine, RestartsWithTheSameArgumentsAndAbsoluteFiles)
{
    const QStringList rows[][2] = {
        {{"player"}, {}},
        {{"player", "a.jpg"}, {"--", "/media/dir/a.jpg"}},
        {{"player", "-t", "../b c.mp4"}, {"--touchtable", "--", "/media/b c.mp4"}},
        {{"player", "-u", "slave", "slave"}, {"--udp=slave", "--", "/media/dir/slave"}},
        {{"player", "http://host/x.mp4", "file:///k.jpg", "/abs.png"},
         {"--", "http://host/x.mp4", "file:///k.jpg", "/abs.png"}}};
    for (const auto &[arguments, expected] : rows) {
        const QStringList once = restartArguments(arguments, "/media/dir");
        EXPECT_EQ(once, expected) << arguments.join(' ').toStdString();
        // Restarted from elsewhere, they still name the same files.
        EXPECT_EQ(restartArguments(QStringList{"player"} + once, "/elsewhere"), expected);
    }
}

TEST(CommandLine, NeedsADisplayUnlessAnotherPlatformIsChosen)
{
    const std::tuple<QStringList, const char *, const char *, const char *, bool> rows[] = {
        {{"player"}, "DISPLAY", ":0", "linux", true},
        {{"player"}, "WAYLAND_DISPLAY", "wayland-0", "linux", true},
        {{"player"}, "QT_QPA_PLATFORM", "offscreen", "linux", true},
        {{"player", "-platform", "vnc"}, "TERM", "xterm", "linux", true},
        {{"player", "--display", ":7"}, "TERM", "xterm", "linux", true},
        {{"player", "display"}, "TERM", "xterm", "linux", false},
        {{"player"}, "DISPLAY", "", "linux", false},
        {{"player"}, "TERM", "xterm", "winnt", true}};
    for (const auto &[arguments, variable, value, kernel, hopeful] : rows) {
        QProcessEnvironment environment;
        environment.insert(variable, value);
        EXPECT_EQ(hasDisplay(arguments, environment, kernel), hopeful)
            << variable << ' ' << arguments.join(' ').toStdString();
    }
}
