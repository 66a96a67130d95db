#pragma once

// stbl and its tables: how many samples a track has, how large each is, where it lies, when it is
// decoded and shown (ISO/IEC 14496-12, 8.5 to 8.7). Owned by the media information atom above.
//
// Sample numbers in the operations count from 0; stss and the chunk numbers of stsc count from 1
// as in the file. The tables are walked without an index: a query costs one walk of the runs.

#include "MovParserLib/DescriptionAtoms.h"

#include <set>

namespace Orvex::MovParserLib {

/// A run of stsc: from FirstChunk on every chunk holds so many samples.
class SampleToChunkTableEntry
{
public:
    SampleToChunkTableEntry() = default;
    SampleToChunkTableEntry(const SampleToChunkTableEntry &) = default;
    virtual ~SampleToChunkTableEntry() = default;
    virtual SampleToChunkTableEntry &operator=(const SampleToChunkTableEntry &) = default;

    quint32 firstChunk = 0;
    quint32 samplesPerChunk = 0;
    quint32 sampleDescriptionId = 0;

    template <class Self, class Visitor>
    static void fields(Self &e, Visitor &v)
    {
        v.number(e.firstChunk);
        v.number(e.samplesPerChunk);
        v.number(e.sampleDescriptionId);
    }
};

/// A run of stts: so many samples of one duration.
class TimeToSampleTableEntry
{
public:
    TimeToSampleTableEntry() = default;
    TimeToSampleTableEntry(const TimeToSampleTableEntry &) = default;
    virtual ~TimeToSampleTableEntry() = default;
    virtual TimeToSampleTableEntry &operator=(const TimeToSampleTableEntry &) = default;

    quint32 sampleCount = 0;
    quint32 sampleDuration = 0;

    template <class Self, class Visitor>
    static void fields(Self &e, Visitor &v)
    {
        v.number(e.sampleCount);
        v.number(e.sampleDuration);
    }
};

/// A run of ctts: so many samples shown so much after their decoding.
class CompositionOffsetsTableEntry
{
public:
    CompositionOffsetsTableEntry() = default;
    CompositionOffsetsTableEntry(const CompositionOffsetsTableEntry &) = default;
    virtual ~CompositionOffsetsTableEntry() = default;
    virtual CompositionOffsetsTableEntry &operator=(const CompositionOffsetsTableEntry &) = default;

    quint32 sampleCount = 0;
    qint32 sampleDelta = 0;

    template <class Self, class Visitor>
    static void fields(Self &e, Visitor &v)
    {
        v.number(e.sampleCount);
        v.number(e.sampleDelta);
    }
};

/// stsz: sizes of samples (ISO/IEC 14496-12, 8.7.3). A constant size may go with any count, since
/// no table follows.
class SampleSizeAtom final : public AtomOf<SampleSizeAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stsz");
    static constexpr const char *kName = "SampleSizeAtom";

    struct Sizes
    {
        quint32 constant = 0;
        quint32 count = 0;
        std::vector<quint32> table; ///< Empty with a constant size, else count entries.

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 8 + 4 * quint64(table.size()); }
        void dump(const Dump &dump, const char *label) const;
    } sizes;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("SampleSizeTable: ", a.sizes);
    }
};

/// stsc: which samples share a chunk (ISO/IEC 14496-12, 8.7.4).
class SampleToChunkAtom final : public AtomOf<SampleToChunkAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stsc");
    static constexpr const char *kName = "SampleToChunkAtom";
    Table<SampleToChunkTableEntry> table;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("SampleToChunkTable: (FirstChunk, SamplesPerChunk, SampleDescriptionID)", a.table);
    }
};

/// stco or co64: file offsets of the chunks in 32 or 64 bits (ISO/IEC 14496-12, 8.7.5).
class ChunkOffsetAtom final : public AtomOf<ChunkOffsetAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stco");
    static constexpr FourCC kSecondType = fourcc("co64");
    static constexpr const char *kName = "ChunkOffsetAtom";
    static constexpr Status kWrongTypeStatus = AtomError::WrongAtomType;

    struct Offsets
    {
        bool wide = false; ///< Follows the atom's type.
        std::vector<quint64> rows;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 + (wide ? 8 : 4) * quint64(rows.size()); }
        void dump(const Dump &dump, const char *label) const;
    } offsets;

    /// Chooses between the two types for writing.
    void setWide(bool wide);

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        if constexpr (Visitor::kReads)
            a.offsets.wide = a.type == kSecondType;
        v.coded("ChunkOffsetTable: ", a.offsets);
    }
};

/// stts: durations of samples in runs (ISO/IEC 14496-12, 8.6.1.2).
class TimeToSampleAtom final : public AtomOf<TimeToSampleAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stts");
    static constexpr const char *kName = "TimeToSampleAtom";
    Table<TimeToSampleTableEntry> table;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("TimeToSampleTable: (Sample Count, Sample Duration)", a.table);
    }
};

/// ctts: from decoding to showing, in runs; always signed (ISO/IEC 14496-12, 8.6.1.3).
class CompositionOffsetsAtom final : public AtomOf<CompositionOffsetsAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("ctts");
    static constexpr const char *kName = "CompositionOffsetsAtom";
    Table<CompositionOffsetsTableEntry> table;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("CompositionOffsetsTable: (Sample Count, Sample Delta)", a.table);
    }
};

