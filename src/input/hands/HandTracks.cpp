#include "input/hands/HandTracks.h"

#include <algorithm>

namespace {

/// Millimetres that a palm can move between two frames, for a hand with its old and with a new id.
constexpr float kSameIdReach = 250;
constexpr float kNewIdReach = 80;

} // namespace

TrackedHand *HandTracks::match(const Hand &hand, const std::vector<int> &taken)
{
    TrackedHand *best = nullptr;
    float bestDistance = 0;
    for (TrackedHand &candidate : m_hands) {
        if (std::find(taken.begin(), taken.end(), candidate.track) != taken.end())
            continue;
        const float distance = (candidate.hand.palm - hand.palm).length();
        const bool sameId = candidate.hand.id == hand.id;
        if (distance > (sameId ? kSameIdReach : kNewIdReach))
            continue;
        if (sameId)
            return &candidate;
        if (!best || distance < bestDistance) {
            best = &candidate;
            bestDistance = distance;
        }
    }
    return best;
}

void HandTracks::update(const HandFrame &frame, float seconds)
{
    for (TrackedHand &tracked : m_hands)
        tracked.unseen += seconds;
    std::vector<int> taken;
    for (const Hand &hand : frame.hands) {
        TrackedHand *tracked = match(hand, taken);
        if (!tracked) {
            m_hands.push_back({hand, {}, m_nextTrack, 0});
            m_nextTrack = m_nextTrack % 1000000 + 1;
            tracked = &m_hands.back();
        }
        tracked->hand = hand;
        tracked->unseen = 0;
        tracked->posture.update(hand, seconds);
        taken.push_back(tracked->track);
    }
    m_hands.erase(std::remove_if(m_hands.begin(), m_hands.end(),
                                 [](const TrackedHand &t) { return t.unseen > kCoasting; }),
                  m_hands.end());
}
