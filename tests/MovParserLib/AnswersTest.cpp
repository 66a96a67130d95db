#include "MovParserLib/MovBytes.h"
#include "MovParserLib/MovFileReader.h"

#include <gtest/gtest.h>

using namespace test;
using namespace Orvex::MovParserLib;

namespace {

struct Opened
{
    explicit Opened(const Bytes &bytes) { status = reader.open(fileOf(bytes)); }

    MovFileReader reader;
    Status status;
};

/// Keeps the reports of failures that are asked for out of the log.
struct Answers : testing::Test
{
    void SetUp() override { testing::internal::CaptureStderr(); }
    void TearDown() override { testing::internal::GetCapturedStderr(); }
};

Bytes prhd(quint32 yaw, quint32 pitch, quint32 roll)
{
    return fullAtom("prhd", u32(yaw) + u32(pitch) + u32(roll));
}

Bytes sv3d(const Bytes &projection)
{
    return atom("sv3d", fullAtom("svhd", Bytes("tool") + '\0') + atom("proj", projection));
}

Bytes tagged(const Bytes &key, const Bytes &value)
{
    return "<GSpherical:" + key + ">" + value + "</GSpherical:" + key + ">";
}

Bytes legacy(const Bytes &text)
{
    return atom("uuid", zeros(16) + text);
}

void expectSphere(const MovFileReader &reader, Status status, quint32 projection, quint32 stereo,
                  const std::array<float, 3> &angles, const Bytes &tool)
{
    quint32 foundProjection = 99;
    quint32 foundStereo = 99;
    std::array<float, 3> found = {99, 99, 99};
    std::string foundTool = "before";
    EXPECT_EQ(reader.getProjection(&foundProjection), status);
    EXPECT_EQ(reader.getStereoMode(&foundStereo), status);
    EXPECT_EQ(reader.getInitialOrientation(&found[0], &found[1], &found[2]), status);
    EXPECT_EQ(reader.getWritingTool(foundTool), status);
    EXPECT_EQ(foundProjection, projection);
    EXPECT_EQ(foundStereo, stereo);
    EXPECT_EQ(found, angles);
    EXPECT_EQ(foundTool, tool);
}

const Bytes kEqui = fullAtom("equi", zeros(16));
const Bytes kCube = fullAtom("cbmp", zeros(8));

} // namespace

TEST_F(Answers, TheSphereIsToldByTheDescriptionElseByTheText)
{
    const Bytes text = "<?xml?>" + tagged("StitchingSoftware", "S1") +
                       tagged("StereoMode", "mono") + tagged("StereoMode", "left-right") +
                       tagged("SourceCount", "6");
    const Bytes st3d2 = fullAtom("st3d", u8(2));
    TrackParts legacyOnly;
    legacyOnly.hasTable = false;
    legacyOnly.extra = legacy(text) + legacy(tagged("StereoMode", "top-bottom"));
    TrackParts bare;
    bare.hasTable = false;
    TrackParts tagFirst = legacyOnly;
    tagFirst.extra = legacy(tagged("StereoMode", "top-bottom"));
    TrackParts topBottom = legacyOnly;
    topBottom.extra =
        legacy("-" + tagged("StereoMode", "top-bottom") + '\0' + tagged("StereoMode", "mono"));
    const auto described = [](const Bytes &children, const Bytes &extra = Bytes()) {
        TrackParts parts;
        parts.descriptionChildren = children;
        parts.extra = extra;
        return parts;
    };
    const auto sphere = [&described](const Bytes &projection) {
        return described(sv3d(projection));
    };
    const Bytes terminated = Bytes("tool") + '\0';
    const std::array<float, 3> none = {0, 0, 0}, right = {90}, rightUp = {90, -30, 0};
    const std::tuple<const char *, TrackParts, Status, quint32, quint32, std::array<float, 3>,
                     Bytes>
        rows[] = {
            {"turned", described(st3d2 + sv3d(prhd(90 << 16, 0, 0) + kEqui)), 0, 1, 1, right,
             terminated},
            {"whole degrees toward zero",
             sphere(prhd(0x005A8000, quint32(-0x1E8000), 0xFFFF8000) + kEqui), 0, 1, 0, rightUp,
             terminated},
            {"top-bottom", described(sv3d(kCube) + fullAtom("st3d", u8(1))), 0, 256, 2, none,
             terminated},
            {"the last projection", sphere(kEqui + kCube), 0, 256, 0, none, terminated},
            {"the last again", sphere(kCube + kEqui), 0, 1, 0, none, terminated},
            {"another projection", sphere(kEqui + atom("mshp", "abc")), 0, 0, 0, none, terminated},
            {"the last sphere", described(sv3d(kEqui) + atom("sv3d", "")), 0, 0, 0, none, ""},
            {"an unknown stereo mode", described(fullAtom("st3d", u8(3))), 0, 0, 0, none, ""},
            {"no terminator", described(atom("sv3d", fullAtom("svhd", "ab"))), 0, 0, 0, none, "ab"},
            {"a description silences the text", described("", legacy(text)), 0, 0, 0, none, ""},
            {"the first text alone", legacyOnly, 0, 1, 1, none, "S1"},
            {"text up to its zero byte", topBottom, 0, 1, 2, none, ""},
            {"a tag at the start is not found", tagFirst, 0, 1, 0, none, ""},
            {"neither", bare, 0x40002, 0, 0, none, ""},
        };
    for (const auto &[what, parts, status, projection, stereo, angles, tool] : rows) {
        SCOPED_TRACE(what);
        const Opened file(movie(track(parts)));
        ASSERT_EQ(file.status, 0U);
        expectSphere(file.reader, status, projection, stereo, angles, tool);
    }
}

