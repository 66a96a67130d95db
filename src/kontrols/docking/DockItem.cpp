#include "kontrols/docking/DockItem.h"

#include <QtNumeric>

DockItem::DockItem(QQuickItem *parent)
    : QQuickItem(parent)
{}

void DockItem::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    emit titleChanged();
}

void DockItem::setEdge(Edge edge)
{
    if (m_edge == edge)
        return;
    m_edge = edge;
    emit placeChanged();
}

void DockItem::setExtent(qreal extent)
{
    if (!qIsFinite(extent) || qFuzzyCompare(m_extent, extent))
        return;
    m_extent = extent;
    emit placeChanged();
}
