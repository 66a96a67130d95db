#pragma once

// Reads the frames of a hand tracker one after another and says what each asks of the player. No
// device, no window, no clock but the frames' own: the same frames give the same actions. Owned by
// KLeap, called where that lives. docs/hands.md tells how the gestures are told apart.

#include "input/hands/FrameClock.h"
#include "input/hands/HandActions.h"
#include "input/hands/HandOptions.h"
#include "input/hands/HandPointer.h"
#include "input/hands/HandTracks.h"
#include "input/hands/MomentaryGestures.h"
#include "input/hands/Steering.h"
#include "input/hands/TrackingZone.h"
#include "input/hands/TwoHandMotion.h"

#include <optional>

class HandAnalysis
{
public:
    /// Seconds between two moves of the camera: each starts an animation, which must have time to
    /// run, or a fast tracker would hold the view still.
    static constexpr float kPace = 0.02F;

    /// Nothing for a frame that is to be left out, since it was seen already or is too old.
    std::optional<HandActions> update(const HandFrame &frame, const HandOptions &options);

    /// Seconds of the last frame that update() took.
    float seconds() const { return m_seconds; }

    /// Forgets all gestures under way.
    void reset();

private:
    void oneHand(const TrackedHand &tracked, const HandOptions &options, HandActions &actions);
    void point(const TrackedHand &tracked, const HandOptions &options, HandActions &actions);
    void steer(const TrackedHand &tracked, const HandOptions &options, HandActions &actions);
    void twoHands(const HandFrame &frame, const HandOptions &options, HandActions &actions);
    void letGo(HandActions &actions);
    void collect(float yaw, float pitch);
    void pace(HandActions &actions);

    FrameClock m_clock;
    float m_seconds = 0;
    HandTracks m_tracks;
    int m_primary = 0; // track of the hand that steers

    ClapGesture m_clap;
    HoldGesture m_hold;
    SwipeGesture m_swipe;
    CircleGesture m_circle;
    Steering m_steering;
    TwoHandMotion m_two;
    HandPointer m_pointer;
    TrackingZone m_zone;
    bool m_pushed = false;

    // Gathered until the camera's next move.
    float m_yaw = 0;
    float m_pitch = 0;
    float m_fovFactor = 1;
    float m_sincePaced = 0;
};
