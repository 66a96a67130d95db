// The whole road of a host application's frames: another process, the block, the real program, the
// pixels of its window.

#include "input/SharedWriter.h"
#include "support/Desktop.h"
#include "support/Soon.h"
#include "support/probe/ProbedPlayer.h"

#include <QColor>
#include <QThread>

#include <array>

namespace {

constexpr int kWidth = 256;
constexpr int kHeight = 128;

/// Red and green above, blue and white below, as bytes of a pixel (kind 0) or of a pair (kind 1,
/// the codes of ITU-R BT.709 in studio range).
const std::array<const char *, 4> kColours[] = {
    {"\x00\x00\xff\xff", "\x00\xff\x00\xff", "\xff\x00\x00\xff", "\xff\xff\xff\xff"},
    {"\x3f\x66\x3f\xf0", "\xad\x2a\xad\x1a", "\x20\xf0\x20\x76", "\xeb\x80\xeb\x80"}};

std::vector<std::uint8_t> quarters(int kind, bool upsideDown)
{
    std::vector<std::uint8_t> bytes;
    const int units = kind == 1 ? kWidth / 2 : kWidth;
    for (int i = 0; i < kHeight * units; ++i) {
        const bool below = (i / units >= kHeight / 2) != upsideDown;
        const char *colour = kColours[kind][(below ? 2U : 0U) + (i % units < units / 2 ? 0U : 1U)];
        bytes.insert(bytes.end(), colour, colour + 4);
    }
    return bytes;
}

/// Which of the four a pixel of the screen is; 0 for none.
char nameOf(const QByteArray &answer)
{
    const QColor colour(QString::fromLatin1(answer));
    int high = 0;
    for (const int channel : {colour.red(), colour.green(), colour.blue()}) {
        if (channel >= 90 && channel <= 180)
            return '0';
        high = 2 * high + (channel > 180 ? 1 : 0);
    }
    return "0bg0r00w"[high];
}

struct HostFrames : ::testing::Test
{
    void SetUp() override { ASSERT_TRUE(desktop.valid()) << "no X server could be started"; }

    QByteArray quartersOnScreen(test::ProbedPlayer &player)
    {
        QByteArray names;
        for (const char *place : {"0.35 0.35", "0.65 0.35", "0.35 0.65", "0.65 0.65"})
            names += nameOf(player.ask(QByteArray("pixel ") + place));
        return names;
    }

    test::Desktop desktop;
    test::SharedWriter writer{"/AVRT_Shared_Memory"};
    quint64 timestamp = 0;
};

} // namespace

TEST_F(HostFrames, AreShownByArgumentOrSettingAndStayWhenTheHostDies)
{
    const std::tuple<QStringList, QVariantMap, bool, bool> rows[] = {
        {{"--adobeplugin"}, {}, true, true},
        {{}, {{"application/advanced/sharedmemory", true}}, false, false}};
    for (const auto &[arguments, settings, blockFirst, rowsFromBelow] : rows) {
        SCOPED_TRACE(blockFirst);
        test::ProbedPlayer player;
        if (blockFirst)
            writer.create(1, 1 << 20);
        ASSERT_TRUE(player.start(desktop.environment(player.home()), arguments, settings));
        EXPECT_EQ(quartersOnScreen(player), "0000");
        if (!blockFirst)
            writer.create(1, 1 << 20);
        const std::pair<int, bool> frames[] = {{0, false}, {1, true}, {0, true}};
        for (const auto &[kind, upsideDown] : frames) {
            writer.frame(0, ++timestamp, kWidth, kHeight, kind, quarters(kind, upsideDown));
            const char *expected = upsideDown == rowsFromBelow ? "rgbw" : "bwrg";
            EXPECT_SOON(quartersOnScreen(player) == expected)
                << kind << quartersOnScreen(player).constData();
        }
        writer.leave();
        QThread::msleep(500);
        EXPECT_EQ(quartersOnScreen(player), rowsFromBelow ? "rgbw" : "bwrg");
        writer.unlink();
        EXPECT_EQ(player.quit(), 0);
        EXPECT_EQ(test::complaints(player.errors()), "");
    }
}
