// Radiance, OpenEXR and plain JPEG pictures through the whole loader, which switches the first two
// readers on by itself and looks into the third for what makes it less than plain: any bytes give a
// bitmap of the size that the header claims, or an error.

#include "KImage/ImageLoader.h"
#include "KImage/StillCodecs.h"

#include <QCoreApplication>

#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const int file = memfd_create("picture", 0);
    if (file < 0 || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != ssize_t(size))
        std::abort();
    const QString path = QStringLiteral("/proc/self/fd/%1").arg(file);

    static const bool found = [] {
        QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
        return stillCodecs() != nullptr;
    }();
    if (!found)
        std::abort();
    LoadRequest request;
    request.limit = QSize(64, 64);
    KBitmap bitmap;
    if (ImageLoader::load(path, request, bitmap) != ImageError::None)
        return 0;
    if (!bitmap.isValid() || bitmap.width() > 64 || bitmap.height() > 64)
        std::abort();
    return 0;
}
