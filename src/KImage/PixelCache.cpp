#include "KImage/PixelCache.h"

#include "KImage/ImageLimits.h"
#include "KImage/KImageErrors.h"
#include "foundation/KTemporaryFolder.h"

#include <QFile>

#include <atomic>

namespace PixelCache {

namespace {

constexpr quint32 kMagic = 0x4F524250; // "ORBP"

/// As it stands in the file, which no other run reads.
struct Header
{
    quint32 magic;
    qint32 width;
    qint32 height;
    qint32 format;
};

bool sensible(const Header &header)
{
    return header.magic == kMagic && header.format >= 0 && header.format < kPixelFormatCount &&
           ImageLimits::acceptable(header.width, header.height);
}

} // namespace

QString write(const KBitmap &bitmap)
{
    static std::atomic<int> number{0};
    const KTemporaryFolder *folder = KTemporaryFolder::Instance();
    if (!folder)
        K_THROW(KException::TemporaryFolderFull());
    folder->RequireSpace(quint64(bitmap.byteCount()) + sizeof(Header));

    QString path = folder->FilePath(QStringLiteral("pixels-%1").arg(++number));
    const Header header{kMagic, bitmap.width(), bitmap.height(), qint32(bitmap.format())};
    QFile file(path);
    const bool written =
        file.open(QIODevice::WriteOnly) &&
        file.write(reinterpret_cast<const char *>(&header), sizeof(header)) == sizeof(header) &&
        file.write(reinterpret_cast<const char *>(bitmap.line(0)), bitmap.byteCount()) ==
            bitmap.byteCount() &&
        file.flush();
    if (!written) {
        file.remove();
        K_THROW(KException::TemporaryFolderFull());
    }
    return path;
}

KBitmap read(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        K_THROW(KException::FileNotFound(path));
    Header header{};
    if (!file.open(QIODevice::ReadOnly) ||
        file.read(reinterpret_cast<char *>(&header), sizeof(header)) != sizeof(header) ||
        !sensible(header))
        K_THROW(KImageErrors::text(ImageError::FileRead, path));
    // The file holds all the pixels that its header claims before any is allocated.
    const auto format = PixelFormat(header.format);
    const qint64 bytes = qint64(header.width) * header.height * bytesPerPixel(format);
    if (file.size() - qint64(sizeof(header)) != bytes)
        K_THROW(KImageErrors::text(ImageError::FileRead, path));
    KBitmap bitmap(header.width, header.height, format);
    if (file.read(reinterpret_cast<char *>(bitmap.line(0)), bytes) != bytes)
        K_THROW(KImageErrors::text(ImageError::FileRead, path));
    return bitmap;
}

} // namespace PixelCache
