#include "MovParserLib/TrackAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

bool DisplayMatrix::read(FileBuffer &buffer, qint64 end)
{
    ReadFields visitor(buffer, end);
    visitor.numbers("", values);
    return visitor.ok();
}

bool DisplayMatrix::write(FileBuffer &buffer) const
{
    WriteFields visitor(buffer);
    visitor.numbers("", values);
    return visitor.ok();
}

double DisplayMatrix::at(size_t index) const
{
    return std::ldexp(double(values.at(index)), index % 3 == 2 ? -30 : -16);
}

void DisplayMatrix::dump(const Dump &dump, const char *label) const
{
    for (size_t row = 0; row < 9; row += 3)
        dump.line("%s: %f %f %f", label, at(row), at(row + 1), at(row + 2));
}

Status TrackHeaderAtom::read(FileBuffer &buffer)
{
    bufferOffset = buffer.position();
    return AtomOf::read(buffer);
}

bool TrackReferenceTypeAtom::TrackIds::read(FileBuffer &buffer, qint64 end)
{
    const qint64 left = std::max<qint64>(0, end - buffer.position());
    return readRows(buffer, end, quint64(left) / sizeof(quint32), &rows);
}

bool TrackReferenceTypeAtom::TrackIds::write(FileBuffer &buffer) const
{
    return writeRows(buffer, rows);
}

void TrackReferenceTypeAtom::TrackIds::dump(const Dump &dump, const char *label) const
{
    DumpRow row(dump, label);
    for (const quint32 id : rows)
        row.piece("%d, ", int(id));
}

bool TrackAtom::isTelemetry() const
{
    return media.handler
        && media.handler->componentName.text().find("Orvex MET") != std::string::npos;
}

bool TrackAtom::getFrameRate(double *rate) const
{
    *rate = 0;
    quint32 sampleCount = 0;
    if (media.information && media.information->getSampleCount(&sampleCount))
        sampleCount = 0;
    quint32 num = 0;
    quint32 den = 0;
    if (sampleCount == 0) {
        if (edits && !edits->list.table.rows.empty()) {
            const EditListTableEntry &edit = edits->list.table.rows.front();
            if (edit.mediaTime >= 0) {
                num = quint32(edit.mediaTime);
                den = edit.trackDuration;
            }
        }
    } else {
        const double frameDuration = std::ceil(double(media.header.duration) / sampleCount);
        const double scaled = 1000.0 * frameDuration;
        // Intended: both wrap at 32 bits, and the duration of a frame is a whole number of units.
        if (scaled <= 4294967295.0) {
            num = quint32(scaled);
            den = media.header.timeScale * 1000U;
        } else {
            num = quint32(frameDuration);
            den = media.header.timeScale;
        }
    }
    if (num == 0 || den == 0)
        return false;
    *rate = std::round(double(den) / double(num) * 1000.0) / 1000.0;
    return true;
}

Status TrackAtom::getProjection(quint32 *projection) const
{
    if (const VideoSampleDescription *video = media.videoDescription())
        *projection = video->getProjection();
    else if (legacySpherical)
        *projection = Equirectangular;
    else
        return AtomError::InvalidRetVal;
    return AtomError::Okay;
}

Status TrackAtom::getStereoMode(quint32 *stereo) const
{
    if (const VideoSampleDescription *video = media.videoDescription())
        *stereo = video->getStereoMode();
    else if (legacySpherical)
        *stereo = legacySpherical->getStereoMode();
    else
        return AtomError::InvalidRetVal;
    return AtomError::Okay;
}

Status TrackAtom::getInitialOrientation(float *yaw, float *pitch, float *roll) const
{
    if (const VideoSampleDescription *video = media.videoDescription())
        video->getInitialOrientation(yaw, pitch, roll);
    else if (legacySpherical)
        legacySpherical->getInitialOrientation(yaw, pitch, roll);
    else
        return AtomError::InvalidRetVal;
    return AtomError::Okay;
}

Status TrackAtom::getWritingTool(std::string *tool) const
{
    if (const VideoSampleDescription *video = media.videoDescription())
        video->getWritingTool(tool);
    else if (legacySpherical)
        *tool = legacySpherical->text.stitchingSoftware;
    else
        return AtomError::InvalidRetVal;
    return AtomError::Okay;
}

VideoSampleDescription *TrackAtom::videoDescription()
{
    MediaInformationAtom *information = media.information.get();
    SampleTableAtom *table = information ? information->sampleTable() : nullptr;
    return table ? table->descriptions.firstVideo() : nullptr;
}

sphericalVideoAtom *TrackAtom::madeSpherical()
{
    VideoSampleDescription *video = videoDescription();
    if (video && !video->spherical)
        video->spherical = Owned<sphericalVideoAtom>::make();
    return video ? video->spherical.get() : nullptr;
}

Status TrackAtom::setProjection(quint32 projection)
{
    sphericalVideoAtom *spherical = madeSpherical();
    if (!spherical)
        return AtomError::InvalidRetVal;
    spherical->setProjection(projection);
    return AtomError::Okay;
}

Status TrackAtom::setStereoMode(quint32 stereo)
{
    VideoSampleDescription *video = videoDescription();
    if (!video)
        return AtomError::InvalidRetVal;
    if (!video->stereo)
        video->stereo = Owned<stereoVideoAtom>::make();
    video->stereo->setStereoMode(stereo);
    return AtomError::Okay;
}

Status TrackAtom::setInitialOrientation(float yaw, float pitch, float roll)
{
    sphericalVideoAtom *spherical = madeSpherical();
    if (!spherical)
        return AtomError::InvalidRetVal;
    spherical->setInitialOrientation(yaw, pitch, roll);
    return AtomError::Okay;
}

Status TrackAtom::setWritingTool(const std::string &tool)
{
    sphericalVideoAtom *spherical = madeSpherical();
    if (!spherical)
        return AtomError::InvalidRetVal;
    spherical->setWritingTool(tool);
    return AtomError::Okay;
}

template class AtomOf<TrackHeaderAtom, MovFullDatedAtom>;
template class AtomOf<EditListAtom, MovFullAtom>;
template class AtomOf<EditAtom, MovAtom, Children::Search>;
template class AtomOf<TrackReferenceTypeAtom, MovAtom>;
template class AtomOf<TrackReferenceAtom, MovAtom, Children::Sequential>;
template class AtomOf<TrackAtom, MovAtom, Children::Search>;

} // namespace Orvex::MovParserLib
