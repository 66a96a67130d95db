#pragma once

// A GL context without a window, a texture and a framebuffer: where shaders are drawn in tests.

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
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

/// What @p texture of the share group of @p shared holds, its first row at the top. @p shared must
/// be current on no other thread.
inline QImage downloadTexture(QOpenGLContext *shared, int texture, const QSize &size)
{
    QOpenGLContext context;
    context.setShareContext(shared);
    context.setFormat(shared->format());
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return {};
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    using GetTexImage = void (*)(GLenum, GLint, GLenum, GLenum, void *);
    context.functions()->glBindTexture(GL_TEXTURE_2D, GLuint(texture));
    reinterpret_cast<GetTexImage>(context.getProcAddress("glGetTexImage"))(
        GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    return image;
}

class GlStage
{
public:
    GlStage()
    {
        m_surface.create();
        m_context.create();
        m_context.makeCurrent(&m_surface);
    }

    QOpenGLFunctions *functions() { return m_context.functions(); }

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
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
};

} // namespace test
