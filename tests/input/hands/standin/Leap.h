#pragma once

// Stands in for the header of the Leap Motion SDK, which is closed, with just the operations that
// the player calls. Every answer comes from a HandFrame that a test shows, see DeviceStandIn.h.

#include "input/hands/HandFrame.h"

#include <memory>

namespace Leap {

struct Vector
{
    float x, y, z;
};

class Frame;

class Pointable
{
public:
    explicit Pointable(const ::Finger &finger)
        : m_finger(finger)
    {}
    Vector tipPosition() const { return {m_finger.tip.x(), m_finger.tip.y(), m_finger.tip.z()}; }
    Vector direction() const
    {
        const QVector3D way = (m_finger.tip - m_finger.base).normalized();
        return {way.x(), way.y(), way.z()};
    }
    float length() const { return (m_finger.tip - m_finger.base).length(); }
    bool isExtended() const { return m_finger.extended; }

protected:
    ::Finger m_finger;
};

class Finger : public Pointable
{
public:
    using Pointable::Pointable;
    int type() const { return int(m_finger.kind); }
};

class FingerList
{
public:
    explicit FingerList(const ::FingerList &fingers)
        : m_fingers(fingers)
    {}
    int count() const { return m_fingers.size(); }
    Finger operator[](int i) const { return Finger(m_fingers[i]); }

private:
    ::FingerList m_fingers;
};

class Hand
{
public:
    explicit Hand(const ::Hand &hand)
        : m_hand(hand)
    {}
    int id() const { return m_hand.id; }
    Vector palmPosition() const { return vector(m_hand.palm); }
    Vector palmNormal() const { return vector(m_hand.normal); }
    Vector direction() const { return vector(m_hand.direction); }
    FingerList fingers() const { return FingerList(m_hand.fingers); }
    Vector translation(const Frame &) const { return vector(m_hand.translation); }
    float translationProbability(const Frame &) const { return m_hand.translationProbability; }
    float rotationProbability(const Frame &) const { return m_hand.rotationProbability; }

private:
    static Vector vector(const QVector3D &v) { return {v.x(), v.y(), v.z()}; }

    ::Hand m_hand;
};

class HandList
{
public:
    explicit HandList(const std::vector<::Hand> &hands)
        : m_hands(hands)
    {}
    int count() const { return int(m_hands.size()); }
    Hand operator[](int i) const { return Hand(m_hands[std::size_t(i)]); }

private:
    std::vector<::Hand> m_hands;
};

class Frame
{
public:
    Frame() = default;
    explicit Frame(const HandFrame &frame)
        : m_frame(frame)
    {}
    long long timestamp() const { return m_frame.timestamp; }
    HandList hands() const { return HandList(m_frame.hands); }
    Vector translation(const Frame &) const
    {
        return {m_frame.translation.x(), m_frame.translation.y(), m_frame.translation.z()};
    }
    float translationProbability(const Frame &) const { return m_frame.translationProbability; }
    float rotationProbability(const Frame &) const { return m_frame.rotationProbability; }
    float scaleProbability(const Frame &) const { return m_frame.scaleProbability; }
    float scaleFactor(const Frame &) const { return m_frame.scaleFactor; }

private:
    HandFrame m_frame;
};

class Controller;

class Listener
{
public:
    virtual ~Listener() = default;
    virtual void onConnect(const Controller &) {}
    virtual void onDisconnect(const Controller &) {}
    virtual void onFrame(const Controller &) {}
};

class Controller
{
public:
    bool addListener(Listener &listener);
    bool removeListener(Listener &listener);
    Frame frame() const;
};

} // namespace Leap
