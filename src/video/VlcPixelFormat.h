#pragma once

// The pixel formats in which frames arrive, and what the decoder's chroma codes mean for us.
// Plain values; used on the decoder thread, the shared memory thread and in tests.

#include <QString>
#include <QtGlobal>

/// The codes are shared with other processes and with the scene, so the numbers are fixed.
enum class VlcPixelFormat : quint32 {
    Unset = 0,
    Bgra = 1,
    Rv32 = 2,
    Yuyv = 3,
    Uyvy = 4,
    I420 = 5,
    J420 = 6, ///< I420 with full range samples
    Yv12 = 7,
    Nv12 = 8
};

/// Four characters packed with the first one in the highest byte.
constexpr quint32 bigEndianFourcc(const char (&text)[5])
{
    return (quint32(quint8(text[0])) << 24) | (quint32(quint8(text[1])) << 16) |
           (quint32(quint8(text[2])) << 8) | quint32(quint8(text[3]));
}

/// The name that the scene shows; empty for Unset.
QString pixelFormatName(VlcPixelFormat format);

/// The format of a four-character chroma of libvlc, Unset for one that we do not take.
VlcPixelFormat pixelFormatOfChroma(const char *chroma);

/// True for the formats that YuvConverter turns into RGBA.
constexpr bool isYuv(VlcPixelFormat format)
{
    return format >= VlcPixelFormat::Yuyv && format <= VlcPixelFormat::Nv12;
}

/// True for one plane of luma followed by two planes of chroma at half size.
constexpr bool isThreePlane(VlcPixelFormat format)
{
    return format == VlcPixelFormat::I420 || format == VlcPixelFormat::J420 ||
           format == VlcPixelFormat::Yv12;
}

/// How a YUV format is handed to YuvConverter.
struct YuvSource
{
    quint32 fourcc = 0; ///< 0 when the format needs no conversion
    bool fullRange = false;
};

/// @p streamIsFullRange is what the stream says; J420 is full range whatever it says.
YuvSource yuvSourceOf(VlcPixelFormat format, bool streamIsFullRange);
