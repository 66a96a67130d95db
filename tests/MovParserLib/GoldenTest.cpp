#include "MovParserLib/MovBytes.h"

#include "MovParserLib/FileAtoms.h"
#include "MovParserLib/MovieAtoms.h"

#include <gtest/gtest.h>

#include <memory>

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

/// The lines of the dump behind the type, without indentation, joined by "|".
template <class T>
std::string fieldsOf(T &thing, const Bytes &bytes)
{
    Bytes copy = bytes;
    FileBuffer buffer;
    if (buffer.attach(quint32(copy.size()), copy.data()) || thing.read(buffer) ||
        buffer.position() != qint64(copy.size()))
        return "not read";
    const std::string text = dumpOf(thing);
    std::string joined;
    const char *behind = std::is_base_of_v<MovAtom, T> ? "Type: " : "DataReferenceIndex: ";
    size_t at = text.find("\r\n", text.find(behind)) + 2;
    for (size_t end; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
        const std::string line =
            text.substr(text.rfind('\t', end) + 1, end - text.rfind('\t', end) - 1);
        if (line.find("*****") == std::string::npos)
            joined += (joined.empty() ? "" : "|") + line;
    }
    return joined;
}

/// Reads, dumps, and checks that the thing comes back whole.
template <class T>
std::string reads(const Bytes &bytes)
{
    T thing = fresh<T>();
    const std::string fields = fieldsOf(thing, bytes);
    expectRoundTrip(thing, bytes);
    return fields;
}

/// The same of bytes that are read as they come and never written so.
template <class T>
std::string readsLoosely(const Bytes &bytes)
{
    T thing = fresh<T>();
    return fieldsOf(thing, bytes);
}

struct Row
{
    const char *type;
    std::string (*read)(const Bytes &);
    const char *payload; // Behind size and type.
    const char *fields;
};

const char *const kFull = "Version: 1|Flags: 02 03 04|";
const char *const kDated = "Version: 1|Flags: 02 03 04|Creation Time: 5|Modification Time: 6|";
const char *const kMatrix = "00010000 00020000 40000000 00000000 ffff0000 c0000000 "
                            "00008000 00000000 20000000";
const char *const kMatrixText = "Matrix: 1.000000 2.000000 1.000000|"
                                "Matrix: 0.000000 -1.000000 -1.000000|"
                                "Matrix: 0.500000 0.000000 0.500000|";

std::string expanded(const std::string &text)
{
    switch (text.empty() ? 0 : text[0]) {
    case '@':
        return kDated + text.substr(1);
    case '#':
        return kFull + text.substr(1);
    default:
        return text;
    }
}

void check(const std::vector<Row> &rows, const char *fullHead)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.type);
        std::string payload = row.payload;
        std::string fields = expanded(row.fields);
        for (size_t at; (at = payload.find('M')) != std::string::npos;)
            payload.replace(at, 1, kMatrix);
        for (size_t at; (at = fields.find("<matrix>")) != std::string::npos;)
            fields.replace(at, 8, kMatrixText);
        const Bytes head = row.fields[0] == '@'   ? hex("01020304 00000005 00000006")
                           : row.fields[0] == '#' ? hex(fullHead)
                                                  : Bytes();
        EXPECT_EQ(row.read(atom(row.type, head + hex(payload.c_str()))), fields);
    }
}

} // namespace

