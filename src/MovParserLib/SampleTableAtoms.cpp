#include "MovParserLib/SampleTableAtoms.h"

#include "MovParserLib/AtomImpl.h"

#include <limits>

namespace Orvex::MovParserLib {

namespace {

/// Runs may claim billions of samples in a few bytes. More than the table of sizes lists are laid
/// out one by one only up to here, which is for tracks of a constant sample size.
constexpr quint64 kMostClaimedSamples = 1 << 20;

/// Sums of untrusted times wrap instead of overflowing.
qint64 wrappingAdd(qint64 a, qint64 b)
{
    return qint64(quint64(a) + quint64(b));
}

} // namespace

bool SampleSizeAtom::Sizes::read(FileBuffer &buffer, qint64 end)
{
    table.clear();
    if (readBig(buffer, &constant) || readBig(buffer, &count))
        return false;
    return constant != 0 || readRows(buffer, end, count, &table);
}

bool SampleSizeAtom::Sizes::write(FileBuffer &buffer) const
{
    const quint32 written = constant ? count : quint32(table.size());
    return writeBig(buffer, constant) == 0 && writeBig(buffer, written) == 0 &&
           writeRows(buffer, table);
}

void SampleSizeAtom::Sizes::dump(const Dump &dump, const char *label) const
{
    dump.line("SampleSize: %d", int(constant));
    dump.line("NumberOfEntries: %d", int(count));
    dumpRows(dump, label, table);
}

void ChunkOffsetAtom::setWide(bool wide)
{
    type = wide ? kSecondType : kType;
    offsets.wide = wide;
}

bool ChunkOffsetAtom::Offsets::read(FileBuffer &buffer, qint64 end)
{
    rows.clear();
    if (wide) {
        Table<quint64> table;
        if (!table.read(buffer, end))
            return false;
        rows = std::move(table.rows);
        return true;
    }
    Table<quint32> table;
    if (!table.read(buffer, end))
        return false;
    rows.assign(table.rows.begin(), table.rows.end());
    return true;
}

bool ChunkOffsetAtom::Offsets::write(FileBuffer &buffer) const
{
    if (writeBig(buffer, quint32(rows.size())))
        return false;
    if (wide)
        return writeRows(buffer, rows);
    return writeRows(buffer, std::vector<quint32>(rows.begin(), rows.end()));
}

void ChunkOffsetAtom::Offsets::dump(const Dump &dump, const char *label) const
{
    dump.line("NumberOfEntries: %d", int(rows.size()));
    dumpRows(dump, label, rows);
}

void SyncSampleAtom::Numbers::assign(std::vector<quint32> numbers)
{
    rows = std::move(numbers);
    if (!std::is_sorted(rows.begin(), rows.end()))
        std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

bool SyncSampleAtom::Numbers::contains(quint32 number) const
{
    return std::binary_search(rows.begin(), rows.end(), number);
}

bool SyncSampleAtom::Numbers::read(FileBuffer &buffer, qint64 end)
{
    Table<quint32> table;
    if (!table.read(buffer, end))
        return false;
    assign(std::move(table.rows));
    return true;
}

bool SyncSampleAtom::Numbers::write(FileBuffer &buffer) const
{
    return writeBig(buffer, quint32(rows.size())) == 0 && writeRows(buffer, rows);
}

void SyncSampleAtom::Numbers::dump(const Dump &dump, const char *label) const
{
    dump.line("NumberOfEntries: %d", int(rows.size()));
    dumpRows(dump, label, rows);
}

void SampleDependenciesAtom::Bytes::dump(const Dump &dump, const char *label) const
{
    dump.line("%s", label);
    dump.bytes("", bytes, "%d, ");
}

SampleTableAtom::SampleTableAtom(FourCC kind)
    : descriptions(kind)
    , mediaKind(kind)
{}

Status SampleTableAtom::getSampleCount(quint32 *count) const
{
    if (!count)
        return AtomError::InvalidArg;
    *count = sizes.sizes.count;
    return AtomError::Okay;
}

Status SampleTableAtom::getConstantSampleDuration(quint32 *duration) const
{
    if (!duration)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::InvalidRetVal;
    if (timeToSample->table.rows.size() != 1)
        return AtomError::InvalidOp;
    *duration = timeToSample->table.rows.front().sampleDuration;
    return AtomError::Okay;
}

Status SampleTableAtom::needTimes(bool answerable) const
{
    if (!answerable)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::AtomNotFound;
    return timeToSample->table.rows.empty() ? AtomError::InvalidArg : AtomError::Okay;
}

Status SampleTableAtom::getSampleDurationRange(quint32 *least, quint32 *most) const
{
    if (const Status status = needTimes(least && most))
        return status;
    const auto &runs = timeToSample->table.rows;
    const auto shorter = [](const auto &a, const auto &b) {
        return a.sampleDuration < b.sampleDuration;
    };
    const auto range = std::minmax_element(runs.begin(), runs.end(), shorter);
    *least = range.first->sampleDuration;
    *most = range.second->sampleDuration;
    return AtomError::Okay;
}

Status SampleTableAtom::getFirstSampleDuration(quint32 *duration) const
{
    if (const Status status = needTimes(duration != nullptr))
        return status;
    *duration = timeToSample->table.rows.front().sampleDuration;
    return AtomError::Okay;
}

Status SampleTableAtom::getLastSampleDuration(quint32 *duration) const
{
    if (const Status status = needTimes(duration != nullptr))
        return status;
    *duration = timeToSample->table.rows.back().sampleDuration;
    return AtomError::Okay;
}

Status SampleTableAtom::getSampleSize(quint32 sample, quint32 *size) const
{
    if (!size)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::AtomNotFound;
    if (sizes.sizes.constant == 0 && sample >= sizes.sizes.table.size())
        return AtomError::InvalidArg;
    *size = sizes.sizes.constant ? sizes.sizes.constant : sizes.sizes.table[sample];
    return AtomError::Okay;
}

Status SampleTableAtom::isSyncSample(quint32 sample, bool *result) const
{
    if (!result)
        return AtomError::InvalidArg;
    // The table counts from 1, so a 0 in it can never match.
    *result = !syncSamples || (sample != std::numeric_limits<quint32>::max() &&
                               syncSamples->numbers.contains(sample + 1));
    return AtomError::Okay;
}

Status SampleTableAtom::getSampleDecodeTime(quint32 sample, qint64 *time) const
{
    if (!time)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::AtomNotFound;
    quint64 firstInEntry = 0;
    quint64 base = 0;
    for (const TimeToSampleTableEntry &run : timeToSample->table.rows) {
        if (firstInEntry + run.sampleCount > sample) {
            *time = qint64(base + (sample - firstInEntry) * run.sampleDuration);
            return AtomError::Okay;
        }
        firstInEntry += run.sampleCount;
        base += quint64(run.sampleCount) * run.sampleDuration;
    }
    return AtomError::InvalidArg;
}

Status SampleTableAtom::getSampleCompositionTime(quint32 sample, qint64 *time) const
{
    if (!time)
        return AtomError::InvalidArg;
    qint64 decodeTime = 0;
    if (const Status status = getSampleDecodeTime(sample, &decodeTime))
        return status;
    if (!compositionOffsets) {
        *time = decodeTime;
        return AtomError::Okay;
    }
    quint64 sum = 0;
    qint64 delta = *time;
    for (const CompositionOffsetsTableEntry &run : compositionOffsets->table.rows) {
        sum += run.sampleCount;
        if (sample < sum) {
            delta = run.sampleDelta;
            break;
        }
    }
    *time = wrappingAdd(decodeTime, delta);
    return AtomError::Okay;
}

Status SampleTableAtom::getSampleAtTime(qint64 time, quint32 *sample) const
{
    if (!sample || time < 0)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::AtomNotFound;
    quint32 base = 0;
    qint64 start = 0;
    for (const TimeToSampleTableEntry &run : timeToSample->table.rows) {
        const quint32 span = run.sampleCount * run.sampleDuration;
        if (time < start + span) {
            // Multiplied first, then divided: the plain index within the run.
            *sample = base + quint32(quint64(time - start) * run.sampleCount / span);
            return AtomError::Okay;
        }
        base += run.sampleCount;
        start += span;
    }
    return AtomError::InvalidArg;
}

Status SampleTableAtom::sizeOfRange(quint64 firstSample, quint64 count, quint64 *size) const
{
    if (sizes.sizes.constant) {
        *size = count * sizes.sizes.constant;
        return AtomError::Okay;
    }
    const std::vector<quint32> &table = sizes.sizes.table;
    if (firstSample + count > table.size())
        return AtomError::InvalidArg;
    *size = 0;
    for (quint64 i = firstSample; i < firstSample + count; ++i)
        *size += table[size_t(i)];
    return AtomError::Okay;
}

Status SampleTableAtom::getSampleOffset(quint32 sample, quint64 *offset) const
{
    const std::vector<SampleToChunkTableEntry> &runs = sampleToChunk.table.rows;
    if (runs.empty())
        return AtomError::InvalidArg;
    quint32 first = 0;
    size_t run = 0;
    for (; run + 1 < runs.size(); ++run) {
        const quint32 chunks = runs[run + 1].firstChunk - runs[run].firstChunk;
        const quint32 span = chunks * runs[run].samplesPerChunk;
        if (quint64(first) + span > sample)
            break;
        first += span;
    }
    const quint32 perChunk = runs[run].samplesPerChunk;
    if (perChunk == 0)
        return AtomError::InvalidArg;
    const quint32 delta = sample - first;
    const quint64 chunk = quint64(runs[run].firstChunk) + delta / perChunk;
    const quint32 index = delta % perChunk;
    if (chunk == 0 || chunk > chunkOffsets.offsets.rows.size())
        return AtomError::InvalidArg;
    quint64 before = 0;
    if (const Status status = sizeOfRange(sample - index, index, &before))
        return status;
    *offset = chunkOffsets.offsets.rows[size_t(chunk - 1)] + before;
    return AtomError::Okay;
}

Status SampleTableAtom::getSampleLocation(quint32 sample, quint64 *offset, quint32 *size,
                                          qint64 *compositionTime, qint64 *decodeTime,
                                          bool *isSync) const
{
    Status status = AtomError::Okay;
    if (offset)
        status = getSampleOffset(sample, offset);
    if (!status && size)
        status = getSampleSize(sample, size);
    if (!status && compositionTime)
        status = getSampleCompositionTime(sample, compositionTime);
    if (!status && decodeTime)
        status = getSampleDecodeTime(sample, decodeTime);
    if (!status && isSync)
        status = isSyncSample(sample, isSync);
    return status;
}

Status SampleTableAtom::getSampleSizes(std::vector<quint32> *table) const
{
    if (!table)
        return AtomError::InvalidArg;
    *table = sizes.sizes.table;
    return AtomError::Okay;
}

Status SampleTableAtom::getSyncSamples(std::set<quint32> *samples) const
{
    if (!samples)
        return AtomError::InvalidArg;
    samples->clear();
    if (syncSamples)
        samples->insert(syncSamples->numbers.rows.begin(), syncSamples->numbers.rows.end());
    return AtomError::Okay;
}

Status SampleTableAtom::getDecodeTimes(std::vector<qint64> *times) const
{
    if (!times)
        return AtomError::InvalidArg;
    if (!timeToSample)
        return AtomError::AtomNotFound;
    times->clear();
    const quint64 most = std::max<quint64>(kMostClaimedSamples, sizes.sizes.table.size());
    quint64 time = 0;
    for (const TimeToSampleTableEntry &run : timeToSample->table.rows) {
        if (times->size() + quint64(run.sampleCount) > most)
            return AtomError::MemAlloc;
        for (quint32 i = 0; i < run.sampleCount; ++i, time += run.sampleDuration)
            times->push_back(qint64(time));
    }
    return AtomError::Okay;
}

Status SampleTableAtom::getCompositionTimes(std::vector<qint64> *times) const
{
    if (const Status status = getDecodeTimes(times))
        return status;
    if (!compositionOffsets)
        return AtomError::Okay;
    size_t sample = 0;
    for (const CompositionOffsetsTableEntry &run : compositionOffsets->table.rows) {
        for (quint32 i = 0; i < run.sampleCount && sample < times->size(); ++i, ++sample)
            (*times)[sample] = wrappingAdd((*times)[sample], run.sampleDelta);
    }
    return AtomError::Okay;
}

Status SampleTableAtom::getChunkOffsets(std::vector<quint64> *offsets) const
{
    if (!offsets)
        return AtomError::InvalidArg;
    *offsets = chunkOffsets.offsets.rows;
    return AtomError::Okay;
}

template class AtomOf<SampleSizeAtom, MovFullAtom>;
template class AtomOf<SampleToChunkAtom, MovFullAtom>;
template class AtomOf<ChunkOffsetAtom, MovFullAtom>;
template class AtomOf<TimeToSampleAtom, MovFullAtom>;
template class AtomOf<CompositionOffsetsAtom, MovFullAtom>;
template class AtomOf<SyncSampleAtom, MovFullAtom>;
template class AtomOf<SampleDependenciesAtom, MovFullAtom>;
template class AtomOf<SampleTableAtom, MovAtom, Children::Search>;

} // namespace Orvex::MovParserLib
