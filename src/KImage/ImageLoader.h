#pragma once

// The one loader of picture files: decides which library reads a file and checks its dimensions
// before any pixel is made. Free functions on values, any thread; nobody else knows the libraries.

#include "KImage/ImageRequest.h"
#include "KImage/KBitmap.h"

#include <QSize>
#include <QString>

namespace ImageLoader {

/// Reads the header only.
[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);

/// Upright pixels of the sRGB colour space. Profiles and CMYK are converted; linear light of float
/// files is cut at white and goes through the sRGB curve where 8 bits are asked for. A file that
/// ends too early gives what it has.
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap);

} // namespace ImageLoader
