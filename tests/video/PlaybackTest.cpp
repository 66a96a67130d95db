#include "video/PlayerWindow.h"

#include "support/WarningGuard.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include <algorithm>

using test::PlayerWindow;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::Le;

namespace {

using State = KVlcPlayerQml::VlcState;

TEST(Playback, RunsEachCodecFromOpeningToTheEnd)
{
    const test::WarningGuard quiet;
    const struct
    {
        const char *clip;
        const char *format;
        QSize size;
        int milliseconds;
        int frames;
    } rows[] = {
        {"h264.mp4", "I420", {320, 160}, 2000, 50},
        {"h264_60.mp4", "I420", {320, 160}, 2000, 120},
        {"hevc.mp4", "I420", {320, 160}, 2000, 60},
        {"vp9.webm", "I420", {320, 160}, 2008, 60},
        {"mjpeg.mov", "J420", {320, 160}, 2000, 50},
        {"prores.mov", "BGRA", {320, 160}, 2000, 50},
        {"odd.webm", "I420", {321, 181}, 2000, 50},
        {"cineform.mov", "BGRA", {320, 160}, 2000, 50},
        {"a b%20é#1.mp4", "I420", {320, 160}, 1000, 25},
    };
    std::vector<std::unique_ptr<PlayerWindow>> windows;
    for (const auto &row : rows) {
        windows.push_back(std::make_unique<PlayerWindow>());
        windows.back()->player().openFile(test::clip(QString::fromUtf8(row.clip)));
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        PlayerWindow &window = *windows[i];
        SCOPED_TRACE(rows[i].clip);
        ASSERT_TRUE(window.wait(State::Ended));
        EXPECT_THAT(window.states, ElementsAre(State::Opening, State::Playing, State::Ended));
        ASSERT_FALSE(window.durations.isEmpty());
        EXPECT_NEAR(window.durations.last(), rows[i].milliseconds, 50);
        ASSERT_FALSE(window.positions.isEmpty());
        EXPECT_TRUE(std::is_sorted(window.positions.begin(), window.positions.end()));
        EXPECT_LE(window.positions.last(), rows[i].milliseconds);
        EXPECT_EQ(window.player().texturePixelFormat(), rows[i].format);
        EXPECT_EQ(window.player().frameSize(), rows[i].size);
        EXPECT_TRUE(window.errors.isEmpty());
        // libvlc drops pictures when the machine is slow, and shows a last one twice.
        const auto pictures = window.textures.size() - window.textures.count(0);
        EXPECT_THAT(pictures, AllOf(Ge(2), Le(rows[i].frames + 2)));
        EXPECT_GT(window.player().fps(), 0);
    }
}

TEST(Playback, WithholdsTheFirstPictureOfAMedia)
{
    PlayerWindow window;
    EXPECT_EQ(window.player().textureTransfer(), QStringLiteral("\n"));
    EXPECT_EQ(window.player().texturePixelFormat(), QString());
    window.player().openFile(test::clip(QStringLiteral("one.mov")));
    ASSERT_TRUE(window.wait(State::Ended));
    EXPECT_EQ(window.player().texturePixelFormat(), QStringLiteral("J420"));
    EXPECT_EQ(window.textures.size(), window.textures.count(0));
}

TEST(Playback, SeeksPausesStopsAndRestarts)
{
    PlayerWindow window;
    KVlcPlayerQml &player = window.player();
    player.setVolume(0.25F);
    ASSERT_TRUE(window.openAndShow(test::clip(QStringLiteral("long.mp4"))));
    EXPECT_FLOAT_EQ(player.volume(), 0.25F);

    window.positions.clear();
    player.seek(10000);
    EXPECT_TRUE(test::waitUntil([&] {
        return !window.positions.isEmpty() && window.positions.last() >= 9000 &&
               window.positions.last() < 13000;
    }));

    player.pause();
    ASSERT_TRUE(window.wait(State::Paused));
    test::passTime(100);
    window.positions.clear();
    player.seek(4000);
    EXPECT_THAT(window.positions, ElementsAre(4000)) << "no time event comes while paused";

    window.forget();
    player.play();
    ASSERT_TRUE(window.wait(State::Playing));
    EXPECT_TRUE(test::waitUntil([&] { return !window.positions.isEmpty(); }));
    EXPECT_GE(window.positions.first(), 3000);

    window.forget();
    player.stop();
    ASSERT_TRUE(window.wait(State::Stopped));
    EXPECT_EQ(player.textureId(), 0);
    EXPECT_EQ(player.textureTransfer(), QStringLiteral("\n"));

    window.forget();
    player.restart();
    ASSERT_TRUE(window.wait(State::Playing));
    EXPECT_TRUE(test::waitUntil([&] { return player.textureId() != 0; }));
    EXPECT_FLOAT_EQ(player.volume(), 0.25F);
    window.forget();
    player.restart();
    EXPECT_EQ(player.textureId(), 0);
    EXPECT_TRUE(test::waitUntil([&] { return player.textureId() != 0; }));
    EXPECT_THAT(window.states, ElementsAre(State::Opening, State::Playing));
    player.updateAudioDelay();
}

TEST(Playback, ChangesSourceFiftyTimesWithoutLeavingAnythingBehind)
{
    const test::WarningGuard quiet;
    PlayerWindow window;
    const auto round = [&](const char *clip) {
        ASSERT_TRUE(window.openAndShow(test::clip(QString::fromUtf8(clip)))) << clip;
    };
    const auto settled = [&] {
        window.player().stop();
        test::passTime(300);
        return test::liveGlObjects();
    };
    round("long.mp4");
    const auto objects = settled();
    const int threads = test::threadCount();
    const char *const clips[] = {"long.mp4", "other.mp4", "patches_full.mov"};
    for (int i = 0; i < 50; ++i) {
        round(clips[i % 3]);
        // Some media are left while their first pictures are still under way.
        if (i % 5 == 0)
            window.player().openFile(test::clip(QStringLiteral("other.mp4")));
    }
    EXPECT_EQ(settled(), objects);
    EXPECT_LE(test::threadCount(), threads + 2);
}

TEST(Playback, QuitsAtAnyMoment)
{
    const test::WarningGuard quiet;
    const auto objects = test::liveGlObjects();
    for (int i = 0; i < 20; ++i) {
        PlayerWindow window;
        window.player().openFile(test::clip(QStringLiteral("long.mp4")));
        test::passTime(i * 5);
    }
    {
        // Never drawn: the video thread waits for a surface that does not come.
        PlayerWindow window(PlayerWindow::Shown::Never);
        window.player().openFile(test::clip(QStringLiteral("long.mp4")));
        test::passTime(300);
        window.player().openFile(test::clip(QStringLiteral("other.mp4")));
        test::passTime(300);
    }
    test::passTime(300);
    EXPECT_EQ(test::liveGlObjects(), objects);
}

TEST(Playback, ReportsBadInputAndPlaysTheNextFile)
{
    const struct
    {
        QString input;
        State last;
        bool message;
    } rows[] = {
        {QStringLiteral("truncated.mp4"), State::Ended, false},
        {QStringLiteral("truncated.ts"), State::Ended, false},
        {QStringLiteral("resized.ts"), State::Ended, false},
        {QStringLiteral("sound.mp4"), State::Ended, false},
        {QStringLiteral("empty.mp4"), State::Error, true},
        {QStringLiteral("text.mp4"), State::Ended, false},
        {QStringLiteral("missing.mp4"), State::Error, true},
        {QStringLiteral("http://127.0.0.1:9/refused.mp4"), State::Error, true},
    };
    PlayerWindow window;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.input.toStdString());
        window.forget();
        const bool remote = row.input.startsWith(QLatin1String("http"));
        window.player().openFile(remote ? QUrl(row.input) : test::clip(row.input));
        EXPECT_TRUE(window.wait(row.last));
        EXPECT_EQ(!window.errors.isEmpty(), row.message);
        EXPECT_FALSE(window.errors.contains(QString()));
        EXPECT_TRUE(window.openAndShow(test::clip(QStringLiteral("long.mp4"))));
    }
}

