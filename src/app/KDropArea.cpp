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

void KDropArea::dropEvent(QDropEvent *event)
{
    if (!event->mimeData()->hasUrls())
        return;
    m_filePathList = event->mimeData()->urls();
    emit filePathListChanged();
}
