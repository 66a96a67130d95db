#include "MovParserLib/MovBytes.h"

#include "MovParserLib/FileAtoms.h"
#include "MovParserLib/MovieAtoms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

using namespace test;
using namespace Orvex::MovParserLib;

namespace {

template <class T>
T fresh()
{
    if constexpr (std::is_constructible_v<T, FourCC> && !std::is_same_v<T, UnparsedAtom>)
        return T(fourcc("vide"));
    else
        return T();
}

template <class T>
std::string dumpOf(const T &thing)
{
    std::string text;
    thing.print(&text, 0);
    return text;
}

/// What was read from @p bytes is written as these bytes, copies alike, and no part of them is
/// taken for the whole.
template <class T>
void expectRoundTrip(T &thing, const Bytes &bytes)
{
    EXPECT_EQ(dumpOf(T(thing)), dumpOf(thing));
    T assigned = fresh<T>();
    if constexpr (std::is_base_of_v<MovAtom, T>)
        static_cast<MovAtom &>(assigned) = static_cast<const MovAtom &>(thing);
    else
        static_cast<SampleDescription &>(assigned) = static_cast<const SampleDescription &>(thing);
    EXPECT_EQ(dumpOf(assigned), dumpOf(thing));
    for (size_t length = 0; length <= bytes.size(); ++length) {
        Bytes part = bytes.substr(0, length);
        FileBuffer source;
        ASSERT_EQ(source.attach(quint32(length), part.data()), 0U);
        T cut = fresh<T>();
        EXPECT_EQ(cut.read(source) == 0, length == bytes.size()) << length;
        Bytes written(length, '?');
        FileBuffer target;
        ASSERT_EQ(target.attach(quint32(length), written.data()), 0U);
        EXPECT_EQ(thing.write(target) == 0, length == bytes.size()) << "into " << length;
        if (length == bytes.size()) {
            EXPECT_EQ(written, bytes);
        } else {
            EXPECT_EQ(source.position(), 0);
        }
    }
}

/// The lines of the dump behind the type, without indentation.
template <class T>
std::string fieldsOf(T &thing, const Bytes &bytes)
{
    Bytes copy = bytes;
    FileBuffer buffer;
    if (buffer.attach(quint32(copy.size()), copy.data()) || thing.read(buffer) ||
        buffer.position() != qint64(copy.size()))
        return "not read";
    const std::string text = dumpOf(thing);
    std::string fields;
    const char *behind = std::is_base_of_v<MovAtom, T> ? "Type: " : "DataReferenceIndex: ";
    size_t at = text.find("\r\n", text.find(behind)) + 2;
    for (size_t end; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
        std::string line = text.substr(text.rfind('\t', end) + 1, end - text.rfind('\t', end) - 1);
        std::replace_if(
            line.begin(), line.end(), [](char c) { return c >= 0 && c < ' '; }, '?');
        if (line.find("*****") == std::string::npos)
            fields += line + '\n';
    }
    return fields;
}

enum class Written { AsRead, Otherwise };

/// Reads and dumps, and checks that the thing comes back whole.
template <class T>
std::string reads(const Bytes &bytes, Written written)
{
    T thing = fresh<T>();
    const std::string fields = fieldsOf(thing, bytes);
    if (written == Written::AsRead)
        expectRoundTrip(thing, bytes);
    return fields;
}

const std::map<std::string, std::string (*)(const Bytes &, Written)> kReaders = {
    {"mvhd", reads<MovieHeaderAtom>},
    {"tkhd", reads<TrackHeaderAtom>},
    {"mdhd", reads<MediaHeaderAtom>},
    {"hdlr", reads<HandlerReferenceAtom>},
    {"elst", reads<EditListAtom>},
    {"hint", reads<TrackReferenceTypeAtom>},
    {"vmhd", reads<VideoMediaInformationHeaderAtom>},
    {"smhd", reads<SoundMediaInformationHeaderAtom>},
    {"gmin", reads<BaseMediaInfoAtom>},
    {"tcmi", reads<TimeCodeMediaInformationAtom>},
    {"ovmd", reads<OVMFHandlerAtom>},
    {"url ", reads<DataReference>},
    {"stsz", reads<SampleSizeAtom>},
    {"stsc", reads<SampleToChunkAtom>},
    {"stco", reads<ChunkOffsetAtom>},
    {"co64", reads<ChunkOffsetAtom>},
    {"stts", reads<TimeToSampleAtom>},
    {"ctts", reads<CompositionOffsetsAtom>},
    {"stss", reads<SyncSampleAtom>},
    {"sdtp", reads<SampleDependenciesAtom>},
    {"pasp", reads<PixelAspectAtom>},
    {"colr", reads<ColorAtom>},
    {"fiel", reads<FieldsAtom>},
    {"enda", reads<EndianAtom>},
    {"name", reads<NameAtom>},
    {"avcC", reads<AVCCAtom>},
    {"hvcC", reads<HVCCAtom>},
    {"esds", reads<EsdsAtom>},
    {"st3d", reads<stereoVideoAtom>},
    {"svhd", reads<sphericalVideoHeaderAtom>},
    {"prhd", reads<sphericalProjectionHeaderAtom>},
    {"equi", reads<sphericalEquiAtom>},
    {"cbmp", reads<sphericalCubeAtom>},
    {"SA3D", reads<spatialAudioAtom>},
    {"FRMW", reads<OrvexCameraFirmwareAtom>},
    {"CAMR", reads<OrvexCameraIDAtom>},
    {"STNG", reads<OrvexCameraSettingsAtom>},
    {"Lnsd", reads<OrvexCameraLNSDAtom>},
    {"VFD", reads<OrvexCameraVFDAtom>},
    {"RGUI", reads<OrvexCameraRGUIAtom>},
    {"RGSI", reads<OrvexCameraRGSIAtom>},
    {"TGMK", reads<OrvexSpotmarkTagAtom>},
    {"UMID", reads<OrvexMediaUniqueIdAtom>},
    {"frma", reads<FormatAtom>},
    {"free", reads<FreeAtom>},
    {"wide", reads<WideAtom>},
    {"abcd", reads<UnparsedAtom>},
    {"avc1", reads<VideoSampleDescription>},
    {"lpcm", reads<SoundSampleDescription>},
    {"tmcd", reads<TimeCodeSampleDescription>},
    {"text", reads<TextSampleDescription>},
    {"meta", reads<OrvexMetadataSampleDescription>}};

} // namespace