// "@" stands for the head of a dated atom, "#" for that of a full one, "M" for a matrix.
TEST(Golden, FieldsStandWhereTheFormatPutsThem)
{
    check(
        {
            {"mvhd", reads<MovieHeaderAtom>,
             "00000001 00000002 00018000 0080 0102030405060708090a M 00000003 00000004 00000005 "
             "00000006 00000007 00000008 00000009",
             "@TimeScale: 1|Duration: 2|PreferredRate: 1.500000|PreferredVolume: 0.500000|"
             "Reserved: 12345678910|<matrix>PreviewTime: 3|PreviewDuration: 4|PosterTime: 5|"
             "SelectionTime: 6|SelectionDuration: 7|CurrentTime: 8|NextTrackNumber: 9"},
            {"tkhd", reads<TrackHeaderAtom>,
             "00000001 00000002 00000003 0000000000000004 ffff 0006 0180 0008 M 00408000 00200000",
             "@TrackID: 1|Reserved1: 2|Duration: 3|Reserved2: 00000004|Layer: -1|"
             "AlternateGroup: 6|Volume: 1.500000|Reserved3: 8|<matrix>Width: 64.500000|"
             "Height: 32.000000"},
            {"mdhd", reads<MediaHeaderAtom>, "00000007 00000008 0009 000a",
             "@TimeScale: 7|Duration: 8|Language: 9|Quality: 10"},
            {"hdlr", reads<HandlerReferenceAtom>,
             "6d686c72 76696465 61626364 00000001 00000002 03 414243",
             "#ComponentType: mhlr|ComponentSubype: vide|ComponentManufacturer: abcd|"
             "ComponentFlags: 1|ComponentFlagsMask: 2|ComponentName: ABC"},
            {"elst", reads<EditListAtom>, "00000001 00000002 ffffffff 00010000",
             "#NumberOfEntries: 1|EditListTable: (TrackDuration, MediaTime, MediaRate)|"
             "2,-1,65536  "},
            {"hint", reads<TrackReferenceTypeAtom>, "00000001 00000002", "TrackIDs: 1, 2, "},
            {"hint", readsLoosely<TrackReferenceTypeAtom>, "00000001 0003", "TrackIDs: 1, "},
            {"vmhd", reads<VideoMediaInformationHeaderAtom>, "0001 0002 0003 0004",
             "#GraphicsMode: 1|OpColor: 2 3 4"},
            {"smhd", reads<SoundMediaInformationHeaderAtom>, "0001 0002",
             "#Balance: 1|Reserved: 2"},
            {"gmin", reads<BaseMediaInfoAtom>, "0001 0002 0003 0004 0005 0006",
             "#GraphicsMode: 1|OpColor: 2 3 4|Balance: 5|Reserved: 6"},
            {"tcmi", reads<TimeCodeMediaInformationAtom>,
             "0001 0002 0003 0004 0005 0006 0007 0008 0009 000a 02 4142",
             "#TextFont: 1|TextFace: 2|TextSize: 3|Reserved: 4|TextColor: 5 6 7|"
             "BackgroundColor: 8 9 10|TextName: AB"},
            {"ovmd", reads<OVMFHandlerAtom>, "00000009", "Reserved: 9"},
            {"url ", reads<DataReference>, "4142", "#URLFlag: 4|URLLength: 2|URLString: AB"},
            {"stsz", reads<SampleSizeAtom>, "00000000 00000002 00000003 00000004",
             "#SampleSize: 0|NumberOfEntries: 2|SampleSizeTable: |0000000003  0000000004  "},
            {"stsz", reads<SampleSizeAtom>, "00000009 ffffffff",
             "#SampleSize: 9|NumberOfEntries: -1|SampleSizeTable: "},
            {"stsc", reads<SampleToChunkAtom>, "00000001 00000002 00000003 00000004",
             "#NumberOfEntries: 1|SampleToChunkTable: (FirstChunk, SamplesPerChunk, "
             "SampleDescriptionID)|2,3,4  "},
            {"stco", reads<ChunkOffsetAtom>, "00000002 ffffffff 00000001",
             "#NumberOfEntries: 2|ChunkOffsetTable: |004294967295  000000000001  "},
            {"co64", reads<ChunkOffsetAtom>, "00000001 0000000200000003",
             "#NumberOfEntries: 1|ChunkOffsetTable: |008589934595  "},
            {"stts", reads<TimeToSampleAtom>, "00000001 00000002 00000003",
             "#NumberOfEntries: 1|TimeToSampleTable: (Sample Count, Sample Duration)|2,3  "},
            {"ctts", reads<CompositionOffsetsAtom>, "00000001 00000002 fffffffd",
             "#NumberOfEntries: 1|CompositionOffsetsTable: (Sample Count, Sample Delta)|2,-3  "},
            {"stss", readsLoosely<SyncSampleAtom>, "00000003 00000009 00000002 00000009",
             "#NumberOfEntries: 2|SyncSampleTable: |0000000002  0000000009  "},
            {"stss", reads<SyncSampleAtom>, "00000002 00000002 00000009",
             "#NumberOfEntries: 2|SyncSampleTable: |0000000002  0000000009  "},
            {"sdtp", reads<SampleDependenciesAtom>, "01 02",
             "#SampleDependenciesTable: (Dependency)|1, 2, "},
            {"pasp", reads<PixelAspectAtom>, "00000001 00000002", "hSpacing: 1|vSpacing: 2"},
            {"colr", reads<ColorAtom>, "6e636c78 0001 0002 0003 80",
             "ColorParamType: nclx|Primaries: 1|TransferFunction: 2|Matrix: 3|"
             "nclx reserved byte: 128"},
            {"fiel", reads<FieldsAtom>, "02 06", "Fields: 2|Detail: 6"},
            {"enda", reads<EndianAtom>, "0001", "Endian: 1"},
            {"name", reads<NameAtom>, "0002 0003 4142", "DataSize: 2|Language: 3|Name: AB"},
            {"avcC", reads<AVCCAtom>, "01 64 00 1f ff e2 0001 67 0002 6868 01 0001 68 fd",
             "configurationVersion: 1|AVCProfileIndication: 100|profile_compatibility: 0|"
             "AVCLevelIndication: 31|lengthSizeMinusOne: 3|numOfSequenceParameterSets: 2|"
             "sequenceParameterSetLength: 1|SPS[0]:  [67 |]|numOfPictureParameterSets: 1|"
             "pictureParameterSetLength: 1|PPS[0]:  [68 |]"},
            {"hvcC", reads<HVCCAtom>,
             "01 61 60000000 900000000001 5d f012 fd fe fa fb 0019 4f 01 a1 0001 0002 4201",
             "configurationVersion: 1|general_profile_space: 1|general_tier_flag: 1|"
             "general_profile_idc: 1|general_profile_compatibility_flags: 1610612736|"
             "general_constraint_indicator_flags: 158329674399745|general_level_idc: 93|"
             "min_spatial_segmentation_idc: 18|parallelismType: 1|chromaFormat: 2|"
             "bitDepthLumaMinus8: 2|bitDepthChromaMinus8: 3|avgFrameRate: 25|"
             "constantFrameRate: 1|numTemporalLayers: 1|temporalIdNested: 1|"
             "lengthSizeMinusOne: 3|numOfArrays: 1|ARRAY #0|array_completeness: 1|"
             "NAL_unit_type: 1|numNalus: 1|NALU #0|nalUnitLength: 2|[42 01 |]"},
            {"esds", reads<EsdsAtom>,
             "03 808080 22 0001 00 04 808080 14 40 15 000300 0001f400 0001f401 05 808080 02 1210 "
             "06 808080 01 02",
             "#ES tag: 3|esId: 1|streamDependenceFlag: 0|URLFlag: 0|oCRstreamFlag: 0|"
             "streamPriority: 0|DecoderConfig tag: 4|objectTypeIndication: 64|streamType: 5|"
             "upStream: 0|bufferSizeDB: 768|maxBitRate: 128000|avgBitRate: 128001|"
             "DecoderSpecificInfo tag: 5|audioObjectType: 2|samplingFrequencyIndex: 4|"
             "channelConfiguration: 2|frameLengthFlag: 0|dependsOnCoreCoder: 0|extensionFlag: 0|"
             "SLConfig tag: 6|predefined: 2"},
            {"st3d", reads<stereoVideoAtom>, "02", "#stereo mode: 2"},
            {"svhd", reads<sphericalVideoHeaderAtom>, "414200", "#writingtool: 'AB'"},
            {"prhd", reads<sphericalProjectionHeaderAtom>, "005a8000 ffa58000 00010000",
             "#pose_yaw_degrees: 90.500000|pose_pitch_degrees: -90.500000|"
             "pose_roll_degrees: 1.000000"},
            {"equi", reads<sphericalEquiAtom>, "00000001 00000002 00000003 00000004",
             "#projection_bounds_top: 1|projection_bounds_bottom: 2|projection_bounds_left: 3|"
             "projection_bounds_right: 4"},
            {"cbmp", reads<sphericalCubeAtom>, "00000001 00000002", "#layout: 1|padding: 2"},
            {"SA3D", reads<spatialAudioAtom>, "01 02 00000003 04 05 00000002 00000006 00000007",
             "version: 1|ambisonic_type: 2|ambisonic_order: 3|ambisonic_channel_ordering: 4|"
             "ambisonic_normalization: 5|num_channels: 2|channel_map[0]: 6|channel_map[1]: 7"},
            {"FRMW", reads<OrvexCameraFirmwareAtom>, "4142", "FirmwareVersion: AB"},
            {"CAMR", reads<OrvexCameraIDAtom>, "0aff", "Camera ID: 0AFF"},
            {"STNG", reads<OrvexCameraSettingsAtom>, "01", "Camera Settings: 01"},
            {"Lnsd", reads<OrvexCameraLNSDAtom>, "4142", "Lens Vendor: A"},
            {"VFD", reads<OrvexCameraVFDAtom>, "57", "VFD: W"},
            {"RGUI", reads<OrvexCameraRGUIAtom>, "0000000000000001 02 010203 0004 0005",
             "rig_primary_node_esn: 1|rig_type: 2|rig_fw: 123|rig_size: 4|node_id: 5"},
            {"RGSI", reads<OrvexCameraRGSIAtom>, "0000000000000001 00000002 0003 0000",
             "rig_primary_camera_esn: 1|capture_start_timstamp: 2|chapter_number: 3|"
             "tarso_shot_count: 0"},
            {"RGSI", readsLoosely<OrvexCameraRGSIAtom>, "0000000000000001 00000002 0003 0004",
             "rig_primary_camera_esn: 1|capture_start_timstamp: 2|chapter_number: 3|"
             "tarso_shot_count: 0"},
            {"TGMK", reads<OrvexSpotmarkTagAtom>, "00000002 000005dd 00000007",
             "COUNT: 2|TAG: 1.501 sec|TAG: 0.7 sec"},
            {"UMID", reads<OrvexMediaUniqueIdAtom>, "0102", "UMID: 0102"},
            {"frma", reads<FormatAtom>, "61626364", "DataFormat: abcd"},
            {"free", reads<FreeAtom>, "0000", "Free Payload Size: 2"},
            {"wide", reads<WideAtom>, "", ""},
            {"abcd", reads<UnparsedAtom>, "0102", "Payload Size: 2"},
        },
        "01020304");
}

