#include "input/hands/MomentaryGestures.h"

#include "input/hands/HandBelief.h"
#include "input/hands/HandTracks.h"
#include "render/CameraMath.h"

#include <algorithm>
#include <cmath>

// --- Clap ---------------------------------------------------------------------------------------

namespace {

constexpr float kClapTouch = 90;
constexpr float kClapLost = 130;  // the tracker may lose a hand this far from the other
constexpr float kClapApart = 160; // the hands were this far apart before
constexpr float kClapSpeed = 300;
constexpr float kClapLossTime = 0.15F;
constexpr float kClapRest = 0.6F;
constexpr float kSpeedSettle = 0.04F;

bool faceEachOther(const Hand &a, const Hand &b)
{
    const QVector3D way = (b.palm - a.palm).normalized();
    return QVector3D::dotProduct(a.normal, way) > 0.5F &&
           QVector3D::dotProduct(b.normal, way) < -0.5F;
}

} // namespace

bool ClapGesture::update(const std::vector<TrackedHand> &hands, float seconds)
{
    const TrackedHand *pair[2] = {nullptr, nullptr};
    std::size_t seen = 0;
    for (const TrackedHand &tracked : hands) {
        if (tracked.unseen == 0 && seen < 2)
            pair[seen++] = &tracked;
    }
    m_rest = std::max(0.0F, m_rest - seconds);
    bool met = false;
    if (seen == 2) {
        const float distance = (pair[0]->hand.palm - pair[1]->hand.palm).length();
        const float passed = seconds + m_unseen;
        if (m_distance > 0 && passed > 0) {
            const float closing = (m_distance - distance) / passed;
            m_closing += (closing - m_closing) * passed / (passed + kSpeedSettle);
        }
        m_distance = distance;
        m_unseen = 0;
        m_facing = faceEachOther(pair[0]->hand, pair[1]->hand);
        m_armed = m_armed || distance > kClapApart;
        met = distance < kClapTouch;
    } else if (m_distance > 0) {
        m_unseen += seconds;
        met = seen == 1 && m_distance - m_closing * m_unseen < kClapLost;
    }
    if (m_unseen > kClapLossTime) {
        m_armed = false;
        m_distance = m_closing = m_unseen = 0;
        return false;
    }
    if (!m_armed || !met || !m_facing || m_closing < kClapSpeed)
        return false;
    m_armed = false;
    if (m_rest > 0)
        return false;
    m_rest = kClapRest;
    return true;
}

// --- Hold ---------------------------------------------------------------------------------------

namespace {

constexpr float kHoldTime = 0.6F;
constexpr float kHoldSpeed = 60;
constexpr float kHoldUpright = 0.5F;

} // namespace

bool HoldGesture::update(const Hand &hand, HandPosture posture, float seconds)
{
    const bool facing = m_facing.update(-hand.normal.z()) && hand.direction.y() > kHoldUpright;
    if (!facing || posture != HandPosture::Open) {
        // A finger lost for a moment does not arm it again, another posture does.
        m_done = m_done && facing;
        m_still = 0;
        m_path.reset();
        return false;
    }
    m_path.filter(hand.palm, seconds);
    m_still = m_path.speed().length() < kHoldSpeed ? m_still + seconds : 0;
    if (m_done || m_still < kHoldTime)
        return false;
    m_done = true;
    return true;
}

// --- Swipe --------------------------------------------------------------------------------------

namespace {

constexpr float kSwipeWay = 110;
constexpr float kSwipeSpeed = 650;
constexpr float kSwipeUnderWay = 350;
constexpr float kSwipeEnded = 200;
constexpr float kSwipeRest = 0.5F;

} // namespace

int SwipeGesture::update(const Hand &hand, HandPosture posture, float seconds)
{
    const bool onEdge = m_onEdge.update(std::abs(hand.normal.x()));
    m_travel.advance(HandBelief::moved(hand) ? hand.translation : QVector3D(), seconds);
    const QVector3D speed = m_travel.speed();
    m_rest = std::max(0.0F, m_rest - seconds);
    if (m_done && m_rest == 0 && speed.length() < kSwipeEnded)
        m_done = false;

    const float aside = std::abs(speed.x());
    const bool underWay = onEdge && posture == HandPosture::Open && aside > kSwipeUnderWay &&
                          aside > 2 * std::max(std::abs(speed.y()), std::abs(speed.z()));
    if (!underWay || m_way * speed.x() < 0) {
        m_way = m_fastest = 0;
        return 0;
    }
    m_way += speed.x() * seconds;
    m_fastest = std::max(m_fastest, aside);
    if (m_done || std::abs(m_way) < kSwipeWay || m_fastest < kSwipeSpeed)
        return 0;
    m_done = true;
    m_rest = kSwipeRest;
    return m_way > 0 ? 1 : -1;
}

// --- Circle -------------------------------------------------------------------------------------

namespace {

constexpr float kLine = 7;           // shorter ones are tremble
constexpr float kJump = 80;          // longer ones are another finger
constexpr float kSharpCorner = 1.4F; // radians
constexpr float kTurnedBack = 0.9F;
constexpr float kCircleIdle = 0.4F;
constexpr float kSmallest = 10; // radius
constexpr float kLargest = 120;

} // namespace

void CircleGesture::start(const QVector3D &tip)
{
    reset();
    m_corner = tip;
}

int CircleGesture::update(const Finger *index, HandPosture posture, float seconds)
{
    if (!index || posture != HandPosture::Pointing) {
        reset();
        return 0;
    }
    m_idle += seconds;
    const QVector3D way = m_corner ? index->tip - *m_corner : QVector3D();
    const float length = std::hypot(way.x(), way.y());
    if (!m_corner || m_idle > kCircleIdle || length > kJump) {
        start(index->tip);
        return 0;
    }
    if (length < kLine)
        return 0;

    const float heading = std::atan2(way.y(), way.x());
    if (m_heading) {
        const float turn = CameraMath::wrapAngle(heading - *m_heading);
        m_turned += turn;
        m_most = std::max(m_most, std::abs(m_turned));
        if (std::abs(turn) > kSharpCorner || std::abs(m_turned) < m_most - kTurnedBack) {
            start(index->tip);
            return 0;
        }
    }
    m_heading = heading;
    m_corner = index->tip;
    m_length += length;
    m_idle = 0;
    if (std::abs(m_turned) < CameraMath::kTwoPi)
        return 0;
    const float radius = m_length / std::abs(m_turned);
    const int circle = m_turned < 0 ? 1 : -1;
    m_turned += float(circle) * CameraMath::kTwoPi;
    m_length = 0;
    m_most = std::abs(m_turned);
    return radius > kSmallest && radius < kLargest ? circle : 0;
}