TEST_F(Answers, SettersAreReadBack)
{
    Opened file(movie(track()));
    TrackAtom track = *file.reader.movie().tracks[0];
    ASSERT_EQ(track.setProjection(CubeMap) | track.setStereoMode(TopBottom) |
                  track.setInitialOrientation(200, -100, -12.5F) | track.setWritingTool("pen"),
              0U);
    MovieAtom written;
    written.tracks.push_back(Owned<TrackAtom>::make(track));
    Bytes bytes(size_t(written.computeSize()), '\0');
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(quint32(bytes.size()), bytes.data()), 0U);
    ASSERT_EQ(written.write(buffer), 0U);
    const Opened again(bytes);
    expectSphere(again.reader, 0, 256, 2, {180, -90, -12}, Bytes("pen") + '\0');

    sphericalVideoLegacyAtom text;
    text.setStereoMode(LeftRight);
    text.setInitialOrientation(1.9F, -2, 3);
    Bytes legacyBytes(size_t(text.computeSize()), '\0');
    ASSERT_EQ(buffer.attach(quint32(legacyBytes.size()), legacyBytes.data()), 0U);
    ASSERT_EQ(text.write(buffer), 0U);
    EXPECT_EQ(legacyBytes.substr(8, 16), hex("FFCC8263F8554A938814587A02521FDD"));
    const char *const parts[] = {
        "<?xml version=\"1.0\"?><rdf:SphericalVideo xmlns:rdf=",
        ">true</GSpherical:Spherical><GSpherical:Stitched>true</GSpherical:Stitched>",
        "<GSpherical:ProjectionType>equirectangular</GSpherical:ProjectionType>"
        "<GSpherical:StereoMode>left-right</GSpherical:StereoMode>",
        "<GSpherical:InitialViewHeadingDegrees>1</GSpherical:InitialViewHeadingDegrees>"
        "<GSpherical:InitialViewPitchDegrees>-2</GSpherical:InitialViewPitchDegrees>"
        "<GSpherical:InitialViewRollDegrees>3</GSpherical:InitialViewRollDegrees>"
        "</rdf:SphericalVideo>"};
    for (const char *part : parts)
        EXPECT_NE(legacyBytes.find(part), std::string::npos) << part;
}

TEST_F(Answers, FrameRatesComeFromDurationAndCount)
{
    const auto constant = [](quint32 count) {
        return stsd(videoEntry("")) + fullAtom("stsz", u32(1) + u32(count));
    };
    const auto edit = [](quint32 duration, qint32 mediaTime) {
        return atom("edts", fullAtom("elst", u32(1) + u32(duration) + u32(quint32(mediaTime)) +
                                                 u32(65536)));
    };
    const std::tuple<const char *, quint32, quint32, Bytes, Bytes, Status, double> rows[] = {
        {"25", 12800, 12800, constant(25), "", 0, 25},
        {"29.97", 30000, 30030, constant(30), "", 0, 29.97},
        {"a frame's length is rounded up", 600, 1000, constant(30), "", 0, 17.647},
        {"long frames", 1000, 4294968, constant(1), "", 0, 0},
        {"scale wraps to 0", 0x20000000, 100, constant(1), "", 0x10000, 0},
        {"scale wraps", 4294968, 1, constant(1), "", 0, 0.704},
        {"no duration", 1000, 0, constant(5), "", 0x10000, 0},
        {"no scale", 0, 100, constant(5), "", 0x10000, 0},
        {"no samples, no edits", 1000, 100, constant(0), "", 0x10000, 0},
        {"no samples, an edit", 1000, 100, constant(0), edit(50, 2), 0, 25},
        {"no samples, an empty edit", 1000, 100, constant(0), edit(50, -1), 0x10000, 0},
        {"no samples, no entry", 1000, 100, constant(0), atom("edts", fullAtom("elst", u32(0))),
         0x10000, 0},
    };
    for (const auto &[what, timeScale, duration, tables, edits, status, expectedRate] : rows) {
        SCOPED_TRACE(what);
        TrackParts parts;
        parts.timeScale = timeScale;
        parts.duration = duration;
        parts.tables = tables;
        parts.edits = edits;
        const Opened file(movie(track(parts)));
        double rate = 99;
        EXPECT_EQ(file.reader.getFrameRate(&rate), status);
        EXPECT_DOUBLE_EQ(rate, expectedRate);
    }
}

