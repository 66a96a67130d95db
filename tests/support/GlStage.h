#pragma once

// A GL context without a window, a texture and a framebuffer: where shaders are drawn in tests.

#include "support/GlContext.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <memory>

namespace test {

/// Fills @p texture, made when it is 0, with @p image, its first row at 0.
inline GLuint uploadTexture(const QImage &image, GLuint texture = 0)
{
    QOpenGLFunctions *functions = QOpenGLContext::currentContext()->functions();
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    if (texture == 0)
        functions->glGenTextures(1, &texture);
    functions->glBindTexture(GL_TEXTURE_2D, texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        functions->glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    functions->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, pixels.width(), pixels.height(), 0, GL_RGBA,
                            GL_UNSIGNED_BYTE, pixels.constBits());
    return texture;
}

class GlStage
{
public:
    QOpenGLFunctions *functions() { return m_gl.context().functions(); }

    /// Binds a transparent target of this size and sets the viewport to it.
    void begin(const QSize &size)
    {
        m_target = std::make_unique<QOpenGLFramebufferObject>(size);
        m_target->bind();
        functions()->glViewport(0, 0, size.width(), size.height());
        functions()->glClear(GL_COLOR_BUFFER_BIT);
    }

    GLuint target() const { return m_target->handle(); }

    /// What was drawn since begin(), first row at the top.
    QImage end() { return m_target->toImage(); }

private:
    GlContext m_gl;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
};

} // namespace test
