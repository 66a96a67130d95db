#pragma once

// The interface inside the headset (`kHmdUIManager` in the scene): two scene files, the panel and
// the reticle, as textures for whoever draws the headset's picture, and the head's movements and
// the controllers as mouse events for them. Made by Application when the first headset works, and
// outlives the headset's thread.
//
// Lives on the GUI thread. What HeadsetInterface names for the device's thread is safe there: it
// reads under a lock.

#include "hmd/HeadsetInterface.h"
#include "hmd/PoseLock.h"
#include "hmd/TapDetector.h"

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <memory>
#include <optional>

class Application;
class KQuickRender;
class KTextureProvider;
class QOpenGLContext;
class QQmlEngine;
class QQuickWindow;

class KHmdUIManager : public QObject, public HeadsetInterface
{
    Q_OBJECT
    /// The interface is shown.
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    /// A UIState.
    Q_PROPERTY(int uiState READ uiState WRITE setUiState NOTIFY uiStateChanged)
    /// The two scenes belong into the window's scene.
    Q_PROPERTY(bool renderInQtSG READ renderInQtSG CONSTANT)

public:
    enum UIState {
        Idle = 0,    ///< the gaze rests on nothing that can be chosen
        Hovered = 1, ///< it does, and a wait decides
        Clicked = 2  ///< the wait is over
    };
    Q_ENUM(UIState)

    /// How the scenes become textures.
    enum class Route {
        SceneGraph, ///< as parts of the window's scene
        OffScreen   ///< each in a scene of its own
    };

    /// Publishes itself and its providers to @p engine. @p shareContext, for Route::OffScreen only,
    /// must not be current on another thread.
    KHmdUIManager(Application *application, QOpenGLContext *shareContext, QQmlEngine *engine,
                  Route route = Route::SceneGraph);
    ~KHmdUIManager() override;

    /// The root items of the two scenes, from the scene that loads them; null when they go.
    Q_INVOKABLE void setHmdUI(QObject *root) { m_hmdUI = root; }
    Q_INVOKABLE void setHmdUIForeground(QObject *root) { m_hmdUIForeground = root; }

    bool activated() const { return isShown(); }
    int uiState() const { return m_uiState; }
    void setUiState(int state);
    bool renderInQtSG() const { return m_renderInQtSG; }

    bool isShown() const override;
    QMatrix4x4 orientation() const override;
    int textureId(int layer) const override;
    QSize textureSize(int layer) const override;
    bool detectTap(const std::array<float, 3> &velocity, float gazePitch) override;

    /// While the interface is open, the window's own pointer moves nothing: it would take the hover
    /// away from under the gaze.
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    /// Opening turns the panel straight ahead and pauses the medium; closing plays it.
    void setActivated(bool activated);
    void buildGazeEvents(bool tap) override;
    void buildEvents(int inputEventInt) override;

signals:
    void activatedChanged();
    void uiStateChanged();

private:
    [[nodiscard]] bool hasMedium() const;
    [[nodiscard]] std::optional<QPoint> gazePixel() const;
    [[nodiscard]] QSize panelSize() const;
    [[nodiscard]] QQuickWindow *targetWindow() const;
    [[nodiscard]] QObject *panelRoot() const;
    void post(const QPoint &panelPixel, bool click);
    void actOnPanel(int code);
    void actOnMedium(int code);

    const bool m_renderInQtSG;
    bool m_activated = false; // under m_lock
    int m_uiState = Idle;
    QPointer<QObject> m_hmdUI;
    QPointer<QObject> m_hmdUIForeground;
    QMatrix4x4 m_uiOrientation; // under m_lock
    // Only the pair of the route exists.
    std::unique_ptr<KQuickRender> m_quickRenderMain;
    std::unique_ptr<KQuickRender> m_quickRenderForeground;
    std::unique_ptr<KTextureProvider> m_textureProviderMain;
    std::unique_ptr<KTextureProvider> m_textureProviderForeground;
    mutable PoseLock m_lock;
    Application *const m_application;
    QPointer<QObject> m_filteredWindow; // while the interface is open
    static TapDetector s_tapDetector;
};