TEST_F(Answers, TheFirstVideoTrackAnswersAndItsAbsenceHasCodes)
{
    TrackParts sound;
    sound.handler = "soun";
    sound.mediaHeader = fullAtom("smhd", zeros(4));
    sound.tables = stsd("", 0);
    TrackParts large;
    large.tables = stsd(videoEntry("", 3840, 1920) + videoEntry("", 1, 1), 2) +
                   fullAtom("stsz", u32(0) + u32(0));
    quint32 width = 9;
    quint32 height = 9;
    const Opened both(movie(track(sound) + track(large) + track()));
    EXPECT_EQ(both.reader.getFrameSize(&width, &height), 0U);
    EXPECT_EQ(width, 3840U);
    EXPECT_EQ(height, 1920U);
    EXPECT_TRUE(both.reader.isVideoFile()) << "the third track has samples";
    EXPECT_FALSE(Opened(movie(track(large))).reader.isVideoFile());

    const MovFileReader closed;
    const Opened soundOnly(movie(track(sound)));
    for (const MovFileReader *reader : {&closed, &soundOnly.reader}) {
        double rate = 9;
        float angle = 9;
        std::string tool = "x";
        EXPECT_FALSE(reader->isVideoFile());
        EXPECT_EQ(reader->getFrameSize(&width, &height), 0x40002U);
        EXPECT_EQ(width, 0U);
        EXPECT_EQ(reader->getFrameRate(&rate), 0x40002U);
        EXPECT_EQ(rate, 0);
        EXPECT_EQ(reader->getInitialOrientation(&angle, &angle, &angle), 0x4000AU);
        EXPECT_EQ(reader->getProjection(&width), 0x4000AU);
        EXPECT_EQ(reader->getStereoMode(&width), 0x40002U);
        EXPECT_EQ(reader->getWritingTool(tool), 0x40002U);
        EXPECT_EQ(tool, "");
    }
    EXPECT_EQ(closed.getFrameSize(nullptr, &height), 5U);
    EXPECT_EQ(closed.getFrameRate(nullptr), 5U);
    EXPECT_EQ(closed.isOrvexFile(nullptr), 5U);
    EXPECT_EQ(closed.getProjection(nullptr), 5U);
    EXPECT_EQ(closed.getStereoMode(nullptr), 5U);
    EXPECT_EQ(closed.getInitialOrientation(nullptr, nullptr, nullptr), 5U);
}

