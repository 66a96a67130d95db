#include "video/PlaneLayout.h"

#include <qopengl.h>

#include <algorithm>

PlaneLayout PlaneLayout::of(quint32 width, quint32 height, VlcPixelFormat format,
                            quint32 visibleWidth, quint32 visibleHeight)
{
    // Four bytes a pixel is the widest format, two rows of slack cover the odd sizes.
    if (width == 0 || height == 0 || quint64(width) * 4 * (quint64(height) + 2) > kMaximumBytes)
        return {};

    PlaneLayout layout;
    layout.format = format;
    const quint32 halfWidth = width >> 1;
    const quint32 halfHeight = height >> 1;

    switch (format) {
    case VlcPixelFormat::Bgra:
    case VlcPixelFormat::Rv32:
    case VlcPixelFormat::Yuyv:
    case VlcPixelFormat::Uyvy:
        layout.bitsPerPixel = 32;
        layout.pixelStride[0] = 4;
        layout.planeWidth[0] = width;
        layout.planeHeight[0] = height;
        layout.visibleWidth[0] = visibleWidth;
        layout.visibleHeight[0] = visibleHeight;
        layout.pitch[0] = isYuv(format) ? halfWidth * 4 : width * 4;
        layout.planeSize[0] = height * layout.pitch[0];
        layout.totalSize = layout.planeSize[0];
        break;
    case VlcPixelFormat::I420:
    case VlcPixelFormat::J420:
    case VlcPixelFormat::Yv12:
        layout.bitsPerPixel = 12;
        layout.planeWidth = {width, halfWidth, halfWidth};
        layout.planeHeight = {height, halfHeight, halfHeight};
        layout.visibleWidth = {visibleWidth, visibleWidth >> 1, visibleWidth >> 1};
        layout.visibleHeight = {visibleHeight, visibleHeight >> 1, visibleHeight >> 1};
        layout.pitch = layout.planeWidth;
        layout.planeSize = {height * width, halfWidth * halfHeight, halfWidth * halfHeight};
        layout.totalSize = height * width + 2 * halfWidth * halfHeight + layout.extraChromaRow();
        break;
    case VlcPixelFormat::Nv12:
        layout.bitsPerPixel = 12;
        layout.planeWidth = {width, width, 0};
        layout.planeHeight = {height, halfHeight, 0};
        layout.visibleWidth = {visibleWidth, visibleWidth, 0};
        layout.visibleHeight = {visibleHeight, visibleHeight >> 1, 0};
        layout.pitch = layout.planeWidth;
        layout.planeSize = {height * width, width * halfHeight, 0};
        layout.totalSize = width * (height + halfHeight) + layout.extraChromaRow();
        break;
    default:
        return {};
    }
    return layout;
}

quint32 PlaneLayout::extraChromaRow() const
{
    return planeHeight[1] % 2 != 0 ? planeWidth[1] : 0;
}

quint32 PlaneLayout::cpuOffset(int plane) const
{
    switch (plane) {
    case 1:
        return planeSize[0];
    case 2:
        return planeSize[0] + planeSize[1] + extraChromaRow();
    default:
        return 0;
    }
}

quint32 PlaneLayout::mappedOffset(int plane) const
{
    switch (plane) {
    case 1:
        return planeSize[0] & ~3U;
    case 2:
        return 4 * (planeSize[0] / 4 + planeSize[1] / 4) + extraChromaRow();
    default:
        return 0;
    }
}

quint32 PlaneLayout::allocationSize() const
{
    const TextureStorage texture = storage();
    const quint32 texelBytes = texture.format == GL_RED ? 1 : 4;
    quint32 size = std::max(totalSize, quint32(texture.width) * texture.height * texelBytes);
    for (int i = 0; i < 3; ++i) {
        const quint32 rows = i == 0 ? planeHeight[0] : (planeHeight[0] + 1) / 2;
        const quint32 start = std::max(cpuOffset(i), mappedOffset(i));
        if (pitch[i] != 0)
            size = std::max(size, start + pitch[i] * (rows + 1));
    }
    return size;
}

TextureStorage PlaneLayout::storage() const
{
    const auto pitchTexels = qint32(pitch[0]);
    const auto rows = qint32(planeHeight[0]);
    switch (format) {
    case VlcPixelFormat::Unset:
        return {};
    case VlcPixelFormat::Bgra:
    case VlcPixelFormat::Rv32:
        return {GL_TEXTURE_2D, GL_RGBA, qint32(planeWidth[0]), rows, GL_RGBA, GL_UNSIGNED_BYTE};
    case VlcPixelFormat::Yuyv:
    case VlcPixelFormat::Uyvy:
        return {GL_TEXTURE_RECTANGLE, GL_RED, pitchTexels, rows, GL_RED, GL_UNSIGNED_BYTE};
    default:
        return {GL_TEXTURE_RECTANGLE, GL_RED, pitchTexels, rows * 3 / 2, GL_RED, GL_UNSIGNED_BYTE};
    }
}
