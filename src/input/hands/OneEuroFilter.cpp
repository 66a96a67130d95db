#include "input/hands/OneEuroFilter.h"

#include "render/CameraMath.h"

namespace {

constexpr float kSpeedCutoff = 4.0F; // hertz

/// Share of a new measurement in a first-order low pass.
float share(float cutoff, float seconds)
{
    const float r = CameraMath::kTwoPi * cutoff * seconds;
    return r / (r + 1);
}

} // namespace

QVector3D OneEuroFilter::filter(const QVector3D &measured, float seconds)
{
    if (!m_value || seconds <= 0) {
        m_value = measured;
        m_measured = measured;
        m_speed = {};
        return measured;
    }
    const QVector3D speed = (measured - m_measured) / seconds;
    m_measured = measured;
    m_speed += (speed - m_speed) * share(kSpeedCutoff, seconds);
    *m_value += (measured - *m_value) * share(m_restCutoff + m_beta * m_speed.length(), seconds);
    return *m_value;
}