TEST_F(Answers, TheMakerIsKnownByNameFirmwareOrTool)
{
    const auto meta = [](const Bytes &handler, const Bytes &item, quint32 kind, const Bytes &text) {
        return atom(
            "meta",
            zeros(4) + atom("hdlr", zeros(8) + handler + zeros(13)) +
                atom("ilst",
                     atom("\xA9xyz", "skipped") +
                         atom(item, atom("junk", "") + atom("data", u32(kind) + zeros(4) + text))));
    };
    const Bytes tool = "\xA9too";
    const Bytes plain = Bytes("VideoHandler") + '\0';
    const Bytes good = meta("mdir", tool, 1, "Orvex");
    const std::tuple<const char *, Bytes, Bytes, Status, bool> rows[] = {
        {"name", Bytes("An Orvex camera") + '\0', "", 0, true},
        {"name with a count", u8(5) + "Orvex", "", 0, true},
        {"other case", Bytes("orvex") + '\0', "", 0, false},
        {"no name", "", good, 0x4000A, false},
        {"a name of nothing", zeros(1), good, 0x4000A, false},
        {"a name of zero bytes", zeros(5), good, 0x4000A, false},
        {"firmware", plain, atom("FRMW", "1"), 0, true},
        {"empty firmware", plain, atom("FRMW", ""), 0, false},
        {"tool", plain, good, 0, true},
        {"tool with terminator", plain, meta("mdir", tool, 1, Bytes("Orvex") + '\0'), 0, true},
        {"longer tool", plain, meta("mdir", tool, 1, "Orvex 2"), 0, false},
        {"tool not as text", plain, meta("mdir", tool, 13, "Orvex"), 0, false},
        {"other handler", plain, meta("mdta", tool, 1, "Orvex"), 0, false},
        {"other item", plain, meta("mdir", "\xA9nam", 1, "Orvex"), 0, false},
        {"empty meta", plain, atom("meta", ""), 0, false},
        {"cut meta", plain, atom("meta", good.substr(8, good.size() - 10)), 0, false},
        {"handler length over the end", plain,
         atom("meta", zeros(4) + u32(0xFFFFFFFF) + "hdlr" + zeros(8) + "mdir" + zeros(40)), 0,
         false},
        {"nothing", plain, "", 0, false},
    };
    for (const auto &[what, name, userData, status, isMaker] : rows) {
        SCOPED_TRACE(what);
        TrackParts parts;
        parts.name = name;
        const Opened file(
            movie(track(parts) + (userData.empty() ? Bytes() : atom("udta", userData))));
        ASSERT_EQ(file.status, 0U);
        bool maker = !isMaker;
        EXPECT_EQ(file.reader.isOrvexFile(&maker), status);
        EXPECT_EQ(maker, isMaker);
    }
}

TEST_F(Answers, CameraAtomsAreHandedOut)
{
    Bytes manyTags = u32(150);
    for (quint32 i = 0; i < 150; ++i)
        manyTags += u32(1000 + i);
    // Bits 0 to 31 and 64 to 83, then two words.
    const Bytes settings = hex("12 34 b5 5b ffffffff da9b3000 00000007 00000008");
    const Bytes camera = atom("FRMW", "1.2") + atom("CAMR", "\x01\x02") + atom("STNG", settings) +
                         atom("LNSD", "ABC") + atom("Lnsd", "XYZ") + atom("VFD", "wide") +
                         atom("RGUI", u64(1) + u8(2) + "abc" + u16(4) + u16(5)) +
                         atom("RGSI", u64(6) + u32(7) + u16(8) + u16(0)) + atom("TGMK", manyTags) +
                         atom("UMID", "id") + atom("junk", "1") + atom("junk", "22");
    const Opened file(movie(track() + atom("udta", camera)));
    const MovFileReader &reader = file.reader;
    const char *text = nullptr;
    const quint8 *block = nullptr;
    quint32 value = 0;
    char letter = 0;
    std::string fov;
    OrvexCameraSettings bits;
    OrvexCameraRGUIAtom rig;
    OrvexCameraRGSIAtom shot;
    char bytes[2] = {};
    quint64 written = 0;
    ASSERT_EQ(reader.getFirmware(&text), 0U);
    EXPECT_STREQ(text, "1.2");
    ASSERT_EQ(reader.getCameraId(&block, &value), 0U);
    EXPECT_EQ(std::string(block, block + value), "\x01\x02");
    ASSERT_EQ(reader.getLensVendor(&letter), 0U);
    EXPECT_EQ(letter, 'X');
    ASSERT_EQ(reader.getFov(&fov), 0U);
    EXPECT_EQ(fov, "wide");
    ASSERT_EQ(reader.getSettings(&bits), 0U);
    EXPECT_EQ(bits.first, (std::array<quint8, 13>{1, 2, 0x34, 1, 3, 0, 1, 1, 1, 1, 2, 1, 1}));
    EXPECT_EQ(bits.second, (std::array<quint8, 11>{1, 2, 1, 1, 0, 2, 1, 1, 11, 0, 3}));
    EXPECT_EQ(bits.third, 7U);
    EXPECT_EQ(bits.fourth, 8U);
    ASSERT_EQ(reader.getRigUniqueId(&rig), 0U);
    EXPECT_EQ(rig.nodeId, 5);
    ASSERT_EQ(reader.getRigShotId(&shot), 0U);
    EXPECT_EQ(shot.chapterNumber, 8);
    ASSERT_EQ(reader.getMediaUniqueId(&block, &value), 0U);
    EXPECT_EQ(value, 2U);
    ASSERT_EQ(reader.getSpotmarkTag(99, &value), 0U);
    EXPECT_EQ(value, 1099U);
    EXPECT_EQ(reader.getSpotmarkTag(100, &value), 0U) << "the entry behind the last";
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(reader.getSpotmarkTag(101, &value), 1U);
    EXPECT_EQ(reader.getUnparsed(fourcc("junk"), nullptr, 0, &written), 0U);
    EXPECT_EQ(written, 1U);
    EXPECT_EQ(reader.getUnparsed(fourcc("junk"), bytes, 0, &written), 1U);
    EXPECT_EQ(reader.getUnparsed(fourcc("junk"), bytes, 2, &written), 0U);
    EXPECT_EQ(bytes[0], '1');

    const Opened empty(movie(track()));
    EXPECT_EQ(empty.reader.getFirmware(&text), 0U);
    EXPECT_EQ(text, nullptr);
    const Status missing[] = {empty.reader.getCameraId(&block, &value),
                              empty.reader.getLensVendor(&letter),
                              empty.reader.getFov(&fov),
                              empty.reader.getSettings(&bits),
                              empty.reader.getRigUniqueId(&rig),
                              empty.reader.getRigShotId(&shot),
                              empty.reader.getMediaUniqueId(&block, &value),
                              empty.reader.getSpotmarkTag(0, &value),
                              empty.reader.getUnparsed(fourcc("junk"), nullptr, 0, &written)};
    for (const Status status : missing)
        EXPECT_EQ(status, 3U);
}

