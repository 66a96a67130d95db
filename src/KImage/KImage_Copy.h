#pragma once

// Copying of pixels between bitmaps of any pair of formats. Free functions without state, callable
// from any thread.

#include "KImage/KBitmap.h"

#include <QPoint>
#include <QRect>

namespace KImage_Copy {

/// Copies the pixels of @p area to @p position of @p target, converting them to its format. Throws
/// a KException: "Invalid Bitmap", or "Invalid Parameter" when the area leaves either bitmap.
void Copy(const KBitmap &source, const QRect &area, KBitmap &target, const QPoint &position);

/// One row of @p width pixels. Gray spreads to all channels and is made by the weights of ITU-R
/// BT.709; missing alpha is opaque; floats are cut to 0 to 1 on the way to integers.
void Row(const void *source, PixelFormat sourceFormat, void *target, PixelFormat targetFormat,
         int width);

} // namespace KImage_Copy
