#pragma once

// What a hand tracker sees at one moment. A plain value: trackers fill it on whatever thread they
// like, the gestures read it where KLeap lives, and tests make it up.
//
// Lengths are millimetres from the tracker's centre in a right-handed frame: x to the right, y away
// from the device (up, when it lies on a desk), z towards the user.

#include <QMetaType>
#include <QVector3D>
#include <QVector>

#include <vector>

enum class FingerKind { Thumb, Index, Middle, Ring, Pinky };

struct Finger
{
    FingerKind kind = FingerKind::Index;
    bool extended = false;
    QVector3D base; ///< where the finger begins
    QVector3D tip;
};

using FingerList = QVector<Finger>;
Q_DECLARE_METATYPE(FingerList)

struct Hand
{
    int id = 0; ///< stays with a hand while it is in sight; a hand lost and found has a new one
    QVector3D palm;
    QVector3D normal{0, -1, 0};    ///< out of the palm, of length 1
    QVector3D direction{0, 0, -1}; ///< from the palm to the fingers, of length 1
    /// Since the frame before, and how likely the hand really moved or turned, 0 to 1.
    QVector3D translation;
    float translationProbability = 0;
    float rotationProbability = 0;
    FingerList fingers;
};

struct HandFrame
{
    qint64 timestamp = 0; ///< microseconds, of the tracker's clock
    std::vector<Hand> hands;
    /// Of everything in sight since the frame before.
    QVector3D translation;
    float scaleFactor = 1; ///< above 1 when things move apart
    float translationProbability = 0;
    float rotationProbability = 0;
    float scaleProbability = 0;
};

namespace Hands {

/// Null when the hand does not show that finger.
const Finger *finger(const Hand &hand, FingerKind kind);

/// The frame without what no gesture can use: hands and fingers whose numbers are not finite, more
/// hands than two people have, motions that are no numbers.
HandFrame usable(HandFrame frame);

/// The frame of a tracker worn on the head and looking forward, turned so that it reads like that
/// of one on the desk: y up, z towards the user.
HandFrame fromHead(HandFrame frame);

FingerList extendedFingers(const HandFrame &frame);

} // namespace Hands
