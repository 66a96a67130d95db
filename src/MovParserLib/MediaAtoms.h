#pragma once

// mdia and what hangs below it down to the sample table: headers, handler, media information, data
// references (ISO/IEC 14496-12, 8.4 and 8.7; QuickTime file format). Owned by the track.

#include "MovParserLib/SampleTableAtoms.h"

namespace Orvex::MovParserLib {

/// mdhd: time scale and length of one track's media (ISO/IEC 14496-12, 8.4.2).
class MediaHeaderAtom final : public AtomOf<MediaHeaderAtom, MovFullDatedAtom>
{
public:
    static constexpr FourCC kType = fourcc("mdhd");
    static constexpr const char *kName = "MediaHeaderAtom";
    quint32 timeScale = 0;
    quint32 duration = 0;
    quint16 language = 0;
    quint16 quality = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("TimeScale", a.timeScale);
        v.number("Duration", a.duration);
        v.number("Language", a.language);
        v.number("Quality", a.quality);
    }
};

/// A name that serves both QuickTime (a count in front) and ISO (text up to the atom's end).
class ComponentName
{
public:
    enum class Form { None, Counted, Plain };

    Form form() const { return m_form; }
    /// The bytes as they stand; an ISO name keeps its terminator.
    const std::string &text() const { return m_text; }
    bool isNull() const { return m_text.empty(); }
    /// Stores the QuickTime form, which no content can be mistaken for the other.
    void set(const std::string &name);

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return prefixSize() + m_text.size(); }
    void dump(const Dump &dump, const char *label) const;

private:
    quint32 prefixSize() const;

    Form m_form = Form::None;
    std::string m_text;
};

/// hdlr: what kind of media a track is (ISO/IEC 14496-12, 8.4.3).
class HandlerReferenceAtom final : public AtomOf<HandlerReferenceAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("hdlr");
    static constexpr const char *kName = "HandlerReferenceAtom";
    FourCC componentType = fourcc("mhlr");
    FourCC componentSubtype = fourcc("vide");
    FourCC componentManufacturer = fourcc("    ");
    quint32 componentFlags = 0;
    quint32 componentFlagsMask = 0;
    ComponentName componentName;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.type("ComponentType", a.componentType);
        v.type("ComponentSubype", a.componentSubtype);
        v.type("ComponentManufacturer", a.componentManufacturer);
        v.number("ComponentFlags", a.componentFlags);
        v.number("ComponentFlagsMask", a.componentFlagsMask);
        v.coded("ComponentName", a.componentName);
    }
};

/// An entry of dref: where media data lies. Only four types are known.
class DataReference final : public AtomOf<DataReference, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("url ");
    static constexpr const char *kName = "DataReference";
    static constexpr Status kWrongTypeStatus = AtomError::WrongAtomType;
    static bool accepts(FourCC type);
    RawBlock data;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Data", a.data);
    }

protected:
    void dumpFields(const Dump &dump) const override;
};

/// dref: table of data references (ISO/IEC 14496-12, 8.7.2).
class DataReferenceAtom final : public AtomOf<DataReferenceAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("dref");
    static constexpr const char *kName = "DataReferenceAtom";

    struct Entries
    {
        std::vector<DataReference> rows;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const;
        void dump(const Dump &dump, const char *label) const;
    } entries;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("NumberOfEntries", a.entries);
    }
};

/// dinf: holds dref (ISO/IEC 14496-12, 8.7.1).
class DataInformationAtom final
    : public AtomOf<DataInformationAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("dinf");
    static constexpr const char *kName = "DataInformationAtom";
    DataReferenceAtom references;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.references);
    }
};

/// vmhd: how video is drawn (ISO/IEC 14496-12, 12.1.2).
class VideoMediaInformationHeaderAtom final
    : public AtomOf<VideoMediaInformationHeaderAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("vmhd");
    static constexpr const char *kName = "VideoMediaInformationHeaderAtom";
    quint16 graphicsMode = 0;
    std::array<quint16, 3> opColor{};

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("GraphicsMode", a.graphicsMode);
        v.numbers("OpColor", a.opColor);
    }
};

/// smhd: balance of sound (ISO/IEC 14496-12, 12.2.2).
class SoundMediaInformationHeaderAtom final
    : public AtomOf<SoundMediaInformationHeaderAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("smhd");
    static constexpr const char *kName = "SoundMediaInformationHeaderAtom";
    quint16 balance = 0;
    quint16 reserved = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("Balance", a.balance);
        v.number("Reserved", a.reserved);
    }
};

