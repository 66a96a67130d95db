// The reader against a writer in another process, without a picture.

#include "input/SharedMemoryBlock.h"
#include "input/SharedFrameReader.h"
#include "input/SharedWriter.h"

#include <QElapsedTimer>

namespace {

constexpr int kPatienceMs = 60000;
constexpr int kSize = 256 * 1024;

struct SharedBlock : ::testing::Test
{
    SharedBlock() { timer.start(); }
    void open()
    {
        ASSERT_TRUE(block.open(writer.name()));
        ASSERT_EQ(reader.greet(block, block.readerHandle()), BlockGreeting::Accepted);
    }

    test::SharedWriter writer;
    SharedMemoryBlock block;
    SharedFaults faults;
    SharedFrameReader reader{&faults};
    QElapsedTimer timer;
};

} // namespace

TEST_F(SharedBlock, ThousandsOfFramesArriveWhole)
{
    constexpr int kFrames = 2000;
    const std::pair<int, int> rings[] = {{1, 0}, {2, 1}, {5, 0}};
    for (const auto &[slotCount, kind] : rings) {
        writer.create(slotCount, kSize);
        open();
        test::InOtherProcess host([this, kind = kind] { writer.play(kFrames, 64, 32, kind); });
        int last = 0;
        int taken = 0;
        std::vector<std::uint8_t> pixels(test::patternPixels(64, 32, kind, 0).size());
        while (last < kFrames && timer.elapsed() < kPatienceMs) {
            const auto slot = reader.take(block);
            if (!slot)
                continue;
            ASSERT_TRUE(reader.copy(block, *slot, pixels.data(), slot->rowBytes, 32));
            ASSERT_GT(int(slot->timestamp), last);
            last = int(slot->timestamp);
            ASSERT_EQ(pixels, test::patternPixels(64, 32, kind, last)) << "frame " << last;
            reader.release(block, *slot);
            ++taken;
        }
        ASSERT_EQ(last, kFrames) << "of a ring of " << slotCount;
        EXPECT_TRUE(slotCount > 1 || taken == kFrames) << "a ring of one loses nothing";
        EXPECT_TRUE(host.ended());
    }
    EXPECT_EQ(faults.total(), 0) << faults.text().toStdString();
}

TEST_F(SharedBlock, AWriterThatCutsItsBlockHarmsNobody)
{
    writer.create(2, kSize);
    open();
    std::vector<std::uint8_t> pixels(kSize);
    SharedSlot slot;
    slot.dataOffset = 4096;
    slot.height = 60;
    slot.rowBytes = 4096;
    {
        const test::InOtherProcess host([this] {
            for (std::size_t i = 0;; ++i) {
                writer.resize(i * 7919 % kSize);
                writer.resize(kSize);
            }
        });
        while (faults.count(SharedFault::FrameCutShort) < 20 && timer.elapsed() < kPatienceMs) {
            (void)reader.take(block);
            (void)reader.copy(block, slot, pixels.data(), 4096, 60);
            (void)reader.pollInterval(block);
        }
    }
    EXPECT_GE(faults.count(SharedFault::FrameCutShort), 20);

    writer.resize(0);
    EXPECT_FALSE(reader.take(block));
    reader.release(block, slot);
    EXPECT_EQ(block.size(), 0U) << "the reader never makes a block longer";
}
