// EXIF, XMP and IPTC of pictures through Exiv2 and our own bounds, up to the structure that people
// see: any bytes give entries and numbers, or nothing.

#include "KImage/ImageMetadata.h"
#include "KImage/MetadataGuard.h"
#include "KImage/MetadataReader.h"

#include <cmath>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const int file = memfd_create("picture", 0);
    if (file < 0 || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != ssize_t(size))
        std::abort();
    const MetadataGuard::TiffClaims claims = MetadataGuard::claimsOf(data, qint64(size));
    if (claims.xmp > qint64(size) || claims.largestPacket > qint64(size))
        std::abort();

    const auto entries = MetadataReader::read(QStringLiteral("/proc/self/fd/%1").arg(file));
    if (!entries)
        return 0;
    ImageMetadata metadata = Metadata::fromEntries(*entries, QSize(100, 50));
    Metadata::applyOptions(metadata, {});
    if (!std::isfinite(metadata.focalLength.focal35) || !(metadata.focalLength.focal35 > 0) ||
        !std::isfinite(metadata.yaw) || !std::isfinite(metadata.pitch) ||
        metadata.tableText().size() > 1000000)
        std::abort();
    return 0;
}