TEST_F(Answers, SoundAndOtherTracksAreDescribed)
{
    const auto sound = [](quint16 version, quint16 id, const Bytes &more) {
        TrackParts parts;
        parts.handler = "soun";
        parts.mediaHeader = fullAtom("smhd", zeros(4));
        parts.tables =
            stsd(atom("mp4a", zeros(6) + u16(1) + u16(version) + zeros(6) + u16(2) + u16(16) +
                                  u16(id) + u16(0) + u32(48000U << 16) + more));
        return parts;
    };
    const Bytes second = u32(72) + hex("40f7700000000000") + u32(6) + u32(0x7F000000) + u32(24) +
                         u32(0) + u32(18) + u32(1);
    const std::tuple<TrackParts, quint32, double, quint32, Status, Status> rows[] = {
        {sound(0, 0, ""), 2, 48000, 16, 10, 2},
        {sound(0, 7, ""), 2, 48000, 16, 0, 2},
        {sound(1, 0, u32(1) + u32(2) + u32(3) + u32(4)), 2, 48000, 16, 0, 0},
        {sound(2, 0, second), 6, 96000, 24, 0, 2}};
    for (const auto &[parts, expectedChannels, expectedRate, expectedBits, idStatus, frameStatus] :
         rows) {
        const Opened file(movie(track(parts)));
        const SampleTableAtom *table = nullptr;
        ASSERT_EQ(file.reader.getSampleTable(TrackSelector::byIndex(0), &table), 0U);
        const SampleDescriptionAtom &stsdAtom = table->descriptions;
        quint32 channels = 0;
        quint32 bits = 0;
        quint32 other = 0;
        double rate = 0;
        EXPECT_EQ(stsdAtom.getChannelCount(&channels) | stsdAtom.getSampleRate(&rate) |
                      stsdAtom.getBitsPerSample(&bits),
                  0U);
        EXPECT_EQ(channels, expectedChannels);
        EXPECT_EQ(rate, expectedRate);
        EXPECT_EQ(bits, expectedBits);
        EXPECT_EQ(stsdAtom.getCompressionId(&other), idStatus);
        EXPECT_EQ(stsdAtom.getBytesPerFrame(&other), frameStatus);
        EXPECT_EQ(stsdAtom.getVideoSize(&other, nullptr), 2U);
    }

    TrackParts timeCode;
    timeCode.handler = "tmcd";
    timeCode.mediaHeader = atom("gmhd", fullAtom("gmin", zeros(12)));
    timeCode.tables = stsd("", 0);
    timeCode.name = u8(9) + "Orvex MET";
    const Opened file(movie(track(timeCode)));
    const TrackAtom *found = nullptr;
    ASSERT_EQ(file.reader.getTrack(TrackSelector::byId(1), &found), 0U);
    EXPECT_TRUE(found->isTelemetry());
    std::string dump;
    found->print(&dump, 0);
    EXPECT_NE(dump.find("TextName: Courier"), std::string::npos);
    std::string name;
    EXPECT_EQ(file.reader.getTrackHandlerName(TrackSelector::byIndex(0), &name), 0U);
    EXPECT_EQ(name, "Orvex MET");
}
