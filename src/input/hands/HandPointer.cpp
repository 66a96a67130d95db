#include "input/hands/HandPointer.h"

#include <algorithm>
#include <cmath>

namespace {

// The plane before the user that stands for the window, millimetres from the tracker.
constexpr float kCentreHeight = 200;
constexpr float kHalfWidth = 100;
constexpr float kHalfHeight = 75;
// The depth runs over this much of the way to the screen, half of it behind the tracker's centre.
constexpr float kDepthRange = 120;

const Finger *pointingFinger(const Hand &hand)
{
    const Finger *best = nullptr;
    for (const Finger &finger : hand.fingers) {
        if (!finger.extended || finger.kind == FingerKind::Thumb)
            continue;
        if (finger.kind == FingerKind::Index)
            return &finger;
        if (!best || finger.tip.z() < best->tip.z())
            best = &finger;
    }
    return best;
}

/// Hertz at rest: 6 for no smoothing, down to 0.6 for the most.
float restCutoff(int interpolation)
{
    return 6 * std::pow(0.1F, float(std::clamp(interpolation, 0, 10)) / 10);
}

} // namespace

void HandPointer::update(const Hand &hand, const HandOptions &options, float seconds)
{
    const Finger *finger = pointingFinger(hand);
    if (!finger || options.window.isEmpty()) {
        reset();
        return;
    }
    if (m_value.w() == 0 || finger->kind != m_kind) {
        m_tip.reset();
        m_push.reset();
        m_kind = finger->kind;
    }
    m_tip.setRestCutoff(restCutoff(options.pointerInterpolation));
    const bool starts = m_value.w() == 0;
    const QVector3D tip = m_tip.filter(finger->tip, seconds);
    m_step = starts ? QVector3D() : tip - m_last;
    m_last = tip;

    const float speed = float(options.pointerSensibility);
    const float across = tip.x() / kHalfWidth * speed;
    const float up = (tip.y() - kCentreHeight) / kHalfHeight * speed;
    const float depth = 0.5F - tip.z() / kDepthRange;
    const auto width = float(options.window.width());
    const auto height = float(options.window.height());
    m_value = {std::clamp((1 + across) / 2, 0.0F, 1.0F) * width,
               std::clamp((1 - up) / 2, 0.0F, 1.0F) * height, std::clamp(depth, 0.0F, 1.0F), 1};
    m_push.update(m_value.z());
}
