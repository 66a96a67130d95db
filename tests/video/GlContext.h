#pragma once

// A GL context of its own for one test, current on a surface without a window.

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <gtest/gtest.h>

namespace test {

class GlContext
{
public:
    GlContext()
    {
        m_surface.create();
        EXPECT_TRUE(m_context.create());
        EXPECT_TRUE(m_context.makeCurrent(&m_surface));
    }
    ~GlContext() { m_context.doneCurrent(); }

    QOpenGLContext &context() { return m_context; }
    QOpenGLFunctions *gl() { return m_context.functions(); }
    void setCurrent(bool current)
    {
        if (current)
            m_context.makeCurrent(&m_surface);
        else
            m_context.doneCurrent();
    }

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
};

} // namespace test
