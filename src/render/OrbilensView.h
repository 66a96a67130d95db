#pragma once

// The scene item that shows the panorama: draws one textured quad for each eye with the generated
// shader, counts frames and takes snapshots. It takes no input; the scene around it does.
//
// paint() and what it calls run on the scene graph's render thread while the GUI thread waits in
// the synchronisation, so reading the view state there needs no lock. Everything else runs on the
// GUI thread. GL objects live and die on the render thread, at the latest with the scene graph.

#include "render/FastBlur.h"
#include "render/PanoramaProgram.h"
#include "render/Snapshot.h"
#include "render/ViewGeometry.h"

#include <QMutex>
#include <QPointer>
#include <QQuickPaintedItem>

#include <atomic>
#include <memory>

class Application;
class HeadsetView;
class QOpenGLFramebufferObject;
class QOpenGLFunctions;

class OrbilensView : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)
    /// Written 1 for a snapshot of the view as it is, 2 for one at the source's resolution; back
    /// to 0 once it is taken.
    Q_PROPERTY(int printScreenRequested READ printScreenRequested WRITE setPrintScreenRequested
                   NOTIFY printScreenRequestedChanged)

public:
    explicit OrbilensView(QQuickItem *parent = nullptr);
    ~OrbilensView() override;

    /// Nothing is drawn before this; once, when the scene's component completes.
    Q_INVOKABLE void init(Application *kApp);

    /// Frames drawn in the last whole second.
    int fps() const { return m_fps; }

    int printScreenRequested() const;
    void setPrintScreenRequested(int kind);

    void paint(QPainter *painter) override;

public slots:
    void dirtyShader() { m_shaderDirty = true; }
    void computeFps();
    void computeViewportParameters();

signals:
    void fpsChanged();
    void printScreenRequestedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    /// What a snapshot takes from the scene, read on the GUI thread when it is asked for.
    struct SnapshotRequest
    {
        SnapshotKind kind = SnapshotKind::None; // none also while no medium is open
        QSize sourceSize;
        QString folder;
    };

    void attachWindow(QQuickWindow *window);
    [[nodiscard]] SnapshotRequest captureRequest(int kind) const;

    void releaseGraphics();
    [[nodiscard]] QMatrix4x4 currentRotation();
    [[nodiscard]] bool drawFrame(QOpenGLFunctions *functions);
    [[nodiscard]] bool showsWholeSphere() const;
    void rebuildPrograms();
    void fillUniforms();
    void drawEyes(QOpenGLFunctions *functions, const QSize &eyeSize);
    void drawEye(int eye, QOpenGLFunctions *functions, const QSize &size);
    [[nodiscard]] bool drawBlurred(QOpenGLFunctions *functions, const QRect &viewport);
    void drawInterface(QOpenGLFunctions *functions, const HeadsetView &headset);
    void serveSnapshot(QOpenGLFunctions *functions, bool drawn);
    void takeSnapshot(QOpenGLFunctions *functions, const SnapshotRequest &request);

    // Render thread.
    PanoramaProgram m_mainProgram;
    PanoramaProgram m_overlayProgram;
    QuadProgram m_dimProgram;
    bool m_wholeSphere = true;   // what the programs were made for
    PanoramaUniforms m_uniforms; // of the frame being drawn, as is the next
    GLuint m_texture = 0;
    std::unique_ptr<QOpenGLFramebufferObject> m_blurSource;
    std::unique_ptr<FastBlur> m_blur;
    int m_frameCounter = 0;
    qint64 m_lastFpsSecond = 0;

    // Both.
    std::atomic<bool> m_shaderDirty{true};
    std::atomic<int> m_fps{0};
    mutable QMutex m_printLock;
    SnapshotRequest m_request; // under m_printLock, as is the next
    int m_printScreenRequested = 0;

    // GUI thread, read by paint().
    ViewportParameters m_viewport;
    QPointer<QQuickWindow> m_window;
    Application *m_application = nullptr;
};
