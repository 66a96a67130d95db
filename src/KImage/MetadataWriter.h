#pragma once

// Puts EXIF and XMP into the bytes of a picture file through Exiv2. Free function, any thread.

#include <QByteArray>

namespace KImage {
struct SaveOptions;
}

namespace MetadataWriter {

/// @p file with the texts and the packet of @p options, the time of writing among them. Formats
/// that hold no metadata come back as they are. Throws a KException when the bytes are no picture.
QByteArray embedded(const QByteArray &file, const KImage::SaveOptions &options);

} // namespace MetadataWriter
