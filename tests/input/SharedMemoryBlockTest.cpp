// The reader against a writer in another process, without a picture.

#include "input/SharedMemoryBlock.h"
#include "input/SharedFrameReader.h"
#include "input/WriterProcess.h"

#include <QElapsedTimer>

namespace {

using test::WriterProcess;

constexpr int kPatienceMs = 60000;
constexpr int kSize = 256 * 1024;

class SharedBlock : public ::testing::Test
{
protected:
    void open()
    {
        ASSERT_TRUE(block.open(writer.name()));
        ASSERT_EQ(reader.greet(block, block.readerHandle()), BlockGreeting::Accepted);
    }

    WriterProcess writer;
    SharedMemoryBlock block;
    SharedFaults faults;
    SharedFrameReader reader{&faults};
};

} // namespace

TEST_F(SharedBlock, ThousandsOfFramesArriveWhole)
{
    constexpr int kFrames = 2000;
    const std::pair<int, int> rings[] = {{1, 0}, {2, 1}, {5, 0}};
    for (const auto &[slotCount, kind] : rings) {
        writer.create(slotCount, kSize);
        open();
        writer.send(QStringLiteral("play %1 64 32 %2 0").arg(kFrames).arg(kind));
        int last = 0;
        int taken = 0;
        QElapsedTimer timer;
        timer.start();
        std::vector<std::uint8_t> pixels(test::patternRowBytes(64, kind) * 32);
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
        EXPECT_EQ(last, kFrames) << "of a ring of " << slotCount;
        EXPECT_TRUE(slotCount > 1 || taken == kFrames) << "a ring of one loses nothing";
        EXPECT_EQ(writer.reply(), "ok");
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
    QElapsedTimer timer;
    timer.start();
    while (faults.count(SharedFault::FrameCutShort) < 20 && timer.elapsed() < kPatienceMs) {
        writer.send("shake 1000 262144");
        for (int i = 0; i < 200; ++i) {
            (void)reader.take(block);
            (void)reader.copy(block, slot, pixels.data(), 4096, 60);
            (void)reader.pollInterval(block);
        }
        EXPECT_EQ(writer.reply(), "ok");
    }
    EXPECT_GE(faults.count(SharedFault::FrameCutShort), 20);

    EXPECT_EQ(writer.ask("truncate 0"), "ok");
    EXPECT_FALSE(reader.take(block));
    reader.release(block, slot);
    EXPECT_EQ(block.size(), 0U) << "the reader never makes a block longer";
}

TEST_F(SharedBlock, ABlockMadeAnewIsNoticed)
{
    EXPECT_FALSE(block.open("/orbilens-test-none"));
    EXPECT_FALSE(block.isReplaced(writer.name()));
    EXPECT_EQ(block.size(), 0U);
    writer.create(1, kSize);
    open();
    EXPECT_FALSE(block.isReplaced(writer.name()));
    writer.ask("unlink");
    EXPECT_FALSE(block.isReplaced(writer.name())) << "gone is not replaced: the picture stays";
    writer.kill();
    EXPECT_EQ(block.size(), quint64(kSize));
    writer.start();
    writer.create(1, 4096);
    EXPECT_TRUE(block.isReplaced(writer.name()));
    open();
    EXPECT_EQ(block.size(), 4096U);
}
