#include "input/hands/HandPosture.h"

HandPosture PostureReader::update(const Hand &hand, float seconds)
{
    return m_posture.update(judge(hand), seconds);
}

void PostureReader::reset()
{
    m_posture.reset(HandPosture::Other);
    m_pinched.reset();
}

HandPosture PostureReader::judge(const Hand &hand)
{
    const Finger *thumb = Hands::finger(hand, FingerKind::Thumb);
    const Finger *index = Hands::finger(hand, FingerKind::Index);
    int others = 0;
    for (const FingerKind kind : {FingerKind::Middle, FingerKind::Ring, FingerKind::Pinky}) {
        const Finger *finger = Hands::finger(hand, kind);
        others += finger && finger->extended ? 1 : 0;
    }
    // In a fist thumb and index lie together too.
    if (thumb && index && m_pinched.update(-(thumb->tip - index->tip).length()) && others >= 2)
        return HandPosture::Pinch;
    const bool pointing = index && index->extended;
    if (pointing && others >= 2)
        return HandPosture::Open;
    if (pointing && others == 0)
        return HandPosture::Pointing;
    if (!pointing && others == 0)
        return HandPosture::Fist;
    return HandPosture::Other;
}
