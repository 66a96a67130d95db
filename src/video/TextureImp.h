#pragma once

// One way of moving frames into a GL texture; owned by Texture, used on the thread whose context
// is current.

#include <qopengl.h>

class TextureImp
{
public:
    TextureImp() = default;
    TextureImp(const TextureImp &) = delete;
    TextureImp &operator=(const TextureImp &) = delete;
    virtual ~TextureImp() = default;

    /// Generates the GL objects.
    virtual void Create() = 0;
    /// Deletes the GL objects; their context must be current.
    virtual void Destroy() = 0;
    /// Gives the texture, and the buffer where there is one, its storage. Sizes in texels.
    virtual void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                       GLenum format, GLenum type) = 0;
    /// Moves one frame into the texture; strategies with a mapping ignore @p data.
    virtual void Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                        GLenum format, GLenum type, const void *data) = 0;
    /// True when a texture name exists.
    [[nodiscard]] virtual bool IsValid() const = 0;
    [[nodiscard]] virtual GLuint TextureId() const = 0;
    /// Where the producer may write one frame; null when the strategy has no such memory.
    virtual void *Map() = 0;
    /// Ends the writing that Map began.
    virtual void Unmap() = 0;
    /// Blocks, or queues a wait, until the last upload has been consumed.
    virtual void WaitForUpload() = 0;

    /// Bytes of one frame; set before Alloc.
    void setFrameBytes(quint32 bytes) { m_size = bytes; }
    void setUseFence(bool use) { m_useFence = use; }

protected:
    quint32 m_size = 0;
    bool m_useFence = false;
};
