#pragma once

// Turns the view with one hand: an open hand steers it, a pinch takes hold of the picture and
// pulls. Owned by the analysis.

#include "input/hands/HandOptions.h"
#include "input/hands/HandPosture.h"
#include "input/hands/Travel.h"

#include <optional>

class Steering
{
public:
    struct Motion
    {
        float yaw = 0; ///< radians of this frame, positive to the right and down
        float pitch = 0;
        std::optional<float> roll; ///< radians clockwise from the horizon
    };

    /// Angle between the palm's normal and the way to the screen at which a hand is level, radians:
    /// a quarter turn and 0.08 to either side.
    static constexpr float kFlatLow = 1.4908F;
    static constexpr float kFlatHigh = 1.6508F;

    /// Radians a millimetre of hand turns at a sensitivity of 1.
    static constexpr float kRadiansPerMillimetre = 0.04F;

    /// Radians a second at which a hand tilted to @p tilt pitches the view at the usual
    /// sensitivity: 0 while it is level, then gently more, so that a hand held carelessly rests.
    static float tiltRate(float tilt);

    Motion update(const Hand &hand, HandPosture posture, const HandOptions &options, float seconds);
    void reset();

    /// A finger that pushes takes hold of the picture as a pinch does.
    Motion pull(const QVector3D &step, const HandOptions &options, float seconds);

private:
    Motion steer(const Hand &hand, const HandOptions &options, float seconds);

    HandPosture m_posture = HandPosture::Other;
    Travel m_travel;
    OneEuroFilter m_normal{2.0F, 1.0F};
    TwoThresholds m_level{0.6F, 0.5F}; // how far the palm looks down
};
