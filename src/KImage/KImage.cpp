#include "KImage/KImage.h"

#include "KImage/BitmapSink.h"
#include "KImage/ImageFormats.h"
#include "KImage/ImageLimits.h"
#include "KImage/MetadataWriter.h"
#include "KImage/PixelCache.h"
#include "KImage/StillCodecs.h"
#include "foundation/KSystemInfo.h"

#include <QFileInfo>
#include <QSaveFile>

namespace KImage {

namespace {

void requireValid(const KBitmap &bitmap)
{
    if (!bitmap.isValid())
        K_THROW(KImageErrors::invalidBitmap());
}

void throwUnlessDone(ImageError error)
{
    if (error == ImageError::NoMemory)
        K_THROW(KImageErrors::notEnoughMemory());
    if (error != ImageError::None)
        K_THROW(KException::ImageLibraryError(KImageErrors::name(error)));
}

StillCodecs &codecs()
{
    StillCodecs *const found = stillCodecs();
    if (!found)
        throwUnlessDone(ImageError::Unknown);
    return *found;
}

/// What the format can hold of @p bitmap's pixels.
PixelFormat savedAs(const KBitmap &bitmap, const QString &format)
{
    const bool gray = channelCount(bitmap.format()) == 1;
    if (format == QLatin1String("jpeg"))
        return gray ? PixelFormat::Gray8 : PixelFormat::Rgb8;
    if (format == QLatin1String("hdri"))
        return PixelFormat::RgbFloat;
    return bitmap.format() == PixelFormat::Bgra8Premultiplied ? PixelFormat::Rgba8
                                                              : bitmap.format();
}

/// Qt's scaling of premultiplied pixels, the fastest there is for them.
KBitmap scaledByQt(const KBitmap &bitmap, const QSize &size)
{
    const QImage source(bitmap.line(0), bitmap.width(), bitmap.height(), int(bitmap.bytesPerLine()),
                        QImage::Format_ARGB32_Premultiplied);
    KBitmap result(source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    if (result.size() != size)
        K_THROW(KImageErrors::notEnoughMemory());
    return result;
}

} // namespace

KBitmap Read(const QString &path, const LoadRequest &request)
{
    if (request.format && *request.format != PixelFormat::Rgba8 &&
        *request.format != PixelFormat::Bgra8Premultiplied)
        K_THROW(KImageErrors::invalidParameter());
    KBitmap bitmap;
    const ImageError error = ImageLoader::load(path, request, bitmap);
    if (error != ImageError::None)
        K_THROW(KImageErrors::text(error, path));
    return bitmap;
}

KBitmap Convert(const KBitmap &bitmap, PixelFormat format)
{
    requireValid(bitmap);
    KBitmap result(bitmap.width(), bitmap.height(), format);
    KImage_Copy::Copy(bitmap, QRect(QPoint(), bitmap.size()), result, QPoint());
    return result;
}

KBitmap Scale(const KBitmap &bitmap, const QSize &size)
{
    requireValid(bitmap);
    if (size.width() <= 0 || size.height() <= 0)
        K_THROW(KImageErrors::invalidParameter());
    if (!ImageLimits::acceptable(size.width(), size.height()))
        K_THROW(KImageErrors::notEnoughMemory());
    if (bitmap.format() == PixelFormat::Bgra8Premultiplied)
        return scaledByQt(bitmap, size);
    BitmapSink sink(bitmap.format());
    throwUnlessDone(codecs().resize(bitmap, size, sink));
    return sink.takeBitmap();
}

QString ID_WriteToCache(const KBitmap &bitmap)
{
    requireValid(bitmap);
    return PixelCache::write(bitmap);
}

KBitmap ID_Read(const QString &cacheFile)
{
    return PixelCache::read(cacheFile);
}

QByteArray SaveIntoMemory(const KBitmap &bitmap, const QString &format, const SaveOptions &options)
{
    requireValid(bitmap);
    constexpr int kBestQuality = 100;
    if (options.quality < 1 || options.quality > kBestQuality)
        K_THROW(KImageErrors::invalidParameter());
    QByteArray bytes;
    const PixelFormat wanted = savedAs(bitmap, format);
    if (wanted == bitmap.format())
        throwUnlessDone(codecs().encode(bitmap, format, options.quality, bytes));
    else
        throwUnlessDone(codecs().encode(Convert(bitmap, wanted), format, options.quality, bytes));
    return MetadataWriter::embedded(bytes, options);
}

void Save(const KBitmap &bitmap, const QString &path, const SaveOptions &options)
{
    requireValid(bitmap);
    const QString format = ImageFormats::saveFormat(path);
    if (format.isEmpty())
        K_THROW(KImageErrors::invalidParameter());
    const QByteArray bytes = SaveIntoMemory(bitmap, format, options);

    const KSystemInfo::DiskSpace space = KSystemInfo::DiskSpaceOf(QFileInfo(path).absolutePath());
    if (space.total > 0 && space.free < quint64(bytes.size()))
        K_THROW(KException::NotEnoughSpace(path));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        K_THROW(KException::CannotWrite(path));
}

} // namespace KImage
