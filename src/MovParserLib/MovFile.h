#pragma once

// The tree of one movie and what can be asked of it; a base of MovFileReader, asked on the thread
// that reads.

#include "MovParserLib/MovieAtoms.h"

namespace Orvex::MovParserLib {

/// Names a track by its id or by its place in the file.
class TrackSelector
{
public:
    static TrackSelector byId(quint32 id) { return TrackSelector(true, id); }
    static TrackSelector byIndex(quint32 index) { return TrackSelector(false, index); }

    /// The track, null when there is none such.
    const TrackAtom *find(const MovieAtom &movie) const;

private:
    TrackSelector(bool isId, quint32 value)
        : m_isId(isId)
        , m_value(value)
    {}

    bool m_isId;
    quint32 m_value;
};

/// Answers from the tree. Every getter returns 0 or the value of report(): ERROR_INVALID_RET_VAL
/// for an unknown track. A null output returns 5 and reports nothing.
class MovFile
{
public:
    const MovieAtom &movie() const { return m_movie; }

    /// True when some video track has at least one sample.
    bool isVideoFile() const;

    // Of the first video track in the order of the file. Outputs are zeroed first.

    /// Pixels.
    [[nodiscard]] Status getFrameSize(quint32 *width, quint32 *height) const;
    /// Frames a second, rounded to thousandths. Where the tables do not tell, the result is
    /// 0x10000 without a report.
    [[nodiscard]] Status getFrameRate(double *rate) const;
    /// Whole degrees.
    [[nodiscard]] Status getInitialOrientation(float *yaw, float *pitch, float *roll) const;
    /// 0 none, 1 equirectangular, 256 cube map.
    [[nodiscard]] Status getProjection(quint32 *projection) const;
    /// 0 mono, 1 left-right, 2 top-bottom.
    [[nodiscard]] Status getStereoMode(quint32 *stereo) const;
    /// Keeps the terminator that the file has.
    [[nodiscard]] Status getWritingTool(std::string &tool) const;

    /// Whether the file comes from a camera of this program's maker.
    [[nodiscard]] Status isOrvexFile(bool *isOrvex) const;

    // Of any track.

    quint32 getTrackCount() const { return quint32(m_movie.tracks.size()); }
    [[nodiscard]] Status getTrack(TrackSelector selector, const TrackAtom **track) const;
    /// In units of the movie's time scale.
    [[nodiscard]] Status getTrackDuration(TrackSelector selector, quint32 *duration) const;
    [[nodiscard]] Status getTrackId(TrackSelector selector, quint32 *id) const;
    [[nodiscard]] Status getTrackDimensions(TrackSelector selector, double *width,
                                            double *height) const;
    [[nodiscard]] Status getTrackMatrix(TrackSelector selector, std::array<double, 9> *matrix) const;
    [[nodiscard]] Status getTrackHandlerSubtype(TrackSelector selector, FourCC *subtype) const;
    [[nodiscard]] Status getTrackHandlerName(TrackSelector selector, std::string *name) const;
    /// Units a second and length of the track's media.
    [[nodiscard]] Status getMediaTime(TrackSelector selector, quint32 *timeScale,
                                      quint32 *duration) const;
    /// The sample table, for all its lookups.
    [[nodiscard]] Status getSampleTable(TrackSelector selector, const SampleTableAtom **table) const;

    // Of the camera atoms; a movie without udta answers as one without the atom asked for.

    [[nodiscard]] Status getFirmware(const char **text) const;
    [[nodiscard]] Status getCameraId(const quint8 **block, quint32 *size) const;
    [[nodiscard]] Status getLensVendor(char *letter) const;
    [[nodiscard]] Status getFov(std::string *text) const;
    [[nodiscard]] Status getSettings(OrvexCameraSettings *settings) const;
    [[nodiscard]] Status getRigUniqueId(OrvexCameraRGUIAtom *rig) const;
    [[nodiscard]] Status getRigShotId(OrvexCameraRGSIAtom *shot) const;
    [[nodiscard]] Status getMediaUniqueId(const quint8 **block, quint32 *size) const;
    [[nodiscard]] Status getSpotmarkTag(quint32 index, quint32 *time) const;
    [[nodiscard]] Status getUnparsed(FourCC type, void *block, quint64 capacity,
                                     quint64 *written) const;

protected:
    MovFile() = default;
    ~MovFile() = default;

    MovieAtom m_movie;

private:
    const TrackAtom *firstVideoTrack() const;
    const UserDataAtom &userData() const;
    bool hasToolTag() const;
};

/// Whether the bytes behind the header of a meta atom name this program's maker as the tool that
/// made the file: hdlr "mdir", then ilst, the tool's item, and its UTF-8 data (the item list of
/// iTunes-style metadata).
bool namesMakerAsTool(const std::vector<quint8> &meta);

} // namespace Orvex::MovParserLib
