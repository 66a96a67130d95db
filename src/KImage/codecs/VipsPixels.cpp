// Resizing and writing of pixels that are in memory. Before any Qt header.
#include "KImage/codecs/VipsSupport.h"

#include "KImage/codecs/VipsCodec.h"

namespace VipsCodec {

namespace {

/// A view of a bitmap's pixels, which must outlive it.
Image view(const KBitmap &bitmap)
{
    const int channels = channelCount(bitmap.format());
    const int bytes = bytesPerChannel(bitmap.format());
    const VipsBandFormat format = bytes == 1   ? VIPS_FORMAT_UCHAR
                                  : bytes == 2 ? VIPS_FORMAT_USHORT
                                               : VIPS_FORMAT_FLOAT;
    Image image(vips_image_new_from_memory(bitmap.line(0), std::size_t(bitmap.byteCount()),
                                           bitmap.width(), bitmap.height(), channels, format));
    if (!image)
        return image;
    VipsInterpretation kind = VIPS_INTERPRETATION_sRGB;
    if (bytes == 4)
        kind = channels == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_scRGB;
    else if (channels == 1)
        kind = bytes == 2 ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    else if (bytes == 2)
        kind = VIPS_INTERPRETATION_RGB16;
    image->Type = kind;
    return image;
}

} // namespace
ImageError resize(const KBitmap &source, const QSize &size, PixelSink &sink)
{
    if (!start())
        return ImageError::Unknown;
    Image image = view(source);
    if (!image)
        return lastError();
    const bool straightAlpha =
        hasAlpha(source.format()) && source.format() != PixelFormat::Bgra8Premultiplied;
    const VipsBandFormat depth = image->BandFmt;
    const double opaque = isFloat(source.format()) ? 1 : depth == VIPS_FORMAT_USHORT ? 65535 : 255;
    const auto premultiply = [opaque](VipsImage *in, VipsImage **out) {
        return vips_premultiply(in, out, "max_alpha", opaque, nullptr);
    };
    const auto unpremultiply = [opaque](VipsImage *in, VipsImage **out) {
        return vips_unpremultiply(in, out, "max_alpha", opaque, nullptr);
    };
    if (straightAlpha && !apply(image, premultiply))
        return lastError();
    const double across = double(size.width()) / source.width();
    const double down = double(size.height()) / source.height();
    if (!apply(image, [across, down](VipsImage *in, VipsImage **out) {
            return vips_resize(in, out, across, "vscale", down, nullptr);
        }))
        return lastError();
    if (straightAlpha && (!apply(image, unpremultiply) || !toFormat(image, depth)))
        return lastError();
    if (image->Xsize != size.width() || image->Ysize != size.height())
        return ImageError::BadParameters;
    return into(sink, image.get(), source.format());
}

ImageError encode(const KBitmap &bitmap, const QString &format, int quality, QByteArray &bytes)
{
    if (!start())
        return ImageError::Unknown;
    const Image image = view(bitmap);
    if (!image)
        return lastError();
    void *buffer = nullptr;
    std::size_t size = 0;
    int result = -1;
    if (format == QLatin1String("jpeg"))
        result = vips_jpegsave_buffer(image.get(), &buffer, &size, "Q", quality, "optimize_coding",
                                      TRUE, nullptr);
    else if (format == QLatin1String("tiff"))
        result = vips_tiffsave_buffer(image.get(), &buffer, &size, "compression",
                                      VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE, nullptr);
    else if (format == QLatin1String("hdri"))
        result = vips_radsave_buffer(image.get(), &buffer, &size, nullptr);
    else
        return ImageError::BadFormatIndex;
    if (result != 0)
        return lastError();
    bytes = QByteArray(static_cast<const char *>(buffer), int(size));
    g_free(buffer);
    return ImageError::None;
}

} // namespace VipsCodec
