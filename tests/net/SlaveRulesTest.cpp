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
    const std::tuple<const char *, SlaveUrl, const char *> rows[] = {
        {"file:///a/b.mp4", SlaveUrl::Absolute, "file:///a/b.mp4"},
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
    for (const auto &[url, mode, expected] : rows) {
        SCOPED_TRACE(url);
        const QUrl found = slaveUrl(url, mode, [](const QString &name) {
            EXPECT_FALSE(name.isEmpty() || name.contains('/') || name.contains(".."));
            return name == QLatin1String("b.mp4") ? QStringLiteral("/films/b.mp4") : QString();
        });
        EXPECT_EQ(found, QUrl(expected));
    }
}

TEST(SlaveRules, ActsOnDifferencesOnly)
{
    // Stereo mode, state and position of the packet; the slave; what has to follow.
    constexpr int kNo = kNothing;
    const std::tuple<std::array<int, 3>, SlaveState, int, int, int> rows[] = {
        {{0, 1, 5000}, {0, 1, 5000, 60000, true}, kNo, kNo, kNo},
        {{2, 2, 5000}, {0, 1, 5000, 60000, true}, 2, 2, kNo},
        {{0, 0, 5000}, {4, 1, 5000, 60000, true}, 0, 0, kNo},
        {{5, 3, 5000}, {0, 1, 5000, 60000, true}, kNo, kNo, kNo},
        {{-1, -1, 5000}, {0, 1, 5000, 60000, true}, kNo, kNo, kNo},
        // Exactly the tolerance is near enough, in both directions.
        {{0, 1, 5000}, {0, 1, 8000, 60000, true}, kNo, kNo, kNo},
        {{0, 1, 5000}, {0, 1, 8001, 60000, true}, kNo, kNo, 5000},
        {{0, 1, 5000}, {0, 1, 2000, 60000, true}, kNo, kNo, kNo},
        {{0, 1, 5000}, {0, 1, 1999, 60000, true}, kNo, kNo, 5000},
        {{0, 1, 5000}, {0, 1, 50000, 60000, false}, kNo, kNo, kNo},
        // The position stays inside the medium.
        {{0, 1, 2147483647}, {0, 1, 0, 60000, true}, kNo, kNo, 60000},
        {{0, 1, 2147483647}, {0, 1, 58000, 60000, true}, kNo, kNo, kNo},
        {{0, 1, -2147483647 - 1}, {0, 1, 9000, 60000, true}, kNo, kNo, 0},
        {{0, 1, 2147483647}, {0, 1, 0, 0, true}, kNo, kNo, 2147483647},
    };
    for (const auto &[master, slave, stereoMode, playbackState, seekTo] : rows) {
        SCOPED_TRACE(testing::Message() << master[2] << " over " << slave.position);
        SyncPacket packet;
        packet.stereoMode = master[0];
        packet.state = master[1];
        packet.position = master[2];
        const SlaveActions actions = slaveActions(packet, slave);
        EXPECT_EQ(actions.stereoMode.value_or(kNothing), stereoMode);
        EXPECT_EQ(actions.playbackState.value_or(kNothing), playbackState);
        EXPECT_EQ(actions.seekTo.value_or(kNothing), seekTo);
    }
}
