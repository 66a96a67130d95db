#pragma once

// Frames of another program as the picture of this one; owned by the KTextureProvider, lives on the
// GUI thread. The texture's name and size are asked on any thread that draws.

#include "input/SharedMemoryThread.h"
#include "render/FrameSource.h"

#include <QObject>
#include <QPointer>

#include <memory>

class Application;
class QOffscreenSurface;

class SharedMemoryManager : public QObject, public FrameSource
{
    Q_OBJECT
    /// What was wrong with the block so far; empty while nothing was.
    Q_PROPERTY(QString logMessage READ logMessage NOTIFY logMessageChanged)

public:
    /// Nothing is read before openGLReady().
    explicit SharedMemoryManager(Application *application);
    ~SharedMemoryManager() override;

    int textureId() const override { return m_published.textureId(); }
    QSize textureSize() const override { return m_published.size(); }

    QString logMessage() const { return m_logMessage; }

    /// Ends the thread and waits for it; from then on there is no picture. May be called again.
    void stop();

signals:
    void logMessageChanged();

private slots:
    void initFakeSurfaces();
    void onAboutToQuit();

private:
    Application *m_application;
    PublishedFrame m_published;
    QString m_logMessage;
    std::unique_ptr<QOffscreenSurface> m_surface;
    QPointer<SharedMemoryThread> m_thread; // ours until it has finished, then it deletes itself
};
