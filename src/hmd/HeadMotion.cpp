#include "hmd/HeadMotion.h"

#include <cmath>

namespace HeadMotion {

namespace {

// Where a rotation about the vertical axis alone could never put it.
constexpr float kNoPoseMark = 1.0F / 128;

/// Brought into (-pi, pi].
float shorterWay(float angle)
{
    const float wrapped = CameraMath::wrapAngle(angle);
    return wrapped == -CameraMath::kPi ? CameraMath::kPi : wrapped;
}

} // namespace

QMatrix4x4 noPose()
{
    QMatrix4x4 matrix;
    matrix(0, 1) = kNoPoseMark;
    matrix(1, 0) = kNoPoseMark;
    return matrix;
}

bool isPose(const QMatrix4x4 &matrix)
{
    return matrix != noPose();
}

QMatrix4x4 rotationOf(const QMatrix4x4 &matrix)
{
    QMatrix4x4 rotation;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            rotation(row, column) = matrix(row, column);
    }
    return rotation;
}

QMatrix4x4 shiftedPose(const QMatrix4x4 &device, float shiftYaw)
{
    return CameraMath::matrixFromAngles({-shiftYaw, 0, 0}) * rotationOf(device);
}

std::array<float, 3> angularVelocity(const CameraAngles &previous, const CameraAngles &current,
                                     float seconds)
{
    if (!(seconds > 0))
        return {0, 0, 0};
    return {shorterWay(current.yaw - previous.yaw) / seconds,
            shorterWay(current.pitch - previous.pitch) / seconds,
            shorterWay(current.roll - previous.roll) / seconds};
}

} // namespace HeadMotion
