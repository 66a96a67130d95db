#pragma once

// Camera paths: poses with times, read from a .json file beside a medium. Free functions on values.

#include <QByteArray>
#include <QMap>
#include <QVector4D>

/// One pose of a camera path.
struct KeyPoint
{
    QVector4D rotation; ///< unit quaternion x, y, z, w
    float fov = 90;     ///< degrees
    int time = 0;       ///< milliseconds from the start of the medium
    int projection = 0; ///< a KShaderCodeBuilder::ShaderProjection
};

/// A pose between two key points.
struct KeyPointPose
{
    QVector4D rotation;
    float fov = 90;     ///< degrees
    int projection = 0; ///< that of the earlier point
};

namespace KeyPoints {

/// Path of the key-point file of the medium at @p mediaPath: the ".mp4" replaced by ".json".
/// Empty for media that can have none.
QString filePath(const QString &mediaPath);

/// Points of a key-point file, by time. Anything that is no such file gives an empty path, and a
/// point whose time or angle no film can hold is left out. A time before the film's start is a pose
/// to come from.
QMap<int, KeyPoint> parse(const QByteArray &json);

/// Pose at @p time, milliseconds; before the first and after the last point those hold.
/// @pre at least two points.
KeyPointPose poseAt(const QMap<int, KeyPoint> &points, int time);

} // namespace KeyPoints
