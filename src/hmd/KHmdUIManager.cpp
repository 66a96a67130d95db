#include "hmd/KHmdUIManager.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "hmd/GazeMapping.h"
#include "hmd/KQuickRender.h"
#include "render/HeadsetView.h"
#include "render/KTextureProvider.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <mutex>

namespace {

constexpr int kSeekStep = 1000; // ms
constexpr int kSlideStep = 400;

/// The scene draws each frame of a layer anew, so a copy would gain nothing.
std::unique_ptr<KTextureProvider> makeProvider(Application *application)
{
    constexpr bool kDirectly = false;
    constexpr bool kFromScene = false;
    return std::make_unique<KTextureProvider>(application, kDirectly, kFromScene);
}

ulong milliseconds()
{
    static const QElapsedTimer timer = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return ulong(timer.elapsed());
}

void postMouse(QQuickWindow *window, QEvent::Type type, const QPoint &at, Qt::MouseButtons held)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    auto event = std::make_unique<QMouseEvent>(
        type, QPointF(at), QPointF(at), QPointF(window->mapToGlobal(at)), button, held,
        Qt::NoModifier, Qt::MouseEventSynthesizedByApplication);
    event->setTimestamp(milliseconds());
    QCoreApplication::postEvent(window, event.release());
}

} // namespace

TapDetector KHmdUIManager::s_tapDetector;

KHmdUIManager::KHmdUIManager(Application *application, QOpenGLContext *shareContext,
                             QQmlEngine *engine, Route route)
    : m_renderInQtSG(route == Route::SceneGraph)
    , m_application(application)
{
    if (m_renderInQtSG) {
        m_textureProviderMain = makeProvider(application);
        m_textureProviderForeground = makeProvider(application);
    }
    QQmlContext *context = engine->rootContext();
    context->setContextProperty(QStringLiteral("textureProviderMain"), m_textureProviderMain.get());
    context->setContextProperty(QStringLiteral("textureProviderForeground"),
                                m_textureProviderForeground.get());
    context->setContextProperty(QStringLiteral("kHmdUIManager"), this);
    if (!m_renderInQtSG && shareContext) {
        m_quickRenderMain = std::make_unique<KQuickRender>(
            shareContext, engine, QUrl(QStringLiteral("qrc:/qml/hmd/main.qml")));
        m_quickRenderForeground = std::make_unique<KQuickRender>(
            shareContext, engine, QUrl(QStringLiteral("qrc:/qml/hmd/mainForeground.qml")));
    }
}

KHmdUIManager::~KHmdUIManager()
{
    // The scene may still hold bindings on these in the event that is being handled.
    for (QObject *object : {static_cast<QObject *>(m_textureProviderMain.release()),
                            static_cast<QObject *>(m_textureProviderForeground.release()),
                            static_cast<QObject *>(m_quickRenderMain.release()),
                            static_cast<QObject *>(m_quickRenderForeground.release())}) {
        if (object)
            object->deleteLater();
    }
}

bool KHmdUIManager::isShown() const
{
    const std::lock_guard<PoseLock> lock(m_lock);
    return m_activated;
}

QMatrix4x4 KHmdUIManager::orientation() const
{
    const std::lock_guard<PoseLock> lock(m_lock);
    return m_uiOrientation;
}

int KHmdUIManager::textureId(int layer) const
{
    const bool panel = layer == HeadsetView::Panel;
    if (m_renderInQtSG)
        return (panel ? m_textureProviderMain : m_textureProviderForeground)->textureId();
    const auto &quickRender = panel ? m_quickRenderMain : m_quickRenderForeground;
    return quickRender ? quickRender->textureId() : 0;
}

QSize KHmdUIManager::textureSize(int layer) const
{
    const bool panel = layer == HeadsetView::Panel;
    if (m_renderInQtSG)
        return (panel ? m_textureProviderMain : m_textureProviderForeground)->textureSize();
    const auto &quickRender = panel ? m_quickRenderMain : m_quickRenderForeground;
    return quickRender ? quickRender->textureSize() : QSize();
}

bool KHmdUIManager::detectTap(const std::array<float, 3> &velocity, float gazePitch)
{
    return s_tapDetector.detect(velocity, gazePitch);
}

void KHmdUIManager::setUiState(int state)
{
    if (m_uiState == state)
        return;
    m_uiState = state;
    emit uiStateChanged();
}

void KHmdUIManager::setActivated(bool activated)
{
    const KGlobalObject *globalObject = m_application->globalObject();
    {
        const std::lock_guard<PoseLock> lock(m_lock);
        if (m_activated == activated)
            return;
        m_activated = activated;
        if (activated)
            m_uiOrientation = GazeMapping::panelFrame(globalObject ? globalObject->yaw() : 0);
    }
    if (m_filteredWindow)
        m_filteredWindow->removeEventFilter(this);
    m_filteredWindow = activated ? targetWindow() : nullptr;
    if (m_filteredWindow)
        m_filteredWindow->installEventFilter(this);
    setUiState(Idle);
    emit activatedChanged();
    if (QObject *player = globalObject ? globalObject->mediaPlayer() : nullptr)
        QMetaObject::invokeMethod(player, activated ? "pause" : "play");
}

