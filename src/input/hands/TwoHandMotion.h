#pragma once

// Two hands at once: apart and together they zoom, side by side they turn the view. Owned by the
// analysis.

#include "input/hands/HandOptions.h"
#include "input/hands/Travel.h"

struct HandFrame;

class TwoHandMotion
{
public:
    struct Motion
    {
        float yaw = 0; ///< radians of this frame
        float pitch = 0;
        float fovFactor = 1;
    };

    Motion update(const HandFrame &frame, const HandOptions &options, float seconds);
    void reset();

private:
    Travel m_travel;
    OneEuroFilter m_zoom{2.0F, 1.0F};
    float m_scale = 0; ///< logarithm of how far the hands have come apart
    float m_zoomed = 0;
};
