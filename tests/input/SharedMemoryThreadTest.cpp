// Frames of another program as textures of this one, compared byte by byte.

#include "input/SharedMemoryThread.h"
#include "input/SharedWriter.h"
#include "support/GlContext.h"
#include "support/Soon.h"
#include "video/YuvReference.h"

#include <QTest>

#include <cmath>

namespace {

constexpr int kSize = 4 * 1024 * 1024;

/// What the texture holds for a pixel of the pattern: red and blue exchanged in both kinds, as the
/// panorama shader expects them.
std::array<int, 3> expectedPixel(int x, int y, int kind, int seed)
{
    const auto byte = [y, seed](int column) {
        return int(test::patternByte(std::size_t(column), std::size_t(y), seed));
    };
    if (kind != 1)
        return {byte(4 * x), byte(4 * x + 1), byte(4 * x + 2)};
    const int pair = x / 2 * 4;
    return test::colourOf({byte(2 * x) / 255.0, byte(pair + 1) / 255.0, byte(pair + 3) / 255.0},
                          YuvColours::Compressed);
}

struct Thread : ::testing::Test
{
    Thread()
    {
        share.setCurrent(false);
        surface.create();
        QObject::connect(&thread, &SharedMemoryThread::logTextChanged,
                         [this](const QString &text) { log = text; });
    }
    ~Thread() override { stop(); }

    void stop()
    {
        thread.stop();
        thread.wait();
    }
    /// Whether the published texture becomes the pattern, to one level of rounding.
    bool comesToShow(int width, int height, int kind, int seed)
    {
        return test::soon([=] { return shows(width, height, kind, seed); });
    }
    bool shows(int width, int height, int kind, int seed)
    {
        const int texture = published.textureId();
        if (texture == 0 || published.size() != QSize(width, height))
            return false;
        const QImage pixels = test::downloadTexture(&share.context(), texture);
        bool same = pixels.size() == published.size();
        for (int i = 0; i < width * height && same; ++i) {
            const auto expected = expectedPixel(i % width, i / width, kind, seed);
            for (std::size_t c = 0; c < 3; ++c)
                same = same && std::abs(pixels.constBits()[i * 4 + int(c)] - expected[c]) <= 1;
        }
        return same;
    }

    test::SharedWriter writer;
    test::GlContext share;
    QOffscreenSurface surface;
    PublishedFrame published;
    QString log;
    SharedMemoryThread thread{writer.name(), &share.context(), &surface, &published};
};

} // namespace

TEST_F(Thread, ShowsEveryKindAndSizeByteByByte)
{
    thread.start(); // long before there is a block
    EXPECT_EQ(published.textureId(), 0);
    writer.create(3, kSize);
    const int rows[][3] = {{64, 32, 0}, {64, 32, 0},   {64, 32, 1},   {128, 16, 1}, {33, 17, 0},
                           {64, 32, 1}, {322, 181, 0}, {322, 182, 1}, {16, 16, 5}};
    int timestamp = 0;
    for (const auto &[width, height, kind] : rows) {
        const int slot = timestamp % 3;
        ++timestamp;
        writer.frame(slot, timestamp, width, height, kind, timestamp);
        EXPECT_TRUE(comesToShow(width, height, kind, timestamp))
            << width << "x" << height << " kind " << kind;
        EXPECT_SOON(!writer.isReady(slot));
    }
    stop();
    EXPECT_EQ(published.textureId(), 0) << "its texture ended with its context";
    EXPECT_EQ(published.size(), QSize(-1, -1));
    EXPECT_EQ(log, QString());
}

TEST_F(Thread, KeepsThePictureOfAWriterThatDiesAndFollowsTheNext)
{
    writer.create(1, kSize);
    thread.start();
    writer.frame(0, 1000, 64, 32, 0, 1);
    EXPECT_TRUE(comesToShow(64, 32, 0, 1));
    writer.leave();
    writer.unlink();
    QTest::qWait(1300); // longer than it takes to look for another block
    EXPECT_TRUE(shows(64, 32, 0, 1));

    // Another block under the name, with timestamps from the beginning.
    writer.create(2, kSize);
    writer.frame(0, 1, 32, 32, 1, 2);
    EXPECT_TRUE(comesToShow(32, 32, 1, 2));

    // The same block, its header made anew.
    writer.frame(1, 5000, 32, 32, 0, 3);
    EXPECT_TRUE(comesToShow(32, 32, 0, 3));
    writer.put(132, quint32(0));
    writer.frame(0, 1, 16, 16, 0, 4);
    EXPECT_TRUE(comesToShow(16, 16, 0, 4));
    EXPECT_EQ(log, QString());
}

TEST_F(Thread, FaultsAreInTheLogAndThePictureStays)
{
    writer.create(2, kSize);
    thread.start();
    const auto told = [this](const char *text) {
        EXPECT_SOON(log.contains(text)) << text;
        EXPECT_TRUE(shows(64, 32, 0, 1));
    };
    // The reader comes to slot 0 again before each fault in slot 1.
    for (int timestamp = 1; timestamp <= 3; ++timestamp) {
        writer.frame((timestamp + 1) % 2, timestamp, 64, 32, 0, timestamp % 2);
        EXPECT_TRUE(comesToShow(64, 32, 0, timestamp % 2));
    }
    writer.put(220, ~quint32(0));
    writer.put(252, quint16(1)); // slot 1 is ready
    told("a frame does not lie inside the block (1 times)");
    writer.frame(0, 4, 64, 32, 0, 1);
    EXPECT_SOON(!writer.isReady(0));
    writer.put(228, quint16(0));
    writer.put(252, quint16(1));
    told("a frame has an impossible size (1 times)");

    writer.resize(100);
    told("the slots do not lie inside the block");
    told("the block is smaller than its header");
    writer.create(1, kSize, "AVRT_Shared_Memory1.3");
    told("the block has another version");
    writer.create(1, kSize);
    writer.frame(0, 1, 64, 32, 1, 7);
    EXPECT_TRUE(comesToShow(64, 32, 1, 7));
}
