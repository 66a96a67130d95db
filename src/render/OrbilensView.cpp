#include "render/OrbilensView.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/CameraMath.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/ShaderText.h"
#include "settings/KSettings.h"

#include <QDateTime>
#include <QJSValue>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QQuickWindow>
#include <QScreen>
#include <QtConcurrent>

namespace {

void clearTarget(QOpenGLFunctions *functions)
{
    functions->glClearColor(0.13333f, 0.13333f, 0.13333f, 1.0f);
    functions->glClear(GL_COLOR_BUFFER_BIT);
}

GLuint boundFramebuffer(QOpenGLFunctions *functions)
{
    GLint framebuffer = 0;
    functions->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &framebuffer);
    return GLuint(framebuffer);
}

/// A property of a scene object, whether it is declared as a map or holds a value of the script.
QVariant sceneProperty(const QObject *object, const char *name)
{
    const QVariant value = object->property(name);
    return value.canConvert<QJSValue>() ? value.value<QJSValue>().toVariant() : value;
}

/// On a thread of the pool: turns what was read bottom row first, and writes it. The pool ends
/// before @p application does.
void saveImage(const QImage &image, SnapshotKind kind, const QString &folder,
               Application *application)
{
    if (!saveSnapshot(image.mirrored().convertToFormat(QImage::Format_RGB888), kind, folder,
                      Application::snapshotTexts()))
        application->tell(
            OrbilensView::tr("The screenshot could not be saved in this folder:\n%1").arg(folder));
}

} // namespace

OrbilensView::OrbilensView(QQuickItem *parent)
    : QQuickPaintedItem(parent)
    , m_blur(std::make_unique<FastBlur>())
{
    setMipmap(false);
    setRenderTarget(QQuickPaintedItem::InvertedYFramebufferObject);
}

OrbilensView::~OrbilensView() = default;

void OrbilensView::init(Application *kApp)
{
    if (!kApp || m_application)
        return;
    m_application = kApp;

    connect(this, &QQuickItem::widthChanged, this, &OrbilensView::computeViewportParameters);
    connect(this, &QQuickItem::heightChanged, this, &OrbilensView::computeViewportParameters);
    if (KGlobalObject *globalObject = m_application->globalObject()) {
        for (auto changed : {&KGlobalObject::splitViewChanged, &KGlobalObject::tv3dViewChanged})
            connect(globalObject, changed, this, &OrbilensView::computeViewportParameters);
    }
    if (KShaderCodeBuilder *builder = m_application->shaderBuilder()) {
        connect(builder, &KShaderCodeBuilder::stereoModeChanged, this,
                &OrbilensView::computeViewportParameters);
        builder->onTextChange(this, &OrbilensView::dirtyShader);
    }
    attachWindow(window());
    computeViewportParameters();
    update();
}

void OrbilensView::itemChange(ItemChange change, const ItemChangeData &value)
{
    // The scene completes, and calls init(), before the item is in a window.
    if (change == ItemSceneChange && m_application) {
        attachWindow(value.window);
        computeViewportParameters();
    }
    QQuickPaintedItem::itemChange(change, value);
}

void OrbilensView::attachWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window) {
        disconnect(m_window, &QWindow::screenChanged, this,
                   &OrbilensView::computeViewportParameters);
        disconnect(m_window, &QQuickWindow::frameSwapped, this, nullptr);
        disconnect(m_window, &QQuickWindow::sceneGraphInvalidated, this, nullptr);
    }
    m_window = window;
    if (!window)
        return;
    connect(window, &QWindow::screenChanged, this, &OrbilensView::computeViewportParameters);
    // Hidden it is not painted, and the start screen need not be drawn for its sake.
    connect(window, &QQuickWindow::frameSwapped, this, [this] {
        if (isVisible())
            update();
    });
    connect(window, &QQuickWindow::sceneGraphInvalidated, this, &OrbilensView::releaseGraphics,
            Qt::DirectConnection);
}

void OrbilensView::computeViewportParameters()
{
    if (!m_application || !m_application->shaderBuilder())
        return;
    const KGlobalObject *globalObject = m_application->globalObject();
    EyeLayout layout = EyeLayout::Single;
    if (globalObject && globalObject->splitView())
        layout = globalObject->tv3dView() ? EyeLayout::SplitTelevision : EyeLayout::Split;
    const QScreen *screen = m_window ? m_window->screen() : nullptr;
    m_viewport =
        viewportParameters(size(), layout, screen ? screen->devicePixelRatio() : qreal(1.0));
}

int OrbilensView::printScreenRequested() const
{
    QMutexLocker lock(&m_printLock);
    return m_printScreenRequested;
}

void OrbilensView::setPrintScreenRequested(int kind)
{
    SnapshotRequest request = captureRequest(kind);
    {
        QMutexLocker lock(&m_printLock);
        if (m_printScreenRequested == kind)
            return;
        m_printScreenRequested = kind;
        m_request = std::move(request);
    }
    emit printScreenRequestedChanged();
}

