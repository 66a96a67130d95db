#include "input/SharedFrameReader.h"
#include "input/SharedMemoryBlock.h"
#include "input/SharedWriter.h"

#include <gtest/gtest.h>

namespace {

constexpr quint32 kHandle = 77;
constexpr quint32 kPixels = 1024;
constexpr std::size_t kBytes = 2048;

struct Reader : ::testing::Test
{
    Reader()
    {
        writer.create(4, kBytes);
        open();
    }

    void open()
    {
        EXPECT_TRUE(block.open(writer.name()));
        EXPECT_EQ(reader.greet(block, kHandle), BlockGreeting::Accepted);
    }

    /// Timestamp of what the reader takes, -1 for nothing; gives the slot back.
    qint64 take()
    {
        const auto slot = reader.take(block);
        if (!slot)
            return -1;
        EXPECT_TRUE(writer.isReady(slot->index)) << "the writer waits while the frame is copied";
        reader.release(block, *slot);
        EXPECT_FALSE(writer.isReady(slot->index));
        return qint64(slot->timestamp);
    }
    QByteArray readySlots() const
    {
        QByteArray ready;
        for (int i = 0; i < 4; ++i)
            ready.append(writer.isReady(i) ? '1' : '0');
        return ready;
    }

    SharedFaults faults;
    SharedFrameReader reader{&faults};
    test::SharedWriter writer;
    SharedMemoryBlock block;
};

} // namespace

TEST(SharedFrames, AGreetingDecidesByTheVersion)
{
    const std::tuple<std::size_t, const char *, BlockGreeting, bool, bool> rows[] = {
        {512, "AVRT_Shared_Memory1.4", BlockGreeting::Accepted, true, false},
        {512, "AVRT_Shared_Memory1.3", BlockGreeting::Rejected, true, true},
        {512, "AVRT_Shared_Memory1.4x", BlockGreeting::Rejected, true, true},
        {512, "AVRT_Shared_Memory1.", BlockGreeting::Rejected, true, true},
        {512, "", BlockGreeting::NotFilled, true, false},
        {0x94, "AVRT_Shared_Memory1.4", BlockGreeting::Accepted, true, false},
        {0x93, "AVRT_Shared_Memory1.4", BlockGreeting::NotFilled, false, false},
        {0, "AVRT_Shared_Memory1.4", BlockGreeting::NotFilled, false, false}};
    for (const auto &[bytes, version, greeting, introduced, rejected] : rows) {
        test::SharedWriter writer;
        writer.create(1, 512, version);
        SharedMemoryBlock block;
        ASSERT_TRUE(block.open(writer.name()));
        writer.resize(bytes);
        SharedFaults faults;
        SharedFrameReader reader(&faults);
        EXPECT_EQ(reader.greet(block, kHandle), greeting) << version;
        EXPECT_EQ(reader.isKnownTo(block), introduced);
        writer.resize(512);
        EXPECT_EQ(writer.get<quint32>(SharedLayout::kReaderHandle) == kHandle, introduced);
        EXPECT_EQ(writer.get<quint32>(SharedLayout::kRejected), rejected ? 1U : 0U);
        EXPECT_EQ(faults.count(SharedFault::WrongVersion), rejected ? 1 : 0);
        EXPECT_EQ(faults.count(SharedFault::BlockTooSmall), introduced ? 0 : 1);
    }
}

TEST_F(Reader, PollsHalfAFrameTime)
{
    const std::tuple<quint16, quint16, int> rows[] = {
        {25, 1, 20},  {30, 1, 16},   {30000, 1001, 16}, {60, 1, 8},
        {1000, 1, 1}, {65535, 1, 1}, {1, 1, 500},       {1, 65535, 1000},
        {0, 1, 10},   {25, 0, 10},   {0, 0, 10},        {60000, 1001, 8}};
    for (const auto &[top, bottom, interval] : rows) {
        writer.put(writer.slotAt(0) + SharedLayout::kRateNumerator, top);
        writer.put(writer.slotAt(0) + SharedLayout::kRateDenominator, bottom);
        EXPECT_EQ(reader.pollInterval(block), interval) << top << "/" << bottom;
    }
}

