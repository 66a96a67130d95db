#pragma once

// trak and its own small children: header, edit list, references (ISO/IEC 14496-12, 8.3 and 8.6).
// Owned by the movie.

#include "MovParserLib/MediaAtoms.h"

namespace Orvex::MovParserLib {

/// The nine values of a transformation: the first two of each row 16.16 fixed, the third 2.30
/// (ISO/IEC 14496-12, 6.2.2).
struct DisplayMatrix
{
    std::array<qint32, 9> values{{0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000}};

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return sizeof values; }
    void dump(const Dump &dump, const char *label) const;
    /// The value at @p index as a number.
    double at(size_t index) const;
};

/// tkhd (ISO/IEC 14496-12, 8.3.2), always in the 32-bit layout.
class TrackHeaderAtom final : public AtomOf<TrackHeaderAtom, MovFullDatedAtom>
{
public:
    static constexpr FourCC kType = fourcc("tkhd");
    static constexpr const char *kName = "TrackHeaderAtom";
    quint32 trackId = 0;
    quint32 reserved1 = 0;
    quint32 duration = 0;
    std::array<quint8, 8> reserved2{};
    qint16 layer = 0;
    quint16 alternateGroup = 0;
    quint16 volume = 0; ///< 8.8 fixed.
    quint16 reserved3 = 0;
    DisplayMatrix matrix;
    quint32 width = 0; ///< 16.16 fixed, as height.
    quint32 height = 0;

    /// Where in its buffer the atom began when it was read, for a rewrite in place.
    qint64 bufferOffset = 0;

    using AtomOf::read;
    [[nodiscard]] Status read(FileBuffer &buffer) override;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("TrackID", a.trackId);
        v.number("Reserved1", a.reserved1);
        v.number("Duration", a.duration);
        v.bytes("Reserved2", a.reserved2);
        v.number("Layer", a.layer);
        v.number("AlternateGroup", a.alternateGroup);
        v.fixed("Volume", a.volume, 8);
        v.number("Reserved3", a.reserved3);
        v.coded("Matrix", a.matrix);
        v.fixed("Width", a.width, 16);
        v.fixed("Height", a.height, 16);
    }
};

/// One edit: which stretch of the media is shown for how long.
class EditListTableEntry
{
public:
    EditListTableEntry() = default;
    EditListTableEntry(const EditListTableEntry &) = default;
    virtual ~EditListTableEntry() = default;
    virtual EditListTableEntry &operator=(const EditListTableEntry &) = default;

    quint32 trackDuration = 0;
    qint32 mediaTime = 0;
    quint32 mediaRate = 0x10000; ///< 16.16 fixed.

    template <class Self, class Visitor>
    static void fields(Self &e, Visitor &v)
    {
        v.number(e.trackDuration);
        v.number(e.mediaTime);
        v.number(e.mediaRate);
    }
};

/// elst (ISO/IEC 14496-12, 8.6.6), always in the 32-bit layout.
class EditListAtom final : public AtomOf<EditListAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("elst");
    static constexpr const char *kName = "EditListAtom";
    Table<EditListTableEntry> table;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("EditListTable: (TrackDuration, MediaTime, MediaRate)", a.table);
    }
};

/// edts (ISO/IEC 14496-12, 8.6.5).
class EditAtom final : public AtomOf<EditAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("edts");
    static constexpr const char *kName = "EditAtom";
    EditListAtom list;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.list);
    }
};

/// A child of tref of any type: the ids of the tracks referred to.
class TrackReferenceTypeAtom final : public AtomOf<TrackReferenceTypeAtom, MovAtom>
{
public:
    static constexpr FourCC kType = 0;
    static constexpr const char *kName = "TrackReferenceTypeAtom";
    static constexpr bool kAnyType = true;
    static bool accepts(FourCC) { return true; }

    struct TrackIds
    {
        std::vector<quint32> rows;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 * quint64(rows.size()); }
        void dump(const Dump &dump, const char *label) const;
    } trackIds;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("TrackIDs: ", a.trackIds);
    }
};

/// tref (ISO/IEC 14496-12, 8.3.3).
class TrackReferenceAtom final : public AtomOf<TrackReferenceAtom, MovAtom, Children::Sequential>
{
public:
    static constexpr FourCC kType = fourcc("tref");
    static constexpr const char *kName = "TrackReferenceAtom";
    std::vector<Owned<TrackReferenceTypeAtom>> references;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.list(a.references);
    }
};

/// trak (ISO/IEC 14496-12, 8.3.1).
class TrackAtom final : public AtomOf<TrackAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("trak");
    static constexpr const char *kName = "TrackAtom";
    TrackHeaderAtom header;
    MediaAtom media;
    Owned<EditAtom> edits;
    Owned<TrackReferenceAtom> references;
    Owned<sphericalVideoLegacyAtom> legacySpherical; ///< The first uuid of the track.

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.header);
        v.required(a.media);
        v.optional(a.edits);
        v.optional(a.references);
        v.optional(a.legacySpherical);
    }

    bool isVideo() const { return media.handlerSubtype() == fourcc("vide"); }
    bool hasSamples() const { return media.information && media.information->hasSamples(); }
    /// Whether this is the camera's telemetry, told by the handler's name.
    bool isTelemetry() const;

    /// Frames a second, 0 where the tables do not tell: then the result is false.
    bool getFrameRate(double *rate) const;

    // The first video description answers, also with "none". Only a track without one falls back
    // on its uuid; without that either the answer is ERROR_INVALID_RET_VAL.
    [[nodiscard]] Status getProjection(quint32 *projection) const;
    [[nodiscard]] Status getStereoMode(quint32 *stereo) const;
    [[nodiscard]] Status getInitialOrientation(float *yaw, float *pitch, float *roll) const;
    [[nodiscard]] Status getWritingTool(std::string *tool) const;

    // The same for writing, into the first video description, making its atoms as needed.
    [[nodiscard]] Status setProjection(quint32 projection);
    [[nodiscard]] Status setStereoMode(quint32 stereo);
    [[nodiscard]] Status setInitialOrientation(float yaw, float pitch, float roll);
    [[nodiscard]] Status setWritingTool(const std::string &tool);

private:
    VideoSampleDescription *videoDescription();
    sphericalVideoAtom *madeSpherical();
};

} // namespace Orvex::MovParserLib
