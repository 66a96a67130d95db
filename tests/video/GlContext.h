#pragma once

// A GL context of its own for one test, current on a surface without a window and in the share
// group of all windows.

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions_2_1>

#include <gtest/gtest.h>

namespace test {

class GlContext
{
public:
    GlContext()
    {
        m_surface.create();
        m_context.setShareContext(QOpenGLContext::globalShareContext());
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

} // namespace test
