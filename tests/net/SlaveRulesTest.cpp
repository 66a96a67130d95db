#include "net/SlaveRules.h"

#include <gtest/gtest.h>

namespace {

constexpr int kNothing = -1000;

} // namespace

TEST(SlaveRules, TheOptionOverridesTheSetting)
{
    const std::tuple<const char *, const char *, qint64, const char *> rows[] = {
        {"", "off", 7755, "off"},          {"", "master", 7755, "master"},
        {"", "slave", 7755, "slave"},      {"slave", "master", 7755, "slave"},
        {"master", "off", 7755, "master"}, {"off", "master", 7755, "off"},
        {"Master", "slave", 7755, "off"},  {"nonsense", "slave", 7755, "off"},
        {"master", "", 0, "off"},          {"slave", "", 65536, "off"},
        {"slave", "", 65535, "slave"},     {"master", "", 1, "master"},
        {"master", "", -7755, "off"}};
    for (const auto &[option, setting, port, role] : rows)
        EXPECT_EQ(syncRoleName(syncRole(option, setting, port)), role)
            << option << " over " << setting << " at " << port;
    EXPECT_EQ(syncInterval(0), 1);
    EXPECT_EQ(syncInterval(-20), 1);
    EXPECT_EQ(syncInterval(20), 20);
}

TEST(SlaveRules, UrlsAreTakenOrLookedUpByTheirBareName)
{
    const struct
    {
        const char *url;
        SlaveUrl mode;
        const char *expected;
    } rows[] = {{"file:///a/b.mp4", SlaveUrl::Absolute, "file:///a/b.mp4"},
                {"HTTP://host/b.mp4", SlaveUrl::Absolute, "http://host/b.mp4"},
                {"https://host/b", SlaveUrl::Absolute, "https://host/b"},
                {"rtsp://host/b", SlaveUrl::Absolute, "rtsp://host/b"},
                {"udp://@239.0.0.1:5000", SlaveUrl::Absolute, "udp://@239.0.0.1:5000"},
                {"javascript:alert(1)", SlaveUrl::Absolute, ""},
                {"qrc:/qml/main_newui.qml", SlaveUrl::Absolute, ""},
                {"ftp://host/b.mp4", SlaveUrl::Absolute, ""},
                {"/a/b.mp4", SlaveUrl::Absolute, ""},
                {"", SlaveUrl::Absolute, ""},
                {"file:///a/b.mp4", SlaveUrl::Off, ""},
                {"file:///a/b.mp4", SlaveUrl::Movies, "file:///films/b.mp4"},
                {"file:///C:/Films/b.mp4", SlaveUrl::Desktop, "file:///films/b.mp4"},
                {"http://host/x/b.mp4?y=1", SlaveUrl::Movies, "file:///films/b.mp4"},
                {"file:///a/missing.mp4", SlaveUrl::Movies, ""},
                {"file:///a/%2e%2e%2f%2e%2e%2fb.mp4", SlaveUrl::Movies, "file:///films/b.mp4"},
                {"file:///a/..%5cb.mp4", SlaveUrl::Movies, "file:///films/b.mp4"},
                {"file:///a/..", SlaveUrl::Movies, ""},
                {"file:///a/%2e%2e", SlaveUrl::Movies, ""},
                {"file:///a/", SlaveUrl::Movies, ""},
                {"file:///a/b.mp4%00.jpg", SlaveUrl::Movies, ""},
                {"file:///a/b.mp4", SlaveUrl(9), ""}};
    for (const auto &row : rows) {
        const QUrl url = slaveUrl(row.url, row.mode, [&row](const QString &name) {
            EXPECT_FALSE(name.isEmpty() || name.contains('/') || name.contains("..")) << row.url;
            return name == QLatin1String("b.mp4") ? QStringLiteral("/films/b.mp4") : QString();
        });
        EXPECT_EQ(url, QUrl(row.expected)) << row.url;
    }
}

TEST(SlaveRules, ActsOnDifferencesOnly)
{
    struct Row
    {
        int stereo, state, position;     // of the packet
        int ownStereo, ownState;         // of the slave
        qint64 ownPosition, duration;    //
        bool seekAllowed;                //
        int setStereo, setState, seekTo; // what has to follow
    };
    constexpr int kNo = kNothing;
    const Row rows[] = {
        {0, 1, 5000, 0, 1, 5000, 60000, true, kNo, kNo, kNo},
        {2, 2, 5000, 0, 1, 5000, 60000, true, 2, 2, kNo},
        {0, 0, 5000, 4, 1, 5000, 60000, true, 0, 0, kNo},
        {5, 3, 5000, 0, 1, 5000, 60000, true, kNo, kNo, kNo},
        {-1, -1, 5000, 0, 1, 5000, 60000, true, kNo, kNo, kNo},
        // Exactly the tolerance is near enough, in both directions.
        {0, 1, 5000, 0, 1, 8000, 60000, true, kNo, kNo, kNo},
        {0, 1, 5000, 0, 1, 8001, 60000, true, kNo, kNo, 5000},
        {0, 1, 5000, 0, 1, 2000, 60000, true, kNo, kNo, kNo},
        {0, 1, 5000, 0, 1, 1999, 60000, true, kNo, kNo, 5000},
        {0, 1, 5000, 0, 1, 50000, 60000, false, kNo, kNo, kNo},
        // The position stays inside the medium.
        {0, 1, 2147483647, 0, 1, 0, 60000, true, kNo, kNo, 60000},
        {0, 1, 2147483647, 0, 1, 58000, 60000, true, kNo, kNo, kNo},
        {0, 1, -2147483647 - 1, 0, 1, 9000, 60000, true, kNo, kNo, 0},
        {0, 1, 2147483647, 0, 1, 0, 0, true, kNo, kNo, 2147483647},
    };
    for (const Row &row : rows) {
        SyncPacket packet;
        packet.stereoMode = row.stereo;
        packet.state = row.state;
        packet.position = row.position;
        const SlaveActions actions = slaveActions(
            packet, {row.ownStereo, row.ownState, row.ownPosition, row.duration, row.seekAllowed});
        const auto number = &row - rows;
        EXPECT_EQ(actions.stereoMode.value_or(kNothing), row.setStereo) << number;
        EXPECT_EQ(actions.playbackState.value_or(kNothing), row.setState) << number;
        EXPECT_EQ(actions.seekTo.value_or(kNothing), row.seekTo) << number;
    }
}
