#include "hmd/TextureBuffer.h"

#include "hmd/OvrRuntime.h"

#include <QOpenGLFunctions_3_2_Core>

namespace {

// A chain of more is no chain: the runtime uses two or three.
constexpr int kLongestChain = 64;

} // namespace

TextureBuffer::TextureBuffer(const OvrRuntime &runtime, ovrSession session,
                             QOpenGLFunctions_3_2_Core *functions, const QSize &size)
    : m_runtime(runtime)
    , m_session(session)
    , m_functions(functions)
    , m_size(size)
{}

TextureBuffer::~TextureBuffer()
{
    m_functions->glDeleteFramebuffers(1, &m_framebuffer);
    m_functions->glDeleteTextures(1, &m_depth);
    if (m_chain)
        m_runtime.ovr_DestroyTextureSwapChain(m_session, m_chain);
}

ovrResult TextureBuffer::create()
{
    GLint largest = 0;
    m_functions->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (m_size.isEmpty() || m_size.width() > largest || m_size.height() > largest)
        return ovrError_TextureSwapChainInvalid;

    // The shader writes colours as a screen takes them. A chain that says so is read right by the
    // compositor, as long as GL does not encode what is written a second time.
    m_functions->glDisable(GL_FRAMEBUFFER_SRGB);
    ovrTextureSwapChainDesc desc = {};
    desc.Type = ovrTexture_2D;
    desc.Format = OVR_FORMAT_R8G8B8A8_UNORM_SRGB;
    desc.ArraySize = 1;
    desc.Width = m_size.width();
    desc.Height = m_size.height();
    desc.MipLevels = 1;
    desc.SampleCount = 1;
    const ovrResult result = m_runtime.ovr_CreateTextureSwapChainGL(m_session, &desc, &m_chain);
    if (ovrFailed(result))
        return result;
    const ovrResult prepared = prepareChain();
    if (ovrFailed(prepared))
        return prepared;
    makeDepth();
    m_functions->glGenFramebuffers(1, &m_framebuffer);
    return ovrSuccess;
}

ovrResult TextureBuffer::prepareChain()
{
    int length = 0;
    const ovrResult result = m_runtime.ovr_GetTextureSwapChainLength(m_session, m_chain, &length);
    if (ovrFailed(result))
        return result;
    if (length < 1 || length > kLongestChain)
        return ovrError_TextureSwapChainInvalid;
    for (int index = 0; index < length; ++index) {
        std::uint32_t texture = 0;
        const ovrResult found =
            m_runtime.ovr_GetTextureSwapChainBufferGL(m_session, m_chain, index, &texture);
        if (ovrFailed(found))
            return found;
        m_functions->glBindTexture(GL_TEXTURE_2D, texture);
        setParameters();
    }
    m_functions->glBindTexture(GL_TEXTURE_2D, 0);
    return ovrSuccess;
}

void TextureBuffer::makeDepth()
{
    m_functions->glGenTextures(1, &m_depth);
    m_functions->glBindTexture(GL_TEXTURE_2D, m_depth);
    setParameters();
    m_functions->glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT32F, m_size.width(),
                              m_size.height(), 0, GL_DEPTH_COMPONENT, GL_FLOAT, nullptr);
    m_functions->glBindTexture(GL_TEXTURE_2D, 0);
}

void TextureBuffer::setParameters()
{
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void TextureBuffer::attach(std::uint32_t colour, std::uint32_t depth)
{
    m_functions->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, colour,
                                        0);
    m_functions->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, depth,
                                        0);
}

ovrResult TextureBuffer::begin()
{
    int index = 0;
    ovrResult result = m_runtime.ovr_GetTextureSwapChainCurrentIndex(m_session, m_chain, &index);
    if (ovrFailed(result))
        return result;
    std::uint32_t texture = 0;
    result = m_runtime.ovr_GetTextureSwapChainBufferGL(m_session, m_chain, index, &texture);
    if (ovrFailed(result))
        return result;
    m_functions->glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    attach(texture, m_depth);
    if (m_functions->glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        m_functions->glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return ovrError_TextureSwapChainInvalid;
    }
    m_functions->glViewport(0, 0, m_size.width(), m_size.height());
    m_functions->glClear(GL_DEPTH_BUFFER_BIT);
    return ovrSuccess;
}

ovrResult TextureBuffer::commit()
{
    attach(0, 0);
    m_functions->glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return m_runtime.ovr_CommitTextureSwapChain(m_session, m_chain);
}
