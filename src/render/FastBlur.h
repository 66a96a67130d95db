#pragma once

// Blurs a texture by a separable Gaussian of 15 taps; owned by the view, which shows its picture
// so behind the interface inside the headset. Used on the render thread only.

#include "render/QuadProgram.h"

#include <QObject>
#include <QRect>

class QOpenGLFramebufferObject;

class FastBlur : public QObject
{
    Q_OBJECT

public:
    FastBlur();
    ~FastBlur() override;

    /// Draws @p texture, of @p size pixels, blurred into @p viewport of the framebuffer @p target,
    /// which is bound afterwards. False, with nothing drawn, when the driver refuses.
    [[nodiscard]] bool draw(QOpenGLFunctions *functions, GLuint texture, const QSize &size,
                            GLuint target, const QRect &viewport);

    /// Lets the GL objects go; the next draw makes them anew.
    void reset();

private:
    struct Pass
    {
        QuadProgram program;
        int width = -1;
        int height = -1;
        int sampler = -1;
    };

    [[nodiscard]] bool prepare(const QSize &size);
    static bool buildPass(Pass &pass, const char *vertexText, const char *fragmentText);
    static void drawPass(Pass &pass, QOpenGLFunctions *functions, GLuint texture,
                         const QSize &size);

    Pass m_horizontal;
    Pass m_vertical;
    Pass m_copy;
    std::unique_ptr<QOpenGLFramebufferObject> m_first;
    std::unique_ptr<QOpenGLFramebufferObject> m_second;
};
