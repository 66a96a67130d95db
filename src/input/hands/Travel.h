#pragma once

// The way a hand has gone, summed up from the tracker's own steps, so that neither a new id nor a
// loss of sight makes it jump, and smoothed. Owned by the gesture that follows it.

#include "input/hands/OneEuroFilter.h"

class Travel
{
public:
    /// Adds a step of millimetres; returns how far the smoothed way has come since the last call.
    QVector3D advance(const QVector3D &step, float seconds)
    {
        m_sum += step;
        const QVector3D smoothed = m_filter.filter(m_sum, seconds);
        const QVector3D advanced = smoothed - m_smoothed;
        m_smoothed = smoothed;
        return advanced;
    }

    /// Millimetres a second.
    QVector3D speed() const { return m_filter.speed(); }

    void reset() { *this = {}; }

private:
    OneEuroFilter m_filter{1.2F, 0.02F};
    QVector3D m_sum;
    QVector3D m_smoothed;
};
