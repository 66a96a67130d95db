#pragma once

// Reading what Qt's own image plug-ins take (BMP, ICO, SVG and the like). Free functions, any
// thread; used by ImageLoader only.

#include "KImage/ImageLoader.h"

namespace QtCodec {

[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap);

} // namespace QtCodec
