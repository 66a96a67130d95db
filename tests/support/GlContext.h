#pragma once

// A GL context of its own for one test, current on a surface without a window, and what textures
// hold.

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions_2_1>

#include <gtest/gtest.h>

namespace test {

class GlContext
{
public:
    /// In the share group of all windows, or of @p share, which must be current on no other thread.
    explicit GlContext(QOpenGLContext *share = QOpenGLContext::globalShareContext())
    {
        m_surface.create();
        if (share)
            m_context.setFormat(share->format());
        m_context.setShareContext(share);
        EXPECT_TRUE(m_context.create() && m_context.makeCurrent(&m_surface));
    }
    ~GlContext() { m_context.doneCurrent(); }

    QOpenGLFunctions_2_1 *operator->() { return version<QOpenGLFunctions_2_1>(); }
    /// The context's functions of one version.
    template <class Functions>
    Functions *version()
    {
        auto *functions = m_context.versionFunctions<Functions>();
        EXPECT_TRUE(functions && functions->initializeOpenGLFunctions());
        return functions;
    }
    QOpenGLContext &context() { return m_context; }
    void setCurrent(bool current)
    {
        current ? void(m_context.makeCurrent(&m_surface)) : m_context.doneCurrent();
    }

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
};

/// What @p texture of the share group of @p shared holds, its first row at the top.
inline QImage downloadTexture(QOpenGLContext *shared, int texture)
{
    GlContext gl(shared);
    QSize size;
    gl->glBindTexture(GL_TEXTURE_2D, GLuint(texture));
    gl->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &size.rwidth());
    gl->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &size.rheight());
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    gl->glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    return image;
}

} // namespace test
