#include "kontrols/docking/DockLayout.h"

namespace docking {

namespace {

/// Cuts the panel's strip off @p rest.
QRectF takeStrip(QRectF &rest, const Panel &panel)
{
    QRectF strip = rest;
    const bool sideways = panel.edge == Edge::Left || panel.edge == Edge::Right;
    const qreal extent = qBound(qreal(0), panel.extent, sideways ? rest.width() : rest.height());
    switch (panel.edge) {
    case Edge::Left:
        strip.setWidth(extent);
        rest.setLeft(strip.right());
        break;
    case Edge::Right:
        strip.setLeft(rest.right() - extent);
        rest.setRight(strip.left());
        break;
    case Edge::Top:
        strip.setHeight(extent);
        rest.setTop(strip.bottom());
        break;
    case Edge::Bottom:
        strip.setTop(rest.bottom() - extent);
        rest.setBottom(strip.top());
        break;
    case Edge::Center:
        break;
    }
    return strip;
}

} // namespace

QVector<QRectF> arrange(const QRectF &area, const QVector<Panel> &panels)
{
    QRectF rest = area;
    QVector<QRectF> places(panels.size());
    for (int i = 0; i < panels.size(); ++i) {
        if (panels.at(i).edge != Edge::Center)
            places[i] = takeStrip(rest, panels.at(i));
    }
    for (int i = 0; i < panels.size(); ++i) {
        if (panels.at(i).edge == Edge::Center)
            places[i] = rest;
    }
    return places;
}

} // namespace docking
