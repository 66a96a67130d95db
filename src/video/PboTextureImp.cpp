#include "video/PboTextureImp.h"

#include "video/UnpackAlignment.h"

#include <QOpenGLFunctions_2_1>
#include <QOpenGLFunctions_3_2_Core>

namespace {
constexpr GLuint64 kOneSecondInNanoseconds = 1000000000;
}

void PboTextureImp::Create()
{
    m_gl->glGenTextures(1, &m_texture);
    m_gl->glGenBuffers(1, &m_buffer);
    m_gl->glEnable(GL_TEXTURE_2D);
}

void PboTextureImp::Destroy()
{
    dropFence();
    if (m_texture != 0)
        m_gl->glDeleteTextures(1, &m_texture);
    if (m_buffer != 0)
        m_gl->glDeleteBuffers(1, &m_buffer);
    m_texture = 0;
    m_buffer = 0;
}

void PboTextureImp::Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                          GLenum format, GLenum type)
{
    m_gl->glBindTexture(target, m_texture);
    m_gl->glTexImage2D(target, 0, GLint(internalFormat), width, height, 0, format, type, nullptr);
    m_gl->glBindTexture(target, 0);
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_buffer);
    m_gl->glBufferData(GL_PIXEL_UNPACK_BUFFER, m_size, nullptr, GL_STREAM_DRAW);
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
}

void *PboTextureImp::Map()
{
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_buffer);
    m_gl->glBufferData(GL_PIXEL_UNPACK_BUFFER, m_size, nullptr, GL_STREAM_DRAW);
    return m_gl->glMapBuffer(GL_PIXEL_UNPACK_BUFFER, GL_WRITE_ONLY);
}

void PboTextureImp::Unmap()
{
    m_gl->glUnmapBuffer(GL_PIXEL_UNPACK_BUFFER);
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
}

void PboTextureImp::Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                           GLenum format, GLenum type, const void *)
{
    const UnpackAlignment rowsOfBytes(m_gl);
    m_gl->glBindTexture(target, m_texture);
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_buffer);
    m_gl->glTexImage2D(target, 0, GLint(internalFormat), width, height, 0, format, type, nullptr);
    if (m_useFence) {
        dropFence();
        m_fence = m_fenceFunctions->glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    }
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    m_gl->glBindTexture(target, 0);
}

void PboTextureImp::WaitForUpload()
{
    if (!m_useFence || !m_fenceFunctions->glIsSync(m_fence))
        return;
    m_fenceFunctions->glClientWaitSync(m_fence, GL_SYNC_FLUSH_COMMANDS_BIT,
                                       kOneSecondInNanoseconds);
    dropFence();
}

void PboTextureImp::dropFence()
{
    if (m_fence)
        m_fenceFunctions->glDeleteSync(m_fence);
    m_fence = nullptr;
}
