#pragma once

// The chain of textures through which one eye's pictures reach the Oculus runtime, with the
// framebuffer and the depth texture to draw them; owned by WorkerThreadOculus, used on its thread
// with its context current.

#include "hmd/OvrTypes.h"

#include <QSize>

class OvrRuntime;
class QOpenGLFunctions_3_2_Core;

class TextureBuffer
{
public:
    /// Everything given outlives the object.
    TextureBuffer(const OvrRuntime &runtime, ovrSession session,
                  QOpenGLFunctions_3_2_Core *functions, const QSize &size);
    ~TextureBuffer();
    TextureBuffer(const TextureBuffer &) = delete;
    TextureBuffer &operator=(const TextureBuffer &) = delete;

    /// Makes the chain and all textures. After a failure the object can only be destroyed.
    [[nodiscard]] ovrResult create();

    /// Binds the framebuffer with the chain's present texture, its depth cleared and the viewport
    /// over the whole of it.
    [[nodiscard]] ovrResult begin();

    /// Takes the textures off the framebuffer again and hands the picture to the runtime.
    [[nodiscard]] ovrResult commit();

    ovrTextureSwapChain chain() const { return m_chain; }
    QSize size() const { return m_size; }

private:
    [[nodiscard]] ovrResult prepareChain();
    void makeDepth();
    void setParameters();
    void attach(std::uint32_t colour, std::uint32_t depth);

    const OvrRuntime &m_runtime;
    const ovrSession m_session;
    QOpenGLFunctions_3_2_Core *const m_functions;
    const QSize m_size;
    ovrTextureSwapChain m_chain = nullptr;
    std::uint32_t m_framebuffer = 0;
    std::uint32_t m_depth = 0;
};
