#pragma once

// A Texture paired with the plane layout of the frames it takes; owned by the player's video
// thread and by the shared memory thread, each inside its own GL context.

#include "video/PlaneLayout.h"
#include "video/Texture.h"

#include <cstdint>
#include <memory>

class FrameTexture
{
public:
    /// Picks the upload strategy for the context that is current.
    FrameTexture();
    /// Takes a texture whose strategy the caller chose.
    explicit FrameTexture(std::unique_ptr<Texture> texture);
    ~FrameTexture();
    FrameTexture(const FrameTexture &) = delete;
    FrameTexture &operator=(const FrameTexture &) = delete;

    void create();
    /// Needs the context that owns the GL objects; without one they are left to it.
    void destroy();
    [[nodiscard]] bool isValid() const;
    [[nodiscard]] GLuint textureId() const;
    TextureTransferKind kind() const;

    /// Computes the layout and gives the texture its storage. Sizes in pixels; an unknown format
    /// or an impossible size leaves a layout without planes.
    void setLayout(quint32 width, quint32 height, VlcPixelFormat format);
    void setLayout(quint32 width, quint32 height, VlcPixelFormat format, quint32 visibleWidth,
                   quint32 visibleHeight);
    const PlaneLayout &layout() const { return m_layout; }

    /// Where the producer writes a plane (0 to 2) until unmap; null for other planes, without a
    /// layout, and when the driver gives no mapping.
    std::uint8_t *plane(int index);
    /// Ends the writing of a frame.
    void unmap();
    /// Moves the frame written into the texture.
    void upload();

    /// 0 for an index of 3 or more, here and below.
    quint32 width(unsigned plane) const;
    quint32 height(unsigned plane) const;
    quint32 pitch(unsigned plane) const;

    Texture *texture() const { return m_texture.get(); }

private:
    std::unique_ptr<Texture> m_texture;
    std::uint8_t *m_mappedBase = nullptr; ///< driver memory between the first plane() and unmap()
    PlaneLayout m_layout;
    std::unique_ptr<std::uint8_t[]> m_cpuBuffer; ///< only for the simple strategy
};
