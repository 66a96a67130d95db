#pragma once

// stsd and its entries: what the samples of a track are, and the small atoms below them
// (QuickTime file format; ISO/IEC 14496-12, 8.5.2). Owned by the sample table above.

#include "MovParserLib/CodecAtoms.h"
#include "MovParserLib/SphericalAtoms.h"

namespace Orvex::MovParserLib {

/// pasp: shape of a pixel (ISO/IEC 14496-12, 12.1.4).
class PixelAspectAtom final : public AtomOf<PixelAspectAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("pasp");
    static constexpr const char *kName = "PixelAspectAtom";
    quint32 hSpacing = 0;
    quint32 vSpacing = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("hSpacing", a.hSpacing);
        v.number("vSpacing", a.vSpacing);
    }
};

/// colr: meaning of the colours (ISO/IEC 14496-12, 12.1.5).
class ColorAtom final : public AtomOf<ColorAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("colr");
    static constexpr const char *kName = "ColorAtom";
    FourCC colorParamType = fourcc("nclc");
    quint16 primaries = 0;
    quint16 transferFunction = 0;
    quint16 matrix = 0;
    quint8 nclxReserved = 0; ///< Only with the type "nclx".

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.type("ColorParamType", a.colorParamType);
        v.number("Primaries", a.primaries);
        v.number("TransferFunction", a.transferFunction);
        v.number("Matrix", a.matrix);
        if (a.colorParamType == fourcc("nclx"))
            v.number("nclx reserved byte", a.nclxReserved);
    }
};

/// fiel: one field or two, and their order (QuickTime file format).
class FieldsAtom final : public AtomOf<FieldsAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("fiel");
    static constexpr const char *kName = "FieldsAtom";
    quint8 fieldCount = 1;
    quint8 detail = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("Fields", a.fieldCount);
        v.number("Detail", a.detail);
    }
};

/// frma: the format that a wave atom describes.
class FormatAtom final : public AtomOf<FormatAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("frma");
    static constexpr const char *kName = "FormatAtom";
    FourCC dataFormat = fourcc("sowt");

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.type("DataFormat", a.dataFormat);
    }
};

/// enda: 1 where samples are little-endian.
class EndianAtom final : public AtomOf<EndianAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("enda");
    static constexpr const char *kName = "EndianAtom";
    quint16 endian = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("Endian", a.endian);
    }
};

/// wave: sound decompression parameters. Only these two children are known; ordinary AAC in
/// QuickTime files has no enda, so neither is demanded.
class WaveAtom final : public AtomOf<WaveAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("wave");
    static constexpr const char *kName = "WaveAtom";

    WaveAtom();

    Owned<FormatAtom> format; ///< "sowt" in an atom that was not read.
    Owned<EndianAtom> endian;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.format);
        v.optional(a.endian);
    }
};

/// A sound compression atom whose content does not matter: a header and a jump to its end.
class GenericSoundCompressionAtom final : public AtomOf<GenericSoundCompressionAtom, MovAtom>
{
public:
    static constexpr FourCC kType = 0;
    static constexpr const char *kName = "GenericSoundCompressionAtom";
    static constexpr bool kAnyType = true;
};

/// name: the tape that time codes count (QuickTime file format).
class NameAtom final : public AtomOf<NameAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("name");
    static constexpr const char *kName = "NameAtom";

    struct LocalText
    {
        quint16 language = 0;
        std::string text;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 + text.size(); }
        void dump(const Dump &dump, const char *label) const;
    } name;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Name", a.name);
    }
};

/// The head that every entry of stsd has. Not an atom of its own kind: its type says the codec.
class SampleDescription
{
public:
    SampleDescription() = default;
    SampleDescription(const SampleDescription &other) = default;
    virtual ~SampleDescription();
    virtual SampleDescription &operator=(const SampleDescription &other);
    virtual quint64 computeSize() const = 0;
    [[nodiscard]] virtual Status read(FileBuffer &buffer) = 0;
    [[nodiscard]] virtual Status write(FileBuffer &buffer) = 0;
    virtual void print(int indent) const;
    virtual void print(std::string *text, int indent) const;
    void dumpTo(const Dump &dump) const;