/// gmin: the same for other media (QuickTime file format).
class BaseMediaInfoAtom final : public AtomOf<BaseMediaInfoAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("gmin");
    static constexpr const char *kName = "BaseMediaInfoAtom";
    quint16 graphicsMode = 0;
    std::array<quint16, 3> opColor{};
    quint16 balance = 0;
    quint16 reserved = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("GraphicsMode", a.graphicsMode);
        v.numbers("OpColor", a.opColor);
        v.number("Balance", a.balance);
        v.number("Reserved", a.reserved);
    }
};

/// tcmi: font in which a time code is shown (QuickTime file format).
class TimeCodeMediaInformationAtom final
    : public AtomOf<TimeCodeMediaInformationAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("tcmi");
    static constexpr const char *kName = "TimeCodeMediaInformationAtom";

    TimeCodeMediaInformationAtom() { flags[2] = 1; }

    quint16 textFont = 21;
    quint16 textFace = 0;
    quint16 textSize = 10;
    quint16 reserved = 0;
    std::array<quint16, 3> textColor{};
    std::array<quint16, 3> backgroundColor{{0xFFFF, 0xFFFF, 0xFFFF}};
    PascalText textName{std::string("Courier")};

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("TextFont", a.textFont);
        v.number("TextFace", a.textFace);
        v.number("TextSize", a.textSize);
        v.number("Reserved", a.reserved);
        v.numbers("TextColor", a.textColor);
        v.numbers("BackgroundColor", a.backgroundColor);
        v.coded("TextName", a.textName);
    }
};

/// tmcd below gmhd: holds tcmi.
class TimeCodeMediaHandlerAtom final
    : public AtomOf<TimeCodeMediaHandlerAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("tmcd");
    static constexpr const char *kName = "TimeCodeMediaHandlerAtom";
    TimeCodeMediaInformationAtom information;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.information);
    }
};

/// ovmd: one value of the camera's telemetry track, without known meaning.
class OVMFHandlerAtom final : public AtomOf<OVMFHandlerAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("ovmd");
    static constexpr const char *kName = "OVMFHandlerAtom";
    quint32 reserved = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("Reserved", a.reserved);
    }
};

/// gmhd: media header of other media (QuickTime file format).
class BaseMediaInformationHeaderAtom final
    : public AtomOf<BaseMediaInformationHeaderAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("gmhd");
    static constexpr const char *kName = "BaseMediaInformationHeaderAtom";
    BaseMediaInfoAtom information;
    TimeCodeMediaHandlerAtom timeCode;
    bool hasTimeCode = false; ///< Whether timeCode was found or set; otherwise it shows defaults.
    Owned<OVMFHandlerAtom> ovmf;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.first(a.information);
        v.defaulted(a.timeCode, a.hasTimeCode);
        v.optional(a.ovmf);
    }
};

/// What every minf can be asked about its samples, whatever the media. Without a sample table the
/// answer is ERROR_INVALID_RET_VAL; tables in bulk are then empty, and every sample is a sync one.
class MediaInformationAtom : public MovAtom
{
public:
    static constexpr FourCC kType = fourcc("minf");
    static constexpr FourCC kSecondType = 0;

    using MovAtom::MovAtom;
    using MovAtom::operator=;
    MovAtom &operator=(const MovAtom &other) override { return MovAtom::operator=(other); }

    /// The handler's subtype decides the class; null for a subtype nobody knows.
    static Owned<MediaInformationAtom> makeFor(FourCC subtype);

    virtual const SampleTableAtom *sampleTable() const { return nullptr; }
    virtual SampleTableAtom *sampleTable() { return nullptr; }

    [[nodiscard]] Status getSampleDescriptionCount(quint32 *count) const;
    /// The first entry of stsd, which is the one that counts; null without one.
    const SampleDescription *currentDescription() const;
    [[nodiscard]] Status getSampleCount(quint32 *count) const;
    [[nodiscard]] Status getSampleSize(quint32 sample, quint32 *size) const;
    [[nodiscard]] Status getSampleDecodeTime(quint32 sample, qint64 *time) const;
    [[nodiscard]] Status getSampleCompositionTime(quint32 sample, qint64 *time) const;
    [[nodiscard]] Status getSampleAtTime(qint64 time, quint32 *sample) const;
    [[nodiscard]] Status isSyncSample(quint32 sample, bool *result) const;
    [[nodiscard]] Status getSampleLocation(quint32 sample, quint64 *offset, quint32 *size,
                                           qint64 *compositionTime, qint64 *decodeTime,
                                           bool *isSync) const;
    [[nodiscard]] Status getSampleSizes(std::vector<quint32> *sizes) const;
    [[nodiscard]] Status getSyncSamples(std::set<quint32> *samples) const;
    [[nodiscard]] Status getDecodeTimes(std::vector<qint64> *times) const;
    [[nodiscard]] Status getCompositionTimes(std::vector<qint64> *times) const;
    [[nodiscard]] Status getFirstSampleDuration(quint32 *duration) const;
    [[nodiscard]] Status getLastSampleDuration(quint32 *duration) const;
    bool hasSamples() const;
};

