#include "hmd/OpenVRMath.h"

namespace openvr {

namespace {

// How far from the touchpad's centre a press counts as one of its sides.
constexpr float kSide = 0.5F;

} // namespace

QMatrix4x4 toMatrix(const Matrix34 &matrix)
{
    QMatrix4x4 result;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column)
            result(row, column) = matrix.m[row][column];
    }
    return result;
}

QMatrix4x4 toMatrix(const Matrix44 &matrix)
{
    QMatrix4x4 result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            result(row, column) = matrix.m[row][column];
    }
    return result;
}

int controllerCommand(const ControllerState &state)
{
    if (state.buttonPressed == kApplicationMenuMask)
        return 2;
    if (state.buttonPressed != kAxis0Mask)
        return 0;
    const ControllerAxis &pad = state.axis[0];
    if (pad.x < -kSide)
        return 3;
    if (pad.x > kSide)
        return 4;
    if (pad.y < -kSide)
        return 6;
    return pad.y > kSide ? 5 : 0;
}

} // namespace openvr
