#include "input/realsense/RealSenseCamera.h"

#include "input/realsense/KRealSense.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QPainter>
#include <QQuickWindow>
#include <QRunnable>
#include <QVector2D>

#include <algorithm>
#include <vector>

namespace {

constexpr int kSecondMs = 1000;
// Core headers of old drivers lack it.
constexpr GLenum kProgramPointSize = 0x8642;

const char kPictureVertex[] = R"(
    uniform mat4 matrix;
    attribute vec2 vertex;
    varying vec2 place;
    void main()
    {
        place = vertex;
        gl_Position = matrix * vec4(vertex, 0.0, 1.0);
    }
)";

const char kPictureFragment[] = R"(
    uniform sampler2D picture;
    varying vec2 place;
    void main()
    {
        gl_FragColor = vec4(texture2D(picture, place).rgb, 1.0);
    }
)";

const char kPointVertex[] = R"(
    uniform mat4 matrix;
    attribute vec2 vertex;
    void main()
    {
        gl_PointSize = 4.0;
        gl_Position = matrix * vec4(vertex, 0.0, 1.0);
    }
)";

const char kPointFragment[] = R"(
    void main()
    {
        gl_FragColor = vec4(0.0, 0.64, 0.85, 1.0);
    }
)";

std::unique_ptr<QOpenGLShaderProgram> build(const char *vertex, const char *fragment)
{
    auto program = std::make_unique<QOpenGLShaderProgram>();
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertex) ||
        !program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment) || !program->link())
        program.reset();
    return program;
}

/// From (0, 0) top left and (1, 1) bottom right to the item's picture.
QMatrix4x4 placement()
{
    QMatrix4x4 matrix;
    matrix.ortho(0, 1, 1, 0, -1, 1);
    return matrix;
}

class DeleteTexture : public QRunnable
{
public:
    explicit DeleteTexture(GLuint texture)
        : m_texture(texture)
    {}

    void run() override
    {
        if (QOpenGLContext *context = QOpenGLContext::currentContext())
            context->functions()->glDeleteTextures(1, &m_texture);
    }

private:
    GLuint m_texture;
};

} // namespace

RealSenseCamera::RealSenseCamera(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setRenderTarget(QQuickPaintedItem::InvertedYFramebufferObject);
    connect(&m_fpsTimer, &QTimer::timeout, this, &RealSenseCamera::computeFps);
    m_fpsTimer.start(kSecondMs);
}

RealSenseCamera::~RealSenseCamera() = default;

void RealSenseCamera::initialize(KRealSense *kRealSense)
{
    if (m_source)
        disconnect(m_source, nullptr, this, nullptr);
    m_source = kRealSense;
    if (m_source)
        connect(m_source, &KRealSense::imageChanged, this, &RealSenseCamera::onImageChanged);
    onImageChanged();
}

void RealSenseCamera::onImageChanged()
{
    m_image = m_source ? m_source->image() : QImage();
    m_points = m_source ? m_source->handPoints() : QVector<QPointF>();
    update();
}

void RealSenseCamera::computeFps()
{
    const int painted = m_painted.exchange(0);
    if (painted == m_fps)
        return;
    m_fps = painted;
    emit fpsChanged();
}

void RealSenseCamera::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange) {
        if (window()) {
            disconnect(window(), &QQuickWindow::sceneGraphInvalidated, this, nullptr);
            if (m_texture != 0)
                window()->scheduleRenderJob(new DeleteTexture(m_texture),
                                            QQuickWindow::BeforeSynchronizingStage);
            m_texture = 0;
        }
        if (value.window)
            connect(value.window, &QQuickWindow::sceneGraphInvalidated, this,
                    &RealSenseCamera::releaseGraphics, Qt::DirectConnection);
    }
    QQuickPaintedItem::itemChange(change, value);
}

// --- Render thread ------------------------------------------------------------------------------

void RealSenseCamera::releaseGraphics()
{
    if (m_texture != 0)
        DeleteTexture(m_texture).run();
    m_texture = 0;
    m_pictureProgram.reset();
    m_pointProgram.reset();
    m_failed = false;
}

bool RealSenseCamera::prepareGraphics()
{
    if (m_failed || m_texture != 0)
        return !m_failed;
    m_pictureProgram = build(kPictureVertex, kPictureFragment);
    m_pointProgram = build(kPointVertex, kPointFragment);
    m_failed = !m_pictureProgram || !m_pointProgram;
    if (m_failed)
        return false;
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    gl->glGenTextures(1, &m_texture);
    gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        gl->glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        gl->glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    return true;
}

void RealSenseCamera::paint(QPainter *painter)
{
    if (m_image.isNull() || !QOpenGLContext::currentContext())
        return;
    painter->beginNativePainting();
    if (prepareGraphics()) {
        QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
        gl->glDisable(GL_SCISSOR_TEST);
        gl->glDisable(GL_DEPTH_TEST);
        gl->glDisable(GL_BLEND);
        gl->glBindBuffer(GL_ARRAY_BUFFER, 0);
        drawPicture();
        drawPoints();
        ++m_painted;
    }
    painter->endNativePainting();
}

void RealSenseCamera::drawPicture()
{
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    const QImage pixels = m_image.convertToFormat(QImage::Format_RGBA8888);
    gl->glActiveTexture(GL_TEXTURE0);
    gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, pixels.width(), pixels.height(), 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, pixels.constBits());
    const QVector2D corners[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    m_pictureProgram->bind();
    m_pictureProgram->setUniformValue("matrix", placement());
    m_pictureProgram->setUniformValue("picture", 0);
    m_pictureProgram->enableAttributeArray("vertex");
    m_pictureProgram->setAttributeArray("vertex", corners);
    gl->glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    m_pictureProgram->disableAttributeArray("vertex");
    m_pictureProgram->release();
    gl->glBindTexture(GL_TEXTURE_2D, 0);
}

void RealSenseCamera::drawPoints()
{
    if (m_points.isEmpty())
        return;
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    std::vector<QVector2D> points;
    for (const QPointF &point : qAsConst(m_points))
        points.emplace_back(point);
    gl->glEnable(kProgramPointSize);
    m_pointProgram->bind();
    m_pointProgram->setUniformValue("matrix", placement());
    m_pointProgram->enableAttributeArray("vertex");
    m_pointProgram->setAttributeArray("vertex", points.data());
    gl->glDrawArrays(GL_POINTS, 0, GLsizei(points.size()));
    m_pointProgram->disableAttributeArray("vertex");
    m_pointProgram->release();
    gl->glDisable(kProgramPointSize);
}