TEST(Golden, FieldsStandWhereTheFormatPutsThem)
{
    std::ifstream file(ORBILENS_SOURCE_DIR "/tests/MovParserLib/golden.txt");
    std::string line;
    while (std::getline(file, line) && !line.empty())
        EXPECT_EQ(line[0], '#');
    size_t count = 0;
    for (; std::getline(file, line); ++count) {
        SCOPED_TRACE(line);
        const std::string type = line.substr(0, line.find(" loosely"));
        const Written written = type == line ? Written::AsRead : Written::Otherwise;
        std::getline(file, line);
        const Bytes payload = hex(line.c_str());
        std::string fields;
        while (std::getline(file, line) && !line.empty())
            fields += line + '\n';
        ASSERT_TRUE(kReaders.count(type));
        EXPECT_EQ(kReaders.at(type)(atom(type, payload), written), fields);
    }
    EXPECT_GE(count, kReaders.size());
}

TEST(Golden, AMovieOfEverythingIsWrittenAsItWasRead)
{
    const auto full = [](const char *type, size_t count) { return fullAtom(type, zeros(count)); };
    const Bytes data = atom("dinf", fullAtom("dref", u32(1) + fullAtom("url ", "here")));
    TrackParts video;
    const Bytes tables = full("stsz", 8) + full("stsc", 4) + full("stco", 4);
    video.mediaHeader += data;
    video.edits = atom("edts", fullAtom("elst", u32(1) + u32(2) + u32(3) + u32(4)));
    video.extra = atom("tref", atom("tmcd", u32(2)));
    video.descriptionChildren = atom("pasp", u32(1) + u32(2)) + atom("fiel", "\x02\x06") +
                                full("st3d", 1) +
                                atom("sv3d", fullAtom("svhd", Bytes("pen") + '\0') +
                                                 atom("proj", full("prhd", 12) + full("cbmp", 8)));
    TrackParts sound;
    sound.id = 2;
    sound.handler = "soun";
    sound.mediaHeader = full("smhd", 4) + data;
    sound.tables =
        stsd(atom("lpcm", zeros(6) + u16(1) + u16(1) + zeros(34) +
                              atom("wave", atom("frma", "lpcm") + atom("enda", u16(1))))) +
        tables;
    TrackParts timeCode;
    timeCode.id = 3;
    timeCode.handler = "tmcd";
    timeCode.mediaHeader =
        atom("gmhd", full("gmin", 12) + atom("tmcd", fullAtom("tcmi", zeros(20) + u8(1) + "A")));
    timeCode.tables = stsd("", 0) + tables;
    const Bytes bytes = movie(track(video) + track(sound) + track(timeCode) +
                              atom("udta", atom("FRMW", "1") + atom("junk", "also")));
    Bytes copy = bytes;
    FileBuffer buffer;
    MovieAtom thing;
    ASSERT_EQ(buffer.attach(quint32(copy.size()), copy.data()), 0U);
    ASSERT_EQ(thing.read(buffer), 0U);
    expectRoundTrip(thing, bytes);
}

TEST(Golden, AFileTypeWritesItsBrands)
{
    FtypAtom ftyp;
    ftyp.minorVersion = 0x200;
    ftyp.compatibleBrands = {fourcc("isom")};
    Bytes bytes(size_t(ftyp.computeSize()), '\0');
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(quint32(bytes.size()), bytes.data()), 0U);
    ASSERT_EQ(ftyp.write(buffer), 0U);
    EXPECT_EQ(bytes, atom("ftyp", "qt  " + u32(0x200) + "isom"));
}

TEST(Golden, DumpsIndentByLevelAndNameTheirClass)
{
    stereoVideoAtom stereo;
    std::string text;
    stereo.print(&text, 1);
    EXPECT_EQ(text, "|\t***** stereoVideoAtom Begin\r\n|\t|\tSize: 0\r\n|\t|\tType: st3d\r\n"
                    "|\t|\tVersion: 0\r\n|\t|\tFlags: 00 00 00\r\n|\t|\tstereo mode: 0\r\n"
                    "|\t***** stereoVideoAtom End\r\n");
    stereo.print(nullptr, 0);
    OrvexSpotmarkTagAtom tags;
    std::string tagText;
    tags.print(&tagText, 0);
    EXPECT_EQ(tagText.substr(0, 26), "***** Spotmark Tags Begin\r");
    DataReference longer;
    longer.data.bytes.assign(1000, 'u');
    std::string longText;
    longer.print(&longText, 0);
    EXPECT_NE(longText.find("\r\n|\tURLString: " + std::string(244, 'u') + "\r\n"),
              std::string::npos);
    testing::internal::CaptureStdout();
    stereo.print(0);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("\n|\tstereo mode: 0\n*****"),
              std::string::npos);
}
