#include "KImage/QtCodec.h"

#include "KImage/ImageLimits.h"

#include <QImageReader>

namespace QtCodec {

namespace {

bool turned(const QImageReader &reader)
{
    return reader.transformation() & QImageIOHandler::TransformationRotate90;
}

ImageError fromReader(QImageReader::ImageReaderError error)
{
    switch (error) {
    case QImageReader::FileNotFoundError:
    case QImageReader::DeviceError:
        return ImageError::FileOpen;
    case QImageReader::UnsupportedFormatError:
        return ImageError::UnknownFormat;
    case QImageReader::InvalidDataError:
        return ImageError::FileRead;
    default:
        return ImageError::Unknown;
    }
}

} // namespace

ImageError describe(const QString &path, ImageInfo &info)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return ImageError::UnknownFormat;
    // A format that hides its dimensions could be of any size.
    info.size = reader.size();
    if (!info.size.isValid())
        return ImageError::UnknownFormat;
    if (turned(reader))
        info.size.transpose();
    info.formatName = QString::fromLatin1(reader.format()).toUpper();
    info.gray = reader.imageFormat() == QImage::Format_Grayscale8 ||
                reader.imageFormat() == QImage::Format_Grayscale16;
    return ImageError::None;
}

ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    constexpr int kBytesPerPixel = 4;
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QSize limit = request.limit;
    if (turned(reader))
        limit.transpose();
    const QSize size = reader.size();
    const QSize wanted = ImageLoader::fitted(size, limit);
    // Not every plug-in scales while decoding, so the whole must fit.
    if (qint64(size.width()) * size.height() * kBytesPerPixel > ImageLimits::kMaxPixelBytes)
        return ImageError::NoMemory;
    if (wanted != size)
        reader.setScaledSize(wanted);
    QImage image = reader.read();
    if (image.isNull())
        return fromReader(reader.error());

    const PixelFormat format = request.format.value_or(PixelFormat::Rgba8);
    image = std::move(image).convertToFormat(format == PixelFormat::Rgba8
                                                 ? QImage::Format_RGBA8888
                                                 : QImage::Format_ARGB32_Premultiplied);
    bitmap = KBitmap(std::move(image));
    return ImageError::None;
}

} // namespace QtCodec
