#pragma once

// What is asked of the loader and what it answers, as the plug-in of StillCodecs sees both: values
// only, any thread.

#include "KImage/ImageOptions.h"
#include "KImage/KImageErrors.h"
#include "KImage/PixelFormat.h"

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

/// @p size fitted into @p limit with its aspect kept, at least 1 by 1; @p size where it fits or
/// where a side of the limit is not positive.
inline QSize fitted(const QSize &size, const QSize &limit)
{
    if (limit.width() <= 0 || limit.height() <= 0 ||
        (size.width() <= limit.width() && size.height() <= limit.height()))
        return size;
    return size.scaled(limit, Qt::KeepAspectRatio).expandedTo({1, 1});
}

} // namespace ImageLoader
