#pragma once

// How large a picture may be, so that no file makes the program take memory without end. Checked
// from the header, before any pixel is made.

#include <QtGlobal>

namespace ImageLimits {

/// Pictures with more pixels are refused (2^30; a panorama of 46,000 by 23,000).
constexpr qint64 kMaxHeaderPixels = qint64(1) << 30;
/// Pixels held in memory at once, those of a bitmap and those of a file that can only be decoded as
/// a whole: 1 GiB, for example 16,384 by 16,384 pixels of 8-bit RGBA.
constexpr qint64 kMaxPixelBytes = qint64(1) << 30;
/// Longest side of a picture.
constexpr int kMaxSide = 1000000;

/// Whether a header's dimensions can be worked with.
constexpr bool acceptable(qint64 width, qint64 height)
{
    return width > 0 && height > 0 && width <= kMaxSide && height <= kMaxSide &&
           width * height <= kMaxHeaderPixels;
}

} // namespace ImageLimits
