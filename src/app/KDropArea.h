#pragma once

// A drop target for files in the scene, which creates it. GUI thread.

#include <QQuickItem>
#include <QUrl>

class KDropArea : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(QList<QUrl> filePathList READ filePathList NOTIFY filePathListChanged)

public:
    explicit KDropArea(QQuickItem *parent = nullptr);

    /// What was dropped last.
    QList<QUrl> filePathList() const { return m_filePathList; }

signals:
    void filePathListChanged();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QList<QUrl> m_filePathList;
};
