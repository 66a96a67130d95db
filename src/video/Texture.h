#pragma once

// A GL texture that frames from main memory reach with as little copying as the driver allows;
// owned by FrameTexture, used on the one thread whose context is current.

#include "video/TextureImp.h"
#include "video/TextureTransferKind.h"

#include <memory>

class Texture
{
public:
    /// Picks the strategy for the context that is current; with none, or when its functions do
    /// not initialise, there is no strategy and every call below is harmless.
    explicit Texture(bool useFence);
    /// Takes a strategy that the caller chose.
    Texture(TextureTransferKind kind, std::unique_ptr<TextureImp> imp);
    virtual ~Texture();
    Texture(const Texture &) = delete;
    Texture &operator=(const Texture &) = delete;

    void Create();
    /// Where no context is current the GL objects are left to their context's end.
    void Destroy();
    /// @p frameBytes is what the upload buffer must hold.
    void Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height, GLenum format,
               GLenum type, quint32 frameBytes);
    /// This texture, null without a strategy.
    Texture *Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                    GLenum format, GLenum type, const void *data);
    [[nodiscard]] bool IsValid() const;
    [[nodiscard]] GLuint TextureId() const;
    void *Map();
    void Unmap();
    void WaitForUpload();

    /// Names the strategy chosen, also when it could not start.
    TextureTransferKind kind() const { return m_kind; }

private:
    std::unique_ptr<TextureImp> m_imp;
    TextureTransferKind m_kind = TextureTransferKind::None;
};
