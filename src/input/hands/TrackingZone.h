#pragma once

// Tells which edge of the tracker's zone a hand is about to leave, so that it can be warned while
// it is still seen. Owned by the analysis.

#include "input/hands/Settled.h"

#include <QVector3D>

class TrackingZone
{
public:
    /// HandZone::Edge bits for a palm over a tracker on the desk, or with @p onHead before one that
    /// the user wears, in the frame that fromHead() gives.
    int update(const QVector3D &palm, bool onHead);
    void reset();

private:
    /// How far a hand comes back before a warning ends, millimetres.
    static constexpr float kBack = 15;

    TwoThresholds m_left{0, -kBack};
    TwoThresholds m_right{0, -kBack};
    TwoThresholds m_bottom{0, -kBack};
    TwoThresholds m_top{0, -kBack};
};
