#include "MovParserLib/MovBytes.h"
#include "MovParserLib/MovFileReader.h"

#include <gtest/gtest.h>

#include <QFile>

#include <limits>

using namespace test;
using namespace Orvex::MovParserLib;

namespace {

SampleTableAtom tableOf(const Bytes &children)
{
    Bytes bytes = atom("stbl", children);
    FileBuffer buffer;
    SampleTableAtom table(fourcc("vide"));
    if (buffer.attach(quint32(bytes.size()), bytes.data()) || table.read(buffer))
        ADD_FAILURE() << "the table is not read";
    return table;
}

const Bytes kStts = fullAtom("stts", u32(2) + u32(3) + u32(10) + u32(2) + u32(5));
const Bytes kCtts = fullAtom("ctts", u32(2) + u32(1) + u32(7) + u32(2) + u32(quint32(-4)));
const Bytes kStsz = fullAtom("stsz", u32(0) + u32(5) + u32(1) + u32(2) + u32(3) + u32(4) + u32(5));
const Bytes kStsc = fullAtom("stsc", u32(2) + u32(1) + u32(2) + u32(1) + u32(2) + u32(3) + u32(1));
const Bytes kStco = fullAtom("stco", u32(2) + u32(100) + u32(200));
const Bytes kAll =
    kStts + kCtts + kStsz + kStsc + kStco + fullAtom("stss", u32(2) + u32(1) + u32(4));

} // namespace

TEST(SampleTable, AnswersForEachSample)
{
    const SampleTableAtom table = tableOf(kAll);
    const std::tuple<quint32, Status, quint64, quint32, qint64, qint64, bool> rows[] = {
        {0, 0, 100, 1, 7, 0, true},
        {1, 0, 101, 2, 6, 10, false},
        {2, 0, 200, 3, 16, 20, false},
        {3, 0, 203, 4, 130, 30, true}, // Behind ctts: 100 was there.
        {4, 0, 207, 5, 135, 35, false},
        {5, 1, 0, 0, 0, 0, false},
        {0xFFFFFFFF, 1, 0, 0, 0, 0, false},
    };
    for (const auto &[sample, status, expectedOffset, expectedSize, expectedComposition,
                      expectedDecode, expectedSync] : rows) {
        SCOPED_TRACE(sample);
        quint64 offset = 0;
        quint32 size = 0;
        qint64 composition = 100;
        qint64 decode = 0;
        bool sync = false;
        EXPECT_EQ(table.getSampleLocation(sample, &offset, &size, &composition, &decode, &sync),
                  status);
        if (status)
            continue;
        EXPECT_EQ(offset, expectedOffset);
        EXPECT_EQ(size, expectedSize);
        EXPECT_EQ(composition, expectedComposition);
        EXPECT_EQ(decode, expectedDecode);
        EXPECT_EQ(sync, expectedSync);
        quint32 found = 0;
        EXPECT_EQ(table.getSampleAtTime(expectedDecode, &found), 0U);
        EXPECT_EQ(found, sample);
    }
    EXPECT_EQ(table.getSampleLocation(99, nullptr, nullptr, nullptr, nullptr, nullptr), 0U);
}

TEST(SampleTable, FindsSamplesByTime)
{
    const SampleTableAtom table = tableOf(kAll);
    const std::tuple<qint64, Status, quint32> rows[] = {
        {0, 0, 0},  {9, 0, 0},  {10, 0, 1}, {29, 0, 2}, {30, 0, 3},
        {34, 0, 3}, {39, 0, 4}, {40, 1, 0}, {-1, 1, 0}, {std::numeric_limits<qint64>::max(), 1, 0}};
    for (const auto &[time, status, expected] : rows) {
        quint32 sample = 0;
        EXPECT_EQ(table.getSampleAtTime(time, &sample), status) << time;
        EXPECT_EQ(sample, expected) << time;
    }
    // The length of a run wraps at 32 bits: here to nothing, so it is stepped over.
    quint32 sample = 0;
    const Bytes run = u32(0x10000) + u32(0x10000);
    EXPECT_EQ(tableOf(fullAtom("stts", u32(1) + run)).getSampleAtTime(0, &sample), 1U);
}

