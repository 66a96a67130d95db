// Reading of files. Before any Qt header.
#include "KImage/codecs/VipsSupport.h"

#include "KImage/codecs/VipsCodec.h"

#include "KImage/ImageLimits.h"

#include <QFile>

#include <algorithm>

namespace VipsCodec {

namespace {

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

/// By a quarter, so that width and height are exchanged.
bool turned(VipsImage *image)
{
    constexpr int kFirstTurned = 5;
    return vips_image_get_orientation(image) >= kFirstTurned;
}

Image openHeader(const QString &path)
{
    return Image(vips_image_new_from_file(QFile::encodeName(path).constData(), "access",
                                          VIPS_ACCESS_SEQUENTIAL, nullptr));
}

/// Header checks that keep memory bounded.
ImageError check(VipsImage *header, const Loader *loader)
{
    const auto width = qint64(header->Xsize);
    const auto height = qint64(header->Ysize);
    if (!ImageLimits::acceptable(width, height))
        return ImageError::NoMemory;
    const auto bytes = qint64(VIPS_IMAGE_SIZEOF_PEL(header)) * width * height;
    const bool streams = loader && loader->streams && !interlaced(header);
    return streams || bytes <= ImageLimits::kMaxPixelBytes ? ImageError::None
                                                           : ImageError::NoMemory;
}
bool toColourspace(Image &image, VipsInterpretation space)
{
    return apply(image, [space](VipsImage *in, VipsImage **out) {
        return vips_colourspace(in, out, space, nullptr);
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
ImageError loadNative(Image image, PixelSink &sink)
{
    throughProfile(image);
    if (!normalise(image) || !upright(image))
        return lastError();
    return into(sink, image.get(), bitmapFormat(image.get()));
}

/// To libvips' shrinking loader alpha to 1 is transparent and gray to 1 is black.
bool needsNative(VipsImage *header)
{
    return isFloatImage(header) && header->Bands != 3 && !hasAlphaTo255(header);
}

/// Ends the list of options before the profile where there is none.
const char *exportOption(const char *profile)
{
    return profile ? "export_profile" : nullptr;
}

/// Decoded at the smallest of the format's own scales that still fills @p limit.
Image openJpeg(const QByteArray &name, VipsImage *header, const QSize &limit)
{
    const QSize box = turned(header) ? limit.transposed() : limit;
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

/// Shrunk into @p limit while decoding, upright; through @p profile unless that is null. Null for a
/// file that cannot be read, or not by that profile.
Image openFitted(const QByteArray &name, VipsImage *header, const Loader *loader,
                 const QSize &limit, const char *profile)
{
    const bool limited = limit.width() > 0 && limit.height() > 0;
    const int width = limited ? limit.width() : ImageLimits::kMaxSide;
    const int height = limited ? limit.height() : ImageLimits::kMaxSide;
    VipsImage *result = nullptr;
    int failed = 0;
    if (loader && qstrcmp(loader->formatName, "JPEG") == 0) {
        // libvips keeps a factor of two for its own filter; that of the format is as good.
        const Image shrunk = openJpeg(name, header, limit);
        if (!shrunk)
            return nullptr;
        failed = vips_thumbnail_image(shrunk.get(), &result, width, "height", height, "size",
                                      VIPS_SIZE_DOWN, exportOption(profile), profile, nullptr);
    } else {
        failed = vips_thumbnail(name.constData(), &result, width, "height", height, "size",
                                VIPS_SIZE_DOWN, exportOption(profile), profile, nullptr);
    }
    return Image(failed == 0 ? result : nullptr);
}

ImageError loadFitted(const QString &path, const Image &header, const Loader *loader,
                      const LoadRequest &request, PixelSink &sink)
{
    const QByteArray name = QFile::encodeName(path);
    // Pixels that need no profile would come out of its arithmetic with other colours.
    const char *const profile = hasProfile(header.get()) ? "srgb" : nullptr;
    Image image = openFitted(name, header.get(), loader, request.limit, profile);
    if (!image && profile) {
        vips_error_clear(); // a broken profile is as good as none
        image = openFitted(name, header.get(), loader, request.limit, nullptr);
    }
    if (!image)
        return lastError();
    if (!normalise(image))
        return lastError();
    return into(sink, image.get(), bitmapFormat(image.get()));
}
} // namespace

QStringList suffixes()
{
    if (!start())
        return {};
    const struct
    {
        const char *loader;
        QStringList suffixes;
    } loaders[] = {
        {"VipsForeignLoadWebpFile", {QStringLiteral("webp")}},
        {"VipsForeignLoadNsgifFile", {QStringLiteral("gif")}},
        {"VipsForeignLoadHeifFile",
         {QStringLiteral("heic"), QStringLiteral("heif"), QStringLiteral("avif")}},
        {"VipsForeignLoadOpenexr", {QStringLiteral("exr")}},
    };
    QStringList suffixes;
    for (const auto &entry : loaders) {
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
    if (turned(header.get()))
        info.size.transpose();
    const Loader *loader = loaderOf(path);
    if (vips_image_get_interpretation(header.get()) == VIPS_INTERPRETATION_CMYK)
        info.formatName = QStringLiteral("CMYK");
    else
        info.formatName = QLatin1String(loader ? loader->formatName : "UNKNOWN");
    info.gray = isGray(header.get());
    return ImageError::None;
}

ImageError load(const QString &path, const LoadRequest &request, PixelSink &sink)
{
    Image header = openHeader(path);
    if (!header)
        return lastError();
    const Loader *loader = loaderOf(path);
    const ImageError error = check(header.get(), loader);
    if (error != ImageError::None)
        return error;
    if (request.format && !needsNative(header.get()))
        return loadFitted(path, header, loader, request, sink);
    return loadNative(std::move(header), sink);
}

} // namespace VipsCodec
