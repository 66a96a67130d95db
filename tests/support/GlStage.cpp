#include "support/GlStage.h"

namespace test {

GlStage::GlStage()
{
    m_surface.create();
    m_context.create();
    m_context.makeCurrent(&m_surface);
}

GlStage::~GlStage()
{
    if (m_texture)
        functions()->glDeleteTextures(1, &m_texture);
    m_target.reset();
    m_context.doneCurrent();
}

GLuint GlStage::texture(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    if (!m_texture)
        functions()->glGenTextures(1, &m_texture);
    functions()->glBindTexture(GL_TEXTURE_2D, m_texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        functions()->glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    functions()->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, pixels.width(), pixels.height(), 0,
                              GL_RGBA, GL_UNSIGNED_BYTE, pixels.constBits());
    return m_texture;
}

void GlStage::begin(const QSize &size)
{
    if (!m_target || m_target->size() != size)
        m_target = std::make_unique<QOpenGLFramebufferObject>(size);
    m_target->bind();
    functions()->glViewport(0, 0, size.width(), size.height());
    functions()->glClearColor(0, 0, 0, 0);
    functions()->glClear(GL_COLOR_BUFFER_BIT);
}

QImage GlStage::end()
{
    return m_target->toImage();
}

} // namespace test
