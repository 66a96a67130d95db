#include "MovParserLib/FileAccess.h"
#include "MovParserLib/MovBytes.h"
#include "MovParserLib/SampleBuffer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <limits>

using namespace test;
using namespace Orvex::MovParserLib;

TEST(Report, PrintsPrefixAndNameAndCarriesTheDomain)
{
    const std::tuple<quint32, Status, Status, const char *> rows[] = {
        {0, 0, 0, ""},
        {1, 2, 3, "MovParser::Error  >>  ERROR_MISSING_MOVIE_HEADER\n"},
        {1, 0x1000B, 0x1000B, "MovParser::Error  >>  \n"},
        {0, 8, 8, "MovParser::Error  >>  \n"},
        {0x10000, 11, 0x1000B, "FileReader::Error  >>  ERROR_ATTEMPT_TO_READ_PAST_EOF\n"},
        {0x10000, 13, 0x1000D, "FileReader::Error  >>  Unknown error code\n"},
        {0x20000, 11, 0x2000B, "FileWriter::Error  >>  ERROR_BAD_MESSAGE\n"},
        {0x30000, 8, 0x30008, "GenericBuffer::Error  >>  ERROR_MALFORMED_OBJECT\n"},
        {0x40000, 11, 0x4000B, "MovAtom::Error  >>  ERROR_ZERO_SIZE_ATOM\n"},
        {0x40000, 12, 0x4000C, "MovAtom::Error  >>  Unknown error code\n"},
    };
    for (const auto &[domain, code, result, text] : rows) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(report(domain, code), result);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), text);
    }
}

TEST(FileBuffer, SeeksWithinItsBytesOnly)
{
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    // From position 4 of 10 bytes.
    const std::tuple<qint64, int, Status, qint64> rows[] = {
        {10, 0, 0, 10},   {11, 0, 5, 4},   {-1, 0, 6, 4},    {0, 0, 0, 0},    {5, 1, 0, 9},
        {6, 1, 5, 4},     {-4, 1, 0, 0},   {-5, 1, 6, 4},    {0, 2, 5, 4},    {-10, 2, 0, 0},
        {-11, 2, 6, 4},   {-1, 2, 0, 9},   {0, 3, 7, 4},     {most, 1, 5, 4}, {least, 1, 6, 4},
        {least, 2, 6, 4}, {most, 0, 5, 4}, {least, 0, 6, 4},
    };
    for (const auto &[offset, origin, result, position] : rows) {
        Bytes bytes(10, 'x');
        FileBuffer buffer;
        ASSERT_EQ(buffer.attach(10, bytes.data()), 0U);
        ASSERT_EQ(buffer.seek(4, FromStart), 0U);
        EXPECT_EQ(buffer.seek(offset, origin), result) << offset << origin;
        EXPECT_EQ(buffer.position(), position);
        EXPECT_EQ(buffer.position() + buffer.remaining(), buffer.dataSize());
    }
}

TEST(FileBuffer, ReadsAndWritesNoFurtherThanItsEnd)
{
    Bytes bytes = "0123456789";
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(10, bytes.data()), 0U);
    char target[16] = {};
    EXPECT_EQ(buffer.read(target, 11), 3U);
    EXPECT_EQ(buffer.read(target, std::numeric_limits<quint64>::max()), 3U);
    EXPECT_EQ(buffer.position(), 0);
    EXPECT_EQ(buffer.read(target, 4), 0U);
    EXPECT_STREQ(target, "0123");
    EXPECT_EQ(buffer.write("abcdefg", 7), 4U);
    EXPECT_EQ(buffer.write("ab", 2), 0U);
    EXPECT_EQ(buffer.skip(5), 5U);
    EXPECT_EQ(buffer.position(), 10);
    EXPECT_EQ(buffer.read(target, 0), 0U);
    EXPECT_EQ(bytes, "0123ab6789");
    // Counters set by hand keep their low half and cannot lead out of the block.
    buffer.setRemaining((qint64(5) << 32) + 100);
    EXPECT_EQ(buffer.remaining(), 100);
    EXPECT_EQ(buffer.read(target, 1), 3U);
    qint64 size = 0;
    buffer.getDataSize(&size);
    buffer.getDataSize(nullptr);
    EXPECT_EQ(size, 10);
}

TEST(FileBuffer, PreparesWholeSectorsAndKeepsALargeEnoughBlock)
{
    FileBuffer buffer;
    ASSERT_EQ(buffer.prepare(100, 1000, 512), 0U);
    EXPECT_EQ(buffer.dataOffset(), 488);
    EXPECT_EQ(buffer.blockSize(), 1024);
    EXPECT_EQ(buffer.dataSize(), 100);
    EXPECT_EQ(quintptr(buffer.getBuffer()) % 512, 0U);
    const char *block = buffer.getBuffer();
    ASSERT_EQ(buffer.prepare(512, 512, 512), 0U);
    EXPECT_EQ(buffer.getBuffer(), block);
    EXPECT_EQ(buffer.getCapacity(), 1024U);
    ASSERT_EQ(buffer.prepare(2000, 0, 512), 0U);
    EXPECT_EQ(buffer.getCapacity(), 2048U);
    // No block for more than 32 bits tell.
    EXPECT_EQ(buffer.prepare(0xFFFFFFFF, 511, 512), 1U);
    EXPECT_EQ(buffer.getBuffer(), nullptr);
    EXPECT_EQ(buffer.dataSize(), 0);

    Bytes outside(4096, 'x');
    ASSERT_EQ(buffer.attach(4096, outside.data()), 0U);
    EXPECT_TRUE(buffer.isBorrowed());
    ASSERT_EQ(buffer.prepare(16, 0, 512), 0U);
    EXPECT_NE(buffer.getBuffer(), outside.data());
    EXPECT_FALSE(buffer.isBorrowed());
}

