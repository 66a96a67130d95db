#include "input/hands/HandGenerator.h"

#include <QMatrix4x4>

#include <cmath>

namespace test {

namespace {

constexpr float kDegrees = 57.29578F;

/// From the fingers' root and tip in a level hand whose palm is the origin.
struct FingerShape
{
    FingerKind kind;
    QVector3D base, straight, bent;
};

const FingerShape kFingers[] = {
    {FingerKind::Thumb, {-32, 0, 10}, {-72, 0, -22}, {-22, -18, -18}},
    {FingerKind::Index, {-24, 4, -38}, {-30, 4, -112}, {-20, -34, -30}},
    {FingerKind::Middle, {-4, 5, -42}, {-4, 5, -124}, {-4, -36, -30}},
    {FingerKind::Ring, {15, 4, -38}, {20, 4, -114}, {14, -34, -28}},
    {FingerKind::Pinky, {33, 0, -32}, {46, 0, -90}, {30, -30, -24}},
};

bool isStraight(Shape shape, FingerKind kind)
{
    switch (shape) {
    case Shape::Open:
        return true;
    case Shape::Fist:
        return false;
    case Shape::Pinch:
        return kind != FingerKind::Thumb && kind != FingerKind::Index;
    case Shape::Pointing:
        return kind == FingerKind::Index;
    }
    return false;
}

Hand build(int id, Shape shape, const QVector3D &palm, const QMatrix4x4 &turn)
{
    Hand hand;
    hand.id = id;
    hand.palm = palm;
    hand.normal = turn.mapVector({0, -1, 0});
    hand.direction = turn.mapVector({0, 0, -1});
    for (const FingerShape &finger : kFingers) {
        const bool straight = isStraight(shape, finger.kind);
        QVector3D tip = straight ? finger.straight : finger.bent;
        if (shape == Shape::Pinch && finger.kind == FingerKind::Thumb)
            tip = {-36, -26, -72};
        if (shape == Shape::Pinch && finger.kind == FingerKind::Index)
            tip = {-34, -22, -78};
        hand.fingers.append({finger.kind, straight, palm + turn.mapVector(finger.base),
                             palm + turn.mapVector(tip)});
    }
    return hand;
}

} // namespace

Hand makeHand(int id, Shape shape, const QVector3D &palm, const Attitude &attitude)
{
    QMatrix4x4 turn;
    turn.rotate(-attitude.roll * kDegrees, 0, 0, 1);
    turn.rotate(attitude.tilt * kDegrees, 1, 0, 0);
    return build(id, shape, palm, turn);
}

Hand stopHand(int id, const QVector3D &palm)
{
    return makeHand(id, Shape::Open, palm, {1.45F, 0});
}

Recording::Recording(double framesPerSecond, const Trouble &trouble, unsigned seed)
    : m_rate(framesPerSecond)
    , m_trouble(trouble)
    , m_random(seed)
{}

Recording &Recording::play(double seconds, const std::function<std::vector<Hand>(double)> &actor)
{
    for (double t = 0; t < seconds; t += 1 / m_rate) {
        append(actor(t));
        m_time += 1 / m_rate;
    }
    return *this;
}

Recording &Recording::pause(double seconds)
{
    return play(seconds, [](double) { return std::vector<Hand>(); });
}

void Recording::append(std::vector<Hand> hands)
{
    std::normal_distribution<float> tremble(0, m_trouble.noise);
    std::uniform_real_distribution<float> chance(0, 1);
    HandFrame frame;
    frame.timestamp = qint64(m_time * 1e6);
    for (Hand &hand : hands) {
        if (chance(m_random) < m_trouble.lostHands)
            continue;
        const QVector3D noise(tremble(m_random), tremble(m_random), tremble(m_random));
        hand.palm += noise;
        for (Finger &finger : hand.fingers) {
            finger.base += noise;
            finger.tip += noise + QVector3D(tremble(m_random), tremble(m_random), 0);
        }
        hand.normal = (hand.normal + QVector3D(0, 0, tremble(m_random) / 100)).normalized();
        if (m_trouble.jumpingIds && chance(m_random) < 0.1F)
            hand.id += int(m_random() % 1000) * 10;
        frame.hands.push_back(hand);
    }

    if (!m_frames.empty()) {
        const std::vector<Hand> &before = m_frames.back().hands;
        for (std::size_t i = 0; i < frame.hands.size() && frame.hands.size() == before.size(); ++i)
            frame.hands[i].translation = frame.hands[i].palm - before[i].palm;
        if (frame.hands.size() == 2 && before.size() == 2) {
            frame.translation = (frame.hands[0].translation + frame.hands[1].translation) / 2;
            const auto gap = [](const std::vector<Hand> &h) {
                return (h[0].palm - h[1].palm).length();
            };
            frame.scaleFactor = gap(frame.hands) / gap(before);
            const float speed = std::abs(gap(frame.hands) - gap(before)) * float(m_rate);
            frame.scaleProbability = speed > 60 ? 0.995F : 0.5F;
        }
    }
    for (Hand &hand : frame.hands)
        hand.translationProbability = hand.rotationProbability = 0.9F;
    frame.translationProbability = frame.rotationProbability = 0.99F;
    m_frames.push_back(std::move(frame));
}

} // namespace test
