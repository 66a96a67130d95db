#pragma once

// What follows from a head's pose as arithmetic: the stored pose, its angles' speed. Free functions
// on values, any thread.

#include "render/CameraMath.h"

#include <QMatrix4x4>

#include <array>

namespace HeadMotion {

/// What stands for "no pose": no rotation matrix, so that no pose is ever mistaken for it.
QMatrix4x4 noPose();
bool isPose(const QMatrix4x4 &matrix);

/// The rotation of @p device (camera to world) turned by @p shiftYaw radians about the vertical
/// axis, positive to the left; where the device stands is dropped.
QMatrix4x4 shiftedPose(const QMatrix4x4 &device, float shiftYaw);

/// The upper left 3 by 3 of @p matrix alone.
QMatrix4x4 rotationOf(const QMatrix4x4 &matrix);

/// Radians per second of yaw, pitch and roll between two poses @p seconds apart, along the shorter
/// way round; 0 when no time has passed.
std::array<float, 3> angularVelocity(const CameraAngles &previous, const CameraAngles &current,
                                     float seconds);

} // namespace HeadMotion