TEST(Playback, LeavesSourceAndSignalsAloneForAnEmptyUrl)
{
    PlayerWindow window;
    QSignalSpy source(&window.player(), &KVlcPlayerQml::sourceChanged);
    window.player().openFile({});
    window.player().restart();
    EXPECT_EQ(source.count(), 0);
    EXPECT_TRUE(window.textures.isEmpty());
}

TEST(Playback, ResizesToThePictureAndPaintsItUpright)
{
    PlayerWindow window;
    window.player().setNativeSize(true);
    window.player().setPaintTexture(true);
    ASSERT_TRUE(window.openAndShow(test::clip(QStringLiteral("upright.mp4"))));
    EXPECT_TRUE(test::waitUntil([&] { return window.player().width() == 160; }));
    window.player().pause();
    ASSERT_TRUE(window.wait(State::Paused));
    test::passTime(100);
    const QImage image = window.view().grabWindow();
    // Red above blue, with red and blue in their places again.
    EXPECT_GT(qRed(image.pixel(80, 20)), 150);
    EXPECT_LT(qBlue(image.pixel(80, 20)), 100);
    EXPECT_GT(qBlue(image.pixel(80, 60)), 150);
}

TEST(Playback, StaysIdleAndSaysSoWithoutAnInstance)
{
    VlcConfig config;
    config.customMode = true;
    config.customInstanceArguments = QStringLiteral("--no-such-option-at-all");
    VlcConfig::publish(&config);
    releaseVlcInstance();
    {
        test::WarningGuard guard;
        PlayerWindow window;
        EXPECT_EQ(guard.take(),
                  QStringList{QStringLiteral("ERROR : cannot init VLC player instance.")});
        KVlcPlayerQml &player = window.player();
        player.openFile(test::clip(QStringLiteral("h264.mp4")));
        player.play();
        player.pause();
        player.seek(100);
        player.setVolume(1);
        player.updateAudioDelay();
        player.restart();
        player.stop();
        EXPECT_EQ(player.volume(), 0);
        EXPECT_TRUE(vlcAudioDevices().isEmpty());
        EXPECT_TRUE(window.states.isEmpty() && window.errors.isEmpty());
    }
    // Custom arguments that libvlc takes; an empty one among them counts.
    config.customInstanceArguments = QStringLiteral("--quiet,,--intf=dummy");
    config.customMediaOptions = QStringLiteral(":start-time=1,,");
    releaseVlcInstance();
    {
        PlayerWindow window;
        EXPECT_TRUE(window.openAndShow(test::clip(QStringLiteral("long.mp4"))));
        EXPECT_TRUE(test::waitUntil([&] { return !window.positions.isEmpty(); }));
        EXPECT_GE(window.positions.first(), 900);
    }
    VlcConfig::publish(nullptr);
    releaseVlcInstance();
}

} // namespace
