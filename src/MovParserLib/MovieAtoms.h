#pragma once

// moov, the root of the tree, and its header (ISO/IEC 14496-12, 8.2). Owned by MovFile.

#include "MovParserLib/CameraAtoms.h"
#include "MovParserLib/TrackAtoms.h"

namespace Orvex::MovParserLib {

/// mvhd (ISO/IEC 14496-12, 8.2.2; the times behind the matrix are QuickTime's).
class MovieHeaderAtom final : public AtomOf<MovieHeaderAtom, MovFullDatedAtom>
{
public:
    static constexpr FourCC kType = fourcc("mvhd");
    static constexpr const char *kName = "MovieHeaderAtom";
    quint32 timeScale = 0;
    quint32 duration = 0;
    quint32 preferredRate = 0;   ///< 16.16 fixed.
    quint16 preferredVolume = 0; ///< 8.8 fixed.
    std::array<quint8, 10> reserved{};
    DisplayMatrix matrix;
    quint32 previewTime = 0;
    quint32 previewDuration = 0;
    quint32 posterTime = 0;
    quint32 selectionTime = 0;
    quint32 selectionDuration = 0;
    quint32 currentTime = 0;
    quint32 nextTrackNumber = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("TimeScale", a.timeScale);
        v.number("Duration", a.duration);
        v.fixed("PreferredRate", a.preferredRate, 16);
        v.fixed("PreferredVolume", a.preferredVolume, 8);
        v.bytes("Reserved", a.reserved);
        v.coded("Matrix", a.matrix);
        v.number("PreviewTime", a.previewTime);
        v.number("PreviewDuration", a.previewDuration);
        v.number("PosterTime", a.posterTime);
        v.number("SelectionTime", a.selectionTime);
        v.number("SelectionDuration", a.selectionDuration);
        v.number("CurrentTime", a.currentTime);
        v.number("NextTrackNumber", a.nextTrackNumber);
    }
};

/// moov. At least one track is demanded; that mvhd is missing is not noticed.
class MovieAtom final : public AtomOf<MovieAtom, MovAtom, Children::Sequential>
{
public:
    static constexpr FourCC kType = fourcc("moov");
    static constexpr const char *kName = "MovieAtom";
    MovieHeaderAtom header;
    std::vector<Owned<TrackAtom>> tracks;
    Owned<UserDataAtom> userData;
    UnparsedMap unparsed;

    using AtomOf::read;
    /// Starts afresh, and bounds the work and the memory of the parse by the buffer's size.
    [[nodiscard]] Status read(FileBuffer &buffer) override;

    bool isComplete() const { return !tracks.empty(); }

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.header);
        v.list(a.tracks);
        v.optional(a.userData);
        v.kept(a.unparsed);
    }
};

} // namespace Orvex::MovParserLib
