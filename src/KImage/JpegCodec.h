#pragma once

// The plain JPEG, which most stills are, straight into a bitmap: one scan, no profile, upright.
// Pixel by pixel what libvips makes of it, without waking libvips and at half the cost. Free
// functions, any thread; used by ImageLoader only.

#include "KImage/ImageRequest.h"
#include "KImage/KBitmap.h"

namespace JpegCodec {

/// Whether @p path is such a file, and what its header says then.
bool describe(const QString &path, ImageInfo &info);

/// At its full size; Rgba8 or Bgra8Premultiplied. False for a file with any flaw, which is left to
/// libvips, and when @p cancelled is set. Throws a KException when there is no memory for it.
bool load(const QString &path, PixelFormat format, const std::atomic<bool> *cancelled,
          KBitmap &bitmap);

} // namespace JpegCodec
