#include "render/QuadProgram.h"

#include <QOpenGLFunctions>
#include <QThread>

namespace {

// Fixed before linking, so that no draw has to ask.
constexpr int kVertexAttribute = 0;
constexpr int kTextureAttribute = 1;

constexpr GLfloat kCorners[] = {0.0f, 0.0f, 1.0f, 0.0f, 1.0f, 1.0f, 0.0f, 1.0f};

} // namespace

void DeleteOnOwnThread::operator()(QObject *object) const
{
    // A render thread without an event loop of its own would keep them until it ends.
    if (object->thread() == QThread::currentThread())
        delete object;
    else
        object->deleteLater();
}

QuadProgram::~QuadProgram() = default;

bool QuadProgram::build(const QString &vertexText, const QString &fragmentText,
                        const char *vertexName, const char *textureName)
{
    reset();
    std::unique_ptr<QOpenGLShaderProgram, DeleteOnOwnThread> program(new QOpenGLShaderProgram);
    program->bindAttributeLocation(vertexName, kVertexAttribute);
    program->bindAttributeLocation(textureName, kTextureAttribute);
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertexText) ||
        !program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragmentText) ||
        !program->link())
        return false;
    m_program = std::move(program);
    m_matrix = m_program->uniformLocation("matrix");
    return true;
}

void QuadProgram::reset()
{
    if (m_program)
        m_program->release();
    m_program.reset();
}

void QuadProgram::draw(QOpenGLFunctions *functions, const QMatrix4x4 &matrix)
{
    m_program->setUniformValue(m_matrix, matrix);
    m_program->enableAttributeArray(kVertexAttribute);
    m_program->enableAttributeArray(kTextureAttribute);
    m_program->setAttributeArray(kVertexAttribute, kCorners, 2);
    m_program->setAttributeArray(kTextureAttribute, kCorners, 2);
    functions->glDrawArrays(GL_TRIANGLE_FAN, 0, 4);
    m_program->disableAttributeArray(kVertexAttribute);
    m_program->disableAttributeArray(kTextureAttribute);
    m_program->release();
}

const QMatrix4x4 &QuadProgram::fullViewport()
{
    static const QMatrix4x4 matrix = [] {
        QMatrix4x4 result;
        result.perspective(90.0f, 1.0f, 0.01f, 100.0f);
        result.translate(0.0f, 0.0f, -0.5f);
        result.translate(-0.5f, -0.5f, 0.0f);
        return result;
    }();
    return matrix;
}
