#include "MovParserLib/SphericalAtoms.h"

#include "MovParserLib/AtomImpl.h"

#include <QByteArray>
#include <QString>

namespace Orvex::MovParserLib {

namespace {

constexpr float kMostTurn = 180.0F;
constexpr float kMostTilt = 90.0F;
constexpr int kFixedOne = 65536;

constexpr quint8 kSphericalUuid[16] = {0xFF, 0xCC, 0x82, 0x63, 0xF8, 0x55, 0x4A, 0x93,
                                       0x88, 0x14, 0x58, 0x7A, 0x02, 0x52, 0x1F, 0xDD};

/// A whole number of degrees from 16.16 fixed point, as float.
float wholeDegrees(qint32 value)
{
    return float(value / kFixedOne);
}

/// NaN counts as 0.
float bounded(float degrees, float limit)
{
    return std::isnan(degrees) ? 0.0F : std::clamp(degrees, -limit, limit);
}

qint32 toFixed(float degrees, float limit)
{
    return qint32(bounded(degrees, limit) * kFixedOne);
}

/// The text between the last tags of @p key, if they are there in order. Intended: a tag at the
/// very start is not found.
std::optional<QString> lastTagged(const QString &text, const char *key)
{
    const QString opening = QStringLiteral("<GSpherical:%1>").arg(QLatin1String(key));
    const QString closing = QStringLiteral("</GSpherical:%1>").arg(QLatin1String(key));
    const int from = text.lastIndexOf(opening);
    const int to = text.lastIndexOf(closing);
    if (from <= 0 || from >= to)
        return std::nullopt;
    return text.mid(from + opening.size(), to - from - opening.size());
}

std::string tag(const char *key, std::string value)
{
    // A value that looks like a tag would be found as one.
    for (size_t at = 0; (at = value.find('<', at)) != std::string::npos;)
        value.replace(at, 1, "&lt;");
    return std::string("<GSpherical:") + key + ">" + value + "</GSpherical:" + key + ">";
}

} // namespace

quint32 stereoVideoAtom::getStereoMode() const
{
    return stereoMode == 2 ? LeftRight : stereoMode == 1 ? TopBottom : Mono;
}

void stereoVideoAtom::setStereoMode(quint32 stereo)
{
    stereoMode = stereo == LeftRight ? 2 : stereo == TopBottom ? 1 : 0;
}

bool sphericalVideoHeaderAtom::TerminatedText::read(FileBuffer &buffer, qint64 end)
{
    text.clear();
    char character = 1;
    while (character != 0 && buffer.position() < end) {
        if (buffer.read(&character, 1))
            return false;
        text.push_back(character);
    }
    return true;
}

bool sphericalVideoHeaderAtom::TerminatedText::write(FileBuffer &buffer) const
{
    return buffer.write(text.data(), quint32(text.size())) == 0;
}

void sphericalVideoHeaderAtom::TerminatedText::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: '%s'", label, text.c_str());
}

Owned<MovAtom> sphericalProjectionAtom::makePayload(FourCC type)
{
    if (type == sphericalEquiAtom::kType)
        return Owned<MovAtom>::make<sphericalEquiAtom>();
    if (type == sphericalCubeAtom::kType)
        return Owned<MovAtom>::make<sphericalCubeAtom>();
    return Owned<MovAtom>::make<UnparsedAtom>();
}

quint32 sphericalVideoAtom::getProjection() const
{
    const MovAtom *payload = projection.payload.get();
    if (dynamic_cast<const sphericalEquiAtom *>(payload))
        return Equirectangular;
    if (dynamic_cast<const sphericalCubeAtom *>(payload))
        return CubeMap;
    return NoProjection;
}

void sphericalVideoAtom::setProjection(quint32 value)
{
    projection.payload = sphericalProjectionAtom::makePayload(
        value == CubeMap ? sphericalCubeAtom::kType : sphericalEquiAtom::kType);
}

void sphericalVideoAtom::getInitialOrientation(float *yaw, float *pitch, float *roll) const
{
    *yaw = wholeDegrees(projection.header.poseYaw);
    *pitch = wholeDegrees(projection.header.posePitch);
    *roll = wholeDegrees(projection.header.poseRoll);
}

void sphericalVideoAtom::setInitialOrientation(float yaw, float pitch, float roll)
{
    projection.header.poseYaw = toFixed(yaw, kMostTurn);
    projection.header.posePitch = toFixed(pitch, kMostTilt);
    projection.header.poseRoll = toFixed(roll, kMostTurn);
}

void sphericalVideoAtom::setWritingTool(const std::string &tool)
{
    header.metadataSource.text = tool.c_str();
    header.metadataSource.text.push_back('\0');
}

