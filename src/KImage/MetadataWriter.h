#pragma once

// Puts EXIF and XMP into picture files through Exiv2. Free functions, any thread.

#include <QByteArray>
#include <QMap>
#include <QString>

namespace KImage {
struct SaveOptions;
}

namespace MetadataWriter {

/// @p file with the texts and the packet of @p options, the time of writing among them. Formats
/// that hold no metadata come back as they are. Throws a KException when the bytes are no picture.
QByteArray embedded(const QByteArray &file, const KImage::SaveOptions &options);

/// The EXIF texts of @p options and the time of writing as a PNG file of Qt's own writer carries
/// them: its text chunks (QImage::setText) by their names. The form is that of ImageMagick's raw
/// profiles, which Exiv2 and ExifTool read too.
QMap<QString, QString> pngTexts(const KImage::SaveOptions &options);

} // namespace MetadataWriter
