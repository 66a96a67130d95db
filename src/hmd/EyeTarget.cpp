#include "hmd/EyeTarget.h"

#include <QOpenGLFunctions_3_2_Core>

namespace {

constexpr int kSamples = 4;

} // namespace

EyeTarget::~EyeTarget()
{
    m_functions->glDeleteFramebuffers(1, &m_renderFramebuffer);
    m_functions->glDeleteFramebuffers(1, &m_resolveFramebuffer);
    m_functions->glDeleteRenderbuffers(1, &m_depthBuffer);
    m_functions->glDeleteTextures(1, &m_renderTexture);
    m_functions->glDeleteTextures(1, &m_resolveTexture);
}

bool EyeTarget::create(const QSize &size)
{
    m_size = size;
    QOpenGLFunctions_3_2_Core *gl = m_functions;
    gl->glGenFramebuffers(1, &m_renderFramebuffer);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_renderFramebuffer);
    gl->glGenRenderbuffers(1, &m_depthBuffer);
    gl->glBindRenderbuffer(GL_RENDERBUFFER, m_depthBuffer);
    gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER, kSamples, GL_DEPTH_COMPONENT,
                                         size.width(), size.height());
    gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  m_depthBuffer);
    gl->glGenTextures(1, &m_renderTexture);
    gl->glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, m_renderTexture);
    gl->glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, kSamples, GL_RGBA8, size.width(),
                                size.height(), GL_TRUE);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D_MULTISAMPLE,
                               m_renderTexture, 0);
    const bool drawable = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;

    gl->glGenFramebuffers(1, &m_resolveFramebuffer);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_resolveFramebuffer);
    gl->glGenTextures(1, &m_resolveTexture);
    gl->glBindTexture(GL_TEXTURE_2D, m_resolveTexture);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width(), size.height(), 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, nullptr);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                               m_resolveTexture, 0);
    const bool resolvable = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    gl->glBindFramebuffer(GL_FRAMEBUFFER, 0);
    gl->glBindTexture(GL_TEXTURE_2D, 0);
    gl->glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    gl->glBindRenderbuffer(GL_RENDERBUFFER, 0);
    return drawable && resolvable;
}

void EyeTarget::beginDrawing()
{
    m_functions->glEnable(GL_MULTISAMPLE);
    m_functions->glBindFramebuffer(GL_FRAMEBUFFER, m_renderFramebuffer);
    m_functions->glViewport(0, 0, m_size.width(), m_size.height());
}

void EyeTarget::endDrawing()
{
    m_functions->glBindFramebuffer(GL_FRAMEBUFFER, 0);
    m_functions->glDisable(GL_MULTISAMPLE);
}

void EyeTarget::resolve()
{
    const int width = m_size.width();
    const int height = m_size.height();
    m_functions->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_renderFramebuffer);
    m_functions->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolveFramebuffer);
    m_functions->glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                                   GL_LINEAR);
    m_functions->glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    m_functions->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
}
