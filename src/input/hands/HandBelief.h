#pragma once

// How likely a tracker must think a motion before it moves anything. Plain functions.

#include "input/hands/HandFrame.h"

namespace HandBelief {

constexpr float kHand = 0.7F;
constexpr float kFrameMotion = 0.98F;
constexpr float kFrameScale = 0.99F;

inline bool moved(const Hand &hand)
{
    return hand.translationProbability > kHand && hand.rotationProbability > kHand;
}

/// Everything in sight moved together.
inline bool moved(const HandFrame &frame)
{
    return frame.translationProbability > kFrameMotion && frame.rotationProbability > kFrameMotion;
}

/// The things in sight moved apart or together.
inline bool scaled(const HandFrame &frame)
{
    return frame.scaleProbability > kFrameScale;
}

} // namespace HandBelief
