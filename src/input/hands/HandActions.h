#pragma once

// What one frame of hands asks of the player. Plain values; KLeap carries them out.

#include <QVector4D>

#include <optional>

/// The numbers are those of the tutorial's pages.
enum class HandGesture {
    Move = 0,
    Seek = 1,
    Pinch = 2,
    Zoom = 3,
    Clap = 4,
    Hold = 5,
    Turn = 6,
    Swipe = 7,
    Finger = 10,
    Fist = 20
};

/// Gestures under way or done in a frame.
class HandGestures
{
public:
    void add(HandGesture gesture) { m_bits |= 1U << unsigned(gesture); }
    bool has(HandGesture gesture) const { return (m_bits >> unsigned(gesture)) & 1U; }

private:
    unsigned m_bits = 0;
};

/// Edges of the tracking zone that the hand is leaving, as bits.
namespace HandZone {
enum Edge { Left = 1, Right = 2, Bottom = 4, Top = 8 };
}

struct HandActions
{
    /// The camera may move now. Between two such frames motion is only gathered.
    bool cameraMoves = false;
    /// Radians to turn the view by, positive to the right and down.
    float yaw = 0;
    float pitch = 0;
    /// Radians clockwise from the roll that the view had before the hand came.
    std::optional<float> roll;
    float fovFactor = 1;
    int seekSteps = 0; ///< negative backwards
    int projectionStep = 0;
    bool playPause = false;
    bool menuToggled = false;
    /// x and y in window pixels, z the depth from 0 to 1, w 1 while it is shown.
    QVector4D pointer;
    bool pressed = false; ///< the finger pushed or let go in this frame
    bool released = false;
    bool handsSeen = false;
    int outZone = 0; ///< HandZone::Edge bits
    HandGestures seen;
};
