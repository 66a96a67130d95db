#pragma once

// Maps the texture itself into the program's memory (GL_INTEL_map_texture), so that a frame needs
// no upload at all; taken by Texture on drivers that offer it.

#include "video/TextureImp.h"

#include <functional>

class QOpenGLFunctions_3_0;

class IntelMapTextureImp final : public TextureImp
{
public:
    /// Finds an entry point by its name, null when there is none.
    using Resolver = std::function<QFunctionPointer(const char *name)>;

    /// @p functions belong to the context and must outlive this object. Without a resolver the
    /// current context is asked.
    explicit IntelMapTextureImp(QOpenGLFunctions_3_0 *functions, Resolver resolver = {});

    void Create() override;
    /// Deletes the texture but keeps its name, so that IsValid stays true.
    void Destroy() override;
    /// Only GL_TEXTURE_2D in GL_RGBA8 can be mapped: other targets and formats are replaced.
    void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
               GLenum type) override;
    void Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
                GLenum type, const void *data) override;
    bool IsValid() const override { return m_texture != 0; }
    GLuint TextureId() const override { return m_texture; }
    /// The producer writes rows of its own pitch; the stride that the driver answers is dropped.
    void *Map() override;
    void Unmap() override;
    void WaitForUpload() override {}

private:
    using SyncTexture = void(QOPENGLF_APIENTRYP)(GLuint texture);
    using UnmapTexture2D = void(QOPENGLF_APIENTRYP)(GLuint texture, GLint level);
    using MapTexture2D = void *(QOPENGLF_APIENTRYP)(GLuint texture, GLint level, GLbitfield access,
                                                    GLint *stride, GLenum *layout);

    QOpenGLFunctions_3_0 *m_gl;
    Resolver m_resolver;
    GLuint m_texture = 0;
    SyncTexture m_syncTexture = nullptr;
    UnmapTexture2D m_unmapTexture2D = nullptr;
    MapTexture2D m_mapTexture2D = nullptr;
};
