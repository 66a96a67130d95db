// The whole road of a host application's frames: another process, the block, the real program, the
// pixels of its window.

#include "input/WriterProcess.h"
#include "support/Desktop.h"
#include "support/probe/ProbedPlayer.h"

#include <QColor>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <array>

namespace {

constexpr int kPatienceMs = 20000;
constexpr int kWidth = 256;
constexpr int kHeight = 128;

/// Red and green above, blue and white below, as bytes of a pixel (kind 0) or of a pair (kind 1,
/// the codes of ITU-R BT.709 in studio range).
const std::array<QByteArray, 4> kColours[] = {
    {QByteArray("\x00\x00\xff\xff", 4), QByteArray("\x00\xff\x00\xff", 4),
     QByteArray("\xff\x00\x00\xff", 4), QByteArray("\xff\xff\xff\xff", 4)},
    {QByteArray("\x3f\x66\x3f\xf0", 4), QByteArray("\xad\x2a\xad\x1a", 4),
     QByteArray("\x20\xf0\x20\x76", 4), QByteArray("\xeb\x80\xeb\x80", 4)}};

QByteArray quarters(int kind)
{
    QByteArray bytes;
    const int unitsPerRow = kind == 1 ? kWidth / 2 : kWidth;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < unitsPerRow; ++x)
            bytes +=
                kColours[kind]
                        [std::size_t((y < kHeight / 2 ? 0 : 2) + (x < unitsPerRow / 2 ? 0 : 1))];
    }
    return bytes;
}

/// Which of the four a pixel of the screen is; 0 for none.
char nameOf(const QByteArray &answer)
{
    const QColor colour(QString::fromLatin1(answer));
    const auto high = [](int channel) { return channel > 180; };
    const auto low = [](int channel) { return channel < 90; };
    const int r = colour.red();
    const int g = colour.green();
    const int b = colour.blue();
    if (high(r) && high(g) && high(b))
        return 'w';
    if (high(r) && low(g) && low(b))
        return 'r';
    if (low(r) && high(g) && low(b))
        return 'g';
    return low(r) && low(g) && high(b) ? 'b' : '0';
}

class HostFrames : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(desktop.valid()) << "no X server could be started"; }

    QByteArray quartersOnScreen()
    {
        QByteArray names;
        for (const char *place : {"0.35 0.35", "0.65 0.35", "0.35 0.65", "0.65 0.65"})
            names += nameOf(player.ask(QByteArray("pixel ") + place));
        return names;
    }
    bool screenShows(const QByteArray &names)
    {
        QElapsedTimer timer;
        timer.start();
        while (quartersOnScreen() != names) {
            if (timer.elapsed() > kPatienceMs)
                return false;
            QThread::msleep(50);
        }
        return true;
    }
    void play(int kind, bool inverse = false)
    {
        QByteArray bytes = quarters(kind);
        if (inverse) // upside down: the lower half first
            bytes = bytes.mid(bytes.size() / 2) + bytes.left(bytes.size() / 2);
        QFile clip(folder.filePath("clip.raw"));
        ASSERT_TRUE(clip.open(QIODevice::WriteOnly | QIODevice::Truncate));
        clip.write(bytes);
        clip.close();
        EXPECT_EQ(writer.ask(QStringLiteral("play 1 %1 %2 %3 0 %4")
                                 .arg(kWidth)
                                 .arg(kHeight)
                                 .arg(kind)
                                 .arg(clip.fileName())),
                  "ok");
    }

    test::Desktop desktop;
    QTemporaryDir folder;
    test::WriterProcess writer{"/AVRT_Shared_Memory"};
    test::ProbedPlayer player;
};

} // namespace

TEST_F(HostFrames, AHostThatStartsThePlayerWritesItsRowsFromBelow)
{
    writer.create(1, 1 << 20);
    ASSERT_TRUE(player.start(desktop.environment(player.home()), {"--adobeplugin"}));
    EXPECT_EQ(quartersOnScreen(), "0000");
    play(0);
    EXPECT_TRUE(screenShows("bwrg")) << quartersOnScreen().toStdString();
    play(1, true);
    EXPECT_TRUE(screenShows("rgbw")) << quartersOnScreen().toStdString();
    EXPECT_EQ(player.quit(), 0);
    EXPECT_EQ(test::complaints(player.errors()), "");
}

TEST_F(HostFrames, StartsByTheSettingWithRowsFromAboveAndOutlivesTheWriter)
{
    ASSERT_TRUE(player.start(desktop.environment(player.home()), {},
                             {{"application/advanced/sharedmemory", true}}));
    writer.create(1, 1 << 20);
    play(1);
    EXPECT_TRUE(screenShows("rgbw")) << quartersOnScreen().toStdString();
    play(0, true);
    EXPECT_TRUE(screenShows("bwrg")) << quartersOnScreen().toStdString();
    play(0);
    EXPECT_TRUE(screenShows("rgbw")) << quartersOnScreen().toStdString();
    writer.kill();
    EXPECT_TRUE(screenShows("rgbw")) << "the last picture stays";
    EXPECT_EQ(player.quit(), 0);
}
