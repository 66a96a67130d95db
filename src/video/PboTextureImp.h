#pragma once

// Uploads through a mapped pixel buffer: the producer writes straight into driver memory, so the
// program copies nothing. The usual strategy of Texture.

#include "video/TextureImp.h"

class QOpenGLFunctions_2_1;
class QOpenGLFunctions_3_2_Core;

class PboTextureImp final : public TextureImp
{
public:
    /// @p fenceFunctions may be null, then fences must stay off. Both belong to the context and
    /// must outlive this object.
    PboTextureImp(QOpenGLFunctions_2_1 *functions, QOpenGLFunctions_3_2_Core *fenceFunctions)
        : m_gl(functions)
        , m_fenceFunctions(fenceFunctions)
    {}

    void Create() override;
    void Destroy() override;
    void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
               GLenum type) override;
    void Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
                GLenum type, const void *data) override;
    bool IsValid() const override { return m_texture != 0; }
    GLuint TextureId() const override { return m_texture; }
    /// Orphans the buffer's store first, so that writing never waits for the upload before it;
    /// leaves the buffer bound until Unmap.
    void *Map() override;
    void Unmap() override;
    /// Waits on the CPU for at most a second.
    void WaitForUpload() override;

private:
    void dropFence();

    QOpenGLFunctions_2_1 *m_gl;
    QOpenGLFunctions_3_2_Core *m_fenceFunctions;
    GLuint m_texture = 0;
    GLuint m_buffer = 0;
    GLsync m_fence = nullptr;
};
