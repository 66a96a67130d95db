#pragma once

// Camera raws through LibRaw. Free functions, any thread; used by ImageLoader only.

#include "KImage/ImageLoader.h"

namespace RawCodec {

[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);

/// Decodes at half size where the limit allows it. Without a format: 16 bits for a channel.
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap);

} // namespace RawCodec
