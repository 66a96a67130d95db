#include "input/hands/TrackingZone.h"

#include "input/hands/HandActions.h"

namespace {

// Millimetres from the tracker's centre. A hand over the desk is lost below the first height and
// beyond the second to either side. Before the head the two bound the hand's height.
constexpr float kNearLimit = 50;
constexpr float kFarLimit = -100;
constexpr float kHighest = 400; // over the desk

} // namespace

void TrackingZone::reset()
{
    *this = {};
}

int TrackingZone::update(const QVector3D &palm, bool onHead)
{
    const float bottom = onHead ? kFarLimit : kNearLimit;
    const float top = onHead ? kNearLimit : kHighest;
    int edges = 0;
    edges |= m_left.update(kFarLimit - palm.x()) ? HandZone::Left : 0;
    edges |= m_right.update(palm.x() + kFarLimit) ? HandZone::Right : 0;
    edges |= m_bottom.update(bottom - palm.y()) ? HandZone::Bottom : 0;
    edges |= m_top.update(palm.y() - top) ? HandZone::Top : 0;
    return edges;
}
