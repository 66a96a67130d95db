#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace {

QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list)
        result.append(QString::fromUtf8(text));
    return result;
}

} // namespace

TEST(CommandLine, ReadsOptionsAndFiles)
{
    const struct
    {
        QStringList arguments;
        QString udp;
        bool adobe, custom, touch;
        QStringList files;
        bool understood;
    } rows[] = {
        {texts({"player", "-u", "master", "a.jpg"}),
         "master",
         false,
         false,
         false,
         {"a.jpg"},
         true},
        {texts({"player", "--udp=slave", "--adobeplugin"}), "slave", true, false, false, {}, true},
        {texts({"player", "-c", "-t", "x", "y"}), "", false, true, true, {"x", "y"}, true},
        {texts({"player", "--", "-t"}), "", false, false, false, {"-t"}, true},
        {texts({"player", "--nonsense", "x"}), "", false, false, false, {"x"}, false},
        {texts({"player", "x", "-u"}), "", false, false, false, {"x"}, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments.join(' ').toStdString());
        const CommandLine result = parseCommandLine(row.arguments);
        EXPECT_EQ(result.options.value("udp").toString(), row.udp);
        EXPECT_EQ(result.options.value("adobeplugin").toBool(), row.adobe);
        EXPECT_EQ(result.options.value("customvlc").toBool(), row.custom);
        EXPECT_EQ(result.options.value("touchtable").toBool(), row.touch);
        EXPECT_EQ(result.options.value("files").toStringList(), row.files);
        EXPECT_EQ(result.options.contains("files"), !row.files.isEmpty());
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
        QStringList arguments;
        QStringList expected;
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
        const char *variable;
        const char *value;
        const char *kernel;
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
