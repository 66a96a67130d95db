#pragma once

// The gestures that are done at one moment, each a small state machine over the frames: told apart
// by posture, way and speed, fired once, and armed again only when the hand has clearly ended the
// gesture. Owned by the analysis. Lengths are millimetres, times seconds.

#include "input/hands/HandPosture.h"
#include "input/hands/Travel.h"

#include <optional>
#include <vector>

struct TrackedHand;

/// Two palms that meet, with some speed. Trackers lose one hand behind the other just then.
class ClapGesture
{
public:
    bool update(const std::vector<TrackedHand> &hands, float seconds);
    void reset() { *this = {}; }

private:
    bool m_armed = false;
    bool m_facing = false;
    float m_distance = 0;
    float m_closing = 0; // millimetres a second
    float m_unseen = 0;  // seconds since both hands were seen
    float m_rest = 0;    // until the next may come
};

/// The palm to the screen, fingers up, still.
class HoldGesture
{
public:
    bool update(const Hand &hand, HandPosture posture, float seconds);
    void reset() { *this = {}; }

private:
    TwoThresholds m_facing{0.85F, 0.7F};
    OneEuroFilter m_path{2.0F, 0.02F};
    float m_still = 0;
    bool m_done = false;
};

/// A quick sideways sweep of a hand on edge. The way back is part of it.
class SwipeGesture
{
public:
    /// 1 to the right, -1 to the left, 0 for none.
    int update(const Hand &hand, HandPosture posture, float seconds);
    void reset() { *this = {}; }

private:
    TwoThresholds m_onEdge{0.85F, 0.7F};
    Travel m_travel;
    float m_way = 0; // with sign
    float m_fastest = 0;
    float m_rest = 0;
    bool m_done = false;
};

/// Circles drawn in the air with a finger, as one turns a wheel.
class CircleGesture
{
public:
    /// 1 for each whole circle clockwise, -1 for the other way, 0 for none.
    int update(const Finger *index, HandPosture posture, float seconds);
    void reset() { *this = {}; }

private:
    void start(const QVector3D &tip);

    std::optional<QVector3D> m_corner; // last point of the way as a chain of short lines
    std::optional<float> m_heading;
    float m_turned = 0; // radians, positive anticlockwise
    float m_most = 0;   // of m_turned, without sign
    float m_length = 0;
    float m_idle = 0;
};
