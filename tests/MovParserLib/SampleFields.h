#pragma once

// A visitor that fills every field of an atom differently, so that one test can check every type.

#include "MovParserLib/FieldVisitors.h"
#include "MovParserLib/FileAtoms.h"
#include "MovParserLib/MovieAtoms.h"

namespace test {

using namespace Orvex::MovParserLib;

class SampleFields
{
public:
    static constexpr bool kReads = true;

    /// Fills @p thing with its head and children.
    template <class T>
    void fill(T &thing);

    template <class T>
    void number(const char *, T &value)
    {
        value = T(++m_seed * 0x0101010101010101ULL);
    }
    template <class T>
    void number(T &value) // A column of a table.
    {
        number("", value);
    }
    template <class T, size_t N>
    void numbers(const char *label, std::array<T, N> &values)
    {
        for (T &value : values)
            number(label, value);
    }
    template <size_t N>
    void bytes(const char *label, std::array<quint8, N> &values)
    {
        numbers(label, values);
    }
    template <class T>
    void fixed(const char *label, T &value, int)
    {
        number(label, value);
    }
    void type(const char *label, FourCC &value) { number(label, value); }
    void real(const char *, double &value) { value = ++m_seed * 0.5; }
    void zeros(quint32) {}
    template <class T>
    void printed(const char *, const T &)
    {}
    template <class T>
    void coded(const char *, T &value)
    {
        set(value);
    }

    template <class T>
    void required(T &child)
    {
        fill(child);
    }
    template <class T>
    void first(T &child)
    {
        fill(child);
    }
    template <class T>
    void optional(T &child)
    {
        fill(child);
    }
    template <class T>
    void optional(Owned<T> &child)
    {
        child = Owned<T>::make();
        fill(*child);
    }
    template <class Factory>
    void optional(Owned<SampleTableAtom> &child, const Factory &factory)
    {
        child = factory();
        fill(*child);
    }
    template <class Factory>
    void optional(Owned<MediaInformationAtom> &child, const Factory &)
    {
        // No such subtype as the filled one: the media information stays away.
        child.reset();
    }
    template <class T>
    void defaulted(T &child, bool &present)
    {
        present = true;
        fill(child);
    }
    template <class T>
    void list(std::vector<Owned<T>> &children)
    {
        for (int i = 0; i < 2; ++i) {
            children.push_back(Owned<T>::make());
            fill(*children.back());
        }
    }
    void kept(UnparsedMap &children)
    {
        UnparsedAtom atom(fourcc("abcd"));
        set(atom.payload);
        children.emplace(atom.type, atom);
    }
    template <class Factory>
    void any(Owned<MovAtom> &child, const Factory &factory)
    {
        child = factory(sphericalCubeAtom::kType);
        fill(static_cast<sphericalCubeAtom &>(*child));
    }

private:
    void set(std::vector<quint8> &bytes) { bytes = {quint8(++m_seed), 0, 0xFF, 7}; }
    void set(std::string &text) { text = "text " + std::to_string(++m_seed); }
    template <class Row>
    void set(std::vector<Row> &rows)
    {
        rows.resize(3);
        for (Row &row : rows) {
            if constexpr (std::is_integral_v<Row>)
                number(row);
            else
                Row::fields(row, *this);
        }
    }
    template <class Row>
    void set(Table<Row> &table)
    {
        set(table.rows);
    }
    void set(RawBlock &value) { set(value.bytes); }
    void set(RawText &value) { set(value.text); }
    void set(PascalText &value) { set(value.text.emplace()); }
    void set(FreeSpace &value) { value.payloadSize = 5; }
    void set(SampleSizeAtom::Sizes &value)
    {
        set(value.table);
        value.count = quint32(value.table.size());
    }
    void set(ChunkOffsetAtom::Offsets &value) { value.rows = {1, 2, quint64(++m_seed)}; }
    void set(SyncSampleAtom::Numbers &value) { value.rows = {1, 5, quint32(++m_seed + 100)}; }
    void set(SampleDependenciesAtom::Bytes &value) { set(value.bytes); }
    void set(spatialAudioAtom::ChannelMap &value) { set(value.rows); }
    void set(TrackReferenceTypeAtom::TrackIds &value) { set(value.rows); }
    void set(sphericalVideoHeaderAtom::TerminatedText &value)
    {
        set(value.text);
        value.text.push_back('\0');
    }
    void set(LegacySphericalText &value)
    {
        // The three angles are only written.
        set(value.stitchingSoftware);
        value.stereoMode = "top-bottom";
        value.sourceCount = ++m_seed;
    }
    void set(ComponentName &value) { value.set("Handler " + std::to_string(++m_seed)); }
    void set(DisplayMatrix &value) { numbers("", value.values); }
    void set(VideoSampleDescription::CompressorName &value)
    {
        value.bytes.fill(char('a' + ++m_seed % 26));
    }
    void set(NameAtom::LocalText &value)
    {
        number(value.language);
        set(value.text);
    }
    void set(DataReferenceAtom::Entries &value)
    {
        value.rows.resize(2);
        for (DataReference &entry : value.rows)
            fill(entry);
    }
    void set(SampleDescriptionAtom::Entries &value)
    {
        if (value.mediaKind != fourcc("vide"))
            return;
        value.rows.push_back(SampleDescriptionAtom::makeEntry(value.mediaKind));
        fill(static_cast<VideoSampleDescription &>(*value.rows.back()));
    }
    void set(AvcRecord &value)
    {
        value.avcProfileIndication = quint8(++m_seed);
        value.numOfSequenceParameterSets = 1;
        set(value.sequenceParameterSet);
        value.numOfPictureParameterSets = 1;
        set(value.pictureParameterSet);
    }
    void set(HevcRecord &value)
    {
        value.generalConstraintIndicatorFlags = 0x123456789ABC;
        value.minSpatialSegmentationIdc = 0xABC;
        value.numTemporalLayers = 5;
        value.numOfArrays = 1;
        value.arrays.resize(1);
        value.arrays[0].nalUnitType = 33;
        value.arrays[0].numNalus = 2;
        value.arrays[0].nalUnits.resize(2);
        for (auto &unit : value.arrays[0].nalUnits)
            set(unit);
    }
    void set(EsDescriptor &value) { set(value.payload); }
    void set(OrvexSpotmarkTagAtom::Tags &value)
    {
        value.count = 3;
        for (quint32 i = 0; i < value.count; ++i)
            number(value.times[i]);
    }
    void set(OrvexCameraLNSDAtom::LensText &value) { set(value.text); }

    int m_seed = 0;
};

template <class T>
void SampleFields::fill(T &thing)
{
    if constexpr (std::is_base_of_v<MovFullAtom, T>) {
        number(thing.version);
        for (quint8 &flag : thing.flags)
            number(flag);
    }
    if constexpr (std::is_base_of_v<MovFullDatedAtom, T>) {
        number(thing.creationTime);
        number(thing.modificationTime);
    }
    if constexpr (std::is_base_of_v<SampleDescription, T>)
        T::headFields(thing, *this);
    if constexpr (std::is_same_v<T, UnparsedAtom>) {
        set(thing.payload);
    } else {
        T::fields(thing, *this);
        T::children(thing, *this);
    }
}

} // namespace test
