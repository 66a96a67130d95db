#include "KImage/ImageLoader.h"

#include "KImage/ImageFormats.h"
#include "KImage/ImageLimits.h"
#include "KImage/MetadataGuard.h"
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
    if (info.size() == 0)
        return ImageError::FileRead;
    return MetadataGuard::packetsWithinBounds(path) ? ImageError::None : ImageError::NoMemory;
}

enum class Codec { Raw, Vips, Qt };

Codec codecOf(const QString &path)
{
    if (ImageFormats::classOf(path) == ImageClass::Raw)
        return Codec::Raw;
    return VipsCodec::reads(path) ? Codec::Vips : Codec::Qt;
}

[[nodiscard]] ImageError checkSize(const QSize &size)
{
    if (size.width() <= 0 || size.height() <= 0)
        return ImageError::BadBitmap;
    return ImageLimits::acceptable(size.width(), size.height()) ? ImageError::None
                                                                : ImageError::NoMemory;
}

[[nodiscard]] ImageError describeBy(Codec codec, const QString &path, ImageInfo &info)
{
    ImageError error = ImageError::None;
    switch (codec) {
    case Codec::Raw:
        error = RawCodec::describe(path, info);
        break;
    case Codec::Vips:
        error = VipsCodec::describe(path, info);
        break;
    case Codec::Qt:
        error = QtCodec::describe(path, info);
        break;
    }
    return error == ImageError::None ? checkSize(info.size) : error;
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
    const ImageError error = checkFile(path);
    return error == ImageError::None ? describeBy(codecOf(path), path, info) : error;
}

ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    ImageError error = checkFile(path);
    if (error != ImageError::None)
        return error;
    const Codec codec = codecOf(path);
    ImageInfo info;
    error = describeBy(codec, path, info);
    if (error != ImageError::None)
        return error;
    try {
        switch (codec) {
        case Codec::Raw:
            return RawCodec::load(path, request, bitmap);
        case Codec::Vips:
            return VipsCodec::load(path, request, bitmap);
        case Codec::Qt:
            return QtCodec::load(path, request, bitmap);
        }
    } catch (const KException &) {
        return ImageError::NoMemory; // of the bitmap itself
    }
    return ImageError::Unknown;
}

} // namespace ImageLoader
