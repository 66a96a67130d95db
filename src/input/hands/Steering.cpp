#include "input/hands/Steering.h"

#include "input/hands/HandBelief.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kUsualSensitivity = 0.2;
constexpr float kSteepest = 0.8F;  // radians beyond which more tilt does no more
constexpr float kRollRest = 0.15F; // radians of roll that a hand has by nature

float withRest(float value, float rest)
{
    return std::copysign(std::max(0.0F, std::abs(value) - rest), value);
}

float scale(const HandOptions &options)
{
    return Steering::kRadiansPerMillimetre * float(options.sensitivity);
}

Steering::Motion inverted(Steering::Motion motion, const HandOptions &options)
{
    if (options.yawInverted)
        motion.yaw = -motion.yaw;
    if (options.pitchInverted)
        motion.pitch = -motion.pitch;
    return motion;
}

} // namespace

float Steering::tiltRate(float tilt)
{
    const float excess = tilt < kFlatLow ? tilt - kFlatLow : std::max(0.0F, tilt - kFlatHigh);
    const float steepness = std::min(std::abs(excess), kSteepest);
    return std::copysign(2.5F * steepness * steepness / (steepness + 0.15F), excess);
}

void Steering::reset()
{
    m_travel.reset();
    m_normal.reset();
    m_level.reset();
    m_posture = HandPosture::Other;
}

Steering::Motion Steering::update(const Hand &hand, HandPosture posture, const HandOptions &options,
                                  float seconds)
{
    if (posture != m_posture) {
        reset();
        m_posture = posture;
    }
    const QVector3D step = HandBelief::moved(hand) ? hand.translation : QVector3D();
    if (posture == HandPosture::Pinch)
        return pull(step, options, seconds);
    if (posture != HandPosture::Open)
        return {};
    return inverted(steer(hand, options, seconds), options);
}

Steering::Motion Steering::pull(const QVector3D &step, const HandOptions &options, float seconds)
{
    const QVector3D way = m_travel.advance(step, seconds);
    Motion motion;
    motion.yaw = -way.x() * scale(options);
    motion.pitch = way.y() * scale(options);
    return inverted(motion, options);
}

Steering::Motion Steering::steer(const Hand &hand, const HandOptions &options, float seconds)
{
    const QVector3D normal = m_normal.filter(hand.normal, seconds);
    if (!m_level.update(-normal.y())) {
        m_travel.reset();
        return {};
    }
    const QVector3D step = HandBelief::moved(hand) ? hand.translation : QVector3D();
    const QVector3D way = m_travel.advance(step, seconds);
    Motion motion;
    motion.yaw = way.x() * scale(options);
    if (options.mode == HandCameraMode::Translation)
        motion.pitch = -way.y() * scale(options);
    else
        motion.pitch = tiltRate(std::atan2(-normal.y(), -normal.z())) * seconds *
                       float(options.sensitivity / kUsualSensitivity);
    if (options.roll)
        motion.roll = withRest(std::atan2(-normal.x(), -normal.y()), kRollRest);
    return motion;
}