OrbilensView::SnapshotRequest OrbilensView::captureRequest(int kind) const
{
    SnapshotRequest request;
    const KGlobalObject *globalObject = m_application ? m_application->globalObject() : nullptr;
    const QObject *player = globalObject ? globalObject->mediaPlayer() : nullptr;
    if (!player || sceneProperty(player, "mediaSource").toString().isEmpty())
        return request;
    if (kind == int(SnapshotKind::Snap) || kind == int(SnapshotKind::Render))
        request.kind = SnapshotKind(kind);
    request.sourceSize = sceneProperty(player, "fileMetadata")
                             .toMap()
                             .value(QStringLiteral("Texture size"))
                             .toSize();
    request.folder = snapshotFolder(m_application->settings()
                                        ->get(QStringLiteral("application/general/printSavePath"))
                                        .toString());
    return request;
}

void OrbilensView::computeFps()
{
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    if (second > m_lastFpsSecond) {
        m_lastFpsSecond = second;
        m_fps = m_frameCounter + 1;
        m_frameCounter = 0;
        emit fpsChanged();
    } else {
        ++m_frameCounter;
    }
}

// --- Render thread ----------------------------------------------------------------------------

void OrbilensView::releaseGraphics()
{
    m_mainProgram.reset();
    m_overlayProgram.reset();
    m_dimProgram.reset();
    m_blur->reset();
    m_blurSource.reset();
    m_shaderDirty = true;
}

void OrbilensView::paint(QPainter *painter)
{
    if (!m_application)
        return;
    const KGlobalObject *globalObject = m_application->globalObject();
    if (globalObject)
        m_uniforms.matViewInverse = currentRotation();

    painter->beginNativePainting();
    const QOpenGLContext *context = QOpenGLContext::currentContext();
    if (QOpenGLFunctions *functions = context ? context->functions() : nullptr) {
        const bool drawn = drawFrame(functions);
        serveSnapshot(functions, drawn);
    }
    painter->endNativePainting();
    computeFps();
}

QMatrix4x4 OrbilensView::currentRotation()
{
    KGlobalObject *globalObject = m_application->globalObject();
    const HeadsetView *headset = m_application->headsetView();
    if (headset && headset->isActivated()) {
        if (const std::optional<QMatrix4x4> pose = headset->pose()) {
            // The view state has timers, which belong to its own thread; this frame does not wait.
            QMetaObject::invokeMethod(
                globalObject,
                [globalObject, matrix = *pose] {
                    globalObject->setRotationMatrix(matrix, true, false);
                },
                Qt::QueuedConnection);
            return globalObject->offsetMatrix() * *pose;
        }
    }
    return globalObject->rotationMatrix();
}

bool OrbilensView::drawFrame(QOpenGLFunctions *functions)
{
    clearTarget(functions);
    const KTextureProvider *provider = m_application->textureProvider();
    const int texture = provider ? provider->textureId() : 0;
    // A film that ends takes its texture away before its last word reaches the provider, and to
    // bind the name of a deleted texture would make a new one that nobody deletes.
    if (texture <= 0 || !functions->glIsTexture(GLuint(texture)))
        return false;
    if (!m_application->globalObject() || !m_application->shaderBuilder())
        return false;
    if (m_wholeSphere != showsWholeSphere())
        m_shaderDirty = true;
    if (m_shaderDirty.exchange(false))
        rebuildPrograms();
    if (!m_mainProgram)
        return false;
    m_texture = GLuint(texture);
    fillUniforms();
    drawEyes(functions, m_viewport.pixels);
    return true;
}

bool OrbilensView::showsWholeSphere() const
{
    const KGlobalObject *state = m_application->globalObject();
    return CameraMath::isWholeSphere(state->yawMin(), state->yawMax(), state->pitchMin(),
                                     state->pitchMax());
}

void OrbilensView::rebuildPrograms()
{
    KShaderCodeBuilder *builder = m_application->shaderBuilder();
    const QString vertexText = builder->vertexShaderCode();
    m_wholeSphere = showsWholeSphere();
    // The window has no colour controls: they keep their neutral values for good.
    const shader::FixedUniforms fixed{true, m_wholeSphere};
    m_mainProgram.build(vertexText, shader::withFixedUniforms(
                                        builder->fragmentShaderCode(false, false, false), fixed));
    m_dimProgram.build(vertexText, shader::dimText());
    m_overlayProgram.build(vertexText, shader::withFixedUniforms(
                                           builder->fragmentShaderCode(false, true, true), fixed));
}

