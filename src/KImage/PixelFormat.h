#pragma once

// How the pixels of a bitmap lie in memory. Values and free functions, any thread; also for the
// plug-in of StillCodecs, so that nothing here may need an object file.

/// Channels in memory order. 8 and 16 bits hold values of the sRGB transfer curve, floats linear
/// light with white at 1. Alpha is not multiplied in unless the name says so.
enum class PixelFormat {
    Gray8,
    Rgb8,
    Rgba8,
    Bgra8Premultiplied, ///< what Qt's scene graph uploads without another copy
    Gray16,
    Rgb16,
    Rgba16,
    GrayFloat,
    RgbFloat,
    RgbaFloat
};
constexpr int kPixelFormatCount = 10;

constexpr int channelCount(PixelFormat format)
{
    switch (format) {
    case PixelFormat::Gray8:
    case PixelFormat::Gray16:
    case PixelFormat::GrayFloat:
        return 1;
    case PixelFormat::Rgb8:
    case PixelFormat::Rgb16:
    case PixelFormat::RgbFloat:
        return 3;
    default:
        return 4;
    }
}

constexpr int bytesPerChannel(PixelFormat format)
{
    switch (format) {
    case PixelFormat::Gray16:
    case PixelFormat::Rgb16:
    case PixelFormat::Rgba16:
        return 2;
    case PixelFormat::GrayFloat:
    case PixelFormat::RgbFloat:
    case PixelFormat::RgbaFloat:
        return 4;
    default:
        return 1;
    }
}

constexpr int bytesPerPixel(PixelFormat format)
{
    return channelCount(format) * bytesPerChannel(format);
}

constexpr bool hasAlpha(PixelFormat format)
{
    return channelCount(format) == 4;
}

constexpr bool isFloat(PixelFormat format)
{
    return bytesPerChannel(format) == 4;
}