TEST(Golden, EntriesOfDescriptionsStandWhereTheFormatPutsThem)
{
    const char *const head = "000000000000 0001"; // The types of entries are the codecs.
    const std::vector<Row> rows = {
        {"avc1", reads<VideoSampleDescription>,
         "0001 0002 61626364 00000003 00000004 0005 0006 00480000 00488000 00000007 0008 "
         "0441424344000000000000000000000000000000000000000000000000000000 0018 ffff",
         "Version: 1|RevisionLevel: 2|Vendor: abcd|TemporalQuality: 3|SpatialQuality: 4|Width: 5|"
         "Height: 6|HorizontalResolution: 72.000000|VerticalResolution: 72.500000|DataSize: 7|"
         "FrameCount: 8|CompressorName: \x04"
         "ABCD|Depth: 24|ColorTableID: 65535"},
        {"lpcm", reads<SoundSampleDescription>,
         "0002 0000 00000000 0003 0010 fffe 0000 00010000 00000048 40f7700000000000 00000006 "
         "7f000000 00000018 00000009 00000012 00000001",
         "Version: 2|RevisionLevel: 0|Vendor: "
         "\0"
         "|"},
        {"tmcd", reads<TimeCodeSampleDescription>, "00000001 00000002 00000003 00000004 05 00",
         "Reserved1: 1|Flags: 2|TimeScale: 3|FrameDuration: 4|NumberOfFrames: 5|No Name Supplied"},
        {"text", reads<TextSampleDescription>,
         "00000001 00000002 0003 0004 0005 0006 0007 0008 0009 000000000000000a 000b 000c 00 0000 "
         "000d 000e 000f 03 414243",
         "DisplayFlags: 1|TextJustificiation: 2|BackgroundColor: 3 4 5|"
         "DefaultTextBox Rect: 6 7 8 9|Reserved: 10|FontNumber: 11|FontFace: 12|"
         "ForegroundColor: 13 14 15|TextName: ABC"},
        {"ovmd", reads<OrvexMetadataSampleDescription>, "00000007", "Reserved: 7"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.type);
        const std::string dump = row.read(atom(row.type, hex(head) + hex(row.payload)));
        if (std::string(row.type) != "lpcm") {
            EXPECT_EQ(dump, row.fields);
            continue;
        }
        // The vendor's zero bytes cannot stand in a row of text.
        EXPECT_NE(dump.find("CompressionID: 65534|PacketSize: 0|SampleRate: 1.000000|"
                            "SizeOfStructOnly: 72|AudioSampleRate: 96000.000000|"
                            "NumAudioChannels: 6|Reserved: 2130706432|ConstBitsPerChannel: 24|"
                            "FormatSpecificFlags: 9|ConstBytesPerAudioPacket: 18|"
                            "ConstLPCMFramesPerAudioPacket: 1"),
                  std::string::npos)
            << dump;
    }
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