    quint32 size = 0; ///< The whole entry, this field included.
    FourCC dataFormat = 0;
    std::array<quint8, 6> reserved{};
    quint16 dataReferenceIndex = 1;

    template <class Self, class Visitor>
    static void headFields(Self &d, Visitor &v)
    {
        v.number("Size", d.size);
        v.type("DataFormat", d.dataFormat);
        v.bytes("Reserved", d.reserved);
        v.number("DataReferenceIndex", d.dataReferenceIndex);
    }

protected:
    virtual const char *dumpName() const = 0;
    virtual void dumpFields(const Dump &dump) const = 0;
};

/// Derives the duties of an entry from its field list, as AtomOf does for atoms.
template <class Derived, Children kPattern = Children::None>
class DescriptionOf : public SampleDescription
{
public:
    using SampleDescription::operator=;

    SampleDescription &operator=(const SampleDescription &other) override;
    quint64 computeSize() const override;
    [[nodiscard]] Status read(FileBuffer &buffer) override;
    [[nodiscard]] Status write(FileBuffer &buffer) override;

    template <class Self, class Visitor>
    static void children(Self &, Visitor &)
    {}

protected:
    const char *dumpName() const override { return Derived::kName; }
    void dumpFields(const Dump &dump) const override;
};

/// An entry of a video track; the fields are the same for every codec.
class VideoSampleDescription final
    : public DescriptionOf<VideoSampleDescription, Children::Sequential>
{
public:
    static constexpr const char *kName = "VideoSampleDescription";
    quint16 version = 0;
    quint16 revisionLevel = 0;
    FourCC vendor = fourcc("    ");
    quint32 temporalQuality = 0;
    quint32 spatialQuality = 1023;
    quint16 width = 0;
    quint16 height = 0;
    quint32 horizontalResolution = 0x480000; ///< 16.16 fixed, pixels per inch.
    quint32 verticalResolution = 0x480000;
    quint32 dataSize = 0;
    quint16 frameCount = 1;
    /// Bytes as they stand, a length in front where the writer put one.
    struct CompressorName
    {
        std::array<char, 32> bytes{};

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return bytes.size(); }
        void dump(const Dump &dump, const char *label) const;
    } compressorName;
    quint16 depth = 24;
    quint16 colorTableId = 0xFFFF;
    Owned<AVCCAtom> avcc;
    Owned<HVCCAtom> hvcc;
    Owned<PixelAspectAtom> pixelAspect;
    Owned<ColorAtom> color;
    Owned<FieldsAtom> fieldOrder;
    Owned<stereoVideoAtom> stereo;
    Owned<sphericalVideoAtom> spherical;
    UnparsedMap unparsed;

    template <class Self, class Visitor>
    static void fields(Self &d, Visitor &v)
    {
        v.number("Version", d.version);
        v.number("RevisionLevel", d.revisionLevel);
        v.type("Vendor", d.vendor);
        v.number("TemporalQuality", d.temporalQuality);
        v.number("SpatialQuality", d.spatialQuality);
        v.number("Width", d.width);
        v.number("Height", d.height);
        v.fixed("HorizontalResolution", d.horizontalResolution, 16);
        v.fixed("VerticalResolution", d.verticalResolution, 16);
        v.number("DataSize", d.dataSize);
        v.number("FrameCount", d.frameCount);
        v.coded("CompressorName", d.compressorName);
        v.number("Depth", d.depth);
        v.number("ColorTableID", d.colorTableId);
    }
    template <class Self, class Visitor>
    static void children(Self &d, Visitor &v)
    {
        v.optional(d.avcc);
        v.optional(d.hvcc);
        v.optional(d.pixelAspect);
        v.optional(d.color);
        v.optional(d.fieldOrder);
        v.optional(d.stereo);
        v.optional(d.spherical);
        v.kept(d.unparsed);
    }

    // Answers of the newer spherical atoms; without them 0 and nothing.
    quint32 getProjection() const;
    quint32 getStereoMode() const;
    void getInitialOrientation(float *yaw, float *pitch, float *roll) const;
    /// Leaves @p tool alone without sv3d.
    void getWritingTool(std::string *tool) const;
};

