#include "MovParserLib/DescriptionAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

WaveAtom::WaveAtom()
    : format(Owned<FormatAtom>::make())
{}

bool NameAtom::LocalText::read(FileBuffer &buffer, qint64)
{
    quint16 length = 0;
    text.clear();
    if (readBig(buffer, &length) || readBig(buffer, &language))
        return false;
    const uchar *bytes = buffer.take(length);
    if (length > 0 && !bytes)
        return false;
    text.assign(bytes, bytes + length);
    return true;
}

bool NameAtom::LocalText::write(FileBuffer &buffer) const
{
    return writeBig(buffer, quint16(text.size())) == 0 && writeBig(buffer, language) == 0
        && buffer.write(text.data(), quint16(text.size())) == 0;
}

void NameAtom::LocalText::dump(const Dump &dump, const char *label) const
{
    dump.line("DataSize: %d", int(text.size()));
    dump.line("Language: %d", language);
    if (text.empty())
        dump.line("No Name Supplied");
    else
        dump.line("%s: %s", label, text.c_str());
}

SampleDescription::~SampleDescription() = default;
SampleDescription &SampleDescription::operator=(const SampleDescription &other) = default;

void SampleDescription::print(int indent) const
{
    dumpTo(Dump(indent));
}

void SampleDescription::print(std::string *text, int indent) const
{
    if (text)
        dumpTo(Dump(text, indent));
}

void SampleDescription::dumpTo(const Dump &dump) const
{
    dump.line("***** %s Begin", dumpName());
    dumpFields(dump.deeper());
    dump.line("***** %s End", dumpName());
}

template <class Derived, Children kPattern>
SampleDescription &DescriptionOf<Derived, kPattern>::operator=(const SampleDescription &other)
{
    if (const auto *same = dynamic_cast<const Derived *>(&other))
        static_cast<Derived &>(*this) = *same;
    else
        SampleDescription::operator=(other);
    return *this;
}

template <class Derived, Children kPattern>
quint64 DescriptionOf<Derived, kPattern>::computeSize() const
{
    const Derived &self = static_cast<const Derived &>(*this);
    MeasureFields visitor;
    SampleDescription::headFields(self, visitor);
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
    return visitor.size();
}

template <class Derived, Children kPattern>
Status DescriptionOf<Derived, kPattern>::read(FileBuffer &buffer)
{
    Derived &self = static_cast<Derived &>(*this);
    const qint64 start = buffer.position();
    ReadFields head(buffer, start);
    SampleDescription::headFields(self, head);
    ReadFields visitor(buffer, start + qint64(size));
    if (head.ok())
        Derived::fields(self, visitor);
    if (head.ok() && visitor.ok() && readChildren<kPattern>(self, buffer, start, size)
        && seekAtomEnd(buffer, start, size) == 0)
        return AtomError::Okay;
    buffer.seek(start, FromStart);
    return AtomError::AtomReadFailed;
}

template <class Derived, Children kPattern>
Status DescriptionOf<Derived, kPattern>::write(FileBuffer &buffer)
{
    Derived &self = static_cast<Derived &>(*this);
    size = quint32(computeSize());
    WriteFields visitor(buffer);
    SampleDescription::headFields(self, visitor);
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
    return visitor.ok() ? AtomError::Okay : AtomError::AtomWriteFailed;
}

template <class Derived, Children kPattern>
void DescriptionOf<Derived, kPattern>::dumpFields(const Dump &dump) const
{
    const Derived &self = static_cast<const Derived &>(*this);
    PrintFields visitor(dump);
    SampleDescription::headFields(self, visitor);
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
}

bool VideoSampleDescription::CompressorName::read(FileBuffer &buffer, qint64)
{
    return buffer.read(bytes.data(), bytes.size()) == 0;
}

bool VideoSampleDescription::CompressorName::write(FileBuffer &buffer) const
{
    return buffer.write(bytes.data(), quint32(bytes.size())) == 0;
}

void VideoSampleDescription::CompressorName::dump(const Dump &dump, const char *label) const
{
    DumpRow row(dump, std::string(label) + ": ");
    for (const char character : bytes) {
        if (character)
            row.piece("%c", character);
    }
}

quint32 VideoSampleDescription::getProjection() const
{
    return spherical ? spherical->getProjection() : quint32(NoProjection);
}

