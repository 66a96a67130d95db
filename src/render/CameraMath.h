#pragma once

// Arithmetic of the camera's pose: angles, rotation matrices, quaternions. Free functions on
// values, used by the view state, the headsets and the network; no object, no thread.
//
// The matrix turns camera directions into world directions in a right-handed frame that looks
// along -z: Ry(-yaw) Rx(-pitch) Rz(roll). Positive yaw looks right, positive pitch looks down,
// positive roll turns the picture clockwise. All angles are radians.

#include <QMatrix4x4>

/// Yaw, pitch and roll in radians.
struct CameraAngles
{
    float yaw = 0;
    float pitch = 0;
    float roll = 0;
};

namespace CameraMath {

constexpr float kPi = 3.14159265358979323846F;
constexpr float kTwoPi = 2 * kPi;
constexpr float kDegToRad = 0.0174533F;

/// Whether a picture with this extent, in radians, leaves no direction out.
constexpr bool isWholeSphere(float yawMin, float yawMax, float pitchMin, float pitchMax)
{
    return yawMin == -kPi && yawMax == kPi && pitchMin == -kPi / 2 && pitchMax == kPi / 2;
}

/// @p angle brought into [-pi, pi); pi itself becomes -pi. A value that is no number gives 0.
float wrapAngle(float angle);

/// Rotation matrix of @p angles; the fourth row and column are those of the identity.
QMatrix4x4 matrixFromAngles(const CameraAngles &angles);

/// Angles of a rotation matrix, not wrapped. At the poles, where yaw and roll turn about the same
/// axis, the free angle goes into pitch and yaw is a quarter turn: intended, peers rely on it.
CameraAngles anglesFromMatrix(const QMatrix4x4 &matrix);

/// Unit quaternion (x, y, z, w of the QVector4D) of a rotation matrix by the trace method with
/// the largest-diagonal fallback (K. Shoemake, "Quaternions", 1994).
QVector4D quaternionFromMatrix(const QMatrix4x4 &matrix);

/// Rotation matrix of a unit quaternion.
QMatrix4x4 matrixFromQuaternion(const QVector4D &quaternion);

/// Spherical interpolation from @p from (t = 0) to @p to (t = 1) along the arc they span
/// (K. Shoemake, "Animating rotation with quaternion curves", 1985); the arc is not shortened.
QVector4D slerp(const QVector4D &from, const QVector4D &to, float t);

} // namespace CameraMath
