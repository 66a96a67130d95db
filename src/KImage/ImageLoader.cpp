#include "KImage/ImageLoader.h"

#include "KImage/ImageFormats.h"
#include "KImage/ImageLimits.h"
#include "KImage/QtCodec.h"
#include "KImage/RawCodec.h"
#include "KImage/VipsCodec.h"

#include <QFileInfo>

namespace ImageLoader {

namespace {

/// Pipes and devices could block or never end.
[[nodiscard]] ImageError checkFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable())
        return ImageError::FileOpen;
    return info.size() > 0 ? ImageError::None : ImageError::FileRead;
}

[[nodiscard]] ImageError checkSize(const QSize &size)
{
    if (size.width() <= 0 || size.height() <= 0)
        return ImageError::BadBitmap;
    return ImageLimits::acceptable(size.width(), size.height()) ? ImageError::None
                                                                : ImageError::NoMemory;
}

} // namespace

QSize fitted(const QSize &size, const QSize &limit)
{
    if (limit.width() <= 0 || limit.height() <= 0 ||
        (size.width() <= limit.width() && size.height() <= limit.height()))
        return size;
    return size.scaled(limit, Qt::KeepAspectRatio).expandedTo({1, 1});
}

ImageError describe(const QString &path, ImageInfo &info)
{
    ImageError error = checkFile(path);
    if (error != ImageError::None)
        return error;
    if (ImageFormats::classOf(path) == ImageClass::Raw)
        error = RawCodec::describe(path, info);
    else if (VipsCodec::reads(path))
        error = VipsCodec::describe(path, info);
    else
        error = QtCodec::describe(path, info);
    return error == ImageError::None ? checkSize(info.size) : error;
}

ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    ImageInfo info;
    const ImageError error = describe(path, info);
    if (error != ImageError::None)
        return error;
    try {
        if (ImageFormats::classOf(path) == ImageClass::Raw)
            return RawCodec::load(path, request, bitmap);
        if (VipsCodec::reads(path))
            return VipsCodec::load(path, request, bitmap);
        return QtCodec::load(path, request, bitmap);
    } catch (const KException &) {
        return ImageError::NoMemory; // of the bitmap itself
    }
}

} // namespace ImageLoader
