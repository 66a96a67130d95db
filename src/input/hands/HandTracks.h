#pragma once

// Follows hands from frame to frame: keeps each one's posture through changes of its id and short
// losses of sight. Owned by the analysis.

#include "input/hands/HandPosture.h"

#include <vector>

struct TrackedHand
{
    Hand hand;
    PostureReader posture;
    int track = 0;    ///< stays with the hand, unlike its id
    float unseen = 0; ///< seconds since it was seen; 0 when it is in this frame
};

class HandTracks
{
public:
    /// Seconds for which a hand may be out of sight and still be the same hand.
    static constexpr float kCoasting = 0.12F;

    void update(const HandFrame &frame, float seconds);
    void reset() { m_hands.clear(); }

    /// In sight or lost a moment ago.
    const std::vector<TrackedHand> &hands() const { return m_hands; }

private:
    TrackedHand *match(const Hand &hand, const std::vector<int> &taken);

    std::vector<TrackedHand> m_hands;
    int m_nextTrack = 1;
};
