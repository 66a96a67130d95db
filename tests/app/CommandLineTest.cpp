#include "app/CommandLine.h"

#include <gtest/gtest.h>

TEST(CommandLine, ReadsOptionsAndFiles)
{
    const struct
    {
        QStringList arguments;
        QVariantMap options;
        bool understood;
    } rows[] = {
        {{"-u", "master", "a.jpg"}, {{"udp", "master"}, {"files", QStringList{"a.jpg"}}}, true},
        {{"--udp=slave", "--adobeplugin"}, {{"udp", "slave"}, {"adobeplugin", true}}, true},
        {{"-c", "-t", "x", "y"},
         {{"customvlc", true}, {"touchtable", true}, {"files", QStringList{"x", "y"}}},
         true},
        {{"--", "-t"}, {{"files", QStringList{"-t"}}}, true},
        {{"--nonsense", "x"}, {{"files", QStringList{"x"}}}, false},
        {{"x", "-u"}, {{"files", QStringList{"x"}}}, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments.join(' ').toStdString());
        const CommandLine result = parseCommandLine(QStringList("player") + row.arguments);
        QVariantMap given = result.options;
        for (const QVariant &absent : {QVariant(false), QVariant(QString())}) {
            for (const QString &key : given.keys(absent))
                given.remove(key);
        }
        EXPECT_EQ(given, row.options);
        EXPECT_EQ(result.error.isEmpty(), row.understood);
    }
    EXPECT_TRUE(parseCommandLine({"player"}).options.isEmpty());
    EXPECT_TRUE(parseCommandLine({"player", "--help"}).helpRequested);
    EXPECT_TRUE(parseCommandLine({"player", "-v"}).versionRequested);
}

TEST(CommandLine, RestartsWithTheSameArgumentsAndAbsoluteFiles)
{
    const struct
    {
        QStringList arguments, expected;
    } rows[] = {{{"player"}, {}},
                {{"player", "a.jpg"}, {"--", "/media/dir/a.jpg"}},
                {{"player", "-t", "../b c.mp4"}, {"--touchtable", "--", "/media/b c.mp4"}},
                {{"player", "-u", "slave", "slave"}, {"--udp=slave", "--", "/media/dir/slave"}},
                {{"player", "http://host/x.mp4", "file:///k.jpg", "/abs.png"},
                 {"--", "http://host/x.mp4", "file:///k.jpg", "/abs.png"}}};
    for (const auto &row : rows) {
        const QStringList once = restartArguments(row.arguments, "/media/dir");
        EXPECT_EQ(once, row.expected) << row.arguments.join(' ').toStdString();
        // Restarted from elsewhere, they still name the same files.
        EXPECT_EQ(restartArguments(QStringList{"player"} + once, "/elsewhere"), row.expected);
    }
}

TEST(CommandLine, NeedsADisplayUnlessAnotherPlatformIsChosen)
{
    const struct
    {
        QStringList arguments;
        const char *variable, *value, *kernel;
        bool hopeful;
    } rows[] = {{{"player"}, "DISPLAY", ":0", "linux", true},
                {{"player"}, "WAYLAND_DISPLAY", "wayland-0", "linux", true},
                {{"player"}, "QT_QPA_PLATFORM", "offscreen", "linux", true},
                {{"player", "-platform", "vnc"}, "TERM", "xterm", "linux", true},
                {{"player", "--display", ":7"}, "TERM", "xterm", "linux", true},
                {{"player", "display"}, "TERM", "xterm", "linux", false},
                {{"player"}, "DISPLAY", "", "linux", false},
                {{"player"}, "TERM", "xterm", "winnt", true}};
    for (const auto &row : rows) {
        QProcessEnvironment environment;
        environment.insert(row.variable, row.value);
        EXPECT_EQ(hasDisplay(row.arguments, environment, row.kernel), row.hopeful)
            << row.variable << ' ' << row.arguments.join(' ').toStdString();
    }
}
