#pragma once

// How a JPEG's EXIF segment turns the picture, read without the tree of all its tags. A free
// function, any thread.

#include <QtGlobal>

/// The orientation of the first directory (EXIF 2.32, 4.6.4 A: 1 is upright, to 8) in a TIFF
/// structure of @p size bytes; 1 where it has none, 0 where what it has is not to be relied on.
int exifOrientation(const uchar *data, qint64 size);
