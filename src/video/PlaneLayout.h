#pragma once

// Where the planes of one frame lie in memory and in the texture that takes it.
// A plain value that FrameTexture computes once per format; no GL, no thread.

#include "video/VlcPixelFormat.h"

#include <array>

/// What glTexImage2D is told for a frame. Sizes in texels; the rest are GL enumerants.
struct TextureStorage
{
    quint32 target = 0;
    quint32 internalFormat = 0;
    qint32 width = 0;
    qint32 height = 0;
    quint32 format = 0;
    quint32 type = 0;
};

/// All YUV planes of a frame lie one below another in one red texture that is pitch[0] texels
/// wide: one upload per frame, and the shader picks its samples by byte.
struct PlaneLayout
{
    VlcPixelFormat format = VlcPixelFormat::Unset;
    quint32 bitsPerPixel = 0;
    std::array<quint32, 3> planeWidth{};
    std::array<quint32, 3> planeHeight{};
    std::array<quint32, 3> visibleWidth{};
    std::array<quint32, 3> visibleHeight{};
    std::array<quint32, 3> pitch{}; ///< bytes from one row to the next
    std::array<quint32, 3> pixelStride{};
    std::array<quint32, 3> planeSize{}; ///< bytes
    quint32 totalSize = 0;              ///< bytes of one frame

    /// Frames above this many bytes are refused: the sizes are 32-bit and come from files.
    static constexpr quint64 kMaximumBytes = quint64(1) << 31;

    /// An unknown format, an empty size or one beyond kMaximumBytes gives a layout whose format
    /// is Unset and whose totalSize is 0.
    static PlaneLayout of(quint32 width, quint32 height, VlcPixelFormat format,
                          quint32 visibleWidth, quint32 visibleHeight);
    static PlaneLayout of(quint32 width, quint32 height, VlcPixelFormat format)
    {
        return of(width, height, format, width, height);
    }

    /// Byte offset of a plane (0 to 2) in a buffer in main memory.
    quint32 cpuOffset(int plane) const;
    /// Byte offset of a plane (0 to 2) in a mapped buffer, where planes start at multiples of 4.
    quint32 mappedOffset(int plane) const;

    /// Bytes to reserve for a frame. More than totalSize where sizes are odd: producers round
    /// chroma up where the layout rounds down, and the texture reads whole rows.
    quint32 allocationSize() const;

    /// All zero when the format is Unset.
    TextureStorage storage() const;

private:
    quint32 extraChromaRow() const;
};