TEST(SampleTable, PlacesSamplesInChunks)
{
    const auto stsc = [](const Bytes &rows) {
        return fullAtom("stsc", u32(quint32(rows.size() / 12)) + rows) + kStsz + kStco;
    };
    const auto run = [](quint32 chunk, quint32 samples) {
        return u32(chunk) + u32(samples) + u32(1);
    };
    const std::tuple<const char *, Bytes, quint32, Status, quint64> rows[] = {
        {"no runs", stsc(""), 0, 1, 0},
        {"no samples in a chunk", stsc(run(1, 0)), 0, 1, 0},
        {"no samples, then some", stsc(run(1, 0) + run(2, 3)), 1, 0, 201},
        {"chunk 0", stsc(run(0, 9)), 0, 1, 0},
        {"chunk behind the table", stsc(run(3, 1)), 0, 1, 0},
        {"last chunk reaches on", stsc(run(1, 2)), 3, 0, 203},
        {"chunks going back", stsc(run(2, 1) + run(1, 1)), 0, 0, 200},
        {"size behind the table", stsc(run(1, 100)), 6, 1, 0},
        {"wide offsets",
         fullAtom("co64", u32(1) + u64(quint64(1) << 40)) + kStsz +
             fullAtom("stsc", u32(1) + run(1, 5)),
         1, 0, (quint64(1) << 40) + 1},
        {"constant size",
         fullAtom("stsz", u32(8) + u32(1)) + kStco + fullAtom("stsc", u32(1) + run(1, 0xFFFFFFFF)),
         0x10000000, 0, 100 + 0x80000000ULL},
    };
    for (const auto &[what, tables, sample, status, expectedOffset] : rows) {
        quint64 offset = 0;
        EXPECT_EQ(
            tableOf(tables).getSampleLocation(sample, &offset, nullptr, nullptr, nullptr, nullptr),
            status)
            << what;
        EXPECT_EQ(offset, expectedOffset) << what;
    }
}

TEST(SampleTable, MissingTablesHaveTheirCodes)
{
    const SampleTableAtom none = tableOf("");
    quint32 a = 0;
    quint32 b = 0;
    qint64 time = 0;
    bool sync = false;
    EXPECT_EQ(none.getSampleCount(&a), 0U);
    EXPECT_EQ(none.getSampleCount(nullptr), 1U);
    EXPECT_EQ(none.getConstantSampleDuration(&a), 2U);
    EXPECT_EQ(none.getSampleDurationRange(&a, &b), 3U);
    EXPECT_EQ(none.getSampleSize(0, &a), 3U);
    EXPECT_EQ(none.getSampleDecodeTime(0, &time), 3U);
    EXPECT_EQ(none.getSampleCompositionTime(0, &time), 3U);
    EXPECT_EQ(none.getSampleAtTime(0, &a), 3U);
    EXPECT_EQ(none.isSyncSample(7, &sync), 0U);
    EXPECT_TRUE(sync);
    EXPECT_EQ(tableOf(fullAtom("stts", u32(0))).getSampleDecodeTime(0, &time), 1U);
    // Without durations not even a size is told.
    EXPECT_EQ(tableOf(kStsz).getSampleSize(0, &a), 3U);
    const SampleTableAtom zeroSync = tableOf(fullAtom("stss", u32(1) + u32(0)));
    EXPECT_EQ(zeroSync.isSyncSample(0xFFFFFFFF, &sync), 0U);
    EXPECT_FALSE(sync);
}

TEST(SampleTable, TellsDurationsAndWholeTables)
{
    const SampleTableAtom table = tableOf(kAll);
    quint32 a = 0;
    quint32 b = 0;
    EXPECT_EQ(table.getConstantSampleDuration(&a), 8U);
    const Bytes single = fullAtom("stts", u32(1) + u32(9) + u32(4));
    EXPECT_EQ(tableOf(single).getConstantSampleDuration(&a), 0U);
    EXPECT_EQ(a, 4U);
    EXPECT_EQ(table.getSampleDurationRange(&a, &b), 0U);
    EXPECT_EQ(a, 5U);
    EXPECT_EQ(b, 10U);
    EXPECT_EQ(table.getFirstSampleDuration(&a), 0U);
    EXPECT_EQ(table.getLastSampleDuration(&b), 0U);
    EXPECT_EQ(a, 10U);
    EXPECT_EQ(b, 5U);

    std::vector<qint64> times;
    std::vector<quint32> sizes;
    std::vector<quint64> offsets;
    std::set<quint32> samples = {99};
    EXPECT_EQ(table.getDecodeTimes(&times), 0U);
    EXPECT_EQ(times, (std::vector<qint64>{0, 10, 20, 30, 35}));
    EXPECT_EQ(table.getCompositionTimes(&times), 0U);
    EXPECT_EQ(times, (std::vector<qint64>{7, 6, 16, 30, 35}));
    EXPECT_EQ(table.getSampleSizes(&sizes), 0U);
    EXPECT_EQ(sizes, (std::vector<quint32>{1, 2, 3, 4, 5}));
    EXPECT_EQ(table.getChunkOffsets(&offsets), 0U);
    EXPECT_EQ(offsets, (std::vector<quint64>{100, 200}));
    EXPECT_EQ(table.getSyncSamples(&samples), 0U);
    EXPECT_EQ(samples, (std::set<quint32>{1, 4}));
    // A run may claim billions of samples; they are not laid out.
    const Bytes claim = fullAtom("stts", u32(1) + u32(0xFFFFFFFF) + u32(1));
    EXPECT_EQ(tableOf(claim).getDecodeTimes(&times), 7U);
}

