#pragma once

// One datagram of a master to its slaves as a value, and its two forms on the wire. Free functions
// without a socket or thread; docs/formats.md describes the fields for other programs.

#include <QByteArray>
#include <QString>

#include <optional>

/// How the map of fields becomes bytes. Both ends must agree: nothing in a datagram tells.
enum class SyncFormat {
    Json = 0,    ///< compact JSON text
    QtBinary = 1 ///< QJsonDocument's own binary form
};

/// Camera and playback of a master at one moment.
struct SyncPacket
{
    QString id = QStringLiteral("lnd");
    float yaw = 0; ///< radians, as pitch and roll
    float pitch = 0;
    float roll = 0;
    float fov = 0;      ///< degrees; 0 leaves the slave's alone
    int stereoMode = 0; ///< a KShaderCodeBuilder::StereoMode
    QString url;        ///< of the medium, empty without one
    int state = 0;      ///< a QMediaPlayer::State
    int position = 0;   ///< milliseconds
};

/// Angles beyond this are no camera's: the arithmetic of a float has no direction left in them.
constexpr float kLargestSyncAngle = 1e6F;

QByteArray encodeSyncPacket(const SyncPacket &packet, SyncFormat format);

/// Nothing for bytes that are not of @p format, for a document that is no map, for a packet whose
/// "id" is not @p id, for a field of the wrong type and for numbers that are not finite or whose
/// angle exceeds kLargestSyncAngle. A field that is missing counts as 0 or empty. Whole numbers
/// are cut to the range of int.
[[nodiscard]] std::optional<SyncPacket> decodeSyncPacket(const QByteArray &bytes, SyncFormat format,
                                                         const QString &id);
