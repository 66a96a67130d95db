#pragma once

// Reads a file's EXIF and lens entries through Exiv2. Free functions, any thread.

#include "KImage/ExifEntry.h"

#include <optional>

namespace MetadataReader {

/// Entries in the order of the file, GPS texts as `48° 51' 29.6"` and enumerations in words. Empty
/// for a file without metadata; nothing when it cannot be read.
std::optional<ExifEntries> read(const QString &path);

/// Makes Exiv2 ready for use on several threads; read does so by itself.
void initialise();

} // namespace MetadataReader