TEST_F(Reader, ALateReaderTakesTheNewestAndLeavesTheRest)
{
    EXPECT_EQ(take(), -1);
    for (int i = 0; i < 3; ++i)
        writer.frame(i, quint64(10 + i), 4, 2, 0, 0);
    EXPECT_EQ(take(), 12);
    EXPECT_EQ(readySlots(), "1100");
    writer.frame(3, 13, 4, 2, 0, 0);
    EXPECT_EQ(take(), 13);
    // The ring comes to what it skipped: too old, and it stays ready.
    EXPECT_EQ(take(), -1);
    EXPECT_EQ(readySlots(), "1100");
    writer.frame(0, 14, 4, 2, 0, 0);
    writer.frame(1, 15, 4, 2, 0, 0);
    writer.frame(2, 9, 4, 2, 0, 0);
    EXPECT_EQ(take(), 15) << "an older frame ends the look ahead";
    EXPECT_EQ(take(), -1);
    EXPECT_EQ(readySlots(), "1010");
}

TEST_F(Reader, AWriterThatStartsAgainIsAccepted)
{
    for (int i = 0; i < 3; ++i)
        writer.frame(i, quint64(100 + i), 4, 2, 0, 0);
    writer.frame(3, 103, 4, 2, 0, 0);
    EXPECT_EQ(take(), 103);
    reader.acceptRestart(block);
    EXPECT_EQ(take(), -1) << "what was skipped is no new beginning";
    writer.frame(0, 1, 4, 2, 0, 0);
    EXPECT_EQ(take(), -1);
    reader.acceptRestart(block);
    EXPECT_EQ(take(), 102) << "the ring behind it is read on";

    // A header made anew does not know the reader any more.
    EXPECT_TRUE(reader.isKnownTo(block));
    writer.put(SharedLayout::kReaderHandle, quint32(0));
    EXPECT_FALSE(reader.isKnownTo(block));
}

TEST_F(Reader, WhatDoesNotFitIsCountedAndGivenBack)
{
    constexpr auto kFine = SharedFault::Count; // no fault
    const std::tuple<quint32, quint16, quint16, quint16, quint16, SharedFault> rows[] = {
        {kPixels, 4, 2, 16, 0, kFine},
        {kPixels, 4, 2, 16, 1, kFine},
        {kPixels, 4, 2, 512, 7, kFine},
        {kPixels, 4, 2, 513, 0, SharedFault::FrameOutside},
        {0, 4, 2, 0, 0, kFine},
        {kPixels, 4, 2, 0, 0, SharedFault::FrameOutside},
        {0xFFFFFFFF, 4, 2, 16, 0, SharedFault::FrameOutside},
        {kBytes - 31, 4, 2, 16, 0, SharedFault::FrameOutside},
        {kBytes - 32, 4, 2, 16, 0, kFine},
        {kPixels, 0, 2, 16, 0, SharedFault::FrameImpossible},
        {kPixels, 4, 0, 16, 0, SharedFault::FrameImpossible},
        {kPixels, 65535, 65535, 1, 0, SharedFault::FrameImpossible},
        {kPixels, 65, 1, 260, 0, SharedFault::FrameImpossible},
        {kPixels, 33, 1, 66, 1, kFine},
        {kPixels, 34, 1, 68, 1, SharedFault::FrameImpossible},
        {kPixels, 1, 65, 4, 0, SharedFault::FrameImpossible},
        {kPixels, 1, 1, 2, 1, SharedFault::FrameImpossible},
        {kPixels, 64, 9, 4, 0, SharedFault::FrameImpossible}};
    reader.setLargestTexture(64);
    quint64 timestamp = 1;
    for (const auto &[dataOffset, width, height, rowBytes, pixelKind, fault] : rows) {
        SCOPED_TRACE(testing::Message() << dataOffset << ": " << width << ", " << rowBytes);
        const int index = reader.slotIndex();
        const std::size_t at = writer.slotAt(index);
        writer.frame(index, timestamp, 4, 2, 0, 0);
        writer.put(at + SharedLayout::kDataOffset, dataOffset);
        writer.put(at + SharedLayout::kWidth, width);
        writer.put(at + SharedLayout::kHeight, height);
        writer.put(at + SharedLayout::kRowBytes, rowBytes);
        writer.put(at + SharedLayout::kPixelKind, pixelKind);
        const SharedFaults before = faults;
        const auto slot = reader.take(block);
        ASSERT_EQ(slot.has_value(), fault == kFine);
        if (slot) {
            EXPECT_EQ(slot->format, pixelKind == 1 ? VlcPixelFormat::Yuyv : VlcPixelFormat::Bgra);
            reader.release(block, *slot);
            ++timestamp;
        } else {
            EXPECT_EQ(faults.count(fault), before.count(fault) + 1);
            EXPECT_FALSE(writer.isReady(index));
        }
        EXPECT_EQ(faults.total(), before.total() + (slot ? 0 : 1));
    }
}

