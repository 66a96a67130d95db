#include "video/Texture.h"

#include "video/IntelMapTextureImp.h"
#include "video/PboTextureImp.h"
#include "video/PinnedMemoryTextureImp.h"
#include "video/SimpleTextureImp.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions_1_1>
#include <QOpenGLFunctions_2_1>
#include <QOpenGLFunctions_3_0>
#include <QOpenGLFunctions_3_2_Core>

#include <utility>

Texture::Texture(bool useFence)
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context || context->isOpenGLES())
        return;

    auto *core32 = useFence ? context->versionFunctions<QOpenGLFunctions_3_2_Core>() : nullptr;
    auto *gl30 = context->versionFunctions<QOpenGLFunctions_3_0>();
    auto *gl21 = context->versionFunctions<QOpenGLFunctions_2_1>();
    auto *gl11 = context->versionFunctions<QOpenGLFunctions_1_1>();
    TextureCapabilities capabilities;
    capabilities.core32 = core32;
    capabilities.gl30 = gl30;
    capabilities.gl21 = gl21;
    capabilities.gl11 = gl11;
    capabilities.amdPinnedMemory = context->hasExtension("GL_AMD_pinned_memory");
    capabilities.intelMapTexture = context->hasExtension("GL_INTEL_map_texture");

    m_kind = chooseTextureTransfer(capabilities, useFence);
    switch (m_kind) {
    case TextureTransferKind::AmdPinned:
        if (core32 && core32->initializeOpenGLFunctions())
            m_imp = std::make_unique<PinnedMemoryTextureImp>(core32);
        break;
    case TextureTransferKind::IntelMap:
        if (gl30->initializeOpenGLFunctions())
            m_imp = std::make_unique<IntelMapTextureImp>(gl30);
        break;
    case TextureTransferKind::PixelBuffer:
        if (gl21->initializeOpenGLFunctions()) {
            if (!core32 || !core32->initializeOpenGLFunctions())
                useFence = false;
            m_imp = std::make_unique<PboTextureImp>(gl21, core32);
        }
        break;
    case TextureTransferKind::Simple:
        if (gl11->initializeOpenGLFunctions())
            m_imp = std::make_unique<SimpleTextureImp>(gl11);
        break;
    case TextureTransferKind::None:
        break;
    }
    if (m_imp)
        m_imp->setUseFence(useFence);
}

Texture::Texture(TextureTransferKind kind, std::unique_ptr<TextureImp> imp)
    : m_imp(std::move(imp))
    , m_kind(kind)
{}

Texture::~Texture() = default;

void Texture::Create()
{
    if (m_imp)
        m_imp->Create();
}

void Texture::Destroy()
{
    if (m_imp && QOpenGLContext::currentContext())
        m_imp->Destroy();
}

void Texture::Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                    GLenum format, GLenum type, quint32 frameBytes)
{
    if (!m_imp)
        return;
    m_imp->setFrameBytes(frameBytes);
    m_imp->Alloc(target, internalFormat, width, height, format, type);
}

Texture *Texture::Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                         GLenum format, GLenum type, const void *data)
{
    if (!m_imp)
        return nullptr;
    m_imp->Upload(target, internalFormat, width, height, format, type, data);
    return this;
}

bool Texture::IsValid() const
{
    return m_imp && m_imp->IsValid();
}

GLuint Texture::TextureId() const
{
    return m_imp ? m_imp->TextureId() : 0;
}

void *Texture::Map()
{
    return m_imp ? m_imp->Map() : nullptr;
}

void Texture::Unmap()
{
    if (m_imp)
        m_imp->Unmap();
}

void Texture::WaitForUpload()
{
    if (m_imp)
        m_imp->WaitForUpload();
}
