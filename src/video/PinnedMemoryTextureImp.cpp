#include "video/PinnedMemoryTextureImp.h"

#include <QOpenGLFunctions_3_2_Core>

#include <cstring>

namespace {
// GL_AMD_pinned_memory; not in every system's headers.
constexpr GLenum kExternalVirtualMemoryBuffer = 0x9160;
constexpr std::size_t kPage = 4096;

std::size_t componentsOf(GLenum internalFormat)
{
    switch (internalFormat) {
    case GL_RGB:
    case GL_BGR:
        return 3;
    case GL_RED:
        return 1;
    default:
        return 4;
    }
}

std::size_t bytesOf(GLenum type)
{
    switch (type) {
    case GL_UNSIGNED_BYTE:
        return 1;
    case GL_UNSIGNED_SHORT:
        return 2;
    default:
        return 4;
    }
}
} // namespace

std::size_t PinnedMemoryTextureImp::pinnedBytes(GLenum internalFormat, GLsizei width,
                                                GLsizei height, GLenum type)
{
    const std::size_t row = componentsOf(internalFormat) * std::size_t(width) * bytesOf(type);
    return std::size_t(height) * ((row + 3) / 4 * 4);
}

void PinnedMemoryTextureImp::Create()
{
    m_gl->glGenTextures(1, &m_texture);
    m_gl->glGenBuffers(1, &m_buffer);
}

void PinnedMemoryTextureImp::Destroy()
{
    dropFence();
    m_rawMemory.reset();
    m_alignedMemory = nullptr;
    if (m_texture != 0)
        m_gl->glDeleteTextures(1, &m_texture);
    if (m_buffer != 0)
        m_gl->glDeleteBuffers(1, &m_buffer);
    m_texture = 0;
    m_buffer = 0;
}

void PinnedMemoryTextureImp::Alloc(GLenum target, GLenum internalFormat, GLsizei width,
                                   GLsizei height, GLenum format, GLenum type)
{
    const std::size_t range = pinnedBytes(internalFormat, width, height, type);
    // The buffer still reads the old range until it has its new store: the old memory goes last.
    auto memory = std::make_unique<std::uint8_t[]>(range + kPage);
    const auto address = reinterpret_cast<std::uintptr_t>(memory.get());
    m_alignedMemory = memory.get() + ((address + kPage - 1) / kPage * kPage - address);

    m_gl->glBindTexture(target, m_texture);
    m_gl->glTexImage2D(target, 0, GLint(internalFormat), width, height, 0, format, type, nullptr);
    m_gl->glBindBuffer(kExternalVirtualMemoryBuffer, m_buffer);
    m_gl->glBufferData(kExternalVirtualMemoryBuffer, GLsizeiptr(range), m_alignedMemory,
                       GL_STREAM_DRAW);
    m_gl->glBindBuffer(kExternalVirtualMemoryBuffer, 0);
    m_rawMemory = std::move(memory);
}

void PinnedMemoryTextureImp::Upload(GLenum target, GLenum internalFormat, GLsizei width,
                                    GLsizei height, GLenum format, GLenum type, const void *data)
{
    if (!m_rawMemory)
        Alloc(target, internalFormat, width, height, format, type);
    if (data)
        std::memcpy(m_alignedMemory, data, pinnedBytes(internalFormat, width, height, type));
    m_gl->glBindTexture(target, m_texture);
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_buffer);
    m_gl->glTexSubImage2D(target, 0, 0, 0, width, height, format, type, nullptr);
    if (m_useFence) {
        dropFence();
        m_fence = m_gl->glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    }
    m_gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    m_gl->glBindTexture(target, 0);
}

void PinnedMemoryTextureImp::WaitForUpload()
{
    if (!m_useFence || !m_gl->glIsSync(m_fence))
        return;
    m_gl->glWaitSync(m_fence, 0, GL_TIMEOUT_IGNORED);
    dropFence();
}

void PinnedMemoryTextureImp::dropFence()
{
    if (m_fence)
        m_gl->glDeleteSync(m_fence);
    m_fence = nullptr;
}