quint32 VideoSampleDescription::getStereoMode() const
{
    return stereo ? stereo->getStereoMode() : quint32(Mono);
}

void VideoSampleDescription::getInitialOrientation(float *yaw, float *pitch, float *roll) const
{
    if (spherical) {
        spherical->getInitialOrientation(yaw, pitch, roll);
        return;
    }
    *yaw = 0;
    *pitch = 0;
    *roll = 0;
}

void VideoSampleDescription::getWritingTool(std::string *tool) const
{
    if (spherical)
        *tool = spherical->getWritingTool();
}

void TimeCodeSampleDescription::dumpFields(const Dump &dump) const
{
    DescriptionOf::dumpFields(dump);
    if (!name)
        dump.line("No Name Supplied");
}

Owned<SampleDescription> SampleDescriptionAtom::makeEntry(FourCC mediaKind)
{
    switch (mediaKind) {
    case fourcc("vide"):
        return Owned<SampleDescription>::make<VideoSampleDescription>();
    case fourcc("soun"):
        return Owned<SampleDescription>::make<SoundSampleDescription>();
    case fourcc("tmcd"):
        return Owned<SampleDescription>::make<TimeCodeSampleDescription>();
    case fourcc("text"):
        return Owned<SampleDescription>::make<TextSampleDescription>();
    case fourcc("meta"):
        return Owned<SampleDescription>::make<OrvexMetadataSampleDescription>();
    default:
        return {};
    }
}

bool SampleDescriptionAtom::Entries::read(FileBuffer &buffer, qint64)
{
    quint32 count = 0;
    rows.clear();
    if (readBig(buffer, &count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        Owned<SampleDescription> entry = makeEntry(mediaKind);
        if (!entry)
            return true;
        const qint64 before = buffer.position();
        if (entry->read(buffer) || buffer.position() <= before)
            return false;
        rows.push_back(std::move(entry));
    }
    return true;
}

bool SampleDescriptionAtom::Entries::write(FileBuffer &buffer) const
{
    bool ok = writeBig(buffer, quint32(rows.size())) == 0;
    for (size_t i = 0; ok && i < rows.size(); ++i)
        ok = rows[i]->write(buffer) == 0;
    return ok;
}

quint64 SampleDescriptionAtom::Entries::size() const
{
    quint64 sum = sizeof(quint32);
    for (const auto &entry : rows)
        sum += entry->computeSize();
    return sum;
}

void SampleDescriptionAtom::Entries::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %d", label, int(rows.size()));
    for (const auto &entry : rows)
        entry->dumpTo(dump);
}

const VideoSampleDescription *SampleDescriptionAtom::firstVideo() const
{
    if (entries.mediaKind != fourcc("vide") || entries.rows.empty())
        return nullptr;
    return dynamic_cast<const VideoSampleDescription *>(entries.rows.front().get());
}

VideoSampleDescription *SampleDescriptionAtom::firstVideo()
{
    return const_cast<VideoSampleDescription *>(
        static_cast<const SampleDescriptionAtom *>(this)->firstVideo());
}

const SoundSampleDescription *SampleDescriptionAtom::firstSound() const
{
    if (entries.mediaKind != fourcc("soun") || entries.rows.empty())
        return nullptr;
    return dynamic_cast<const SoundSampleDescription *>(entries.rows.front().get());
}

Status SampleDescriptionAtom::getSampleDescriptionCount(quint32 *count) const
{
    if (!count)
        return AtomError::InvalidArg;
    *count = quint32(entries.rows.size());
    return AtomError::Okay;
}

Status SampleDescriptionAtom::getDataReferenceIndex(quint32 *index) const
{
    if (!index)
        return AtomError::InvalidArg;
    if (entries.rows.empty())
        return AtomError::InvalidRetVal;
    *index = entries.rows.front()->dataReferenceIndex;
    return AtomError::Okay;
}

namespace {

/// Stores what @p value makes of the first entry, where there is one of the kind.
template <class Description, class Output, class Function>
Status answer(const Description *description, Output *output, const Function &value)
{
    if (!output)
        return AtomError::InvalidArg;
    if (!description)
        return AtomError::InvalidRetVal;
    *output = static_cast<Output>(value(*description));
    return AtomError::Okay;
}

template <class Description>
Status wholeDescription(const Description *first, const Description **description,
                        FourCC *dataFormat, quint32 *index)
{
    if (!description || !dataFormat || !index)
        return AtomError::InvalidArg;
    if (!first)
        return AtomError::InvalidRetVal;
    *description = first;
    *dataFormat = first->dataFormat;
    *index = 0;
    return AtomError::Okay;
}

} // namespace

