#include "hmd/OculusGeometry.h"

#include <QQuaternion>
#include <QVector3D>

#include <algorithm>
#include <cmath>

namespace OculusGeometry {

std::optional<CameraAngles> headAngles(const ovrQuatf &orientation)
{
    QVector4D quaternion(orientation.x, orientation.y, orientation.z, orientation.w);
    const float length = quaternion.length();
    if (!std::isfinite(length) || qFuzzyIsNull(length))
        return std::nullopt;
    quaternion /= length;
    const QMatrix4x4 m = CameraMath::matrixFromQuaternion(quaternion);

    constexpr float kPole = 1.5708F;
    constexpr float kAtPole = 1e-4F; // single precision tells nothing about yaw any nearer
    const float cosPitch = std::hypot(m(0, 2), m(2, 2));
    if (cosPitch < kAtPole)
        return CameraAngles{std::atan2(m(2, 0), m(0, 0)), std::copysign(kPole, m(1, 2)), 0};
    return CameraAngles{std::atan2(-m(0, 2), m(2, 2)), std::atan2(m(1, 2), cosPitch),
                        std::atan2(m(1, 0), m(1, 1))};
}

ovrPosef eyePose(const ovrPosef &head, const ovrVector3f &offset)
{
    const ovrQuatf &q = head.Orientation;
    const QVector3D turned =
        QQuaternion(q.w, q.x, q.y, q.z).normalized().rotatedVector({offset.x, offset.y, offset.z});
    return {
        q,
        {head.Position.x + turned.x(), head.Position.y + turned.y(), head.Position.z + turned.z()}};
}

QMatrix4x4 eyeProjection(const ovrFovPort &fov)
{
    constexpr float kNear = 0.1F;
    constexpr float kFar = 30.0F;
    QMatrix4x4 projection;
    projection.frustum(-fov.LeftTan * kNear, fov.RightTan * kNear, -fov.DownTan * kNear,
                       fov.UpTan * kNear, kNear, kFar);
    return projection;
}

int pauseOfFrame(float refreshRate)
{
    constexpr float kDefaultRate = 60;
    constexpr float kMillisecondsPerSecond = 1000;
    const float rate = std::isfinite(refreshRate) && refreshRate >= 1 ? refreshRate : kDefaultRate;
    return std::max(1, int(kMillisecondsPerSecond / rate - 1));
}

} // namespace OculusGeometry
