#pragma once

// The one loader of picture files: decides which library reads a file and checks its dimensions
// before any pixel is made. Free functions on values, any thread; nobody else knows the libraries.

#include "KImage/ImageOptions.h"
#include "KImage/KBitmap.h"
#include "KImage/KImageErrors.h"

#include <QSize>
#include <QString>

#include <atomic>
#include <optional>

/// What a file's header says.
struct ImageInfo
{
    QSize size;         ///< as shown: upright by the file's own orientation
    QString formatName; ///< "JPEG", "CMYK", "TIFF tiled" and the like
    bool gray = false;
};

struct LoadRequest
{
    /// The picture is fitted into this size, never enlarged; as large as it is where a side is 0.
    QSize limit;
    /// Rgba8 or Bgra8Premultiplied; without a value the file's own depth and channels, full size.
    std::optional<PixelFormat> format = PixelFormat::Rgba8;
    RawOptions raw;
    /// Set to true on any thread to make the loading stop soon and fail.
    const std::atomic<bool> *cancelled = nullptr;
};

namespace ImageLoader {

/// Reads the header only.
[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);

/// Upright pixels of the sRGB colour space. Profiles and CMYK are converted; linear light of float
/// files is cut at white and goes through the sRGB curve where 8 bits are asked for. A file that
/// ends too early gives what it has.
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap);

/// @p size fitted into @p limit with its aspect kept, at least 1 by 1; @p size where it fits or
/// where a side of the limit is not positive.
QSize fitted(const QSize &size, const QSize &limit);

} // namespace ImageLoader
