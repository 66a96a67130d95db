#include "hmd/TapDetector.h"

#include "render/CameraMath.h"

#include <cmath>

namespace {

constexpr float kRestingSpeed = 2.0F; // radians per second
constexpr float kNoddingSpeed = 8.0F;
constexpr float kSteepestPitch = CameraMath::kPi / 4;

} // namespace

bool TapDetector::detect(const std::array<float, 3> &velocity, float gazePitch)
{
    if (!(gazePitch > -kSteepestPitch && gazePitch < kSteepestPitch))
        return false;
    const float speed = std::hypot(velocity[0], velocity[1], velocity[2]);
    if (speed < kRestingSpeed)
        m_armed = true;
    return speed > kNoddingSpeed && m_armed.exchange(false);
}
