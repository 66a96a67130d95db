#include "kontrols/components/InverseMouseArea.h"

#include <QMouseEvent>
#include <QQuickWindow>
#include <QTouchEvent>

InverseMouseArea::InverseMouseArea(QQuickItem *parent)
    : QQuickItem(parent)
{}

bool InverseMouseArea::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        // A press made up from a touch was told about as the touch itself.
        if (mouse->source() == Qt::MouseEventNotSynthesized)
            pressedAt(mouse->localPos());
    } else if (event->type() == QEvent::TouchBegin) {
        const auto *touch = static_cast<QTouchEvent *>(event);
        if (!touch->touchPoints().isEmpty())
            pressedAt(touch->touchPoints().constFirst().pos());
    }
    return QQuickItem::eventFilter(watched, event);
}

void InverseMouseArea::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange)
        watch(data.window);
    QQuickItem::itemChange(change, data);
}

void InverseMouseArea::watch(QQuickWindow *window)
{
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = window;
    if (m_watched)
        m_watched->installEventFilter(this);
}

void InverseMouseArea::pressedAt(const QPointF &windowPosition)
{
    if (!isEnabled() || !isVisible())
        return;
    const QPointF position = mapFromScene(windowPosition);
    if (!contains(position))
        emit pressedOutside(position.x(), position.y());
}
