#pragma once

// Uploads from page-aligned memory of our own that the driver reads in place
// (GL_AMD_pinned_memory); taken by Texture for callers that wait on fences.

#include "video/TextureImp.h"

#include <cstdint>
#include <memory>

class QOpenGLFunctions_3_2_Core;

class PinnedMemoryTextureImp final : public TextureImp
{
public:
    /// @p functions belong to the context and must outlive this object.
    explicit PinnedMemoryTextureImp(QOpenGLFunctions_3_2_Core *functions)
        : m_gl(functions)
    {}

    void Create() override;
    void Destroy() override;
    /// Leaves the texture bound.
    void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
               GLenum type) override;
    /// @p data holds rows rounded up to multiples of 4 bytes, as pinnedBytes() counts them.
    void Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
                GLenum type, const void *data) override;
    bool IsValid() const override { return m_texture != 0; }
    GLuint TextureId() const override { return m_texture; }
    /// Null: the caller hands its own memory to Upload.
    void *Map() override { return nullptr; }
    void Unmap() override {}
    /// Queues the wait on the server.
    void WaitForUpload() override;

    /// Bytes of a frame of these sizes and formats, with rows rounded up to multiples of 4.
    static std::size_t pinnedBytes(GLenum internalFormat, GLsizei width, GLsizei height,
                                   GLenum type);

private:
    void dropFence();

    QOpenGLFunctions_3_2_Core *m_gl;
    std::unique_ptr<std::uint8_t[]> m_rawMemory;
    std::uint8_t *m_alignedMemory = nullptr; ///< inside m_rawMemory, at a page's start
    GLuint m_texture = 0;
    GLuint m_buffer = 0;
    GLsync m_fence = nullptr;
};
