#include "input/hands/HandAnalysis.h"

#include <cmath>
#include <utility>

namespace {

// Less than this in a frame is the end of a motion, not a motion.
constexpr float kVisibleTurn = 1e-4F; // radians

const TrackedHand *find(const std::vector<const TrackedHand *> &hands, int track)
{
    for (const TrackedHand *tracked : hands) {
        if (tracked->track == track)
            return tracked;
    }
    return nullptr;
}

} // namespace

void HandAnalysis::reset()
{
    const FrameClock clock = m_clock;
    *this = {};
    m_clock = clock;
}

std::optional<HandActions> HandAnalysis::update(const HandFrame &raw, const HandOptions &options)
{
    const std::optional<float> seconds = m_clock.advance(raw.timestamp);
    if (!seconds)
        return {};
    HandActions actions;
    if (*seconds == 0) {
        letGo(actions);
        reset();
    }
    m_seconds = *seconds;

    const bool onHead = options.mode == HandCameraMode::Head;
    HandFrame frame = Hands::usable(raw);
    if (onHead)
        frame = Hands::fromHead(std::move(frame));
    m_tracks.update(frame, m_seconds);
    actions.handsSeen = !frame.hands.empty();

    // A fist rests: the other hand may do as if it were alone.
    std::vector<const TrackedHand *> active;
    const TrackedHand *fist = nullptr;
    for (const TrackedHand &tracked : m_tracks.hands()) {
        if (tracked.posture.value() == HandPosture::Fist)
            fist = &tracked;
        else
            active.push_back(&tracked);
    }
    if (m_clap.update(m_tracks.hands(), m_seconds)) {
        actions.menuToggled = true;
        actions.seen.add(HandGesture::Clap);
    }
    if (active.size() == 1 || (active.size() > 1 && options.mode == HandCameraMode::Finger)) {
        const TrackedHand *primary = find(active, m_primary);
        oneHand(primary ? *primary : *active.front(), options, actions);
    } else {
        letGo(actions);
        if (active.size() > 1)
            twoHands(frame, options, actions);
        else if (fist)
            actions.seen.add(HandGesture::Fist);
    }
    if (active.size() < 2)
        m_two.reset();
    const TrackedHand *judged = find(active, m_primary);
    if (!judged)
        judged = fist;
    if (judged)
        actions.outZone = m_zone.update(judged->hand.palm, onHead);
    else
        m_zone.reset();
    pace(actions);
    return actions;
}

void HandAnalysis::oneHand(const TrackedHand &tracked, const HandOptions &options,
                           HandActions &actions)
{
    if (tracked.track != m_primary) {
        letGo(actions);
        m_primary = tracked.track;
    }
    if (tracked.unseen > 0) {
        actions.pointer = m_pointer.value();
        return; // it will be back, or its track ends
    }
    if (options.mode == HandCameraMode::Finger || options.menu)
        point(tracked, options, actions);
    else if (std::exchange(m_pushed, false))
        actions.released = true;
    const HandPosture posture = tracked.posture.value();
    if (options.playPause && m_hold.update(tracked.hand, posture, m_seconds)) {
        actions.playPause = true;
        actions.seen.add(HandGesture::Hold);
    }
    const int circle =
        m_circle.update(Hands::finger(tracked.hand, FingerKind::Index), posture, m_seconds);
    if (options.seek && circle != 0 && !m_pushed && !options.menu) {
        actions.seekSteps = circle;
        actions.seen.add(HandGesture::Seek);
    }
    actions.projectionStep = m_swipe.update(tracked.hand, posture, m_seconds);
    if (actions.projectionStep != 0)
        actions.seen.add(HandGesture::Swipe);
    if (options.mode != HandCameraMode::Finger && !options.menu)
        steer(tracked, options, actions);
}

void HandAnalysis::point(const TrackedHand &tracked, const HandOptions &options,
                         HandActions &actions)
{
    const bool wasPushed = m_pushed;
    m_pointer.update(tracked.hand, options, m_seconds);
    m_pushed = m_pointer.pushes();
    actions.pointer = m_pointer.value();
    actions.pressed = m_pushed && !wasPushed;
    actions.released = !m_pushed && wasPushed;
    if (actions.pressed)
        m_steering.reset();
    if (!m_pushed || options.menu)
        return;
    const Steering::Motion motion = m_steering.pull(m_pointer.step(), options, m_seconds);
    collect(motion.yaw, motion.pitch);
    if (std::abs(motion.yaw) + std::abs(motion.pitch) > kVisibleTurn)
        actions.seen.add(HandGesture::Finger);
}

void HandAnalysis::steer(const TrackedHand &tracked, const HandOptions &options,
                         HandActions &actions)
{
    const HandPosture posture = tracked.posture.value();
    const Steering::Motion motion = m_steering.update(tracked.hand, posture, options, m_seconds);
    collect(motion.yaw, motion.pitch);
    actions.roll = motion.roll;
    if (std::abs(motion.yaw) + std::abs(motion.pitch) > kVisibleTurn)
        actions.seen.add(posture == HandPosture::Pinch ? HandGesture::Pinch : HandGesture::Move);
    if (motion.roll.value_or(0) != 0)
        actions.seen.add(HandGesture::Turn);
}

void HandAnalysis::twoHands(const HandFrame &frame, const HandOptions &options,
                            HandActions &actions)
{
    if (options.menu || frame.hands.size() < 2)
        return;
    const TwoHandMotion::Motion motion = m_two.update(frame, options, m_seconds);
    collect(motion.yaw, motion.pitch);
    m_fovFactor *= motion.fovFactor;
    if (std::abs(motion.fovFactor - 1) > kVisibleTurn)
        actions.seen.add(HandGesture::Zoom);
}

void HandAnalysis::letGo(HandActions &actions)
{
    actions.released = actions.released || m_pushed;
    m_pushed = false;
    m_primary = 0;
    m_hold.reset();
    m_swipe.reset();
    m_circle.reset();
    m_steering.reset();
    m_pointer.reset();
}

void HandAnalysis::collect(float yaw, float pitch)
{
    m_yaw += yaw;
    m_pitch += pitch;
}

void HandAnalysis::pace(HandActions &actions)
{
    m_sincePaced += m_seconds;
    if (m_sincePaced < kPace)
        return;
    m_sincePaced = 0;
    actions.cameraMoves = true;
    actions.yaw = std::exchange(m_yaw, 0.0F);
    actions.pitch = std::exchange(m_pitch, 0.0F);
    actions.fovFactor = std::exchange(m_fovFactor, 1.0F);
}
