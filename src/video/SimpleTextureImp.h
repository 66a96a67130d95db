#pragma once

// Uploads from main memory with OpenGL 1.1 alone; the last resort of Texture.

#include "video/TextureImp.h"

class QOpenGLFunctions_1_1;

class SimpleTextureImp final : public TextureImp
{
public:
    /// @p functions belong to the context and must outlive this object.
    explicit SimpleTextureImp(QOpenGLFunctions_1_1 *functions)
        : m_gl(functions)
    {}

    void Create() override;
    void Destroy() override;
    void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
               GLenum type) override;
    /// Respecifies the whole image.
    void Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
                GLenum type, const void *data) override;
    bool IsValid() const override { return m_texture != 0; }
    GLuint TextureId() const override { return m_texture; }
    void *Map() override { return nullptr; }
    void Unmap() override {}
    void WaitForUpload() override;

private:
    QOpenGLFunctions_1_1 *m_gl;
    GLuint m_texture = 0;
};