void OrbilensView::fillUniforms()
{
    const KGlobalObject *globalObject = m_application->globalObject();
    const QPair<float, float> orvex =
        KShaderCodeBuilder::orvexProjectionParameters(globalObject->fov());
    m_uniforms.matrix = QuadProgram::fullViewport();
    m_uniforms.viewport = m_viewport;
    m_uniforms.fov = globalObject->fov();
    m_uniforms.yawMin = globalObject->yawMin();
    m_uniforms.yawMax = globalObject->yawMax();
    m_uniforms.pitchMin = globalObject->pitchMin();
    m_uniforms.pitchMax = globalObject->pitchMax();
    m_uniforms.cameraYaw = globalObject->yaw();
    m_uniforms.cameraPitch = globalObject->clampPitch(globalObject->pitch());
    m_uniforms.projScale = orvex.first;
    m_uniforms.projectionDistance = orvex.second;
}

void OrbilensView::drawEyes(QOpenGLFunctions *functions, const QSize &eyeSize)
{
    drawEye(0, functions, eyeSize);
    if (m_application->globalObject()->splitView())
        drawEye(1, functions, eyeSize);
}

void OrbilensView::drawEye(int eye, QOpenGLFunctions *functions, const QSize &size)
{
    const QRect viewport(QPoint(eye == 1 ? size.width() : 0, 0), size);
    const HeadsetView *headset = m_application->headsetView();
    const bool withInterface = headset && headset->isInterfaceActive();
    m_uniforms.eye = eye;
    if (!withInterface || !drawBlurred(functions, viewport)) {
        functions->glViewport(viewport.x(), 0, viewport.width(), viewport.height());
        m_mainProgram.draw(functions, m_uniforms, m_texture);
    }
    if (withInterface)
        drawInterface(functions, *headset);
}

bool OrbilensView::drawBlurred(QOpenGLFunctions *functions, const QRect &viewport)
{
    const QSize size = viewport.size();
    // Before a framebuffer is made: its constructor binds what Qt believes was bound.
    const GLuint target = boundFramebuffer(functions);
    if (!m_blurSource || m_blurSource->size() != size)
        m_blurSource = std::make_unique<QOpenGLFramebufferObject>(
            size, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D);
    if (!m_blurSource->isValid()) {
        functions->glBindFramebuffer(GL_FRAMEBUFFER, target);
        return false;
    }

    m_blurSource->bind();
    functions->glViewport(0, 0, size.width(), size.height());
    clearTarget(functions);
    m_mainProgram.draw(functions, m_uniforms, m_texture);
    // No release(): that binds the context's default and not the item's framebuffer.
    if (m_blur->draw(functions, m_blurSource->texture(), size, target, viewport))
        return true;
    functions->glBindFramebuffer(GL_FRAMEBUFFER, target);
    return false;
}

void OrbilensView::drawInterface(QOpenGLFunctions *functions, const HeadsetView &headset)
{
    if (!m_overlayProgram)
        return;
    functions->glEnable(GL_BLEND);
    functions->glBlendFunc(GL_DST_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    PanoramaUniforms uniforms = m_uniforms;
    for (const auto layer : {HeadsetView::Panel, HeadsetView::Foreground}) {
        const int texture = headset.interfaceTextureId(layer);
        if (texture <= 0)
            continue;
        // The panel stands in the world, the foreground is fixed to the head.
        uniforms.matViewInverse = layer == HeadsetView::Panel
                                      ? headset.interfaceOrientation() * m_uniforms.matViewInverse
                                      : QMatrix4x4();
        m_overlayProgram.draw(functions, uniforms, GLuint(texture));
    }
    functions->glDisable(GL_BLEND);
}

void OrbilensView::serveSnapshot(QOpenGLFunctions *functions, bool drawn)
{
    SnapshotRequest request;
    {
        QMutexLocker lock(&m_printLock);
        if (m_printScreenRequested == 0)
            return;
        if (!drawn && m_request.kind != SnapshotKind::None)
            return; // the picture of its medium is still on the way
        m_printScreenRequested = 0;
        std::swap(request, m_request);
    }
    emit printScreenRequestedChanged();
    if (request.kind != SnapshotKind::None)
        takeSnapshot(functions, request);
}

void OrbilensView::takeSnapshot(QOpenGLFunctions *functions, const SnapshotRequest &request)
{
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    QSize eye = m_viewport.pixels;
    if (request.kind == SnapshotKind::Render)
        eye = renderSize(request.sourceSize, eye, m_uniforms.fov, builder->projectionSource(),
                         builder->projection());
    const int eyes = m_application->globalObject()->splitView() ? 2 : 1;
    const QSize limited =
        limitedSize(QSize(eye.width() * eyes, eye.height()), m_application->maxTextureSize());
    eye = QSize(limited.width() / eyes, limited.height());
    if (eye.isEmpty())
        return;

    const GLuint itemFramebuffer = boundFramebuffer(functions);
    {
        QOpenGLFramebufferObject target(eye.width() * eyes, eye.height());
        if (target.isValid() && target.bind()) {
            clearTarget(functions);
            drawEyes(functions, eye);
            target.release();
            QtConcurrent::run(saveImage, target.toImage(false), request.kind, request.folder,
                              m_application);
        }
    }
    functions->glBindFramebuffer(GL_FRAMEBUFFER, itemFramebuffer);
}
