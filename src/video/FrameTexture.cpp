#include "video/FrameTexture.h"

#include <utility>

FrameTexture::FrameTexture()
    : m_texture(std::make_unique<Texture>(false))
{}

FrameTexture::FrameTexture(std::unique_ptr<Texture> texture)
    : m_texture(std::move(texture))
{}

FrameTexture::~FrameTexture() = default;

void FrameTexture::create()
{
    m_texture->Create();
}

void FrameTexture::destroy()
{
    m_texture->Destroy();
    m_mappedBase = nullptr;
}

bool FrameTexture::isValid() const
{
    return m_texture->IsValid();
}

GLuint FrameTexture::textureId() const
{
    return m_texture->TextureId();
}

TextureTransferKind FrameTexture::kind() const
{
    return m_texture->kind();
}

void FrameTexture::setLayout(quint32 width, quint32 height, VlcPixelFormat format)
{
    setLayout(width, height, format, width, height);
}

void FrameTexture::setLayout(quint32 width, quint32 height, VlcPixelFormat format,
                             quint32 visibleWidth, quint32 visibleHeight)
{
    m_cpuBuffer.reset();
    const quint32 oldTarget = m_layout.storage().target;
    m_layout = PlaneLayout::of(width, height, format, visibleWidth, visibleHeight);
    if (m_layout.totalSize == 0)
        return;
    const quint32 bytes = m_layout.allocationSize();
    if (kind() == TextureTransferKind::Simple)
        m_cpuBuffer = std::make_unique<std::uint8_t[]>(bytes);
    const TextureStorage storage = m_layout.storage();
    // A texture name keeps the target of its first use for life.
    if (oldTarget != 0 && oldTarget != storage.target) {
        m_texture->Destroy();
        m_texture->Create();
    }
    m_texture->Alloc(storage.target, storage.internalFormat, storage.width, storage.height,
                     storage.format, storage.type, bytes);
}

std::uint8_t *FrameTexture::plane(int index)
{
    if (index < 0 || index > 2 || m_layout.totalSize == 0)
        return nullptr;
    if (kind() == TextureTransferKind::Simple)
        return m_cpuBuffer.get() + m_layout.cpuOffset(index);
    if (!m_mappedBase)
        m_mappedBase = static_cast<std::uint8_t *>(m_texture->Map());
    return m_mappedBase ? m_mappedBase + m_layout.mappedOffset(index) : nullptr;
}

void FrameTexture::unmap()
{
    m_texture->Unmap();
    m_mappedBase = nullptr;
}

void FrameTexture::upload()
{
    if (m_layout.totalSize == 0)
        return;
    const TextureStorage storage = m_layout.storage();
    m_texture->Upload(storage.target, storage.internalFormat, storage.width, storage.height,
                      storage.format, storage.type, m_cpuBuffer.get());
}

quint32 FrameTexture::width(unsigned plane) const
{
    return plane < 3 ? m_layout.planeWidth[plane] : 0;
}

quint32 FrameTexture::height(unsigned plane) const
{
    return plane < 3 ? m_layout.planeHeight[plane] : 0;
}

quint32 FrameTexture::pitch(unsigned plane) const
{
    return plane < 3 ? m_layout.pitch[plane] : 0;
}