/// minf of a video track.
class VideoMediaInformationAtom final
    : public AtomOf<VideoMediaInformationAtom, MediaInformationAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("minf");
    static constexpr const char *kName = "VideoMediaInformationAtom";
    VideoMediaInformationHeaderAtom header;
    Owned<HandlerReferenceAtom> handler;
    Owned<DataInformationAtom> dataInformation;
    Owned<SampleTableAtom> table;

    const SampleTableAtom *sampleTable() const override { return table.get(); }
    SampleTableAtom *sampleTable() override { return table.get(); }

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.header);
        v.optional(a.handler);
        v.optional(a.dataInformation);
        v.optional(a.table, [] { return Owned<SampleTableAtom>::make(fourcc("vide")); });
    }
};

/// minf of a sound track.
class SoundMediaInformationAtom final
    : public AtomOf<SoundMediaInformationAtom, MediaInformationAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("minf");
    static constexpr const char *kName = "SoundMediaInformationAtom";
    SoundMediaInformationHeaderAtom header;
    Owned<HandlerReferenceAtom> handler;
    Owned<DataInformationAtom> dataInformation;
    Owned<SampleTableAtom> table;

    const SampleTableAtom *sampleTable() const override { return table.get(); }
    SampleTableAtom *sampleTable() override { return table.get(); }

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.header);
        v.optional(a.handler);
        v.optional(a.dataInformation);
        v.optional(a.table, [] { return Owned<SampleTableAtom>::make(fourcc("soun")); });
    }
};

/// minf of a time code, text or metadata track.
class BaseMediaInformationAtom final
    : public AtomOf<BaseMediaInformationAtom, MediaInformationAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("minf");
    static constexpr const char *kName = "BaseMediaInformationAtom";

    /// @p subtype is the handler's and goes to the sample table.
    explicit BaseMediaInformationAtom(FourCC subtype = 0)
        : mediaKind(subtype)
    {}

    Owned<BaseMediaInformationHeaderAtom> header;
    Owned<HandlerReferenceAtom> handler;
    Owned<DataInformationAtom> dataInformation;
    Owned<SampleTableAtom> table;
    FourCC mediaKind = 0;

    const SampleTableAtom *sampleTable() const override { return table.get(); }
    SampleTableAtom *sampleTable() override { return table.get(); }

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.header);
        v.optional(a.handler);
        v.optional(a.dataInformation);
        v.optional(a.table, [&a] { return Owned<SampleTableAtom>::make(a.mediaKind); });
    }
};

/// mdia (ISO/IEC 14496-12, 8.4.1).
class MediaAtom final : public AtomOf<MediaAtom, MovAtom, Children::Search>
{
public:
    static constexpr FourCC kType = fourcc("mdia");
    static constexpr const char *kName = "MediaAtom";
    /// What getHandlerName() may write, terminator included.
    static constexpr size_t kHandlerNameSize = 256;

    MediaHeaderAtom header;
    Owned<HandlerReferenceAtom> handler;
    Owned<MediaInformationAtom> information;

    /// The handler's subtype, 0 without a handler.
    FourCC handlerSubtype() const { return handler ? handler->componentSubtype : 0; }
    /// Copies at most 255 characters into @p text of kHandlerNameSize bytes.
    /// ERROR_MALFORMED_ATOM without a handler or a name.
    [[nodiscard]] Status getHandlerName(char *text) const;
    const SampleTableAtom *sampleTable() const;

    // Of the first description; ERROR_INVALID_RET_VAL for any track but a video one.
    [[nodiscard]] Status getVideoSize(quint32 *width, quint32 *height) const;
    [[nodiscard]] Status getCompressorName(std::string *name) const;
    [[nodiscard]] Status getDepth(quint32 *depth) const;
    [[nodiscard]] Status getResolution(double *horizontal, double *vertical) const;
    /// Null where there is none.
    const VideoSampleDescription *videoDescription() const;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.required(a.header);
        v.optional(a.handler);
        v.optional(a.information, [&a] { return MediaInformationAtom::makeFor(a.handlerSubtype()); });
    }
};

} // namespace Orvex::MovParserLib
