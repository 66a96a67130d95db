#pragma once

// Camera raws through LibRaw. Free functions, any thread; the functions of StillCodecs, which tells
// what each does.

#include "KImage/StillCodecs.h"

namespace RawCodec {

[[nodiscard]] ImageError describe(const QString &path, ImageInfo &info);
[[nodiscard]] ImageError load(const QString &path, const LoadRequest &request, PixelSink &sink);

} // namespace RawCodec