/// stss: numbers of the sync samples (ISO/IEC 14496-12, 8.6.2).
class SyncSampleAtom final : public AtomOf<SyncSampleAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stss");
    static constexpr const char *kName = "SyncSampleAtom";
    static constexpr Status kWrongTypeStatus = AtomError::WrongAtomType;

    /// An ordered set without duplicates, kept flat: a tree would take ten times the file's bytes.
    struct Numbers
    {
        std::vector<quint32> rows;

        void assign(std::vector<quint32> numbers);
        bool contains(quint32 number) const;
        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 + 4 * quint64(rows.size()); }
        void dump(const Dump &dump, const char *label) const;
    } numbers;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("SyncSampleTable: ", a.numbers);
    }
};

/// sdtp: one byte of dependencies for each sample, up to the atom's end (ISO/IEC 14496-12, 8.6.4).
class SampleDependenciesAtom final : public AtomOf<SampleDependenciesAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("sdtp");
    static constexpr const char *kName = "SampleDependenciesAtom";

    struct Bytes : RawBlock
    {
        void dump(const Dump &dump, const char *label) const;
    } dependencies;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("SampleDependenciesTable: (Dependency)", a.dependencies);
    }
};

/// stbl. Queries return codes of AtomDomain: ERROR_INVALID_ARG for a null output or a sample out
/// of range, ERROR_ATOM_NOT_FOUND for a missing table, ERROR_INVALID_OP for what cannot be asked.
class SampleTableAtom final : public AtomOf<SampleTableAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("stbl");
    static constexpr const char *kName = "SampleTableAtom";

    /// @p mediaKind is the handler's subtype; it decides how the descriptions are read.
    explicit SampleTableAtom(FourCC mediaKind = 0);

    [[nodiscard]] Status getSampleCount(quint32 *count) const;
    /// ERROR_INVALID_RET_VAL without stts, ERROR_INVALID_OP unless it has exactly one run.
    [[nodiscard]] Status getConstantSampleDuration(quint32 *duration) const;
    [[nodiscard]] Status getSampleDurationRange(quint32 *least, quint32 *most) const;
    [[nodiscard]] Status getFirstSampleDuration(quint32 *duration) const;
    [[nodiscard]] Status getLastSampleDuration(quint32 *duration) const;
    /// Intended: without stts there is no size either, and a constant size answers for any number.
    [[nodiscard]] Status getSampleSize(quint32 sample, quint32 *size) const;
    /// Without stss every sample is a sync sample.
    [[nodiscard]] Status isSyncSample(quint32 sample, bool *result) const;
    [[nodiscard]] Status getSampleDecodeTime(quint32 sample, qint64 *time) const;
    /// Intended: where ctts ends too early, the decode time is added to what @p time holds.
    [[nodiscard]] Status getSampleCompositionTime(quint32 sample, qint64 *time) const;
    [[nodiscard]] Status getSampleAtTime(qint64 time, quint32 *sample) const;
    /// Any output may be null; the first rule that fails ends the call.
    [[nodiscard]] Status getSampleLocation(quint32 sample, quint64 *offset, quint32 *size,
                                           qint64 *compositionTime, qint64 *decodeTime,
                                           bool *isSync) const;

    // Whole tables in one pass; null gives ERROR_INVALID_ARG. Times of more samples than the table
    // of sizes lists give ERROR_MEM_ALLOC beyond a million.
    [[nodiscard]] Status getSampleSizes(std::vector<quint32> *sizes) const;
    [[nodiscard]] Status getSyncSamples(std::set<quint32> *samples) const;
    [[nodiscard]] Status getDecodeTimes(std::vector<qint64> *times) const;
    [[nodiscard]] Status getCompositionTimes(std::vector<qint64> *times) const;
    [[nodiscard]] Status getChunkOffsets(std::vector<quint64> *chunkOffsets) const;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.descriptions);
        v.optional(a.sizes);
        v.optional(a.sampleToChunk);
        // With both offset tables present the 32-bit one counts.
        v.optional(a.chunkOffsets);
        v.optional(a.timeToSample);
        v.optional(a.syncSamples);
        v.optional(a.compositionOffsets);
        v.optional(a.dependencies);
    }

    SampleDescriptionAtom descriptions;
    SampleSizeAtom sizes;
    SampleToChunkAtom sampleToChunk;
    ChunkOffsetAtom chunkOffsets;
    Owned<TimeToSampleAtom> timeToSample;
    Owned<SyncSampleAtom> syncSamples;
    Owned<CompositionOffsetsAtom> compositionOffsets;
    Owned<SampleDependenciesAtom> dependencies;
    FourCC mediaKind = 0;

private:
    /// Of the durations: an answer to write into, and a run to take it from.
    Status needTimes(bool answerable) const;
    Status getSampleOffset(quint32 sample, quint64 *offset) const;
    Status sizeOfRange(quint64 firstSample, quint64 count, quint64 *size) const;
};

} // namespace Orvex::MovParserLib
