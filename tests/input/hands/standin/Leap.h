#pragma once

// Stands in for the header of the Leap Motion SDK, which is closed, with just the operations that
// the player calls. Every answer comes from a HandFrame that a test shows, see DeviceStandIn.h.

#include "input/hands/HandFrame.h"

namespace Leap {

struct Vector
{
    explicit Vector(const QVector3D &v)
        : x(v.x())
        , y(v.y())
        , z(v.z())
    {}
    float x, y, z;
};

class Frame;

/// Something that a test shows, behind the operations of the SDK.
template <class Shown>
class Facade
{
public:
    explicit Facade(const Shown &shown)
        : m_shown(shown)
    {}

protected:
    Shown m_shown;
};

template <class Element, class Shown>
class ListOf : public Facade<Shown>
{
public:
    using Facade<Shown>::Facade;
    int count() const { return int(this->m_shown.size()); }
    Element operator[](int i) const { return Element(*(this->m_shown.begin() + i)); }
};

class Finger : public Facade<::Finger>
{
public:
    using Facade::Facade;
    Vector tipPosition() const { return Vector(m_shown.tip); }
    Vector direction() const { return Vector((m_shown.tip - m_shown.base).normalized()); }
    float length() const { return (m_shown.tip - m_shown.base).length(); }
    bool isExtended() const { return m_shown.extended; }
    int type() const { return int(m_shown.kind); }
};

using FingerList = ListOf<Finger, ::FingerList>;

class Hand : public Facade<::Hand>
{
public:
    using Facade::Facade;
    int id() const { return m_shown.id; }
    Vector palmPosition() const { return Vector(m_shown.palm); }
    Vector palmNormal() const { return Vector(m_shown.normal); }
    Vector direction() const { return Vector(m_shown.direction); }
    FingerList fingers() const { return FingerList(m_shown.fingers); }
    Vector translation(const Frame &) const { return Vector(m_shown.translation); }
    float translationProbability(const Frame &) const { return m_shown.translationProbability; }
    float rotationProbability(const Frame &) const { return m_shown.rotationProbability; }
};

using HandList = ListOf<Hand, std::vector<::Hand>>;

class Frame : public Facade<HandFrame>
{
public:
    explicit Frame(const HandFrame &shown = {})
        : Facade(shown)
    {}
    long long timestamp() const { return m_shown.timestamp; }
    HandList hands() const { return HandList(m_shown.hands); }
    Vector translation(const Frame &) const { return Vector(m_shown.translation); }
    float translationProbability(const Frame &) const { return m_shown.translationProbability; }
    float rotationProbability(const Frame &) const { return m_shown.rotationProbability; }
    float scaleProbability(const Frame &) const { return m_shown.scaleProbability; }
    float scaleFactor(const Frame &) const { return m_shown.scaleFactor; }
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
