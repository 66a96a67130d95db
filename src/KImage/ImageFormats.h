#pragma once

// Which picture files there are and how each is read, by suffix. Free functions, any thread.

#include <QString>
#include <QStringList>

/// How a file is read.
enum class ImageClass { Raw, HighDynamicRange, Ordinary };

namespace ImageFormats {

/// By the suffix of @p path, in either case.
ImageClass classOf(const QString &path);

/// Suffixes in lower case, sorted, of all that the loader can show.
QStringList pictureSuffixes();
/// Whether @p suffix, in lower case, is one of them; for most without asking StillCodecs.
bool isPictureSuffix(const QString &suffix);

/// "jpeg", "tiff" or "hdri" by the suffix of @p path ("jpg", "tif", "hdr"), else empty.
QString saveFormat(const QString &path);

} // namespace ImageFormats