TEST(SampleTable, SamplesAreReadFromTheFile)
{
    TrackParts parts;
    parts.id = 9;
    const Bytes head = movie(track(parts));
    parts.tables =
        stsd(videoEntry("")) + kStts + kStsz + fullAtom("stsc", u32(1) + u32(1) + u32(5) + u32(1));
    const auto withOffset = [&](quint32 offset) {
        TrackParts result = parts;
        result.tables += fullAtom("stco", u32(1) + u32(offset));
        return movie(track(result));
    };
    const auto movieSize = quint32(withOffset(0).size());
    MovFileReader reader;
    ASSERT_EQ(reader.open(fileOf(withOffset(movieSize + 8) + atom("mdat", "abbcccddddEEEEE"))), 0U);
    SampleBuffer sample;
    ASSERT_EQ(reader.readSample(TrackSelector::byId(9), 2, &sample), 0U);
    EXPECT_EQ(std::string(sample.getData(), size_t(sample.dataSize())), "ccc");
    EXPECT_EQ(sample.decodeTime, 20);
    EXPECT_EQ(sample.isSync, 1);
    ASSERT_EQ(reader.readSampleAtTime(TrackSelector::byIndex(0), 31, &sample), 0U);
    EXPECT_EQ(std::string(sample.getData(), size_t(sample.dataSize())), "dddd");
    testing::internal::CaptureStderr();
    EXPECT_EQ(reader.readSample(TrackSelector::byId(8), 0, &sample), 0x40002U);
    EXPECT_EQ(reader.readSample(TrackSelector::byId(9), 5, &sample), 0x40001U);
    ASSERT_EQ(reader.open(fileOf(withOffset(0xFFFFFFF0))), 0U);
    EXPECT_EQ(reader.readSample(TrackSelector::byId(9), 0, &sample), 0x1000BU);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(reader.readSample(TrackSelector::byId(9), 0, nullptr), 5U);
}

TEST(SampleTable, SamplesBehindFiveGigabytesAreRead)
{
    constexpr quint64 kEnd = 16 + (quint64(5) << 30); // of ftyp and media; a hole but for its end
    const Bytes samples = "abbcccddddEEEEE";
    TrackParts parts;
    parts.tables = stsd(videoEntry("")) + kStts + kStsz +
                   fullAtom("stsc", u32(1) + u32(1) + u32(5) + u32(1)) +
                   fullAtom("co64", u32(1) + u64(kEnd - samples.size()));
    const Bytes head = atom("ftyp", "isom" + u32(0)) + u32(1) + "mdat" + u64(kEnd - 16);
    const Bytes tail = samples + movie(track(parts));
    QFile file(QString::fromStdString(fileOf(head, "large.mp4")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(qint64(kEnd - samples.size())));
    ASSERT_EQ(file.write(tail.data(), qint64(tail.size())), qint64(tail.size()));
    file.close();
    MovFileReader reader;
    ASSERT_EQ(reader.open(file.fileName()), 0U);
    EXPECT_EQ(reader.movieOffset(), kEnd);
    SampleBuffer sample;
    ASSERT_EQ(reader.readSample(TrackSelector::byId(1), 2, &sample), 0U);
    EXPECT_EQ(std::string(sample.getData(), size_t(sample.dataSize())), "ccc");
}
