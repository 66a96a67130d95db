#pragma once

// Bounds for metadata, of which the libraries that read it take as much as a file asks for: to
// Exiv2 a packet of XMP costs forty times its size and each of many values may claim the whole
// file, and libtiff makes ten copies. Free functions, any thread; used by the readers of this
// folder only.

#include <QString>

namespace MetadataGuard {

/// Longest packet of XMP, and longest block of any container that is handed out; what cameras and
/// editors write stays far below.
constexpr qint64 kLargestBlock = 4 * 1024 * 1024;
/// All values of a TIFF file's directories together, among them an editor's own copy of layers.
constexpr qint64 kMostValueBytes = 32 * 1024 * 1024;

/// Packets in a picture that is to be decoded: XMP, IPTC, profile, an editor's resources.
constexpr qint64 kLargestPacket = 16 * 1024 * 1024;

/// Bytes that the directories of a file with TIFF structure claim (TIFF Revision 6.0, section 2;
/// most camera raws too), as far as the file could hold them.
struct TiffClaims
{
    qint64 xmp = 0;
    qint64 largestPacket = 0;
    qint64 values = 0;
};
/// All 0 for bytes that have no such structure.
TiffClaims claimsOf(const uchar *data, qint64 size);

/// Whether a file may be given to a decoder of pictures.
bool packetsWithinBounds(const QString &path);

} // namespace MetadataGuard
