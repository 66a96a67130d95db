#pragma once

// Reading, resizing and writing of pictures through libvips, which decodes in strips on all cores.
// Loaders that are not hardened against foreign bytes stay switched off. Free functions, any
// thread; used by ImageLoader and KImage only.

#include "KImage/ImageLoader.h"

#include <QByteArray>
#include <QStringList>

namespace VipsCodec {

/// Suffixes in lower case that the loaders in use take.
QStringList suffixes();

/// Whether a loader in use knows the file's contents.
bool reads(const QString &path);

[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);

/// Shrinks while decoding where the format can; the whole picture is never in memory unless the
/// format cannot be read in strips, which is checked before.
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap);

/// @p source into @p target, which has the size asked for and the same format. Colours of
/// transparent pixels do not bleed into their neighbours.
[[nodiscard]] ImageError resize(const KBitmap &source, KBitmap &target);

/// File bytes of @p bitmap in the format "jpeg" (8-bit RGB or gray; @p quality 1 to 100), "tiff"
/// (any but premultiplied) or "hdri" (float RGB).
[[nodiscard]] ImageError encode(const KBitmap &bitmap, const QString &format, int quality,
                                QByteArray &bytes);

} // namespace VipsCodec
