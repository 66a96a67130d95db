#include "input/leap/LeapTracker.h"

namespace {

QVector3D vector(const Leap::Vector &v)
{
    return {v.x, v.y, v.z};
}

Finger finger(const Leap::Finger &from)
{
    Finger to;
    to.kind = FingerKind(from.type());
    to.extended = from.isExtended();
    to.tip = vector(from.tipPosition());
    to.base = to.tip - vector(from.direction()) * from.length();
    return to;
}

Hand hand(const Leap::Hand &from, const Leap::Frame &previous)
{
    Hand to;
    to.id = from.id();
    to.palm = vector(from.palmPosition());
    to.normal = vector(from.palmNormal());
    to.direction = vector(from.direction());
    to.translation = vector(from.translation(previous));
    to.translationProbability = from.translationProbability(previous);
    to.rotationProbability = from.rotationProbability(previous);
    const Leap::FingerList fingers = from.fingers();
    for (int i = 0; i < fingers.count(); ++i)
        to.fingers.append(finger(fingers[i]));
    return to;
}

} // namespace

LeapTracker::~LeapTracker()
{
    m_controller.removeListener(m_listener);
}

void LeapTracker::open()
{
    m_controller.addListener(m_listener);
}

HandFrame LeapTracker::frame()
{
    m_listener.frameTaken();
    const Leap::Frame from = m_controller.frame();
    HandFrame to;
    to.timestamp = from.timestamp();
    to.translation = vector(from.translation(m_previous));
    to.translationProbability = from.translationProbability(m_previous);
    to.rotationProbability = from.rotationProbability(m_previous);
    to.scaleProbability = from.scaleProbability(m_previous);
    to.scaleFactor = from.scaleFactor(m_previous);
    const Leap::HandList hands = from.hands();
    for (int i = 0; i < hands.count(); ++i)
        to.hands.push_back(hand(hands[i], m_previous));
    m_previous = from;
    return to;
}
