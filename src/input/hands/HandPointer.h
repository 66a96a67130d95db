#pragma once

// The pointer that a finger moves over the window: where it is, how deep, and whether it pushes.
// Owned by the analysis.

#include "input/hands/HandFrame.h"
#include "input/hands/HandOptions.h"
#include "input/hands/OneEuroFilter.h"
#include "input/hands/Settled.h"

#include <QVector4D>

class HandPointer
{
public:
    /// Follows the finger that points: the index, else the one stretched farthest to the screen.
    /// Without one the pointer hides.
    void update(const Hand &hand, const HandOptions &options, float seconds);
    void reset() { *this = {}; }

    /// x and y in window pixels, z the depth from 0 to 1, w 1 while it is shown.
    QVector4D value() const { return m_value; }
    bool pushes() const { return m_push.isOn(); }
    /// Millimetres that the finger went in the last frame.
    QVector3D step() const { return m_step; }

private:
    QVector4D m_value;
    TwoThresholds m_push{0.75F, 0.6F}; // of the depth
    OneEuroFilter m_tip{4.0F, 0.02F};
    QVector3D m_last;
    QVector3D m_step;
    FingerKind m_kind = FingerKind::Index;
};
