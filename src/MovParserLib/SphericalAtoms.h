#pragma once

// The atoms that make a movie a panorama, of both generations: st3d and sv3d below a video sample
// description, SA3D below a sound one (Spherical Video V2 RFC), and the older uuid atom of a track
// with a text inside (Spherical Video RFC). Owned by the description or the track.

#include "MovParserLib/AtomOf.h"
#include "MovParserLib/Coding.h"

#include <array>

namespace Orvex::MovParserLib {

/// Answers of the getters below and of MovFileReader.
enum Projection : quint32 { NoProjection = 0, Equirectangular = 1, CubeMap = 256 };
enum Stereo : quint32 { Mono = 0, LeftRight = 1, TopBottom = 2 };

/// st3d: stereo layout as the file counts it, 1 top-bottom and 2 left-right.
class stereoVideoAtom final : public AtomOf<stereoVideoAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("st3d");
    static constexpr const char *kName = "stereoVideoAtom";
    quint8 stereoMode = 0;

    /// Intended: the file's two values change places on the way in and out.
    quint32 getStereoMode() const;
    void setStereoMode(quint32 stereo);

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("stereo mode", a.stereoMode);
    }
};

/// svhd: the tool that wrote the metadata.
class sphericalVideoHeaderAtom final : public AtomOf<sphericalVideoHeaderAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("svhd");
    static constexpr const char *kName = "sphericalVideoHeaderAtom";

    /// Bytes up to and with the first zero byte; the atom may end before one comes.
    struct TerminatedText
    {
        std::string text;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return text.size(); }
        void dump(const Dump &dump, const char *label) const;
    } metadataSource;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("writingtool", a.metadataSource);
    }
};

/// prhd: where the view begins, in degrees.
class sphericalProjectionHeaderAtom final
    : public AtomOf<sphericalProjectionHeaderAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("prhd");
    static constexpr const char *kName = "sphericalProjectionHeaderAtom";
    qint32 poseYaw = 0; ///< 16.16 fixed, as the other two.
    qint32 posePitch = 0;
    qint32 poseRoll = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.fixed("pose_yaw_degrees", a.poseYaw, 16);
        v.fixed("pose_pitch_degrees", a.posePitch, 16);
        v.fixed("pose_roll_degrees", a.poseRoll, 16);
    }
};

/// equi: an equirectangular picture and what is cut from it.
class sphericalEquiAtom final : public AtomOf<sphericalEquiAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("equi");
    static constexpr const char *kName = "sphericalEquiAtom";
    quint32 boundsTop = 0;
    quint32 boundsBottom = 0;
    quint32 boundsLeft = 0;
    quint32 boundsRight = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("projection_bounds_top", a.boundsTop);
        v.number("projection_bounds_bottom", a.boundsBottom);
        v.number("projection_bounds_left", a.boundsLeft);
        v.number("projection_bounds_right", a.boundsRight);
    }
};

/// cbmp: a cube map.
class sphericalCubeAtom final : public AtomOf<sphericalCubeAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("cbmp");
    static constexpr const char *kName = "sphericalCubeAtom";
    quint32 layout = 0;
    quint32 padding = 0;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("layout", a.layout);
        v.number("padding", a.padding);
    }
};

/// proj: the projection. Of equi, cbmp and any other the one read last stays.
class sphericalProjectionAtom final
    : public AtomOf<sphericalProjectionAtom, MovAtom, Children::Sequential>
{
public:
    static constexpr FourCC kType = fourcc("proj");
    static constexpr const char *kName = "sphericalProjectionAtom";
    sphericalProjectionHeaderAtom header;
    Owned<MovAtom> payload;

    static Owned<MovAtom> makePayload(FourCC type);

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.header);
        v.any(a.payload, makePayload);
    }
};

/// sv3d: all that is said of the sphere.
class sphericalVideoAtom final : public AtomOf<sphericalVideoAtom, MovAtom, Children::Sequential>
{
public:
    static constexpr FourCC kType = fourcc("sv3d");
    static constexpr const char *kName = "sphericalVideoAtom";
    sphericalVideoHeaderAtom header;
    sphericalProjectionAtom projection;
    UnparsedMap unparsed;

    quint32 getProjection() const;
    /// Anything but CubeMap makes equi; an old payload goes.
    void setProjection(quint32 value);
    /// Intended: whole degrees only, truncated toward zero.
    void getInitialOrientation(float *yaw, float *pitch, float *roll) const;
    /// Degrees, clamped to 180 either side for yaw and roll, to 90 for pitch.
    void setInitialOrientation(float yaw, float pitch, float roll);
    /// The text with its terminator, if the file has one.
    const std::string &getWritingTool() const { return header.metadataSource.text; }
    void setWritingTool(const std::string &tool);

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.header);
        v.optional(a.projection);
        v.kept(a.unparsed);
    }
};

/// SA3D: ambisonic layout of a sound track; nothing here uses it but the dump.
class spatialAudioAtom final : public AtomOf<spatialAudioAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("SA3D");
    static constexpr const char *kName = "spatialAudioAtom";

    struct ChannelMap
    {
        std::vector<quint32> rows;

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 + 4 * quint64(rows.size()); }
        void dump(const Dump &dump, const char *label) const;
    };

    quint8 version = 0;
    quint8 ambisonicType = 0;
    quint32 ambisonicOrder = 0;
    quint8 channelOrdering = 0;
    quint8 normalization = 0;
    ChannelMap channelMap;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("version", a.version);
        v.number("ambisonic_type", a.ambisonicType);
        v.number("ambisonic_order", a.ambisonicOrder);
        v.number("ambisonic_channel_ordering", a.channelOrdering);
        v.number("ambisonic_normalization", a.normalization);
        v.coded("num_channels", a.channelMap);
    }
};

/// What the text of the older generation says. It is searched for tags, not parsed as XML.
struct LegacySphericalText
{
    std::string stitchingSoftware;
    std::string stereoMode = "mono";
    int sourceCount = 0;
    // Intended: these three are written, but reading leaves them alone.
    int initialHeading = 0;
    int initialPitch = 0;
    int initialRoll = 0;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const;
    void dump(const Dump &dump, const char *label) const;

private:
    std::string text() const;
};

/// uuid in a track. Intended: every uuid is taken for this one, its identifier is not compared.
class sphericalVideoLegacyAtom final : public AtomOf<sphericalVideoLegacyAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("uuid");
    static constexpr const char *kName = "sphericalVideoLegacyAtom";
    LegacySphericalText text;

    quint32 getStereoMode() const;
    void setStereoMode(quint32 stereo);
    void getInitialOrientation(float *yaw, float *pitch, float *roll) const;
    void setInitialOrientation(float yaw, float pitch, float roll);

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("", a.text);
    }
};

} // namespace Orvex::MovParserLib