Status SampleDescriptionAtom::getVideoSize(quint32 *width, quint32 *height) const
{
    const VideoSampleDescription *video = firstVideo();
    if (!video)
        return AtomError::InvalidRetVal;
    if (width)
        *width = video->width;
    if (height)
        *height = video->height;
    return AtomError::Okay;
}

Status SampleDescriptionAtom::getCompressorName(std::string *name) const
{
    return answer(firstVideo(), name, [](const auto &d) {
        return std::string(d.compressorName.bytes.begin(), d.compressorName.bytes.end());
    });
}

Status SampleDescriptionAtom::getDepth(quint32 *depth) const
{
    return answer(firstVideo(), depth, [](const auto &d) { return d.depth; });
}

Status SampleDescriptionAtom::getResolution(double *horizontal, double *vertical) const
{
    const Status status = answer(firstVideo(), horizontal, [](const auto &d) {
        return std::ldexp(double(d.horizontalResolution), -16);
    });
    return status ? status : answer(firstVideo(), vertical, [](const auto &d) {
        return std::ldexp(double(d.verticalResolution), -16);
    });
}

Status SampleDescriptionAtom::getVideoDescription(const VideoSampleDescription **description,
                                                  FourCC *dataFormat, quint32 *index) const
{
    return wholeDescription(firstVideo(), description, dataFormat, index);
}

Status SampleDescriptionAtom::getChannelCount(quint32 *count) const
{
    // The 16-bit field of a version 2 entry is a constant without meaning.
    return answer(firstSound(), count, [](const auto &d) {
        return d.version == 2 ? d.numAudioChannels : d.numberOfChannels;
    });
}

Status SampleDescriptionAtom::getSampleRate(double *rate) const
{
    return answer(firstSound(), rate, [](const auto &d) {
        return d.version == 2 ? d.audioSampleRate : std::ldexp(double(d.sampleRate), -16);
    });
}

Status SampleDescriptionAtom::getBitsPerSample(quint32 *bits) const
{
    return answer(firstSound(), bits, [](const auto &d) {
        return d.version == 2 ? d.constBitsPerChannel : d.sampleSize;
    });
}

Status SampleDescriptionAtom::getCompressionId(quint32 *id) const
{
    const SoundSampleDescription *sound = firstSound();
    if (sound && sound->version == 0 && sound->compressionId == 0)
        return AtomError::MalformedAtom;
    return answer(sound, id, [](const auto &d) { return d.compressionId; });
}

Status SampleDescriptionAtom::getBytesPerFrame(quint32 *bytes) const
{
    const SoundSampleDescription *sound = firstSound();
    return answer(sound && sound->version == 1 ? sound : nullptr, bytes,
                  [](const auto &d) { return d.bytesPerFrame; });
}

Status SampleDescriptionAtom::getSoundDescription(const SoundSampleDescription **description,
                                                  FourCC *dataFormat, quint32 *index) const
{
    return wholeDescription(firstSound(), description, dataFormat, index);
}

template class AtomOf<PixelAspectAtom, MovAtom>;
template class AtomOf<ColorAtom, MovAtom>;
template class AtomOf<FieldsAtom, MovAtom>;
template class AtomOf<FormatAtom, MovAtom>;
template class AtomOf<EndianAtom, MovAtom>;
template class AtomOf<WaveAtom, MovAtom, Children::Search>;
template class AtomOf<GenericSoundCompressionAtom, MovAtom>;
template class AtomOf<NameAtom, MovAtom>;
template class AtomOf<SampleDescriptionAtom, MovFullAtom>;
template class DescriptionOf<VideoSampleDescription, Children::Sequential>;
template class DescriptionOf<SoundSampleDescription, Children::Sequential>;
template class DescriptionOf<TimeCodeSampleDescription, Children::Search>;
template class DescriptionOf<TextSampleDescription>;
template class DescriptionOf<OrvexMetadataSampleDescription>;

} // namespace Orvex::MovParserLib
