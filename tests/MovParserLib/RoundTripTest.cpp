#include "MovParserLib/MovBytes.h"
#include "MovParserLib/SampleFields.h"

#include <gtest/gtest.h>

using namespace test;

namespace {

template <class T>
std::string dumpOf(const T &thing)
{
    std::string text;
    thing.print(&text, 1);
    return text;
}

/// An empty one that would read what the sample holds.
template <class T>
T fresh()
{
    if constexpr (std::is_constructible_v<T, FourCC> && !std::is_same_v<T, UnparsedAtom>)
        return T(fourcc("vide"));
    else
        return T();
}

template <class T>
const char *nameOf()
{
    if constexpr (std::is_same_v<T, UnparsedAtom>)
        return "UnparsedAtom";
    else
        return T::kName;
}

/// Size equals bytes, reading what was written dumps alike, so does a copy, and no truncation is
/// taken for the whole.
template <class T>
void checkRoundTrip()
{
    SCOPED_TRACE(nameOf<T>());
    T thing = fresh<T>();
    SampleFields().fill(thing);

    std::vector<char> bytes(static_cast<size_t>(thing.computeSize()));
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(quint32(bytes.size()), bytes.data()), 0U);
    ASSERT_EQ(thing.write(buffer), 0U);
    EXPECT_EQ(buffer.remaining(), 0);
    const std::string dump = dumpOf(thing);

    buffer.seek(0, FromStart);
    T again = fresh<T>();
    ASSERT_EQ(again.read(buffer), 0U);
    EXPECT_EQ(buffer.remaining(), 0);
    EXPECT_EQ(dumpOf(again), dump);

    T assigned = fresh<T>();
    if constexpr (std::is_base_of_v<MovAtom, T>)
        static_cast<MovAtom &>(assigned) = static_cast<const MovAtom &>(thing);
    else
        static_cast<SampleDescription &>(assigned) = static_cast<const SampleDescription &>(thing);
    EXPECT_EQ(dumpOf(assigned), dump);
    EXPECT_EQ(dumpOf(T(thing)), dump);

    for (size_t length = 0; length < bytes.size(); ++length) {
        FileBuffer shorter;
        ASSERT_EQ(shorter.attach(quint32(length), bytes.data()), 0U);
        T cut = fresh<T>();
        EXPECT_NE(cut.read(shorter), 0U) << length << " of " << bytes.size() << " bytes";
        EXPECT_EQ(shorter.position(), 0);
        FileBuffer small;
        ASSERT_EQ(small.attach(quint32(length), nullptr), 0U);
        EXPECT_NE(thing.write(small), 0U) << "into " << length;
    }
}

template <class... Types>
void checkAll()
{
    (checkRoundTrip<Types>(), ...);
}

} // namespace

TEST(RoundTrip, EveryAtomIsReadAsItWasWritten)
{
    checkAll<UnparsedAtom, FreeAtom, WideAtom, MdatAtomPrefix, MovieHeaderAtom, TrackHeaderAtom,
             EditListAtom, EditAtom, TrackReferenceTypeAtom, TrackReferenceAtom, MediaHeaderAtom,
             HandlerReferenceAtom, DataReference, DataReferenceAtom, DataInformationAtom,
             VideoMediaInformationHeaderAtom, SoundMediaInformationHeaderAtom, BaseMediaInfoAtom,
             TimeCodeMediaInformationAtom, TimeCodeMediaHandlerAtom, OVMFHandlerAtom,
             BaseMediaInformationHeaderAtom, VideoMediaInformationAtom, SoundMediaInformationAtom,
             BaseMediaInformationAtom, MediaAtom, TrackAtom, MovieAtom>();
    checkAll<SampleSizeAtom, SampleToChunkAtom, ChunkOffsetAtom, TimeToSampleAtom,
             CompositionOffsetsAtom, SyncSampleAtom, SampleDependenciesAtom, SampleTableAtom,
             SampleDescriptionAtom>();
    checkAll<VideoSampleDescription, SoundSampleDescription, TimeCodeSampleDescription,
             TextSampleDescription, OrvexMetadataSampleDescription>();
    checkAll<PixelAspectAtom, ColorAtom, FieldsAtom, FormatAtom, EndianAtom, WaveAtom,
             GenericSoundCompressionAtom, NameAtom, AVCCAtom, HVCCAtom, EsdsAtom>();
    checkAll<stereoVideoAtom, sphericalVideoHeaderAtom, sphericalProjectionHeaderAtom,
             sphericalEquiAtom, sphericalCubeAtom, sphericalProjectionAtom, sphericalVideoAtom,
             spatialAudioAtom, sphericalVideoLegacyAtom>();
    checkAll<OrvexCameraFirmwareAtom, OrvexCameraIDAtom, OrvexCameraSettingsAtom,
             OrvexCameraLNSDAtom, OrvexCameraVFDAtom, OrvexCameraRGUIAtom, OrvexCameraRGSIAtom,
             OrvexSpotmarkTagAtom, OrvexMediaUniqueIdAtom, UserDataAtom>();
}
