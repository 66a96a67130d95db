#pragma once

// A GL context without a window, a texture and a framebuffer: where shaders are drawn in tests.

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <memory>

namespace test {

class GlStage
{
public:
    GlStage();
    ~GlStage();

    QOpenGLFunctions *functions() { return m_context.functions(); }

    /// A texture of the stage with @p image, its first row at 0; each call forgets the last one.
    GLuint texture(const QImage &image);

    /// Binds a transparent target of this size and sets the viewport to it.
    void begin(const QSize &size);

    /// What was drawn since begin(), first row at the top.
    QImage end();

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
    GLuint m_texture = 0;
};

} // namespace test
