#include "input/realsense/DepthGestures.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kHandLost = 0.3F; // seconds
constexpr float kCalibrationTime = 1.0F;
constexpr float kCalibrationReach = 0.03F; // picture widths
constexpr float kRest = 0.12F;             // share of the half picture about the middle
constexpr float kSeekSpan = 1.5F;          // timelines in the width of the picture
constexpr float kShortestPinch = 0.15F;    // seconds
constexpr float kMarkTime = 0.5F;          // a lasting gesture is told again after this
constexpr float kFovMeeting = 10;          // degrees
constexpr float kFovChange = 0.5F;
constexpr float kLargestVolumeDelay = 0.25F;

/// -1 to 1 over the picture, 0 in the middle.
float offset(float position, float centre)
{
    const float raw = std::clamp(2 * (position - centre), -1.0F, 1.0F);
    return std::copysign(std::max(0.0F, std::abs(raw) - kRest) / (1 - kRest), raw);
}

bool isUsable(const DepthFrame &frame)
{
    return std::isfinite(frame.position.x()) && std::isfinite(frame.position.y()) &&
           std::isfinite(frame.depth) && std::isfinite(frame.openness) &&
           std::abs(frame.position.x()) < 10 && std::abs(frame.position.y()) < 10;
}

} // namespace

void DepthGestures::start()
{
    stop();
    m_calibration = DepthCalibration::Calibrating;
}

void DepthGestures::stop()
{
    *this = {};
}

void DepthGestures::release()
{
    m_pinch = m_thumbUp = m_thumbDown = m_open = {};
    m_openness.reset();
    m_signBegins = m_pinchEnded = false;
    m_stepTime = 0;
    m_still = 0;
    m_fovSide.reset();
    m_filter.reset();
}

float DepthGestures::fovOf(float depth)
{
    return std::clamp(kNarrowest + kFarthestHand - depth, kNarrowest, kWidest);
}

std::optional<DepthActions> DepthGestures::update(const DepthFrame &frame, float progress,
                                                  float fov)
{
    const std::optional<float> step = m_clock.advance(frame.timestamp);
    if (!step || m_calibration == DepthCalibration::Idle)
        return {};
    const float seconds = *step;
    if (seconds == 0)
        release();
    m_sinceSign += seconds;

    DepthActions actions;
    const bool seen = frame.handSeen && isUsable(frame);
    m_unseen = seen ? 0 : m_unseen + seconds;
    if (m_unseen > kHandLost)
        release();
    if (seen)
        track(frame, seconds);
    takeEvents(frame);
    if (seen)
        calibrate(frame, seconds);

    if (m_signBegins && m_sinceSign >= kSignPause) {
        m_sinceSign = 0;
        actions.playPause = true;
        actions.fired.append("v_sign");
    }
    m_signBegins = false;
    seek(progress, seconds, actions);
    volume(m_thumbUp, 1, "thumb_up", seconds, actions);
    volume(m_thumbDown, -1, "thumb_down", seconds, actions);
    if (seen)
        moveCamera(frame, fov, seconds, actions);
    return actions;
}

void DepthGestures::track(const DepthFrame &frame, float seconds)
{
    m_position =
        m_filter.filter({float(frame.position.x()), float(frame.position.y()), 0}, seconds);
}

void DepthGestures::takeEvents(const DepthFrame &frame)
{
    for (const DepthGesture &gesture : frame.gestures) {
        const bool ends = gesture.phase == DepthGesture::Ends;
        if (gesture.name == "v_sign") {
            m_signBegins = m_signBegins || gesture.phase == DepthGesture::Begins;
            continue;
        }
        Held *held = gesture.name == "full_pinch"   ? &m_pinch
                     : gesture.name == "thumb_up"   ? &m_thumbUp
                     : gesture.name == "thumb_down" ? &m_thumbDown
                                                    : nullptr;
        if (!held)
            continue;
        if (ends && held == &m_pinch)
            m_pinchEnded = m_pinch.on;
        else if (ends)
            *held = {};
        else if (!held->on)
            *held = {true, 0, kMarkTime};
    }
}

