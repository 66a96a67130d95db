#pragma once

// The single place where the GL name of the current picture lives; owned by Application, in the
// scene `kTextureProvider`.
//
// Three threads meet here. Set on the GUI thread; read on any thread that draws. What follows a
// ShaderEffectSource runs on the scene graph's render thread, because an item's texture provider
// may only be asked for there; its signals reach the GUI thread queued.

#include "render/QuadProgram.h"

#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QSize>

#include <atomic>
#include <memory>

class Application;
class FrameSource;
class QOpenGLFramebufferObject;
class QQuickItem;
class QQuickWindow;
class QSGTexture;
class QSGTextureProvider;
class QTimer;

class KTextureProvider : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int textureId READ textureId WRITE setTextureId NOTIFY textureIdChanged)
    Q_PROPERTY(QSize textureSize READ textureSize WRITE setTextureSize NOTIFY textureSizeChanged)

public:
    /// @p blitEnabled copies pictures of the scene that are no stills, so that the copy stays when
    /// the scene draws on. @p sharedMemory takes all frames from the source given later by
    /// setFrameSource().
    KTextureProvider(Application *application, bool blitEnabled, bool sharedMemory);
    ~KTextureProvider() override;

    /// 0 while there is no picture. Its first row is the picture's top.
    int textureId() const;

    /// Stated by a player that has a texture of its own.
    void setTextureId(int textureId);

    QSize textureSize() const;
    void setTextureSize(const QSize &textureSize);

    /// Follows the texture of @p quickItem from the next synchronisation on; null follows none.
    /// @p isImage: a still, whose own texture is used where @p quickItem is an effect source of it:
    /// the effect source may then be invisible.
    Q_INVOKABLE void setShaderEffectSource(QQuickItem *quickItem, bool isImage = false);

    /// Another program's frames are shown, whatever the scene sets.
    Q_INVOKABLE bool isSharedMemory() const { return m_sharedMemory; }

    /// Where those frames come from; set once, before anything draws.
    void setFrameSource(std::unique_ptr<FrameSource> source);

signals:
    void textureIdChanged();
    void textureSizeChanged();

private slots:
    void onBeforeSynchronizing();
    void onQsgTextureChanged();
    void onAfterRendering();
    void stopTimer();

private:
    void attachWindow(QQuickWindow *window);
    void onProviderSignal();
    void onProviderDestroyed();
    void forgetProvider();
    void startPolling();
    [[nodiscard]] bool isDrawnByScene() const;
    [[nodiscard]] QSGTexture *uploaded(QSGTexture *texture) const;
    void publish(int textureId, const QSize &size);
    [[nodiscard]] bool copies() const { return m_blitEnabled && !m_sourceIsImage; }
    [[nodiscard]] bool copy(int textureId, const QSize &size);

    // GUI thread; the render thread looks while the GUI thread waits in the synchronisation.
    QPointer<QQuickItem> m_shaderEffectSource;
    bool m_isImage = false;
    QPointer<QQuickWindow> m_window; // stays when the item goes
    QMetaObject::Connection m_windowOfItem;

    // Both.
    std::atomic<int> m_textureId{0};
    mutable QMutex m_sizeLock;
    QSize m_textureSize{-1, -1};

    // Render thread.
    QPointer<QSGTextureProvider> m_qsgProvider;
    QPointer<QTimer> m_pollTimer;
    bool m_sourceIsImage = false;
    bool m_readAfterFrame = false;
    int m_publishedId = 0; // what this thread last set
    std::unique_ptr<QOpenGLFramebufferObject> m_blitTarget;
    QuadProgram m_blitProgram;
    int m_blitSampler = -1;

    const bool m_blitEnabled;
    const bool m_sharedMemory;
    std::unique_ptr<FrameSource> m_frameSource;
};
