#include "KImage/ImageLoader.h"

#include "KImage/BitmapSink.h"
#include "KImage/ImageFormats.h"
#include "KImage/ImageLimits.h"
#include "KImage/JpegCodec.h"
#include "KImage/KImage.h"
#include "KImage/MetadataGuard.h"
#include "KImage/QtCodec.h"
#include "KImage/StillCodecs.h"

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
    return stillCodecs() && stillCodecs()->reads(path) ? Codec::Vips : Codec::Qt;
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
    ImageError error = ImageError::Unknown;
    switch (codec) {
    case Codec::Raw:
        if (stillCodecs())
            error = stillCodecs()->describeRaw(path, info);
        break;
    case Codec::Vips:
        error = stillCodecs()->describe(path, info);
        break;
    case Codec::Qt:
        error = QtCodec::describe(path, info);
        break;
    }
    return error == ImageError::None ? checkSize(info.size) : error;
}

/// The plug-in shrinks what is cheaply shrunk while it decodes; the rest is scaled here. A raw at
/// half size keeps the shape that the whole would have had.
[[nodiscard]] ImageError loadByPlugin(Codec codec, const QString &path, const LoadRequest &request,
                                      const QSize &size, KBitmap &bitmap)
{
    BitmapSink sink(request.format, request.cancelled);
    const ImageError error = codec == Codec::Raw ? stillCodecs()->loadRaw(path, request, sink)
                                                 : stillCodecs()->load(path, request, sink);
    if (error != ImageError::None)
        return error;
    KBitmap loaded = sink.takeBitmap();
    const QSize limit = codec == Codec::Raw ? fitted(size, request.limit) : request.limit;
    const QSize wanted = request.format ? fitted(loaded.size(), limit) : loaded.size();
    bitmap = loaded.size() == wanted ? std::move(loaded) : KImage::Scale(loaded, wanted);
    return ImageError::None;
}

[[nodiscard]] ImageError loadBy(Codec codec, const QString &path, const LoadRequest &request,
                                KBitmap &bitmap)
{
    ImageInfo info;
    const ImageError error = describeBy(codec, path, info);
    if (error != ImageError::None)
        return error;
    return codec == Codec::Qt ? QtCodec::load(path, request, bitmap)
                              : loadByPlugin(codec, path, request, info.size, bitmap);
}

/// Whether the picture is to be had at once: plain, and at the size that it has.
bool loadPlain(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    ImageInfo info;
    return request.format && ImageFormats::classOf(path) != ImageClass::Raw &&
           JpegCodec::describe(path, info) && checkSize(info.size) == ImageError::None &&
           fitted(info.size, request.limit) == info.size &&
           JpegCodec::load(path, *request.format, request.cancelled, bitmap);
}

} // namespace

ImageError describe(const QString &path, ImageInfo &info)
{
    const ImageError error = checkFile(path);
    if (error != ImageError::None)
        return error;
    if (ImageFormats::classOf(path) != ImageClass::Raw && JpegCodec::describe(path, info))
        return checkSize(info.size);
    return describeBy(codecOf(path), path, info);
}

ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    const ImageError error = checkFile(path);
    if (error != ImageError::None)
        return error;
    try {
        if (loadPlain(path, request, bitmap))
            return ImageError::None;
        if (request.cancelled && *request.cancelled)
            return ImageError::Unknown;
        return loadBy(codecOf(path), path, request, bitmap);
    } catch (const KException &) {
        return ImageError::NoMemory; // of the bitmap itself
    }
}

} // namespace ImageLoader
