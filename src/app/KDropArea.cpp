#include "app/KDropArea.h"

#include <QMimeData>

KDropArea::KDropArea(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemAcceptsDrops, true);
}

void KDropArea::dragEnterEvent(QDragEnterEvent *event)
{
    event->acceptProposedAction();
}

void KDropArea::dragMoveEvent(QDragMoveEvent *event)
{
    // Each move is refused until somebody accepts it, and a refused drag cannot be dropped.
    event->acceptProposedAction();
}

void KDropArea::dropEvent(QDropEvent *event)
{
    if (!event->mimeData()->hasUrls())
        return;
    event->acceptProposedAction();
    m_filePathList = event->mimeData()->urls();
    emit filePathListChanged();
}