bool spatialAudioAtom::ChannelMap::read(FileBuffer &buffer, qint64 end)
{
    quint32 count = 0;
    return readBig(buffer, &count) == 0 && readRows(buffer, end, count, &rows);
}

bool spatialAudioAtom::ChannelMap::write(FileBuffer &buffer) const
{
    return writeBig(buffer, quint32(rows.size())) == 0 && writeRows(buffer, rows);
}

void spatialAudioAtom::ChannelMap::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %d", label, int(rows.size()));
    for (size_t i = 0; i < rows.size(); ++i)
        dump.line("channel_map[%u]: %u", quint32(i), rows[i]);
}

bool LegacySphericalText::read(FileBuffer &buffer, qint64 end)
{
    if (end - buffer.position() < qint64(sizeof kSphericalUuid))
        return false;
    if (!buffer.take(sizeof kSphericalUuid))
        return false;
    RawBlock block;
    if (!block.read(buffer, end))
        return false;
    block.bytes.push_back(0);
    const QString text = QString::fromLatin1(reinterpret_cast<const char *>(block.bytes.data()));
    if (const auto software = lastTagged(text, "StitchingSoftware"))
        stitchingSoftware = software->toLatin1().toStdString();
    if (const auto stereo = lastTagged(text, "StereoMode"))
        stereoMode = stereo->toLatin1().toStdString();
    if (const auto count = lastTagged(text, "SourceCount"))
        sourceCount = count->toInt();
    return true;
}

std::string LegacySphericalText::text() const
{
    return "<?xml version=\"1.0\"?>"
           "<rdf:SphericalVideo xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
           "xmlns:GSpherical=\"http://ns.google.com/videos/1.0/spherical/\">"
        + tag("Spherical", "true") + tag("Stitched", "true")
        + tag("StitchingSoftware", stitchingSoftware) + tag("ProjectionType", "equirectangular")
        + tag("StereoMode", stereoMode) + tag("SourceCount", std::to_string(sourceCount))
        + tag("InitialViewHeadingDegrees", std::to_string(initialHeading))
        + tag("InitialViewPitchDegrees", std::to_string(initialPitch))
        + tag("InitialViewRollDegrees", std::to_string(initialRoll)) + "</rdf:SphericalVideo>";
}

bool LegacySphericalText::write(FileBuffer &buffer) const
{
    const std::string bytes = text();
    return buffer.write(kSphericalUuid, sizeof kSphericalUuid) == 0
        && buffer.write(bytes.data(), quint32(bytes.size())) == 0;
}

quint64 LegacySphericalText::size() const
{
    return sizeof kSphericalUuid + text().size();
}

void LegacySphericalText::dump(const Dump &dump, const char *) const
{
    dump.line("StitchingSoftware: %s", stitchingSoftware.c_str());
    dump.line("StereoMode: %s", stereoMode.c_str());
    dump.line("SourceCount: %d", sourceCount);
    dump.line("InitialViewHeadingDegrees: %d", initialHeading);
    dump.line("InitialViewPitchDegrees: %d", initialPitch);
    dump.line("InitialViewRollDegrees: %d", initialRoll);
}

quint32 sphericalVideoLegacyAtom::getStereoMode() const
{
    return text.stereoMode == "left-right" ? LeftRight
        : text.stereoMode == "top-bottom"  ? TopBottom
                                           : Mono;
}

void sphericalVideoLegacyAtom::setStereoMode(quint32 stereo)
{
    text.stereoMode = stereo == LeftRight ? "left-right"
        : stereo == TopBottom             ? "top-bottom"
                                          : "mono";
}

void sphericalVideoLegacyAtom::getInitialOrientation(float *yaw, float *pitch, float *roll) const
{
    *yaw = float(text.initialHeading);
    *pitch = float(text.initialPitch);
    *roll = float(text.initialRoll);
}

void sphericalVideoLegacyAtom::setInitialOrientation(float yaw, float pitch, float roll)
{
    text.initialHeading = int(bounded(yaw, kMostTurn));
    text.initialPitch = int(bounded(pitch, kMostTilt));
    text.initialRoll = int(bounded(roll, kMostTurn));
}

template class AtomOf<stereoVideoAtom, MovFullAtom>;
template class AtomOf<sphericalVideoHeaderAtom, MovFullAtom>;
template class AtomOf<sphericalProjectionHeaderAtom, MovFullAtom>;
template class AtomOf<sphericalEquiAtom, MovFullAtom>;
template class AtomOf<sphericalCubeAtom, MovFullAtom>;
template class AtomOf<sphericalProjectionAtom, MovAtom, Children::Sequential>;
template class AtomOf<sphericalVideoAtom, MovAtom, Children::Sequential>;
template class AtomOf<spatialAudioAtom, MovAtom>;
template class AtomOf<sphericalVideoLegacyAtom, MovAtom>;

} // namespace Orvex::MovParserLib
