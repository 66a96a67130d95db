#pragma once

// Renders a scene without a window, in a GL context of its own, into a texture of the context's
// share group; owned by whoever shows that texture. Lives and draws on the GUI thread; what other
// threads may ask is named below.

#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>
#include <QUrl>

#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFramebufferObject;
class QQmlComponent;
class QQmlEngine;
class QQuickItem;
class QQuickRenderControl;
class QQuickWindow;

class KQuickRender : public QObject
{
    Q_OBJECT

public:
    /// Loads @p scene, whose root must be an item; its size is that of the picture. Failures are
    /// warnings in the log, and there is then no picture. @p shareContext must not be current on
    /// another thread.
    KQuickRender(QOpenGLContext *shareContext, QQmlEngine *engine, const QUrl &scene);
    ~KQuickRender() override;

    /// The window that never shows: where the scene's input is to be sent. Null when the driver
    /// gave no context.
    QQuickWindow *window() const { return m_quickWindow.get(); }
    /// Null while there is none.
    QQuickItem *rootItem() const { return m_rootItem.get(); }
    /// Of the scene; empty before it is loaded.
    QSize size() const;

    /// The newest picture, its first row at 0, colours multiplied with their alpha; 0 while there
    /// is none. Any thread.
    int textureId() const;
    /// Pixels of that texture. Any thread.
    QSize textureSize() const;

private slots:
    void run();
    void createFbo();
    void destroyFbo();
    void requestUpdate();
    void updateQuick();

private:
    [[nodiscard]] bool failed() const;
    void publish(int textureId, const QSize &size);

    // In the order in which they are made; the destructor takes them down.
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    std::unique_ptr<QQuickRenderControl> m_renderControl;
    std::unique_ptr<QQuickWindow> m_quickWindow;
    std::unique_ptr<QQmlComponent> m_component;
    std::unique_ptr<QQuickItem> m_rootItem;
    std::unique_ptr<QOpenGLFramebufferObject> m_fbo;     // drawn into, its last row at 0
    std::unique_ptr<QOpenGLFramebufferObject> m_picture; // what others see
    QTimer m_updateTimer;

    mutable QMutex m_pictureLock;
    int m_textureId = 0; // under m_pictureLock, as is the next
    QSize m_textureSize;
};
