#pragma once

// The disk form of a bitmap in the temporary folder: a header and the rows. Free functions, any
// thread; used by KImage only. Failures throw a KException.

#include "KImage/KBitmap.h"

#include <QString>

namespace PixelCache {

/// Writes a new file and returns its path.
QString write(const KBitmap &bitmap);
KBitmap read(const QString &path);

} // namespace PixelCache