TEST(FileBuffer, CopiesHandTheBlockOver)
{
    FileBuffer first;
    ASSERT_EQ(first.attach(3, nullptr), 0U);
    ASSERT_EQ(first.write("abc", 3), 0U);
    FileBuffer second(first);
    EXPECT_TRUE(first.isBorrowed());
    EXPECT_FALSE(second.isBorrowed());
    EXPECT_TRUE(first == second);
    FileBuffer third;
    ASSERT_EQ(third.attach(3, nullptr), 0U);
    third = second;
    EXPECT_TRUE(second.isBorrowed());
    first = third;
    EXPECT_FALSE(first.isBorrowed());
    EXPECT_EQ(first.getBuffer(), third.getBuffer());
    FileBuffer fourth;
    first.moveTo(fourth);
    EXPECT_EQ(first.getBuffer(), nullptr);
    EXPECT_EQ(first.dataSize(), 0);
    EXPECT_EQ(std::string(fourth.getData(), 3), "abc");
    EXPECT_TRUE(first != fourth);
}

TEST(FileBuffer, AnAllocatorServesBothKindsOfBlocks)
{
    struct Counting : BufferAllocator
    {
        int aligned = 0;
    } heap;
    heap.allocate = [](BufferAllocator *, quint32) -> void * { return nullptr; };
    heap.release = [](BufferAllocator *, void *) {};
    heap.allocateAligned = [](BufferAllocator *self, quint32 size, quint32) -> void * {
        ++static_cast<Counting *>(self)->aligned;
        return std::malloc(size);
    };
    heap.releaseAligned = [](BufferAllocator *self, void *block) {
        --static_cast<Counting *>(self)->aligned;
        std::free(block);
    };
    {
        FileBuffer buffer;
        ASSERT_EQ(buffer.setAllocator(&heap), 0U);
        EXPECT_EQ(buffer.setAllocator(&heap), 2U);
        ASSERT_EQ(buffer.prepare(1, 0, 512), 0U);
        EXPECT_EQ(heap.aligned, 1);
    }
    EXPECT_EQ(heap.aligned, 0);
}

TEST(SamplePool, GivesItsSamplesInOrderAndOwnsTheRest)
{
    SamplePoolBuffer pool;
    EXPECT_EQ(pool.flags[3], 1);
    for (int time = 0; time < 3; ++time) {
        pool.put(std::make_unique<SampleBuffer>());
        if (time == 0)
            pool.value = 7;
    }
    SamplePoolBuffer other(pool);
    EXPECT_EQ(other.value, 7U);
    EXPECT_EQ(pool.take(), nullptr);
    EXPECT_NE(other.take(), nullptr);
    EXPECT_EQ(other.count(), 2U);
}

TEST(FileReader, ReadsFromAnyOffset)
{
    Bytes content;
    for (int i = 0; i < 1300; ++i)
        content += char(i % 251);
    SyncFileReaderQt reader;
    FileBuffer buffer;
    EXPECT_EQ(reader.read(buffer, 0, 1), 2U);
    EXPECT_EQ(reader.open(""), 1U);
    EXPECT_EQ(reader.open(static_cast<const char *>(nullptr)), 1U);
    EXPECT_EQ(reader.open("/nowhere/at/all"), 2U);
    EXPECT_EQ(reader.open("/dev/zero"), 2U);
    EXPECT_EQ(reader.open(std::string("a\0b", 3)), 2U);
    ASSERT_EQ(reader.open(fileOf(content, "bytes")), 0U);
    const std::tuple<qint64, quint32, Status> rows[] = {
        {0, 1300, 0},    {1000, 16, 0}, {1024, 276, 0}, {1280, 20, 0},       {1290, 16, 0},
        {1024, 277, 11}, {0, 1301, 11}, {5000, 1, 11},  {0, 0xFFFFFFFF, 11}, {-1, 1, 4},
    };
    for (const auto &[offset, size, result] : rows) {
        EXPECT_EQ(reader.read(buffer, offset, size), result) << offset;
        if (result)
            continue;
        // What ends in the padding of the last sector is filled with zeros.
        const Bytes expected = (content + zeros(64)).substr(size_t(offset), size);
        EXPECT_EQ(Bytes(buffer.getData(), size), expected);
    }
    EXPECT_EQ(reader.close(), 0U);
    EXPECT_EQ(reader.close(), 0U);
}

TEST(FileWriter, WritesWhatTheBufferHolds)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("written"));
    Bytes bytes = "abcdef";
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(6, bytes.data()), 0U);
    SyncFileWriterQt writer;
    EXPECT_EQ(writer.write(buffer, 6), 2U);
    EXPECT_EQ(writer.size(), -1);
    EXPECT_EQ(writer.open(QString()), 1U);
    EXPECT_EQ(writer.open(folder.path()), 2U);
    ASSERT_EQ(writer.open(path), 0U);
    EXPECT_EQ(writer.write(buffer, 7), 5U);
    EXPECT_EQ(writer.write(buffer, 6), 0U);
    EXPECT_EQ(writer.write(buffer, 4, 3), 0U);
    EXPECT_EQ(writer.write(buffer, -1, 3), 4U);
    EXPECT_EQ(writer.size(), 7);
    EXPECT_EQ(writer.close(), 0U);
    SyncFileReaderQt reader;
    ASSERT_EQ(reader.open(path), 0U);
    ASSERT_EQ(reader.read(buffer, 0, 7), 0U);
    EXPECT_EQ(Bytes(buffer.getData(), 7), "abcdabc");
}
