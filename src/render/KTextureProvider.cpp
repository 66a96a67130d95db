#include "render/KTextureProvider.h"

#include "render/FrameSource.h"
#include "render/ShaderText.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGTexture>
#include <QSGTextureProvider>
#include <QTimer>

namespace {

constexpr int kPollInterval = 1000; // ms

constexpr char kBlitFragment[] = R"(varying highp vec4 texCoord;
uniform sampler2D src;
void main(){
highp vec4 tex = texCoord;tex.y = 1.0 - tex.y;highp vec4 color = texture2D(src,tex.xy);
gl_FragColor = vec4(color.r,color.g,color.b,color.a);
}
)";

/// Where the picture of @p item comes from. An effect source would draw a still once more, into a
/// second texture of its size with a depth buffer beside it; what it would draw has the picture.
QQuickItem *pictureOf(QQuickItem *item, bool isImage)
{
    if (!item || !isImage)
        return item;
    auto *source = item->property("sourceItem").value<QQuickItem *>();
    return source && source->isTextureProvider() ? source : item;
}

/// The unit square with y down: together with the flip in the shader the rows keep their order.
const QMatrix4x4 &downwardSquare()
{
    static const QMatrix4x4 matrix = [] {
        QMatrix4x4 result;
        result.ortho(0.0f, 1.0f, 1.0f, 0.0f, -1.0f, 1.0f);
        return result;
    }();
    return matrix;
}

} // namespace

KTextureProvider::KTextureProvider(Application *, bool blitEnabled, bool sharedMemory)
    : m_blitEnabled(blitEnabled)
    , m_sharedMemory(sharedMemory)
{}

KTextureProvider::~KTextureProvider()
{
    // The render thread is gone, or idle behind the GUI thread, when the owner deletes this.
    if (m_pollTimer)
        m_pollTimer->deleteLater();
}

int KTextureProvider::textureId() const
{
    if (m_sharedMemory)
        return m_frameSource ? m_frameSource->textureId() : 0;
    return m_textureId;
}

void KTextureProvider::setTextureId(int textureId)
{
    if (m_textureId.exchange(textureId) != textureId)
        emit textureIdChanged();
}

QSize KTextureProvider::textureSize() const
{
    if (m_sharedMemory && m_frameSource)
        return m_frameSource->textureSize();
    QMutexLocker lock(&m_sizeLock);
    return m_textureSize;
}

void KTextureProvider::setTextureSize(const QSize &textureSize)
{
    {
        QMutexLocker lock(&m_sizeLock);
        if (m_textureSize == textureSize)
            return;
        m_textureSize = textureSize;
    }
    emit textureSizeChanged();
}

void KTextureProvider::setFrameSource(std::unique_ptr<FrameSource> source)
{
    m_frameSource = std::move(source);
}

void KTextureProvider::setShaderEffectSource(QQuickItem *quickItem, bool isImage)
{
    quickItem = pictureOf(quickItem, isImage);
    m_shaderEffectSource = quickItem;
    m_isImage = isImage;
    disconnect(m_windowOfItem);
    if (quickItem) {
        // An item of a scene that is still being made has no window yet.
        m_windowOfItem =
            connect(quickItem, &QQuickItem::windowChanged, this, &KTextureProvider::attachWindow);
        attachWindow(quickItem->window());
    } else {
        attachWindow(m_window);
    }
}

