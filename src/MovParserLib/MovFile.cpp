#include "MovParserLib/MovFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Orvex::MovParserLib {

namespace {

constexpr const char *kMaker = "Orvex";
constexpr Status kNullOutput = ParserError::InvalidArg;
constexpr Status kNoFrameRate = FileReaderDomain; // The bare value, without a code.

/// Bounded big-endian reading in a block.
class Block
{
public:
    explicit Block(const std::vector<quint8> &bytes)
        : m_bytes(bytes)
    {}

    size_t size() const { return m_bytes.size(); }
    bool holds(size_t at, size_t count) const { return at <= size() && count <= size() - at; }
    bool is(size_t at, quint32 value) const
    {
        return holds(at, 4) && qFromBigEndian<quint32>(&m_bytes[at]) == value;
    }
    /// 0 behind the end.
    quint32 number(size_t at) const
    {
        return holds(at, 4) ? qFromBigEndian<quint32>(&m_bytes[at]) : 0;
    }
    /// Steps through atoms from @p at by their sizes to one of @p type; false when none is there.
    bool step(FourCC type, size_t *at, size_t *atomSize) const
    {
        for (size_t here = *at; holds(here, 8);) {
            const size_t bytes = number(here);
            if (bytes < 8 || !holds(here, bytes))
                return false;
            if (is(here + 4, type)) {
                *at = here;
                *atomSize = bytes;
                return true;
            }
            here += bytes;
        }
        return false;
    }
    std::string text(size_t at, size_t count) const
    {
        const std::string all(m_bytes.begin() + qint64(at), m_bytes.begin() + qint64(at + count));
        return all.c_str(); // Up to a terminator.
    }

private:
    const std::vector<quint8> &m_bytes;
};

} // namespace

const TrackAtom *TrackSelector::find(const MovieAtom &movie) const
{
    const auto &tracks = movie.tracks;
    if (!m_isId)
        return m_value < tracks.size() ? tracks[m_value].get() : nullptr;
    const auto found = std::find_if(tracks.begin(), tracks.end(), [this](const auto &track) {
        return track->header.trackId == m_value;
    });
    return found != tracks.end() ? found->get() : nullptr;
}

bool MovFile::isVideoFile() const
{
    return std::any_of(m_movie.tracks.begin(), m_movie.tracks.end(), [](const auto &track) {
        return track->isVideo() && track->hasSamples();
    });
}

const TrackAtom *MovFile::firstVideoTrack() const
{
    for (const auto &track : m_movie.tracks) {
        if (track->isVideo())
            return track.get();
    }
    return nullptr;
}

Status MovFile::getFrameSize(quint32 *width, quint32 *height) const
{
    if (!width || !height)
        return kNullOutput;
    *width = 0;
    *height = 0;
    const TrackAtom *track = firstVideoTrack();
    const Status status = track ? track->media.getVideoSize(width, height)
                                : Status(AtomError::InvalidRetVal);
    return status ? report(AtomDomain, status) : 0;
}

Status MovFile::getFrameRate(double *rate) const
{
    if (!rate)
        return kNullOutput;
    *rate = 0;
    const TrackAtom *track = firstVideoTrack();
    if (!track)
        return report(AtomDomain, AtomError::InvalidRetVal);
    return track->getFrameRate(rate) ? Status(0) : kNoFrameRate;
}

Status MovFile::getInitialOrientation(float *yaw, float *pitch, float *roll) const
{
    if (!yaw || !pitch || !roll)
        return kNullOutput;
    *yaw = 0;
    *pitch = 0;
    *roll = 0;
    const TrackAtom *track = firstVideoTrack();
    const Status status = track ? track->getInitialOrientation(yaw, pitch, roll)
                                : Status(AtomError::MalformedAtom);
    return status ? report(AtomDomain, status) : 0;
}

Status MovFile::getProjection(quint32 *projection) const
{
    if (!projection)
        return kNullOutput;
    *projection = 0;
    const TrackAtom *track = firstVideoTrack();
    const Status status = track ? track->getProjection(projection)
                                : Status(AtomError::MalformedAtom);
    return status ? report(AtomDomain, status) : 0;
}

Status MovFile::getStereoMode(quint32 *stereo) const
{
    if (!stereo)
        return kNullOutput;
    *stereo = 0;
    const TrackAtom *track = firstVideoTrack();
    const Status status = track ? track->getStereoMode(stereo) : Status(AtomError::InvalidRetVal);
    return status ? report(AtomDomain, status) : 0;
}

Status MovFile::getWritingTool(std::string &tool) const
{
    tool.clear();
    const TrackAtom *track = firstVideoTrack();
    const Status status = track ? track->getWritingTool(&tool) : Status(AtomError::InvalidRetVal);
    return status ? report(AtomDomain, status) : 0;
}

Status MovFile::isOrvexFile(bool *isOrvex) const
{
    if (!isOrvex)
        return kNullOutput;
    *isOrvex = false;
    const TrackAtom *track = TrackSelector::byIndex(0).find(m_movie);
    char name[MediaAtom::kHandlerNameSize] = {};
    const Status status = track ? track->media.getHandlerName(name)
                                : Status(AtomError::InvalidRetVal);
    if (status)
        return report(AtomDomain, status);
    if (!name[0])
        return report(AtomDomain, AtomError::MalformedAtom);
    const char *firmware = nullptr;
    if (std::strstr(name, kMaker))
        *isOrvex = true;
    else if (const Status failure = userData().getFirmware(&firmware))
        return report(AtomDomain, failure);
    else
        *isOrvex = firmware || hasToolTag();
    return 0;
}

