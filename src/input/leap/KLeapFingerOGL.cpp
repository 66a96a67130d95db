#include "input/leap/KLeapFingerOGL.h"

#include "app/KGlobalObject.h"
#include "input/leap/HandMesh.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr float kHalfEyeDistance = 32; // millimetres

const char kVertexShader[] = R"(
    uniform mat4 u_MVPMatrix;
    uniform mat4 u_headMountedMatrix;
    attribute vec3 a_Position;
    attribute vec3 a_diffuse;
    varying vec3 v_diffuse;
    varying vec2 v_across; // x and w apart: what is interpolated in perspective comes out divided
    void main()
    {
        gl_Position = u_MVPMatrix * u_headMountedMatrix * vec4(a_Position, 1.0);
        v_across = gl_Position.xw;
        v_diffuse = a_diffuse;
    }
)";

const char kFragmentShader[] = R"(
    uniform int u_isLeft;
    uniform float u_WidthLimit;
    varying vec3 v_diffuse;
    varying vec2 v_across;
    void main()
    {
        float share = 0.5 + 0.5 * v_across.x / v_across.y;
        if (u_isLeft == 0)
            share = 1.0 - share;
        if (share > u_WidthLimit)
            discard;
        gl_FragColor = vec4(v_diffuse, 1.0) * 0.75;
    }
)";

} // namespace

KLeapFingerOGL::KLeapFingerOGL(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setRenderTarget(QQuickPaintedItem::InvertedYFramebufferObject);
    setAntialiasing(true);
}

KLeapFingerOGL::~KLeapFingerOGL() = default;

void KLeapFingerOGL::setCameraId(int id)
{
    if (id == m_cameraId || id < Window || id > RightEye)
        return;
    m_cameraId = id;
    emit cameraIdChanged();
    update();
}

void KLeapFingerOGL::setUserValue(double value)
{
    if (value == m_userValue || !std::isfinite(value))
        return;
    m_userValue = value;
    emit userValueChanged();
    update();
}

void KLeapFingerOGL::setHmdMode(int mode)
{
    if (mode == m_hmdMode)
        return;
    m_hmdMode = mode;
    emit hmdModeChanged();
    update();
}

void KLeapFingerOGL::setLensLimit(double limit)
{
    if (limit == m_lensLimit || !std::isfinite(limit))
        return;
    m_lensLimit = limit;
    emit lensLimitChanged();
    update();
}

void KLeapFingerOGL::drawFingersSlot(FingerList fingers)
{
    if (fingers.isEmpty() && m_fingers.isEmpty())
        return;
    m_fingers = std::move(fingers);
    update();
}

void KLeapFingerOGL::setKGlobalObjectSlot(KGlobalObject *camera)
{
    m_camera = camera;
    update();
}

void KLeapFingerOGL::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange && value.window) {
        const auto release = [this] {
            m_program.reset();
            m_programFailed = false;
        };
        connect(value.window, &QQuickWindow::sceneGraphInvalidated, this, release,
                Qt::DirectConnection);
    }
    QQuickPaintedItem::itemChange(change, value);
}

// --- Render thread ------------------------------------------------------------------------------

void KLeapFingerOGL::paint(QPainter *painter)
{
    if (m_fingers.isEmpty() || !QOpenGLContext::currentContext())
        return;
    painter->beginNativePainting();
    if (prepareProgram()) {
        const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : qreal(1.0);
        const QSize pixels = (QSizeF(width(), height()) * ratio).toSize();
        const bool split = m_cameraId == Window && m_camera && m_camera->splitView();
        if (split) {
            const int half = pixels.width() / 2;
            draw({0, 0, half, pixels.height()});
            draw({half, 0, half, pixels.height()});
        } else {
            draw({0, 0, pixels.width(), pixels.height()});
        }
        QOpenGLContext::currentContext()->functions()->glViewport(0, 0, pixels.width(),
                                                                  pixels.height());
    }
    painter->endNativePainting();
}

bool KLeapFingerOGL::prepareProgram()
{
    if (m_program || m_programFailed)
        return !m_programFailed;
    auto program = std::make_unique<QOpenGLShaderProgram>();
    m_programFailed = !program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) ||
                      !program->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader) ||
                      !program->link();
    if (!m_programFailed)
        m_program = std::move(program);
    return !m_programFailed;
}

void KLeapFingerOGL::draw(const QRect &viewport)
{
    if (viewport.isEmpty())
        return;
    float eyeOffset = 0;
    if (m_cameraId != Window)
        eyeOffset = m_cameraId == LeftEye ? -kHalfEyeDistance : kHalfEyeDistance;
    const float aspect = float(viewport.width()) / float(viewport.height());
    const HandMesh::Place place = m_hmdMode != 0 ? HandMesh::Place::Head : HandMesh::Place::Desk;
    const auto thickness = float(std::clamp(m_userValue, 0.1, 10.0));
    const std::vector<HandMesh::Vertex> vertices =
        HandMesh::build(m_fingers, place, eyeOffset, thickness);
    if (vertices.empty())
        return;

    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    gl->glViewport(viewport.x(), viewport.y(), viewport.width(), viewport.height());
    gl->glEnable(GL_CULL_FACE);
    gl->glDisable(GL_DEPTH_TEST);
    gl->glDisable(GL_SCISSOR_TEST);
    gl->glEnable(GL_BLEND);
    gl->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_program->bind();
    m_program->setUniformValue("u_MVPMatrix", HandMesh::projection(place, aspect, eyeOffset));
    m_program->setUniformValue("u_headMountedMatrix", HandMesh::headMounted(place));
    m_program->setUniformValue("u_isLeft", m_cameraId == RightEye ? 0 : 1);
    m_program->setUniformValue("u_WidthLimit", m_cameraId == Window ? 2.0F : float(m_lensLimit));
    constexpr int kStride = sizeof(HandMesh::Vertex);
    gl->glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_program->enableAttributeArray("a_Position");
    m_program->enableAttributeArray("a_diffuse");
    m_program->setAttributeArray("a_Position", GL_FLOAT, &vertices.front().position, 3, kStride);
    m_program->setAttributeArray("a_diffuse", GL_FLOAT, &vertices.front().diffuse, 3, kStride);
    gl->glDrawArrays(GL_TRIANGLES, 0, GLsizei(vertices.size()));
    m_program->disableAttributeArray("a_Position");
    m_program->disableAttributeArray("a_diffuse");
    m_program->release();
    gl->glDisable(GL_CULL_FACE);
    gl->glDisable(GL_BLEND);
}