/// An entry of a sound track, in the layout of its version.
class SoundSampleDescription final
    : public DescriptionOf<SoundSampleDescription, Children::Sequential>
{
public:
    static constexpr const char *kName = "SoundSampleDescription";
    quint16 version = 0;
    quint16 revisionLevel = 0;
    FourCC vendor = 0;
    quint16 numberOfChannels = 2;
    quint16 sampleSize = 16;
    quint16 compressionId = 0;
    quint16 packetSize = 0;
    quint32 sampleRate = 0; ///< 16.16 fixed.
    // Version 1.
    quint32 samplesPerPacket = 0;
    quint32 bytesPerPacket = 0;
    quint32 bytesPerFrame = 0;
    quint32 bytesPerSample = 0;
    // Version 2.
    quint32 sizeOfStructOnly = 72;
    double audioSampleRate = 0;
    quint32 numAudioChannels = 0;
    quint32 reserved2 = 0x7F000000;
    quint32 constBitsPerChannel = 0;
    quint32 formatSpecificFlags = 0;
    quint32 constBytesPerAudioPacket = 0;
    quint32 constLpcmFramesPerAudioPacket = 0;
    Owned<WaveAtom> wave;
    Owned<EsdsAtom> esds;
    Owned<spatialAudioAtom> spatialAudio;
    UnparsedMap unparsed;

    template <class Self, class Visitor>
    static void fields(Self &d, Visitor &v)
    {
        v.number("Version", d.version);
        v.number("RevisionLevel", d.revisionLevel);
        v.type("Vendor", d.vendor);
        v.number("NumberOfChannels", d.numberOfChannels);
        v.number("SampleSize", d.sampleSize);
        v.number("CompressionID", d.compressionId);
        v.number("PacketSize", d.packetSize);
        v.fixed("SampleRate", d.sampleRate, 16);
        if (d.version == 1) {
            v.number("SamplePerPacket", d.samplesPerPacket);
            v.number("BytesPerPacket", d.bytesPerPacket);
            v.number("BytesPerFrame", d.bytesPerFrame);
            v.number("BytesPerSample", d.bytesPerSample);
        } else if (d.version == 2) {
            v.number("SizeOfStructOnly", d.sizeOfStructOnly);
            v.real("AudioSampleRate", d.audioSampleRate);
            v.number("NumAudioChannels", d.numAudioChannels);
            v.number("Reserved", d.reserved2);
            v.number("ConstBitsPerChannel", d.constBitsPerChannel);
            v.number("FormatSpecificFlags", d.formatSpecificFlags);
            v.number("ConstBytesPerAudioPacket", d.constBytesPerAudioPacket);
            v.number("ConstLPCMFramesPerAudioPacket", d.constLpcmFramesPerAudioPacket);
        }
    }
    template <class Self, class Visitor>
    static void children(Self &d, Visitor &v)
    {
        v.optional(d.wave);
        v.optional(d.esds);
        v.optional(d.spatialAudio);
        v.kept(d.unparsed);
    }
};

/// An entry of a time code track.
class TimeCodeSampleDescription final
    : public DescriptionOf<TimeCodeSampleDescription, Children::Search>
{
public:
    static constexpr const char *kName = "TimeCodeSampleDescription";
    quint32 reserved1 = 0;
    quint32 flags = 0;
    quint32 timeScale = 0;
    quint32 frameDuration = 0;
    quint8 numberOfFrames = 0;
    Owned<NameAtom> name;

    template <class Self, class Visitor>
    static void fields(Self &d, Visitor &v)
    {
        v.number("Reserved1", d.reserved1);
        v.number("Flags", d.flags);
        v.number("TimeScale", d.timeScale);
        v.number("FrameDuration", d.frameDuration);
        v.number("NumberOfFrames", d.numberOfFrames);
        v.zeros(1);
    }
    template <class Self, class Visitor>
    static void children(Self &d, Visitor &v)
    {
        v.optional(d.name);
    }

protected:
    void dumpFields(const Dump &dump) const override;
};

