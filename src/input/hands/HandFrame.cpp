#include "input/hands/HandFrame.h"

#include <algorithm>
#include <cmath>

namespace Hands {

namespace {

constexpr std::size_t kMostHands = 4;
constexpr int kMostFingers = 5;
// Farther than any tracker sees; keeps squares of coordinates inside the range of a float.
constexpr float kFarthest = 1e5F;

bool isUsable(const QVector3D &v)
{
    return std::abs(v.x()) < kFarthest && std::abs(v.y()) < kFarthest &&
           std::abs(v.z()) < kFarthest;
}

/// False for a vector that has no direction.
bool normalise(QVector3D &v)
{
    if (!isUsable(v) || v.lengthSquared() < 1e-6F)
        return false;
    v.normalize();
    return true;
}

float probability(float value)
{
    return std::isfinite(value) ? std::clamp(value, 0.0F, 1.0F) : 0.0F;
}

bool makeUsable(Hand &hand)
{
    if (!isUsable(hand.palm) || !normalise(hand.normal) || !normalise(hand.direction))
        return false;
    if (!isUsable(hand.translation))
        hand.translation = {};
    hand.translationProbability = probability(hand.translationProbability);
    hand.rotationProbability = probability(hand.rotationProbability);
    const auto broken = [](const Finger &f) { return !isUsable(f.base) || !isUsable(f.tip); };
    hand.fingers.erase(std::remove_if(hand.fingers.begin(), hand.fingers.end(), broken),
                       hand.fingers.end());
    if (hand.fingers.size() > kMostFingers)
        hand.fingers.resize(kMostFingers);
    return true;
}

QVector3D turned(const QVector3D &v)
{
    return {-v.x(), -v.z(), -v.y()};
}

} // namespace

const Finger *finger(const Hand &hand, FingerKind kind)
{
    for (const Finger &candidate : hand.fingers) {
        if (candidate.kind == kind)
            return &candidate;
    }
    return nullptr;
}

HandFrame usable(HandFrame frame)
{
    frame.hands.erase(std::remove_if(frame.hands.begin(), frame.hands.end(),
                                     [](Hand &hand) { return !makeUsable(hand); }),
                      frame.hands.end());
    if (frame.hands.size() > kMostHands)
        frame.hands.resize(kMostHands);
    if (!isUsable(frame.translation))
        frame.translation = {};
    if (!(frame.scaleFactor > 0.1F && frame.scaleFactor < 10.0F))
        frame.scaleFactor = 1;
    frame.translationProbability = probability(frame.translationProbability);
    frame.rotationProbability = probability(frame.rotationProbability);
    frame.scaleProbability = probability(frame.scaleProbability);
    return frame;
}

HandFrame fromHead(HandFrame frame)
{
    frame.translation = turned(frame.translation);
    for (Hand &hand : frame.hands) {
        for (QVector3D *v : {&hand.palm, &hand.normal, &hand.direction, &hand.translation})
            *v = turned(*v);
        for (Finger &f : hand.fingers) {
            f.base = turned(f.base);
            f.tip = turned(f.tip);
        }
    }
    return frame;
}

FingerList extendedFingers(const HandFrame &frame)
{
    FingerList list;
    for (const Hand &hand : frame.hands) {
        for (const Finger &f : hand.fingers) {
            if (f.extended)
                list.append(f);
        }
    }
    return list;
}

} // namespace Hands
