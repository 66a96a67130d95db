#pragma once

// Reading, resizing and writing of pictures through libvips, which decodes in strips on all cores.
// Loaders that are not hardened against foreign bytes stay switched off. Free functions, any
// thread; the functions of StillCodecs, which tells what each does.

#include "KImage/StillCodecs.h"

namespace VipsCodec {

QStringList suffixes();
bool reads(const QString &path);
[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, PixelSink &sink);
[[nodiscard]] ImageError resize(const KBitmap &source, const QSize &size, PixelSink &sink);
[[nodiscard]] ImageError encode(const KBitmap &bitmap, const QString &format, int quality,
                                QByteArray &bytes);

} // namespace VipsCodec
