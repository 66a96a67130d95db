#pragma once

// Reads a file's metadata through Exiv2. Free functions, any thread.

#include "KImage/ExifEntry.h"

#include <QByteArray>

#include <optional>

namespace MetadataReader {

/// Entries in the order of the file, GPS texts as `48° 51' 29.6"` and enumerations in words. Empty
/// for a file without metadata; nothing when it cannot be read.
std::optional<ExifEntries> read(const QString &path);

/// What stands beside EXIF, byte for byte; empty where the file has none.
struct Blocks
{
    QByteArray iptc;       ///< records of IPTC-NAA IIM
    QByteArray xmp;        ///< the packet
    QByteArray iccProfile; ///< ISO 15076-1
};

/// Nothing when the file cannot be read.
std::optional<Blocks> readBlocks(const QString &path);

/// Makes Exiv2 ready for use on several threads; read does so by itself.
void initialise();

} // namespace MetadataReader
