#pragma once

// OpenVR's values in the player's terms: matrices and controllers. Free functions on values.

#include "hmd/OpenVRTypes.h"

#include <QMatrix4x4>

namespace openvr {

/// Element (row, column) stays where it is; the fourth row becomes that of the identity.
QMatrix4x4 toMatrix(const Matrix34 &matrix);
QMatrix4x4 toMatrix(const Matrix44 &matrix);

/// What a controller asks the player for: 2 for the menu button, 3 and 4 for the touchpad pressed
/// on its left and right, 5 and 6 above and below; 0 for anything else, such as two buttons.
[[nodiscard]] int controllerCommand(const ControllerState &state);

} // namespace openvr
