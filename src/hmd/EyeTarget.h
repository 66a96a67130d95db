#pragma once

// What one OpenVR eye is drawn into: a multisampled framebuffer, and the plain texture to which
// its samples are resolved for the runtime. Owned by the OpenVR thread; made, used and deleted with
// its context current.

#include <QSize>
#include <qopengl.h>

class QOpenGLFunctions_3_2_Core;

class EyeTarget
{
public:
    explicit EyeTarget(QOpenGLFunctions_3_2_Core *functions)
        : m_functions(functions)
    {}
    ~EyeTarget();
    EyeTarget(const EyeTarget &) = delete;
    EyeTarget &operator=(const EyeTarget &) = delete;

    /// Once; false when the driver cannot have such a target.
    [[nodiscard]] bool create(const QSize &size);

    /// Drawing between the two goes into the multisampled framebuffer.
    void beginDrawing();
    void endDrawing();

    /// Brings what was drawn into texture().
    void resolve();

    GLuint texture() const { return m_resolveTexture; }

private:
    QOpenGLFunctions_3_2_Core *const m_functions;
    QSize m_size;
    GLuint m_depthBuffer = 0;
    GLuint m_renderTexture = 0;
    GLuint m_renderFramebuffer = 0;
    GLuint m_resolveTexture = 0;
    GLuint m_resolveFramebuffer = 0;
};