bool KHmdUIManager::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
        return true;
    case QEvent::MouseMove:
        return static_cast<QMouseEvent *>(event)->source() !=
               Qt::MouseEventSynthesizedByApplication;
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool KHmdUIManager::hasMedium() const
{
    const KGlobalObject *globalObject = m_application->globalObject();
    const QObject *player = globalObject ? globalObject->mediaPlayer() : nullptr;
    if (!player)
        return false;
    // With a playlist the panel also leads away from a medium that could not be opened.
    return !player->property("mediaSource").toUrl().isEmpty() || !globalObject->playListIsEmpty();
}

void KHmdUIManager::buildGazeEvents(bool tap)
{
    if (!hasMedium())
        return;
    if (!isShown()) {
        if (tap)
            setActivated(true);
        return;
    }
    const std::optional<QPoint> pixel = gazePixel();
    if (!pixel)
        return;
    post(*pixel, tap);
    if (tap && !GazeMapping::isInside(*pixel, panelSize()))
        setActivated(false);
}

void KHmdUIManager::buildEvents(int inputEventInt)
{
    const KGlobalObject *globalObject = m_application->globalObject();
    if (!globalObject || !globalObject->mediaLoader() || !globalObject->mediaPlayer())
        return;
    if (inputEventInt < 1 || inputEventInt > 6)
        return;
    if (isShown())
        actOnPanel(inputEventInt);
    else
        actOnMedium(inputEventInt);
}

void KHmdUIManager::actOnPanel(int code)
{
    if (const std::optional<QPoint> pixel = gazePixel())
        post(*pixel, code == 1);
    if (code == 2)
        setActivated(false);
    else if ((code == 3 || code == 4) && panelRoot())
        QMetaObject::invokeMethod(panelRoot(), "slideList",
                                  Q_ARG(QVariant, code == 3 ? -kSlideStep : kSlideStep));
}

void KHmdUIManager::actOnMedium(int code)
{
    QObject *loader = m_application->globalObject()->mediaLoader();
    QObject *player = m_application->globalObject()->mediaPlayer();
    switch (code) {
    case 1:
        QMetaObject::invokeMethod(loader, "playPause");
        break;
    case 2:
        setActivated(true);
        break;
    case 3:
        QMetaObject::invokeMethod(player, "seekJump", Q_ARG(QVariant, -kSeekStep));
        break;
    case 4:
        QMetaObject::invokeMethod(player, "seekJump", Q_ARG(QVariant, kSeekStep));
        break;
    case 5:
        QMetaObject::invokeMethod(loader, "seekJumpUp");
        break;
    case 6:
        QMetaObject::invokeMethod(loader, "seekJumpDown");
        break;
    }
}

std::optional<QPoint> KHmdUIManager::gazePixel() const
{
    const HeadsetView *headset = m_application->headsetView();
    const std::optional<QMatrix4x4> pose = headset ? headset->pose() : std::nullopt;
    if (!pose)
        return std::nullopt;
    return GazeMapping::panelPixel(GazeMapping::panelPoint(orientation(), *pose), panelSize());
}

QSize KHmdUIManager::panelSize() const
{
    if (!m_renderInQtSG)
        return m_quickRenderMain ? m_quickRenderMain->size() : QSize();
    const QQuickWindow *window = targetWindow();
    const QScreen *screen = window ? window->screen() : nullptr;
    return GazeMapping::sceneSize(m_textureProviderMain->textureSize(),
                                  screen ? screen->devicePixelRatio() : 1);
}

QObject *KHmdUIManager::panelRoot() const
{
    if (m_renderInQtSG)
        return m_hmdUI;
    return m_quickRenderMain ? m_quickRenderMain->rootItem() : nullptr;
}

QQuickWindow *KHmdUIManager::targetWindow() const
{
    if (!m_renderInQtSG)
        return m_quickRenderMain ? m_quickRenderMain->window() : nullptr;
    const auto *panel = qobject_cast<QQuickItem *>(m_hmdUI);
    return panel ? panel->window() : nullptr;
}

void KHmdUIManager::post(const QPoint &panelPixel, bool click)
{
    QQuickWindow *window = targetWindow();
    if (!window)
        return;
    QPoint at = panelPixel;
    // The scenes stand to the right of the window. A gaze that has left the panel to the right
    // must not come back onto it either.
    if (m_renderInQtSG && panelPixel.x() > 0)
        at.rx() += window->width() + 1;
    postMouse(window, QEvent::MouseMove, at, Qt::NoButton);
    if (click) {
        postMouse(window, QEvent::MouseButtonPress, at, Qt::LeftButton);
        postMouse(window, QEvent::MouseButtonRelease, at, Qt::NoButton);
    }
}
