#pragma once

// Lays its visible DockItem children out along its edges; what else it holds is left alone.
// Owned by its scene; GUI thread.

#include <QQuickItem>

class DockItem;

class DockArea : public QQuickItem
{
    Q_OBJECT

public:
    explicit DockArea(QQuickItem *parent = nullptr);

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void updatePolish() override;
};
