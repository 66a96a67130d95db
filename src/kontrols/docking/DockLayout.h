#pragma once

// Where docked panels stand in an area: plain arithmetic, usable on any thread.

#include <QRectF>
#include <QVector>

namespace docking {

enum class Edge { Left, Right, Top, Bottom, Center };

struct Panel
{
    Edge edge = Edge::Center;
    qreal extent = 0; ///< pixels away from its edge; of no effect in the centre
};

/// Panels take their strip of what is left of @p area one after another, never more than is
/// left; those in the centre share what remains in the end, one over the other.
/// @return one rectangle for each panel, in their order.
QVector<QRectF> arrange(const QRectF &area, const QVector<Panel> &panels);

} // namespace docking
