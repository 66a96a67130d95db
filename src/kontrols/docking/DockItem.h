#pragma once

// A panel that a DockArea places: where it wants to stand and how much room it takes. Owned by
// its scene; GUI thread.

#include "kontrols/docking/DockLayout.h"

#include <QQuickItem>
#include <QString>

class DockItem : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(Edge edge READ edge WRITE setEdge NOTIFY placeChanged)
    /// Pixels away from the edge.
    Q_PROPERTY(qreal extent READ extent WRITE setExtent NOTIFY placeChanged)

public:
    enum Edge {
        Left = int(docking::Edge::Left),
        Right = int(docking::Edge::Right),
        Top = int(docking::Edge::Top),
        Bottom = int(docking::Edge::Bottom),
        Center = int(docking::Edge::Center)
    };
    Q_ENUM(Edge)

    explicit DockItem(QQuickItem *parent = nullptr);

    QString title() const { return m_title; }
    void setTitle(const QString &title);
    Edge edge() const { return m_edge; }
    void setEdge(Edge edge);
    qreal extent() const { return m_extent; }
    void setExtent(qreal extent);

signals:
    void titleChanged();
    void placeChanged();

private:
    QString m_title;
    Edge m_edge = Center;
    qreal m_extent = 200;
};