/// An entry of a text track.
class TextSampleDescription final : public DescriptionOf<TextSampleDescription>
{
public:
    static constexpr const char *kName = "TextSampleDescription";
    quint32 displayFlags = 0;
    quint32 textJustification = 0;
    std::array<quint16, 3> backgroundColor{};
    std::array<quint16, 4> defaultTextBox{};
    quint64 reserved2 = 0;
    quint16 fontNumber = 0;
    quint16 fontFace = 0;
    std::array<quint16, 3> foregroundColor{};
    PascalText textName;

    template <class Self, class Visitor>
    static void fields(Self &d, Visitor &v)
    {
        v.number("DisplayFlags", d.displayFlags);
        v.number("TextJustificiation", d.textJustification);
        v.numbers("BackgroundColor", d.backgroundColor);
        v.numbers("DefaultTextBox Rect", d.defaultTextBox);
        v.number("Reserved", d.reserved2);
        v.number("FontNumber", d.fontNumber);
        v.number("FontFace", d.fontFace);
        v.zeros(3);
        v.numbers("ForegroundColor", d.foregroundColor);
        v.coded("TextName", d.textName);
    }
};

/// An entry of the camera's telemetry track.
class OrvexMetadataSampleDescription final : public DescriptionOf<OrvexMetadataSampleDescription>
{
public:
    static constexpr const char *kName = "OrvexMetadataSampleDescription";
    quint32 reserved2 = 0;

    template <class Self, class Visitor>
    static void fields(Self &d, Visitor &v)
    {
        v.number("Reserved", d.reserved2);
    }
};

/// stsd. The getters answer for the first entry and give ERROR_INVALID_RET_VAL when it is not of
/// the kind they ask about.
class SampleDescriptionAtom final : public AtomOf<SampleDescriptionAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("stsd");
    static constexpr const char *kName = "SampleDescriptionAtom";

    /// The entries, of the class that the media kind decides; none for a kind nobody knows.
    struct Entries
    {
        FourCC mediaKind = 0;
        std::vector<Owned<SampleDescription>> rows;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const;
        void dump(const Dump &dump, const char *label) const;
    } entries;

    explicit SampleDescriptionAtom(FourCC mediaKind = 0) { entries.mediaKind = mediaKind; }

    /// Null for a kind without a class.
    static Owned<SampleDescription> makeEntry(FourCC mediaKind);
    SampleDescriptionAtom blank() const { return SampleDescriptionAtom(entries.mediaKind); }

    /// The first entry, null when it is of another class or kind.
    const VideoSampleDescription *firstVideo() const;
    VideoSampleDescription *firstVideo();
    const SoundSampleDescription *firstSound() const;

    [[nodiscard]] Status getSampleDescriptionCount(quint32 *count) const;
    [[nodiscard]] Status getDataReferenceIndex(quint32 *index) const;

    /// Either pointer may be null.
    [[nodiscard]] Status getVideoSize(quint32 *width, quint32 *height) const;
    [[nodiscard]] Status getCompressorName(std::string *name) const;
    [[nodiscard]] Status getDepth(quint32 *depth) const;
    /// Pixels per inch.
    [[nodiscard]] Status getResolution(double *horizontal, double *vertical) const;
    [[nodiscard]] Status getVideoDescription(const VideoSampleDescription **description,
                                             FourCC *dataFormat, quint32 *index) const;

    [[nodiscard]] Status getChannelCount(quint32 *count) const;
    [[nodiscard]] Status getSampleRate(double *rate) const;
    [[nodiscard]] Status getBitsPerSample(quint32 *bits) const;
    /// ERROR_MALFORMED_ATOM for a version 0 entry without an id.
    [[nodiscard]] Status getCompressionId(quint32 *id) const;
    /// Only a version 1 entry has it.
    [[nodiscard]] Status getBytesPerFrame(quint32 *bytes) const;
    [[nodiscard]] Status getSoundDescription(const SoundSampleDescription **description,
                                             FourCC *dataFormat, quint32 *index) const;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("NumberOfEntries", a.entries);
    }
};

} // namespace Orvex::MovParserLib