bool MovFile::hasToolTag() const
{
    quint64 size = 0;
    const UserDataAtom &data = userData();
    if (data.getUnparsed(fourcc("meta"), nullptr, 0, &size) || size == 0)
        return false;
    std::vector<quint8> meta(static_cast<size_t>(size));
    return data.getUnparsed(fourcc("meta"), meta.data(), size, &size) == 0
        && namesMakerAsTool(meta);
}

bool namesMakerAsTool(const std::vector<quint8> &meta)
{
    constexpr FourCC toolItem = 0xA9746F6F; // The copyright sign and "too".
    constexpr quint32 utf8Text = 1;
    const Block block(meta);
    if (!block.is(8, fourcc("hdlr")) || !block.is(20, fourcc("mdir")))
        return false;
    size_t at = 4 + size_t(block.number(4));
    while (block.holds(at, 4) && !block.is(at, fourcc("ilst")))
        ++at;
    if (!block.holds(at, 4))
        return false;
    at += 4;
    size_t size = 0;
    if (!block.step(toolItem, &at, &size))
        return false;
    const size_t itemEnd = at + size;
    at += 8;
    if (!block.step(fourcc("data"), &at, &size) || at + size > itemEnd || size < 16
        || !block.is(at + 8, utf8Text))
        return false;
    return block.text(at + 16, size - 16) == kMaker;
}

Status MovFile::getTrack(TrackSelector selector, const TrackAtom **track) const
{
    if (!track)
        return kNullOutput;
    *track = selector.find(m_movie);
    return *track ? Status(0) : report(AtomDomain, AtomError::InvalidRetVal);
}

Status MovFile::getTrackDuration(TrackSelector selector, quint32 *duration) const
{
    const TrackAtom *track = nullptr;
    if (!duration)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *duration = track->header.duration;
    return 0;
}

Status MovFile::getTrackId(TrackSelector selector, quint32 *id) const
{
    const TrackAtom *track = nullptr;
    if (!id)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *id = track->header.trackId;
    return 0;
}

Status MovFile::getTrackDimensions(TrackSelector selector, double *width, double *height) const
{
    const TrackAtom *track = nullptr;
    if (!width || !height)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *width = std::ldexp(double(track->header.width), -16);
    *height = std::ldexp(double(track->header.height), -16);
    return 0;
}

Status MovFile::getTrackMatrix(TrackSelector selector, std::array<double, 9> *matrix) const
{
    const TrackAtom *track = nullptr;
    if (!matrix)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    for (size_t i = 0; i < matrix->size(); ++i)
        (*matrix)[i] = track->header.matrix.at(i);
    return 0;
}

Status MovFile::getTrackHandlerSubtype(TrackSelector selector, FourCC *subtype) const
{
    const TrackAtom *track = nullptr;
    if (!subtype)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *subtype = track->media.handlerSubtype();
    return 0;
}

Status MovFile::getTrackHandlerName(TrackSelector selector, std::string *name) const
{
    const TrackAtom *track = nullptr;
    if (!name)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    char text[MediaAtom::kHandlerNameSize] = {};
    if (const Status status = track->media.getHandlerName(text))
        return report(AtomDomain, status);
    *name = text;
    return 0;
}

Status MovFile::getMediaTime(TrackSelector selector, quint32 *timeScale, quint32 *duration) const
{
    const TrackAtom *track = nullptr;
    if (!timeScale || !duration)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *timeScale = track->media.header.timeScale;
    *duration = track->media.header.duration;
    return 0;
}

Status MovFile::getSampleTable(TrackSelector selector, const SampleTableAtom **table) const
{
    const TrackAtom *track = nullptr;
    if (!table)
        return kNullOutput;
    if (const Status status = getTrack(selector, &track))
        return status;
    *table = track->media.sampleTable();
    return *table ? Status(0) : report(AtomDomain, AtomError::InvalidRetVal);
}

const UserDataAtom &MovFile::userData() const
{
    static const UserDataAtom none;
    return m_movie.userData ? *m_movie.userData : none;
}

Status MovFile::getFirmware(const char **text) const
{
    return userData().getFirmware(text);
}

Status MovFile::getCameraId(const quint8 **block, quint32 *size) const
{
    return userData().getCameraId(block, size);
}

Status MovFile::getLensVendor(char *letter) const
{
    return userData().getLensVendor(letter);
}

Status MovFile::getFov(std::string *text) const
{
    return userData().getFov(text);
}

Status MovFile::getSettings(OrvexCameraSettings *settings) const
{
    return userData().getSettings(settings);
}

Status MovFile::getRigUniqueId(OrvexCameraRGUIAtom *rig) const
{
    return userData().getRigUniqueId(rig);
}

Status MovFile::getRigShotId(OrvexCameraRGSIAtom *shot) const
{
    return userData().getRigShotId(shot);
}

Status MovFile::getMediaUniqueId(const quint8 **block, quint32 *size) const
{
    return userData().getMediaUniqueId(block, size);
}

Status MovFile::getSpotmarkTag(quint32 index, quint32 *time) const
{
    return userData().getSpotmarkTag(index, time);
}

Status MovFile::getUnparsed(FourCC type, void *block, quint64 capacity, quint64 *written) const
{
    return userData().getUnparsed(type, block, capacity, written);
}

} // namespace Orvex::MovParserLib
