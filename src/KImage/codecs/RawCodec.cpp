#include "KImage/codecs/RawCodec.h"

#include "KImage/ImageLimits.h"

#include <QFile>

#include <libraw/libraw.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace RawCodec {

namespace {

/// LibRaw with the scalings of red and blue, which act on the linear values after white balance.
class ScaledRaw : public LibRaw
{
public:
    ScaledRaw(double red, double blue)
        : m_red(red)
        , m_blue(blue)
    {
        if (red != 1.0 || blue != 1.0)
            callbacks.pre_preinterpolate_cb = [](void *self) {
                static_cast<ScaledRaw *>(static_cast<LibRaw *>(self))->scale();
            };
    }

private:
    void scale()
    {
        const auto pixels = qint64(imgdata.sizes.iheight) * imgdata.sizes.iwidth;
#pragma omp parallel for
        for (qint64 i = 0; i < pixels; ++i) {
            ushort *pixel = imgdata.image[i];
            pixel[0] = scaled(pixel[0], m_red);
            pixel[2] = scaled(pixel[2], m_blue);
        }
    }
    static ushort scaled(ushort value, double factor)
    {
        return ushort(std::min(std::lround(value * factor), 65535L));
    }

    double m_red;
    double m_blue;
};

ImageError fromLibRaw(int code)
{
    switch (code) {
    case LIBRAW_SUCCESS:
        return ImageError::None;
    case LIBRAW_FILE_UNSUPPORTED:
        return ImageError::UnknownFormat;
    case LIBRAW_UNSUFFICIENT_MEMORY:
    case LIBRAW_TOO_BIG:
        return ImageError::NoMemory;
    case LIBRAW_IO_ERROR:
    case LIBRAW_DATA_ERROR:
        return ImageError::FileRead;
    default:
        return ImageError::Unknown;
    }
}

struct FreeImage
{
    void operator()(libraw_processed_image_t *image) const { LibRaw::dcraw_clear_mem(image); }
};

/// Flips 5 and 6 are quarter turns.
bool turned(int flip)
{
    return (flip & 4) != 0;
}

void applyOptions(libraw_output_params_t &params, const RawOptions &options)
{
    constexpr int kSrgb = 1;
    params.output_color = kSrgb;
    params.output_bps = 16;
    params.use_auto_wb = options.automaticBalance ? 1 : 0;
    params.use_camera_wb = options.cameraBalance ? 1 : 0;
    params.highlight = options.highlight;
    params.no_auto_bright = options.autoBright ? 0 : 1;
    params.bright = float(options.brightness);
    params.gamm[0] = 1.0 / options.gamma;
    params.gamm[1] = 0.0; // a plain power, no straight part near black
}

} // namespace

ImageError describe(const QString &path, ImageInfo &info)
{
    const auto raw = std::make_unique<LibRaw>();
    const ImageError error = fromLibRaw(raw->open_file(QFile::encodeName(path).constData()));
    if (error != ImageError::None)
        return error;
    const libraw_image_sizes_t &sizes = raw->imgdata.sizes;
    info.size = QSize(sizes.width, sizes.height);
    if (turned(sizes.flip))
        info.size.transpose();
    info.formatName = QStringLiteral("RAW");
    info.gray = raw->imgdata.idata.colors == 1;
    return ImageError::None;
}

ImageError load(const QString &path, const LoadRequest &request, PixelSink &sink)
{
    // Four 16-bit values for each pixel while it is developed.
    constexpr qint64 kWorkingBytes = 8;
    const auto raw = std::make_unique<ScaledRaw>(request.raw.redScaling, request.raw.blueScaling);
    if (request.cancelled)
        raw->set_progress_handler(
            [](void *cancelled, LibRaw_progress, int, int) {
                return int(static_cast<const std::atomic<bool> *>(cancelled)->load());
            },
            const_cast<std::atomic<bool> *>(request.cancelled));
    applyOptions(raw->imgdata.params, request.raw);

    ImageError error = fromLibRaw(raw->open_file(QFile::encodeName(path).constData()));
    if (error != ImageError::None)
        return error;
    const libraw_image_sizes_t &sizes = raw->imgdata.sizes;
    if (qint64(sizes.raw_width) * sizes.raw_height * kWorkingBytes > ImageLimits::kMaxPixelBytes)
        return ImageError::NoMemory;
    const QSize full =
        turned(sizes.flip) ? QSize(sizes.height, sizes.width) : QSize(sizes.width, sizes.height);
    const QSize wanted = ImageLoader::fitted(full, request.format ? request.limit : QSize());
    raw->imgdata.params.half_size =
        wanted.width() <= full.width() / 2 && wanted.height() <= full.height() / 2 ? 1 : 0;

    error = fromLibRaw(raw->unpack());
    if (error == ImageError::None)
        error = fromLibRaw(raw->dcraw_process());
    if (error != ImageError::None)
        return error;
    int code = LIBRAW_SUCCESS;
    const std::unique_ptr<libraw_processed_image_t, FreeImage> image(
        raw->dcraw_make_mem_image(&code));
    raw->recycle();
    if (!image)
        return code == LIBRAW_SUCCESS ? ImageError::Unknown : fromLibRaw(code);
    if (image->bits != 16 || (image->colors != 1 && image->colors != 3))
        return ImageError::BadBitmap;

    const PixelFormat format = image->colors == 1 ? PixelFormat::Gray16 : PixelFormat::Rgb16;
    const int bytesPerLine = image->width * bytesPerPixel(format);
    if (image->data_size < quint64(bytesPerLine) * image->height)
        return ImageError::BadBitmap;
    error = sink.begin(QSize(image->width, image->height), format);
    for (int y = 0; y < image->height && error == ImageError::None; ++y) {
        if (!sink.write(0, y, image->data + qint64(y) * bytesPerLine, image->width))
            error = ImageError::Unknown;
    }
    return error;
}

} // namespace RawCodec