void DepthGestures::calibrate(const DepthFrame &frame, float seconds)
{
    if (m_calibration != DepthCalibration::Calibrating)
        return;
    const bool still =
        frame.openness > 0.5F && (m_position - m_centre).length() < kCalibrationReach;
    m_still = still ? m_still + seconds : 0;
    if (!still)
        m_centre = m_position; // where it may come to rest
    if (m_still < kCalibrationTime)
        return;
    m_centre = m_position;
    m_calibration = DepthCalibration::Calibrated;
}

void DepthGestures::seek(float progress, float seconds, DepthActions &actions)
{
    if (!m_pinch.on)
        return;
    if (m_pinch.time == 0) {
        m_pinchX = m_position.x();
        m_pinchStart = m_progression = std::clamp(progress, 0.0F, 1.0F);
    }
    // Begun at once, or two frames with one timestamp would begin it twice.
    m_pinch.time += std::max(seconds, 1e-6F);
    m_pinch.sinceFired += seconds;
    if (m_pinch.sinceFired >= kMarkTime) {
        m_pinch.sinceFired = 0;
        actions.fired.append("pinch");
    }
    m_progression = std::clamp(m_pinchStart + (m_position.x() - m_pinchX) * kSeekSpan, 0.0F, 1.0F);
    actions.seekProgression = m_progression;
    actions.seeking = !m_pinchEnded;
    if (!m_pinchEnded)
        return;
    actions.seekEnds =
        m_pinch.time >= kShortestPinch && m_progression >= kLeastSeek && m_progression < kMostSeek;
    m_pinch = {};
    m_pinchEnded = false;
}

void DepthGestures::volume(Held &thumb, int step, const char *id, float seconds,
                           DepthActions &actions)
{
    if (!thumb.on)
        return;
    const bool first = thumb.time == 0;
    thumb.time += std::max(seconds, 1e-6F);
    thumb.sinceFired += std::min(seconds, kLargestVolumeDelay);
    if (!first && (thumb.time < kFirstRepeat || thumb.sinceFired < kNextRepeat))
        return;
    thumb.sinceFired = 0;
    actions.volumeSteps += step;
    actions.fired.append(id);
}

void DepthGestures::moveCamera(const DepthFrame &frame, float fov, float seconds,
                               DepthActions &actions)
{
    const bool open = m_openness.update(frame.openness) && !m_pinch.on && !m_thumbUp.on &&
                      !m_thumbDown.on && m_calibration == DepthCalibration::Calibrated;
    if (!open) {
        m_open = {};
        m_stepTime = 0;
        m_fovSide.reset();
        return;
    }
    if (!m_open.on)
        m_open = {true, 0, kMarkTime};
    actions.moving = true;
    m_open.sinceFired += seconds;
    if (m_open.sinceFired >= kMarkTime) {
        m_open.sinceFired = 0;
        actions.fired.append("move_camera");
    }
    m_stepTime += seconds;
    while (m_stepTime >= kStepTime) {
        m_stepTime -= kStepTime;
        actions.yaw += kStep * offset(m_position.x(), m_centre.x());
        actions.pitch += kStep * offset(m_position.y(), m_centre.y());
    }

    // A hand that comes in at another depth would make the view leap: it takes hold of the field of
    // view only where the two meet.
    const float wanted = fovOf(frame.depth);
    const float side = wanted - std::clamp(fov, kNarrowest, kWidest);
    if (!m_fovSide)
        m_fovSide = side;
    if (*m_fovSide != 0 && (std::abs(side) < kFovMeeting || side * *m_fovSide < 0))
        m_fovSide = 0.0F;
    if (*m_fovSide == 0 && std::abs(wanted - fov) > kFovChange)
        actions.fov = wanted;
}
