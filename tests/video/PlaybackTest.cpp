#include "support/Footprint.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"
#include "video/PlayerWindow.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <gmock/gmock.h>

#include <QOpenGLFunctions_2_1>

#include <algorithm>

using test::PlayerWindow;
using ::testing::ElementsAre;

namespace {

using State = KVlcPlayerQml::VlcState;

test::Footprint heldByGl()
{
    return test::glObjects(QOpenGLContext::globalShareContext());
}

qint64 threadCount()
{
    return test::takeFootprint(QOpenGLContext::globalShareContext())["threads"];
}

TEST(Playback, RunsEachCodecFromOpeningToTheEnd)
{
    const test::WarningGuard quiet;
    const struct
    {
        const char *clip, *format;
        QSize size;
        int milliseconds, frames;
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
        windows.back()->player().openFile(test::clip(row.clip));
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        PlayerWindow &window = *windows[i];
        SCOPED_TRACE(rows[i].clip);
        ASSERT_TRUE(window.wait(State::Ended));
        EXPECT_THAT(window.states, ElementsAre(State::Opening, State::Playing, State::Ended));
        EXPECT_NEAR(window.durations.value(window.durations.size() - 1), rows[i].milliseconds, 50);
        ASSERT_FALSE(window.positions.isEmpty());
        EXPECT_TRUE(std::is_sorted(window.positions.begin(), window.positions.end()));
        EXPECT_LE(window.positions.last(), rows[i].milliseconds);
        EXPECT_EQ(window.player().texturePixelFormat(), rows[i].format);
        EXPECT_EQ(window.player().frameSize(), rows[i].size);
        EXPECT_TRUE(window.errors.isEmpty());
        // libvlc drops pictures when the machine is slow, and shows a last one twice.
        const auto pictures = window.textures.size() - window.textures.count(0);
        EXPECT_TRUE(pictures >= 2 && pictures <= rows[i].frames + 2) << pictures;
        EXPECT_GT(window.player().fps(), 0);
    }
}

TEST(Playback, WithholdsTheFirstPictureOfAMedia)
{
    PlayerWindow window;
    KVlcPlayerQml &player = window.player();
    player.openFile({});
    player.restart();
    EXPECT_TRUE(window.textures.isEmpty()) << "an empty url does nothing";
    EXPECT_EQ(player.textureTransfer(), QStringLiteral("\n"));
    // The clip is red at first and blue from its second picture on; red and blue are exchanged.
    std::array<std::uint8_t, 64 * 32 * 4> shown{};
    const auto readOnce = [&] {
        QOpenGLContext *videoThreads = QOpenGLContext::currentContext();
        if (player.textureId() == 0 || shown[3] != 0 || !videoThreads)
            return;
        auto *gl = videoThreads->versionFunctions<QOpenGLFunctions_2_1>();
        gl->initializeOpenGLFunctions();
        gl->glBindTexture(GL_TEXTURE_2D, GLuint(player.textureId()));
        gl->glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, shown.data());
    };
    QObject::connect(&player, &KVlcPlayerQml::textureIdChanged, &player, readOnce,
                     Qt::DirectConnection);
    player.openFile(test::clip("first_red.mov"));
    ASSERT_TRUE(window.wait(State::Ended));
    player.stop();
    EXPECT_GT(shown[0], 200);
    EXPECT_LT(shown[2], 50);
}

TEST(Playback, SeeksPausesStopsAndRestarts)
{
    PlayerWindow window;
    KVlcPlayerQml &player = window.player();
    player.setVolume(0.25F);
    ASSERT_TRUE(window.openAndShow(test::clip("long.mp4")));
    EXPECT_FLOAT_EQ(player.volume(), 0.25F);
    player.seek(10000);
    const auto there = [](int position) { return position >= 9000; };
    EXPECT_SOON(there(window.lastPosition()));
    EXPECT_LT(*std::find_if(window.positions.begin(), window.positions.end(), there), 13000);

    player.pause();
    ASSERT_TRUE(window.wait(State::Paused));
    QTest::qWait(100);
    window.forget();
    player.seek(4000);
    EXPECT_THAT(window.positions, ElementsAre(4000)) << "no time event comes while paused";
    player.stop();
    ASSERT_TRUE(window.wait(State::Stopped));
    EXPECT_EQ(player.textureId(), 0);
    EXPECT_EQ(player.textureTransfer(), QStringLiteral("\n"));
    for (int i = 0; i < 2; ++i) {
        window.forget();
        player.restart();
        EXPECT_EQ(player.textureId(), 0);
        EXPECT_SOON(player.textureId() != 0);
        EXPECT_THAT(window.states, ElementsAre(State::Opening, State::Playing));
        EXPECT_FLOAT_EQ(player.volume(), 0.25F);
    }
}