TEST_F(Reader, SlotsOutsideTheBlockAreLeftOut)
{
    const std::tuple<quint16, std::size_t, qint64, int> rows[] = {
        {4, kBytes, 9, 0},
        {0, kBytes, -1, 1},
        {65535, kBytes, 9, 1},
        {4, std::size_t(SharedLayout::kSlots) + 2 * 56, -1, 2}, // the pixels are gone
        {4, SharedLayout::kSlots + 55, -1, 1},
        {4, 0x20, -1, 1}};
    for (const auto &[slotCount, bytes, taken, newFaults] : rows) {
        writer.create(4, kBytes);
        writer.put(SharedLayout::kSlotCount, slotCount);
        open();
        writer.frame(0, 9, 4, 2, 0, 0);
        writer.resize(bytes);
        const int before = faults.total();
        EXPECT_EQ(take(), taken) << slotCount << " in " << bytes;
        EXPECT_EQ(faults.total(), before + newFaults);
    }
}

TEST_F(Reader, RowsAreCopiedToTheirPitch)
{
    for (std::size_t i = 0; i < 100; ++i)
        writer.put(kPixels + i, uchar(i));
    // Two rows, 8 bytes apart.
    const std::tuple<quint16, quint32, std::vector<int>> cases[] = {
        {8, 2, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
        {10, 2, {0, 1, 2, 3, 4, 5, 6, 7, 10, 11, 12, 13, 14, 15, 16, 17}},
        {3, 2, {0, 1, 2, 0, 0, 0, 0, 0, 3, 4, 5, 0, 0, 0, 0, 0}},
        {8, 1, {0, 1, 2, 3, 4, 5, 6, 7, 99, 99, 99, 99, 99, 99, 99, 99}}};
    for (const auto &[rowBytes, rows, expected] : cases) {
        SharedSlot slot;
        slot.dataOffset = kPixels;
        slot.height = 2;
        slot.rowBytes = rowBytes;
        std::vector<std::uint8_t> target(16, 99);
        EXPECT_TRUE(reader.copy(block, slot, target.data(), 8, rows));
        EXPECT_EQ(std::vector<int>(target.begin(), target.end()), expected);
    }
    // A block cut short while its pixels are being copied.
    SharedSlot slot;
    slot.dataOffset = kPixels;
    slot.height = 2;
    writer.resize(kPixels + 15);
    std::vector<std::uint8_t> target(16);
    for (const quint16 rowBytes : {8, 9}) {
        slot.rowBytes = rowBytes;
        EXPECT_FALSE(reader.copy(block, slot, target.data(), 8, 2));
    }
    EXPECT_EQ(faults.count(SharedFault::FrameCutShort), 2);
    EXPECT_TRUE(faults.takeNews());
    EXPECT_FALSE(faults.takeNews());
    EXPECT_EQ(faults.text(), "Shared memory: the block shrank during a copy (2 times).\n");
}
