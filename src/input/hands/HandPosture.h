#pragma once

// How a hand is held. Judged anew for each frame and believed once it has stayed, since trackers
// lose and find fingers all the time. A value owned by the analysis.

#include "input/hands/HandFrame.h"
#include "input/hands/Settled.h"

enum class HandPosture {
    Other,
    Open,    ///< all fingers stretched
    Fist,    ///< none but perhaps the thumb
    Pinch,   ///< thumb and index together, the others stretched
    Pointing ///< the index alone, the thumb as it likes
};

class PostureReader
{
public:
    static constexpr float kSettle = 0.08F; // seconds

    HandPosture update(const Hand &hand, float seconds);
    HandPosture value() const { return m_posture.value(); }
    void reset();

private:
    HandPosture judge(const Hand &hand);

    Settled<HandPosture> m_posture{HandPosture::Other, kSettle};
    TwoThresholds m_pinched{-28, -45}; // of minus the millimetres from the thumb to the index
};
