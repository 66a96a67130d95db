#include "input/hands/TwoHandMotion.h"

#include "input/hands/HandBelief.h"
#include "input/hands/Steering.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kScaleRest = 0.04F; // hands are never quite still

} // namespace

void TwoHandMotion::reset()
{
    *this = {};
}

TwoHandMotion::Motion TwoHandMotion::update(const HandFrame &frame, const HandOptions &options,
                                            float seconds)
{
    const bool zooms = options.zoom && HandBelief::scaled(frame);
    if (zooms)
        m_scale += std::log(frame.scaleFactor);
    const float wanted = std::copysign(std::max(0.0F, std::abs(m_scale) - kScaleRest), m_scale);
    const float zoomed = m_zoom.filter({wanted, 0, 0}, seconds).x();
    Motion motion;
    motion.fovFactor = std::exp(m_zoomed - zoomed);
    m_zoomed = zoomed;

    const bool moves = !zooms && HandBelief::moved(frame);
    const QVector3D way = m_travel.advance(moves ? frame.translation : QVector3D(), seconds);
    const float scale = Steering::kRadiansPerMillimetre * float(options.sensitivity);
    motion.yaw = (options.yawInverted ? -way.x() : way.x()) * scale;
    motion.pitch = (options.pitchInverted ? way.y() : -way.y()) * scale;
    return motion;
}
