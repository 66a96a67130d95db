#pragma once

// Tells when the pointer is pressed anywhere in the window but on this item: what closes a panel
// or ends an edit on a click elsewhere. Owned by its scene; GUI thread.

#include <QPointF>
#include <QPointer>
#include <QQuickItem>

class QQuickWindow;

class InverseMouseArea : public QQuickItem
{
    Q_OBJECT

public:
    explicit InverseMouseArea(QQuickItem *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// A press outside, in this item's coordinates. The press goes on to what lies under it.
    void pressedOutside(qreal x, qreal y);

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void watch(QQuickWindow *window);
    void pressedAt(const QPointF &windowPosition);

    QPointer<QQuickWindow> m_watched;
};
