#include "hmd/KQuickRender.h"

#include <QLoggingCategory>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickWindow>

Q_LOGGING_CATEGORY(quickRenderLog, "kquickrender")

namespace {

constexpr int kUpdateInterval = 5; // ms; changes within it share one frame

} // namespace

KQuickRender::KQuickRender(QOpenGLContext *shareContext, QQmlEngine *engine, const QUrl &scene)
    : m_context(std::make_unique<QOpenGLContext>())
    , m_surface(std::make_unique<QOffscreenSurface>())
{
    m_context->setFormat(shareContext->format());
    m_context->setShareContext(shareContext);
    if (!m_context->create()) {
        qCWarning(quickRenderLog) << "no OpenGL context for" << scene;
        return;
    }
    m_surface->setFormat(m_context->format());
    m_surface->create();

    m_renderControl = std::make_unique<QQuickRenderControl>();
    m_quickWindow = std::make_unique<QQuickWindow>(m_renderControl.get());
    m_quickWindow->setColor(Qt::transparent);
    // An engine without a window has nobody to finish what it makes piece by piece.
    if (!engine->incubationController())
        engine->setIncubationController(m_quickWindow->incubationController());

    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(kUpdateInterval);
    connect(&m_updateTimer, &QTimer::timeout, this, &KQuickRender::updateQuick);
    connect(m_quickWindow.get(), &QQuickWindow::sceneGraphInitialized, this,
            &KQuickRender::createFbo);
    connect(m_quickWindow.get(), &QQuickWindow::sceneGraphInvalidated, this,
            &KQuickRender::destroyFbo);
    connect(m_renderControl.get(), &QQuickRenderControl::renderRequested, this,
            &KQuickRender::requestUpdate);
    connect(m_renderControl.get(), &QQuickRenderControl::sceneChanged, this,
            &KQuickRender::requestUpdate);

    m_component = std::make_unique<QQmlComponent>(engine, scene);
    if (m_component->isLoading())
        connect(m_component.get(), &QQmlComponent::statusChanged, this, &KQuickRender::run);
    else
        run();
}

KQuickRender::~KQuickRender()
{
    m_updateTimer.stop();
    if (!m_quickWindow)
        return;
    const bool current = m_context->makeCurrent(m_surface.get());
    m_renderControl.reset();
    m_fbo.reset();
    m_picture.reset();
    m_rootItem.reset();
    m_component.reset();
    m_quickWindow.reset();
    if (current)
        m_context->doneCurrent();
}

bool KQuickRender::failed() const
{
    const QList<QQmlError> errors = m_component->errors();
    for (const QQmlError &error : errors)
        qCWarning(quickRenderLog).noquote()
            << error.url().toString() << error.line() << error.description();
    return m_component->isError();
}

void KQuickRender::run()
{
    disconnect(m_component.get(), &QQmlComponent::statusChanged, this, &KQuickRender::run);
    if (failed())
        return;
    std::unique_ptr<QObject> root(m_component->create());
    if (failed() || !root)
        return;
    if (!qobject_cast<QQuickItem *>(root.get())) {
        qCWarning(quickRenderLog) << "run: Not a QQuickItem";
        return;
    }
    m_rootItem.reset(static_cast<QQuickItem *>(root.release()));
    m_rootItem->setParentItem(m_quickWindow->contentItem());
    m_quickWindow->setGeometry(0, 0, int(m_rootItem->width()), int(m_rootItem->height()));
    if (!m_context->makeCurrent(m_surface.get())) {
        qCWarning(quickRenderLog) << "the OpenGL context is lost";
        return;
    }
    m_renderControl->initialize(m_context.get());
    m_context->doneCurrent();
    requestUpdate();
}

void KQuickRender::createFbo()
{
    const QSize pixels = size() * m_quickWindow->effectiveDevicePixelRatio();
    m_fbo = std::make_unique<QOpenGLFramebufferObject>(
        pixels, QOpenGLFramebufferObject::CombinedDepthStencil, GL_TEXTURE_2D);
    m_picture = std::make_unique<QOpenGLFramebufferObject>(pixels);
    m_quickWindow->setRenderTarget(m_fbo.get());
}

void KQuickRender::destroyFbo()
{
    publish(0, QSize());
    m_fbo.reset();
    m_picture.reset();
}

void KQuickRender::requestUpdate()
{
    if (!m_updateTimer.isActive())
        m_updateTimer.start();
}

void KQuickRender::updateQuick()
{
    if (!m_rootItem || !m_context->makeCurrent(m_surface.get()))
        return;
    m_renderControl->polishItems();
    m_renderControl->sync();
    m_renderControl->render();
    if (m_fbo && m_picture) {
        // The scene graph leaves its last row at 0.
        const QSize pixels = m_fbo->size();
        const QRect whole(QPoint(0, 0), pixels);
        const QRect turned(0, pixels.height(), pixels.width(), -pixels.height());
        QOpenGLFramebufferObject::blitFramebuffer(m_picture.get(), turned, m_fbo.get(), whole);
        m_context->functions()->glFlush();
        publish(int(m_picture->texture()), pixels);
    }
    m_context->doneCurrent();
}

void KQuickRender::publish(int textureId, const QSize &size)
{
    const QMutexLocker lock(&m_pictureLock);
    m_textureId = textureId;
    m_textureSize = size;
}

QSize KQuickRender::size() const
{
    return m_quickWindow ? m_quickWindow->size() : QSize();
}

int KQuickRender::textureId() const
{
    const QMutexLocker lock(&m_pictureLock);
    return m_textureId;
}

QSize KQuickRender::textureSize() const
{
    const QMutexLocker lock(&m_pictureLock);
    return m_textureSize;
}