TEST(Playback, ChangesSourceFiftyTimesWithoutLeavingAnythingBehind)
{
    const test::WarningGuard quiet;
    PlayerWindow window;
    ASSERT_TRUE(window.openAndShow(test::clip("long.mp4")));
    window.player().stop();
    QTest::qWait(300);
    const auto objects = heldByGl();
    const qint64 threads = threadCount();
    const char *const clips[] = {"long.mp4", "other.mp4", "patches_full.mov"};
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(window.openAndShow(test::clip(clips[i % 3]))) << i;
        // Some media are left while their first pictures are still under way.
        if (i % 5 == 0)
            window.player().openFile(test::clip("other.mp4"));
    }
    window.player().stop();
    EXPECT_SOON(heldByGl() == objects);
    EXPECT_SOON(threadCount() <= threads + 2);
}

TEST(Playback, QuitsAtAnyMoment)
{
    const test::WarningGuard quiet;
    const auto objects = heldByGl();
    for (int i = 0; i < 22; ++i) {
        // The last two are never drawn: the video thread waits for a surface that does not come.
        PlayerWindow window(i < 20 ? PlayerWindow::Shown::Yes : PlayerWindow::Shown::Never);
        window.player().openFile(test::clip("long.mp4"));
        QTest::qWait(i * 5);
        if (i == 21) {
            QTest::qWait(300);
            window.player().openFile(test::clip("other.mp4"));
            QTest::qWait(300);
        }
    }
    EXPECT_SOON(heldByGl() == objects);
}

TEST(Playback, ReportsBadInputAndPlaysTheNextFile)
{
    const std::pair<const char *, State> rows[] = {
        {"truncated.mp4", State::Error}, {"truncated.ts", State::Ended},
        {"resized.ts", State::Ended},    {"sound.mp4", State::Ended},
        {"text.mp4", State::Error},      {"empty.mp4", State::Error},
        {"missing.mp4", State::Error},   {"http://127.0.0.1:9/refused.mp4", State::Error},
    };
    PlayerWindow window;
    for (const auto &[input, last] : rows) {
        SCOPED_TRACE(input);
        window.forget();
        window.player().openFile(test::clip(input));
        EXPECT_TRUE(window.wait(last));
        QTest::qWait(100);
        EXPECT_EQ(window.states.last(), last) << "ended as well, it would be played again for ever";
        EXPECT_EQ(window.errors.join(QString()).isEmpty(), last != State::Error);
        EXPECT_TRUE(window.openAndShow(test::clip("long.mp4")));
    }
}

TEST(Playback, ResizesToThePictureAndPaintsItUpright)
{
    PlayerWindow window;
    window.player().setNativeSize(true);
    window.player().setPaintTexture(true);
    ASSERT_TRUE(window.openAndShow(test::clip("upright.mp4")));
    EXPECT_SOON(window.player().width() == 160);
    window.player().pause();
    ASSERT_TRUE(window.wait(State::Paused));
    QTest::qWait(100);
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
        KVlcPlayerQml &player = window.player();
        player.openFile(test::clip("h264.mp4"));
        EXPECT_EQ(guard.take(),
                  QStringList{QStringLiteral("ERROR : cannot init VLC player instance.")});
        player.seek(100);
        player.setVolume(1);
        player.updateAudioDelay();
        player.stop();
        EXPECT_EQ(player.volume(), 0);
        EXPECT_TRUE(vlcAudioDevices().isEmpty());
        EXPECT_TRUE(window.states.isEmpty() && window.errors.isEmpty());
    }
    // Custom arguments that libvlc takes; an empty one among them counts.
    config.customInstanceArguments = QStringLiteral("--quiet,,--intf=dummy");
    config.customMediaOptions = QStringLiteral(":start-time=1,,");
    config.audioDelay = 100;
    releaseVlcInstance();
    {
        PlayerWindow window;
        EXPECT_TRUE(window.openAndShow(test::clip("long.mp4")));
        EXPECT_SOON(window.lastPosition() > 0);
        EXPECT_GE(window.positions.first(), 900);
    }
    VlcConfig::publish(nullptr);
    releaseVlcInstance();
}

} // namespace
