#include "video/SwizzleBlit.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace {

constexpr char kVertexSource[] = "attribute vec4 vertex;\n"
                                 "attribute vec4 texture;\n"
                                 "uniform mat4 matrix;\n"
                                 "varying vec4 texCoord;\n"
                                 "void main(void)\n"
                                 "{\n"
                                 "   gl_Position = matrix * vertex;\n"
                                 "   texCoord = texture;\n"
                                 "}\n";

constexpr char kFragmentHead[] = "uniform sampler2D src;\n"
                                 "varying vec4 texCoord;\n"
                                 "void main(void)\n"
                                 "{\n"
                                 "   vec4 tc = texCoord;\n";
constexpr char kFragmentFlip[] = "   tc.y = 1.0 - tc.y;\n";
constexpr char kFragmentTail[] = "   vec4 color = texture2D(src, tc.xy);\n"
                                 "   gl_FragColor = vec4(color.b,color.g,color.r,color.a);\n"
                                 "}\n";

// Texture rows run downwards from the picture's top, target rows upwards.
constexpr GLfloat kCorners[] = {0, 0, 0, 1, 1, 1, 1, 0};
constexpr GLfloat kTexels[] = {0, 1, 0, 0, 1, 0, 1, 1};

} // namespace

bool SwizzleBlit::prepare()
{
    if (m_program)
        return m_program->isLinked();
    m_program = std::make_unique<QOpenGLShaderProgram>();
    m_program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexSource);
    m_program->addShaderFromSourceCode(
        QOpenGLShader::Fragment,
        QByteArray(kFragmentHead) +
            (m_order == RowOrder::TopRowFirst ? QByteArray(kFragmentFlip) : QByteArray()) +
            QByteArray(kFragmentTail));
    if (!m_program->link())
        return false;
    m_vertex = m_program->attributeLocation("vertex");
    m_texture = m_program->attributeLocation("texture");
    m_matrix = m_program->uniformLocation("matrix");
    m_source = m_program->uniformLocation("src");
    return true;
}

void SwizzleBlit::draw(GLuint texture)
{
    if (!prepare())
        return;
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    QMatrix4x4 matrix;
    matrix.ortho(0, 1, 0, 1, -1, 1);

    gl->glActiveTexture(GL_TEXTURE0);
    gl->glBindTexture(GL_TEXTURE_2D, texture);
    // A frame's texture has no mipmaps and so shows nothing with GL's default filter.
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    m_program->bind();
    m_program->setUniformValue(m_matrix, matrix);
    m_program->setUniformValue(m_source, 0);
    m_program->enableAttributeArray(m_vertex);
    m_program->enableAttributeArray(m_texture);
    m_program->setAttributeArray(m_vertex, kCorners, 2);
    m_program->setAttributeArray(m_texture, kTexels, 2);
    gl->glClearColor(0, 0, 0, 0);
    gl->glClear(GL_COLOR_BUFFER_BIT);
    gl->glDrawArrays(GL_TRIANGLE_FAN, 0, 4);
    m_program->disableAttributeArray(m_vertex);
    m_program->disableAttributeArray(m_texture);
    m_program->release();
    gl->glBindTexture(GL_TEXTURE_2D, 0);
}
