#include "kontrols/docking/DockArea.h"

#include "kontrols/docking/DockItem.h"

DockArea::DockArea(QQuickItem *parent)
    : QQuickItem(parent)
{}

void DockArea::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemChildAddedChange || change == ItemChildRemovedChange) {
        if (auto *item = qobject_cast<DockItem *>(data.item)) {
            if (change == ItemChildAddedChange) {
                connect(item, &DockItem::placeChanged, this, &QQuickItem::polish);
                connect(item, &QQuickItem::visibleChanged, this, &QQuickItem::polish);
            } else {
                item->disconnect(this);
            }
        }
        polish();
    }
    QQuickItem::itemChange(change, data);
}

void DockArea::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChanged(newGeometry, oldGeometry);
    polish();
}

void DockArea::updatePolish()
{
    QVector<DockItem *> items;
    QVector<docking::Panel> panels;
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children) {
        auto *item = qobject_cast<DockItem *>(child);
        if (item && item->isVisible()) {
            items.append(item);
            panels.append({docking::Edge(int(item->edge())), item->extent()});
        }
    }
    const QVector<QRectF> places = docking::arrange(boundingRect(), panels);
    for (int i = 0; i < items.size(); ++i) {
        items.at(i)->setPosition(places.at(i).topLeft());
        items.at(i)->setSize(places.at(i).size());
    }
}