void KTextureProvider::attachWindow(QQuickWindow *window)
{
    if (!window)
        return;
    if (m_window && m_window != window)
        disconnect(m_window, nullptr, this, nullptr);
    m_window = window;
    connect(window, &QQuickWindow::beforeSynchronizing, this,
            &KTextureProvider::onBeforeSynchronizing,
            Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
    connect(window, &QQuickWindow::afterRendering, this, &KTextureProvider::onAfterRendering,
            Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
    connect(window, &QQuickWindow::sceneGraphInvalidated, this, &KTextureProvider::stopTimer,
            Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
    window->update();
}

void KTextureProvider::onBeforeSynchronizing()
{
    forgetProvider();
    m_sourceIsImage = m_isImage;
    if (m_shaderEffectSource && m_shaderEffectSource->isTextureProvider()) {
        m_qsgProvider = m_shaderEffectSource->textureProvider();
        connect(m_qsgProvider, &QSGTextureProvider::textureChanged, this,
                &KTextureProvider::onProviderSignal, Qt::DirectConnection);
        connect(m_qsgProvider, &QObject::destroyed, this, &KTextureProvider::onProviderDestroyed,
                Qt::DirectConnection);
        onProviderSignal(); // it may hold its picture already
    }
    disconnect(m_window, &QQuickWindow::beforeSynchronizing, this,
               &KTextureProvider::onBeforeSynchronizing);
}

void KTextureProvider::forgetProvider()
{
    if (m_qsgProvider)
        disconnect(m_qsgProvider, nullptr, this, nullptr);
    m_qsgProvider = nullptr;
}

// The signal comes while the frame is being prepared. A texture that the scene draws still has its
// old name then, or none, and its old content; the new ones exist when that frame is drawn, and no
// signal tells. A still's own texture is complete now, and may be taken back before the frame ends.
void KTextureProvider::onProviderSignal()
{
    m_readAfterFrame = isDrawnByScene();
    if (!copies())
        onQsgTextureChanged();
}

bool KTextureProvider::isDrawnByScene() const
{
    return m_qsgProvider && qobject_cast<QSGDynamicTexture *>(m_qsgProvider->texture());
}

void KTextureProvider::onAfterRendering()
{
    if (!m_readAfterFrame)
        return;
    m_readAfterFrame = false;
    onQsgTextureChanged();
}

void KTextureProvider::onQsgTextureChanged()
{
    if (!m_qsgProvider)
        return;
    QSGTexture *texture = m_qsgProvider->texture();
    startPolling();
    if (!texture)
        return;
    if (m_sourceIsImage && !(texture = uploaded(texture)))
        return;

    const int textureId = texture->textureId();
    const QSize size = texture->textureSize();
    if (copies() && QOpenGLContext::currentContext() && textureId > 0 && copy(textureId, size))
        publish(int(m_blitTarget->texture()), m_blitTarget->size());
    else
        publish(textureId, size);
}

// Nothing of the scene draws a still, so nothing else brings it to the graphics card. Null where
// that must wait for the scene graph's context.
QSGTexture *KTextureProvider::uploaded(QSGTexture *texture) const
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context || context != m_window->openglContext())
        return nullptr;
    // A small picture shares a texture with others of the scene.
    if (texture->isAtlasTexture())
        texture = texture->removedFromAtlas();
    if (texture) {
        texture->bind();
        context->functions()->glFlush(); // other contexts draw it too
    }
    return texture;
}

void KTextureProvider::publish(int textureId, const QSize &size)
{
    m_publishedId = textureId;
    setTextureSize(size);
    setTextureId(textureId);
}

// Some sources replace their texture without the signal; the timer catches that. A still's own
// texture never does, and one that was just taken back would come up again.
void KTextureProvider::startPolling()
{
    if (m_pollTimer)
        return;
    m_pollTimer = new QTimer; // on this thread, unlike the provider itself
    connect(
        m_pollTimer, &QTimer::timeout, this,
        [this] {
            if (isDrawnByScene())
                onQsgTextureChanged();
        },
        Qt::DirectConnection);
    m_pollTimer->start(kPollInterval);
}

bool KTextureProvider::copy(int textureId, const QSize &size)
{
    if (!m_blitTarget || m_blitTarget->size() != size) {
        m_blitTarget = std::make_unique<QOpenGLFramebufferObject>(
            size, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D);
    }
    if (!m_blitProgram) {
        if (!m_blitProgram.build(shader::vertexText(), QLatin1String(kBlitFragment)))
            return false;
        m_blitSampler = m_blitProgram.uniformLocation("src");
    }
    if (!m_blitTarget->isValid())
        return false;

    QOpenGLFunctions *functions = QOpenGLContext::currentContext()->functions();
    m_window->resetOpenGLState(); // the scene leaves scissor and blending behind
    functions->glActiveTexture(GL_TEXTURE0);
    functions->glBindTexture(GL_TEXTURE_2D, GLuint(textureId));
    m_blitTarget->bind();
    m_blitProgram.bind();
    m_blitProgram.set(m_blitSampler, 0);
    functions->glViewport(0, 0, size.width(), size.height());
    functions->glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    functions->glClear(GL_COLOR_BUFFER_BIT);
    m_blitProgram.draw(functions, downwardSquare());
    m_blitTarget->release();
    m_window->resetOpenGLState();
    return true;
}

void KTextureProvider::onProviderDestroyed()
{
    // The texture dies with its provider; a player may have stated another one meanwhile.
    if (m_publishedId > 0 && m_publishedId == m_textureId && !copies())
        publish(0, textureSize());
}

void KTextureProvider::stopTimer()
{
    if (m_pollTimer) {
        m_pollTimer->stop();
        m_pollTimer->deleteLater();
        m_pollTimer = nullptr;
    }
    m_readAfterFrame = false;
    forgetProvider();
    m_blitTarget.reset();
    m_blitProgram.reset();
    // What came from the scene graph went with it; a scene graph made anew is followed again.
    if (m_publishedId > 0 && m_publishedId == m_textureId)
        publish(0, textureSize());
    if (m_shaderEffectSource)
        connect(m_window, &QQuickWindow::beforeSynchronizing, this,
                &KTextureProvider::onBeforeSynchronizing,
                Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
}
