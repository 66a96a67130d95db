// Before any Qt header: glib has a member called "signals".
#include <vips/vips.h>

#include "KImage/VipsCodec.h"

#include "KImage/ImageLimits.h"
#include "KImage/KImage.h"

#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>

Q_LOGGING_CATEGORY(imageLog, "kimage", QtWarningMsg)

namespace VipsCodec {

namespace {

struct Unref
{
    void operator()(VipsImage *image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

/// libvips complains about each flaw of a file; people look at the picture instead.
void logQuietly(const gchar *, GLogLevelFlags, const gchar *message, gpointer)
{
    qCDebug(imageLog) << message;
}

/// Once, on first use: false when the library cannot run.
bool start()
{
    static const bool started = [] {
        if (VIPS_INIT("orbilens-player") != 0)
            return false;
        g_log_set_handler("VIPS", GLogLevelFlags(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE),
                          logQuietly, nullptr);
        // Results are remembered by file name, so a changed file would come back as it was.
        vips_cache_set_max(0);
        vips_block_untrusted_set(TRUE);
        // Radiance and OpenEXR are what panoramas of high dynamic range come in.
        vips_operation_block_set("VipsForeignLoadRad", FALSE);
        vips_operation_block_set("VipsForeignLoadOpenexr", FALSE);
        return true;
    }();
    return started;
}

/// The loaders in use, by their class.
struct Loader
{
    const char *className;
    const char *formatName;
    bool streams; ///< hands out rows without having decoded the whole picture before
};
constexpr Loader kLoaders[] = {
    {"VipsForeignLoadJpegFile", "JPEG", true},  {"VipsForeignLoadPngFile", "PNG", true},
    {"VipsForeignLoadTiffFile", "TIFF", true},  {"VipsForeignLoadRadFile", "HDR", true},
    {"VipsForeignLoadOpenexr", "EXR", true},    {"VipsForeignLoadWebpFile", "WEBP", false},
    {"VipsForeignLoadHeifFile", "HEIF", false}, {"VipsForeignLoadNsgifFile", "GIF", false}};

/// The one that knows the file by its contents, null for none; those that are switched off are
/// found by libvips too.
const Loader *loaderOf(const QString &path)
{
    if (!start())
        return nullptr;
    const char *className = vips_foreign_find_load(QFile::encodeName(path).constData());
    vips_error_clear();
    const auto *found =
        std::find_if(std::begin(kLoaders), std::end(kLoaders), [className](const Loader &loader) {
            return qstrcmp(loader.className, className) == 0;
        });
    return found == std::end(kLoaders) ? nullptr : found;
}

bool isGray(VipsImage *image)
{
    const VipsInterpretation kind = vips_image_get_interpretation(image);
    return kind == VIPS_INTERPRETATION_B_W || kind == VIPS_INTERPRETATION_GREY16 ||
           image->Bands < 3;
}

bool interlaced(VipsImage *image)
{
    return vips_image_get_typeof(image, "interlaced") != 0 ||
           vips_image_get_typeof(image, "jpeg-multiscan") != 0;
}

/// An error of libvips, told apart by what the file still allows.
ImageError lastError()
{
    const QByteArray text(vips_error_buffer());
    vips_error_clear();
    qCDebug(imageLog) << text;
    return text.contains("out of memory") || text.contains("unable to allocate")
               ? ImageError::NoMemory
               : ImageError::FileRead;
}

Image openHeader(const QString &path)
{
    return Image(vips_image_new_from_file(QFile::encodeName(path).constData(), "access",
                                          VIPS_ACCESS_SEQUENTIAL, nullptr));
}

/// Header checks that keep memory bounded.
ImageError check(const QString &path)
{
    const Image header = openHeader(path);
    if (!header)
        return lastError();
    const auto width = qint64(header->Xsize);
    const auto height = qint64(header->Ysize);
    if (!ImageLimits::acceptable(width, height))
        return ImageError::NoMemory;
    const auto bytes = qint64(VIPS_IMAGE_SIZEOF_PEL(header.get())) * width * height;
    const Loader *loader = loaderOf(path);
    const bool streams = loader && loader->streams && !interlaced(header.get());
    return streams || bytes <= ImageLimits::kMaxPixelBytes ? ImageError::None
                                                           : ImageError::NoMemory;
}

/// Runs @p operation, which makes a new image from the old one; false leaves no image.
template <class Operation>
bool apply(Image &image, Operation operation)
{
    VipsImage *result = nullptr;
    if (operation(image.get(), &result) != 0) {
        image.reset();
        return false;
    }
    image.reset(result);
    return true;
}

bool toColourspace(Image &image, VipsInterpretation space)
{
    return apply(image, [space](VipsImage *in, VipsImage **out) {
        return vips_colourspace(in, out, space, nullptr);
    });
}

bool toFormat(Image &image, VipsBandFormat format)
{
    if (image->BandFmt == format)
        return true;
    return apply(image, [format](VipsImage *in, VipsImage **out) {
        return vips_cast(in, out, format, nullptr);
    });
}

bool isFloatImage(VipsImage *image)
{
    return image->BandFmt == VIPS_FORMAT_FLOAT || image->BandFmt == VIPS_FORMAT_DOUBLE;
}

/// libvips counts the alpha of linear light to 255, and its OpenEXR loader gives it so; other files
/// hold it to 1, as our bitmaps do.
bool hasAlphaTo255(VipsImage *image)
{
    const char *loader = nullptr;
    return image->Bands == 4 && vips_image_get_typeof(image, VIPS_META_LOADER) != 0 &&
           vips_image_get_string(image, VIPS_META_LOADER, &loader) == 0 &&
           QByteArray(loader).startsWith("openexr");
}

bool scaleAlphaTo1(Image &image)
{
    return apply(image, [](VipsImage *in, VipsImage **out) {
        double factors[] = {1, 1, 1, 1.0 / 255};
        double offsets[] = {0, 0, 0, 0};
        return vips_linear(in, out, factors, offsets, 4, nullptr);
    });
}

/// Whether colours are to go through the file's profile, or that of usual printing inks for CMYK
/// without one.
bool hasProfile(VipsImage *image)
{
    return !isFloatImage(image) &&
           (vips_image_get_interpretation(image) == VIPS_INTERPRETATION_CMYK ||
            vips_image_get_typeof(image, VIPS_META_ICC_NAME) != 0);
}

void throughProfile(Image &image)
{
    if (!hasProfile(image.get()))
        return;
    const bool cmyk = vips_image_get_interpretation(image.get()) == VIPS_INTERPRETATION_CMYK;
    const int depth = image->BandFmt == VIPS_FORMAT_USHORT ? 16 : 8;
    VipsImage *converted = nullptr;
    if (vips_icc_transform(image.get(), &converted, "srgb", "embedded", TRUE, "input_profile",
                           cmyk ? "cmyk" : "srgb", "depth", depth, nullptr) == 0)
        image.reset(converted);
    else
        vips_error_clear(); // a broken profile is as good as none
}

/// Linear light: gray, RGB or RGBA.
bool normaliseFloat(Image &image)
{
    if (hasAlphaTo255(image.get()) && !scaleAlphaTo1(image))
        return false;
    // Gray with alpha has no like among the bitmaps; the gray is what people come for.
    if (image->Bands == 2 && !apply(image, [](VipsImage *in, VipsImage **out) {
            return vips_extract_band(in, out, 0, nullptr);
        }))
        return false;
    return toFormat(image, VIPS_FORMAT_FLOAT);
}

/// 8 or 16 bits of the sRGB curve: gray, RGB or RGBA.
bool normaliseInteger(Image &image)
{
    const bool gray = isGray(image.get()) && image->Bands == 1;
    const bool deep = image->BandFmt != VIPS_FORMAT_UCHAR && image->BandFmt != VIPS_FORMAT_CHAR;
    const VipsInterpretation colour = deep ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
    const VipsInterpretation lone = deep ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    return toColourspace(image, gray ? lone : colour) &&
           toFormat(image, deep ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR);
}

/// At most four channels, in one of the three depths that bitmaps have.
bool normalise(Image &image)
{
    if (image->Coding == VIPS_CODING_RAD && !apply(image, [](VipsImage *in, VipsImage **out) {
            return vips_rad2float(in, out, nullptr);
        }))
        return false;
    if (!(isFloatImage(image.get()) ? normaliseFloat(image) : normaliseInteger(image)))
        return false;
    constexpr int kMostChannels = 4;
    return image->Bands <= kMostChannels || apply(image, [](VipsImage *in, VipsImage **out) {
               return vips_extract_band(in, out, 0, "n", 3, nullptr);
           });
}

bool upright(Image &image)
{
    if (vips_image_get_orientation(image.get()) <= 1)
        return true;
    // A turn reads columns, which a file that is read from top to bottom cannot give.
    image.reset(vips_image_copy_memory(image.get()));
    return image && apply(image, [](VipsImage *in, VipsImage **out) {
               return vips_autorot(in, out, nullptr);
           });
}

/// The like of what is in @p image among the bitmaps; two-channel images have none.
std::optional<PixelFormat> bitmapFormat(VipsImage *image)
{
    const bool one = image->Bands == 1;
    const bool three = image->Bands == 3;
    if (!one && !three && image->Bands != 4)
        return std::nullopt;
    switch (image->BandFmt) {
    case VIPS_FORMAT_UCHAR:
        return one ? PixelFormat::Gray8 : three ? PixelFormat::Rgb8 : PixelFormat::Rgba8;
    case VIPS_FORMAT_USHORT:
        return one ? PixelFormat::Gray16 : three ? PixelFormat::Rgb16 : PixelFormat::Rgba16;
    case VIPS_FORMAT_FLOAT:
        return one     ? PixelFormat::GrayFloat
               : three ? PixelFormat::RgbFloat
                       : PixelFormat::RgbaFloat;
    default:
        return std::nullopt;
    }
}

struct Sink
{
    KBitmap &target;
    PixelFormat source;
    const std::atomic<bool> *cancelled;
};

int writeRows(VipsRegion *region, VipsRect *area, void *context)
{
    const Sink &sink = *static_cast<Sink *>(context);
    if (sink.cancelled && *sink.cancelled)
        return -1;
    for (int y = area->top; y < area->top + area->height; ++y)
        KImage_Copy::Row(VIPS_REGION_ADDR(region, area->left, y), sink.source,
                         sink.target.line(y) + area->left * bytesPerPixel(sink.target.format()),
                         sink.target.format(), area->width);
    return 0;
}

/// Computes @p image, whose pixels are @p source, row by row into a bitmap of @p format.
ImageError intoBitmap(VipsImage *image, std::optional<PixelFormat> source,
                      std::optional<PixelFormat> format, const std::atomic<bool> *cancelled,
                      KBitmap &bitmap)
{
    if (!source)
        return ImageError::BadBitmap;
    KBitmap result(image->Xsize, image->Ysize, format.value_or(*source));
    Sink sink{result, *source, cancelled};
    if (vips_sink_disc(image, writeRows, &sink) != 0)
        return lastError();
    bitmap = std::move(result);
    return ImageError::None;
}

ImageError loadNative(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    Image image = openHeader(path);
    if (!image)
        return lastError();
    throughProfile(image);
    if (!normalise(image) || !upright(image))
        return lastError();
    return intoBitmap(image.get(), bitmapFormat(image.get()), std::nullopt, request.cancelled,
                      bitmap);
}

/// To libvips' shrinking loader alpha to 1 is transparent and gray to 1 is black.
bool needsNative(const QString &path)
{
    const Image header = openHeader(path);
    return header && isFloatImage(header.get()) && header->Bands != 3 &&
           !hasAlphaTo255(header.get());
}

bool needsProfile(const QString &path)
{
    const Image header = openHeader(path);
    return header && hasProfile(header.get());
}

/// Ends the list of options before the profile where there is none.
const char *exportOption(const char *profile)
{
    return profile ? "export_profile" : nullptr;
}

/// Decoded at the smallest of the format's own scales that still fills @p limit.
Image openJpeg(const QByteArray &name, const QSize &limit)
{
    const Image header(
        vips_image_new_from_file(name.constData(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
    if (!header)
        return nullptr;
    constexpr int kFirstTurned = 5;
    const QSize box =
        vips_image_get_orientation(header.get()) >= kFirstTurned ? limit.transposed() : limit;
    const QSize size(header->Xsize, header->Ysize);
    const QSize wanted = ImageLoader::fitted(size, box);
    int shrink = 1;
    for (const int step : {2, 4, 8}) {
        if (size.width() / step >= wanted.width() && size.height() / step >= wanted.height())
            shrink = step;
    }
    VipsImage *image = nullptr;
    if (vips_jpegload(name.constData(), &image, "shrink", shrink, "access", VIPS_ACCESS_SEQUENTIAL,
                      nullptr) != 0)
        return nullptr;
    return Image(image);
}

ImageError loadFitted(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    const bool limited = request.limit.width() > 0 && request.limit.height() > 0;
    const int width = limited ? request.limit.width() : ImageLimits::kMaxSide;
    const int height = limited ? request.limit.height() : ImageLimits::kMaxSide;
    const QByteArray name = QFile::encodeName(path);
    // Pixels that need no profile would come out of its arithmetic with other colours.
    const char *const profile = needsProfile(path) ? "srgb" : nullptr;
    VipsImage *result = nullptr;
    int failed = 0;
    if (qstrcmp(loaderOf(path)->formatName, "JPEG") == 0) {
        // libvips keeps a factor of two for its own filter; that of the format is as good.
        const Image shrunk = openJpeg(name, request.limit);
        if (!shrunk)
            return lastError();
        failed = vips_thumbnail_image(shrunk.get(), &result, width, "height", height, "size",
                                      VIPS_SIZE_DOWN, exportOption(profile), profile, nullptr);
    } else {
        failed = vips_thumbnail(name.constData(), &result, width, "height", height, "size",
                                VIPS_SIZE_DOWN, exportOption(profile), profile, nullptr);
    }
    if (failed != 0)
        return lastError();
    Image image(result);
    if (!normalise(image))
        return lastError();
    return intoBitmap(image.get(), bitmapFormat(image.get()), request.format, request.cancelled,
                      bitmap);
}

/// A view of a bitmap's pixels, which must outlive it.
Image view(const KBitmap &bitmap)
{
    const int channels = channelCount(bitmap.format());
    const int bytes = bytesPerPixel(bitmap.format()) / channels;
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

QStringList suffixes()
{
    if (!start())
        return {};
    QStringList suffixes{QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jpe"),
                         QStringLiteral("png"), QStringLiteral("tif"),  QStringLiteral("tiff"),
                         QStringLiteral("hdr")};
    const struct
    {
        const char *loader;
        QStringList suffixes;
    } optional[] = {
        {"VipsForeignLoadWebpFile", {QStringLiteral("webp")}},
        {"VipsForeignLoadNsgifFile", {QStringLiteral("gif")}},
        {"VipsForeignLoadHeifFile",
         {QStringLiteral("heic"), QStringLiteral("heif"), QStringLiteral("avif")}},
        {"VipsForeignLoadOpenexr", {QStringLiteral("exr")}},
    };
    for (const auto &entry : optional) {
        if (g_type_from_name(entry.loader) != 0)
            suffixes += entry.suffixes;
    }
    return suffixes;
}

bool reads(const QString &path)
{
    return loaderOf(path) != nullptr;
}

ImageError describe(const QString &path, ImageInfo &info)
{
    const Image header = openHeader(path);
    if (!header)
        return lastError();
    info.size = QSize(header->Xsize, header->Ysize);
    constexpr int kFirstTurned = 5;
    if (vips_image_get_orientation(header.get()) >= kFirstTurned)
        info.size.transpose();
    const Loader *loader = loaderOf(path);
    if (vips_image_get_interpretation(header.get()) == VIPS_INTERPRETATION_CMYK)
        info.formatName = QStringLiteral("CMYK");
    else
        info.formatName = QLatin1String(loader ? loader->formatName : "UNKNOWN");
    info.gray = isGray(header.get());
    return ImageError::None;
}

ImageError load(const QString &path, const LoadRequest &request, KBitmap &bitmap)
{
    const ImageError error = check(path);
    if (error != ImageError::None)
        return error;
    if (request.format && !needsNative(path))
        return loadFitted(path, request, bitmap);
    const ImageError loaded = loadNative(path, request, bitmap);
    if (loaded == ImageError::None && request.format)
        bitmap = KImage::Scale(KImage::Convert(bitmap, *request.format),
                               ImageLoader::fitted(bitmap.size(), request.limit));
    return loaded;
}

ImageError resize(const KBitmap &source, KBitmap &target)
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
    const double across = double(target.width()) / source.width();
    const double down = double(target.height()) / source.height();
    if (!apply(image, [across, down](VipsImage *in, VipsImage **out) {
            return vips_resize(in, out, across, "vscale", down, nullptr);
        }))
        return lastError();
    if (straightAlpha && (!apply(image, unpremultiply) || !toFormat(image, depth)))
        return lastError();
    if (image->Xsize != target.width() || image->Ysize != target.height())
        return ImageError::BadParameters;
    return intoBitmap(image.get(), source.format(), source.format(), nullptr, target);
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
