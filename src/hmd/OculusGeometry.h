#pragma once

// From the Oculus runtime's poses and fields of view to this program's matrices. Free functions on
// values, any thread.

#include "hmd/OvrTypes.h"
#include "render/CameraMath.h"

#include <QMatrix4x4>

#include <optional>

namespace OculusGeometry {

/// Yaw, pitch and roll of a head; nothing when @p orientation turns nowhere. At the poles, where
/// yaw and roll turn about the same axis, the whole turn goes into yaw.
std::optional<CameraAngles> headAngles(const ovrQuatf &orientation);

/// Where an eye is when the head is at @p head and the eye at @p offset in the head's frame.
ovrPosef eyePose(const ovrPosef &head, const ovrVector3f &offset);

/// The off-centre perspective projection of an eye (The OpenGL Graphics System 2.1, glFrustum).
QMatrix4x4 eyeProjection(const ovrFovPort &fov);

/// Milliseconds of a display's frame less one; 60 frames a second where the rate is unknown.
int pauseOfFrame(float refreshRate);

} // namespace OculusGeometry
