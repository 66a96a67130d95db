#include "KImage/BitmapSink.h"
#include "KImage/ExifOrientation.h"
#include "KImage/ImageFormats.h"
#include "KImage/ImageLoader.h"
#include "KImage/JpegCodec.h"
#include "KImage/KImage.h"
#include "KImage/Pictures.h"

#include <functional>

#include <sys/stat.h>

namespace {

LoadRequest fittedInto(const QSize &limit, PixelFormat format = PixelFormat::Rgba8)
{
    LoadRequest request;
    request.limit = limit;
    request.format = format;
    return request;
}

/// Whole, in the file's own format.
LoadRequest native()
{
    LoadRequest request;
    request.format = std::nullopt;
    return request;
}

/// Red, green, blue and alpha at a point of an 8-bit RGBA bitmap.
QVector<int> pixel(const KBitmap &bitmap, int x, int y)
{
    const uchar *p = bitmap.line(y) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

testing::AssertionResult near(const QVector<int> &a, const QVector<int> &b, int tolerance)
{
    for (int i = 0; i < 4; ++i) {
        if (std::abs(a.at(i) - b.at(i)) > tolerance)
            return testing::AssertionFailure() << "channel " << i << " is " << a.at(i);
    }
    return testing::AssertionSuccess();
}

/// A PNG that holds no more than a header, of these sides and their CRC in hexadecimal digits.
QByteArray pngClaiming(const char *sides, const char *crc)
{
    return "\x89PNG\r\n\x1a\n" + QByteArray::fromHex("0000000d49484452") +
           QByteArray::fromHex(sides) + QByteArray::fromHex("0802000000") +
           QByteArray::fromHex(crc) +
           QByteArray::fromHex("00000008494441547801636000000001"
                               "00000000");
}

} // namespace

TEST(Loader, EveryKindOfPictureComesOutAlike)
{
    const test::Pictures pictures;
    const QStringList base = test::Pictures::orangeAndBlue();
    const QStringList floats{"-depth", "32", "-define", "quantum:format=floating-point"};
    const std::tuple<const char *, QStringList, const char *, int, bool> rows[] = {
        {"a.jpg", {"-sampling-factor", "1x1", "-quality", "98"}, "JPEG", 3, false},
        {"progressive.jpg", {"-sampling-factor", "1x1", "-interlace", "JPEG"}, "JPEG", 8, false},
        {"a.png", {}, "PNG", 0, false},
        {"interlaced.png", {"-interlace", "PNG"}, "PNG", 0, false},
        {"palette.png", {"-type", "Palette"}, "PNG", 0, false},
        {"deep.png", {"-depth", "16"}, "PNG", 0, false},
        {"a.tif", {"-compress", "lzw"}, "TIFF", 0, false},
        {"deep.tif", {"-depth", "16", "-compress", "zip"}, "TIFF", 0, false},
        {"tiled.tif", {"-define", "tiff:tile-geometry=16x16"}, "TIFF", 0, false},
        {"cmyk.tif", {"-colorspace", "CMYK"}, "CMYK", 70, false},
        {"cmyk.jpg", {"-colorspace", "CMYK"}, "CMYK", 70, false},
        {"float.tif", floats, "TIFF", 1, true},
        {"a.webp", {"-define", "webp:lossless=true"}, "WEBP", 0, false},
        {"a.gif", {}, "GIF", 0, false},
        {"a.hdr", {}, "HDR", 13, true},
        {"a.bmp", {}, "BMP", 0, false},
    };
    for (const auto &[name, arguments, formatName, tolerance, linear] : rows) {
        SCOPED_TRACE(name);
        const QString path = pictures.make(name, base + arguments);
        ImageInfo info;
        ASSERT_EQ(ImageLoader::describe(path, info), ImageError::None);
        EXPECT_EQ(info.size, QSize(64, 32));
        EXPECT_EQ(info.formatName, formatName);
        EXPECT_FALSE(info.gray);

        KBitmap whole;
        ASSERT_EQ(ImageLoader::load(path, fittedInto(QSize()), whole), ImageError::None);
        ASSERT_EQ(whole.size(), QSize(64, 32));
        // Float files hold linear light, in which the tool's 128 is a brighter 188.
        const QVector<int> orange{255, linear ? 188 : 128, 0, 255};
        EXPECT_TRUE(near(pixel(whole, 8, 16), orange, tolerance));
        EXPECT_TRUE(near(pixel(whole, 56, 16), {0, 0, 255, 255}, tolerance * 2));

        KBitmap small;
        ASSERT_EQ(ImageLoader::load(path, fittedInto(QSize(16, 16)), small), ImageError::None);
        ASSERT_EQ(small.size(), QSize(16, 8));
        EXPECT_TRUE(near(pixel(small, 2, 4), orange, tolerance + 8));

        KBitmap own;
        ASSERT_EQ(ImageLoader::load(path, native(), own), ImageError::None);
        EXPECT_EQ(own.size(), QSize(64, 32));
        EXPECT_EQ(isFloat(own.format()), linear);
    }
}

TEST(Loader, PlainJpegsComeOutAsLibvipsReadsThem)
{
    const test::Pictures pictures;
    const struct
    {
        const char *name;
        QStringList arguments;
        QStringList tags; ///< for exiftool
        bool plain;
    } rows[] = {
        {"quartered.jpg", {"-sampling-factor", "2x2"}, {}, true},
        {"halved.jpg", {"-sampling-factor", "2x1", "-quality", "30"}, {}, true},
        {"full.jpg", {"-sampling-factor", "1x1"}, {"-Orientation#=1", "-XMP:Title=a"}, true},
        {"restarts.jpg", {"-define", "jpeg:restart-interval=3"}, {"-Make=Orvex"}, true},
        {"gray.jpg", {"-colorspace", "Gray"}, {}, true},
        {"rgb.jpg", {"-define", "jpeg:colorspace=RGB", "-sampling-factor", "1x1"}, {}, true},
        {"turned.jpg", {}, {"-Orientation#=8"}, false},
        {"progressive.jpg", {"-interlace", "JPEG"}, {}, false},
        {"inks.jpg", {"-colorspace", "CMYK"}, {}, false},
        {"other.png", {}, {}, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = pictures.make(
            row.name, QStringList{"-size", "101x67", "plasma:red-blue"} + row.arguments);
        if (!row.tags.isEmpty())
            pictures.run("exiftool",
                         QStringList{"-q", "-overwrite_original"} + row.tags + QStringList{path});
        ImageInfo info;
        EXPECT_EQ(JpegCodec::describe(path, info), row.plain);
        if (!row.plain)
            continue;
        ImageInfo expectedInfo;
        ASSERT_EQ(stillCodecs()->describe(path, expectedInfo), ImageError::None);
        EXPECT_EQ(info.size, expectedInfo.size);
        EXPECT_EQ(info.formatName, expectedInfo.formatName);
        EXPECT_EQ(info.gray, expectedInfo.gray);
        for (const PixelFormat format : {PixelFormat::Rgba8, PixelFormat::Bgra8Premultiplied}) {
            BitmapSink sink(format);
            ASSERT_EQ(stillCodecs()->load(path, fittedInto(QSize(), format), sink),
                      ImageError::None);
            const KBitmap expected = sink.takeBitmap();
            KBitmap bitmap;
            ASSERT_TRUE(JpegCodec::load(path, format, nullptr, bitmap));
            ASSERT_EQ(bitmap.size(), expected.size());
            EXPECT_TRUE(
                std::equal(bitmap.line(0), bitmap.line(0) + bitmap.byteCount(), expected.line(0)));
        }
        // A flaw leaves the file to libvips.
        const QByteArray bytes = pictures.read(row.name);
        KBitmap bitmap;
        EXPECT_FALSE(JpegCodec::load(pictures.write("half.jpg", bytes.left(bytes.size() / 2)),
                                     PixelFormat::Rgba8, nullptr, bitmap));
    }
}

TEST(Loader, AnOrientationIsReliedOnOnlyWhereItIsClear)
{
    const QByteArray little("II*\0\x08\0\0\0", 8);
    const QByteArray big("MM\0*\0\0\0\x08", 8);
    const QByteArray turned("\x12\x01\x03\0\x01\0\0\0\x06\0\0\0", 12);
    const QByteArray other("\x0f\x01\x02\0\x01\0\0\0a\0\0\0", 12);
    const QByteArray one("\x01\0", 2);
    const QByteArray two("\x02\0", 2);
    const struct
    {
        QByteArray bytes;
        int orientation;
    } rows[] = {
        {little + one + turned, 6},
        {little + one + other, 1},
        {little + two + other + turned, 6},
        {big + QByteArray("\0\x01\x01\x12\0\x03\0\0\0\x01\0\x03\0\0", 14), 3},
        {little + two + turned + turned, 0}, // which of them
        {little + two + turned, 0},          // fewer than told
        {little, 0},                         // none at all
        {little.left(7), 0},
        {QByteArray("II*\0\xff\xff\xff\xff", 8), 0}, // beyond the end
        {QByteArray("II*\0\0\0\0\0", 8), 0},         // in the header
        {"PK" + little.mid(2) + one + turned, 0},
        {little + one + QByteArray(turned).replace(8, 1, "\x09"), 0},
        {little + one + QByteArray(turned).replace(2, 1, "\x04"), 0},
        {little + one + QByteArray(turned).replace(4, 1, "\x02"), 0},
    };
    for (const auto &row : rows) {
        // Of its own, so that a look beyond it is seen by a sanitizer.
        const std::vector<uchar> bytes(row.bytes.begin(), row.bytes.end());
        EXPECT_EQ(exifOrientation(bytes.data(), qint64(bytes.size())), row.orientation)
            << row.bytes.toHex().constData();
    }
}

TEST(Loader, ColoursGoThroughTheFilesProfile)
{
    const test::Pictures pictures;
    pictures.make("a.png", {"-size", "32x32", "xc:rgb(200,100,50)"});
    for (const char *name : {"wide.png", "wide.jpg"}) {
        pictures.run("vips", {"icc_transform", "a.png", name, "p3", "--input-profile", "srgb"});
        ASSERT_NE(pictures.run("convert", {name, "-format", "%[fx:int(255*p{1,1}.g)]", "info:"}),
                  "100");
        for (const LoadRequest &request :
             {native(), fittedInto(QSize()), fittedInto(QSize(8, 8))}) {
            KBitmap bitmap;
            ASSERT_EQ(ImageLoader::load(pictures.path(name), request, bitmap), ImageError::None);
            const QVector<int> expected{200, 100, 50};
            for (int c = 0; c < 3; ++c)
                EXPECT_NEAR(bitmap.line(1)[c], expected.at(c), 4) << name;
        }
    }
}

TEST(Loader, AlphaGrayAndLinearLight)
{
    const test::Pictures pictures;
    const QStringList half{"-size", "8x8", "xc:rgba(255,0,0,0.5)"};
    const QStringList gray{"-size", "8x8", "xc:gray50", "-colorspace", "Gray"};
    const QStringList floats{"-depth", "32", "-define", "quantum:format=floating-point"};
    pictures.run("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "color=red@0.5:s=8x8,format=rgba",
                            "-frames:v", "1", "-pix_fmt", "gbrapf32le", pictures.path("a.exr")});
    const std::tuple<QString, bool, QVector<int>> rows[] = {
        {pictures.make("half.png", half), false, {255, 0, 0, 128}},
        {pictures.make("half.tif", half + floats), false, {255, 0, 0, 128}},
        {pictures.path("a.exr"), false, {255, 0, 0, 128}},
        {pictures.make("gray.png", gray), true, {127, 127, 127, 255}},
        {pictures.make("gray.jpg", gray), true, {127, 127, 127, 255}},
        {pictures.make("gray16.tif", gray + QStringList{"-depth", "16"}),
         true,
         {127, 127, 127, 255}},
        {pictures.make("gray.tif", gray + floats), true, {187, 187, 187, 255}},
    };
    for (const auto &[path, gray, expected] : rows) {
        SCOPED_TRACE(path.toStdString());
        ImageInfo info;
        ASSERT_EQ(ImageLoader::describe(path, info), ImageError::None);
        EXPECT_EQ(info.gray, gray);
        for (const QSize &limit : {QSize(), QSize(4, 4)}) {
            KBitmap bitmap;
            ASSERT_EQ(ImageLoader::load(path, fittedInto(limit), bitmap), ImageError::None);
            EXPECT_TRUE(near(pixel(bitmap, 1, 1), expected, 2));
        }
    }
}

TEST(Loader, OrientationTurnsThePictureUpright)
{
    const test::Pictures pictures;
    // Four corners of different colours, and ImageMagick's own turning of them.
    const QStringList corners{
        "-size",    "32x16",   "xc:red", "xc:lime", "+append",          "(",  "xc:blue",
        "xc:white", "+append", ")",      "-append", "-sampling-factor", "1x1"};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const char *name : {"a.jpg", "a.tif"}) {
            SCOPED_TRACE(testing::Message() << name << orientation);
            const QString path = pictures.make(name, corners);
            pictures.run("exiftool", {"-q", "-overwrite_original", "-n",
                                      QStringLiteral("-Orientation=%1").arg(orientation), name});
            pictures.run("convert", {name, "-auto-orient", "upright.png"});
            const QImage upright(pictures.path("upright.png"));
            ImageInfo info;
            ASSERT_EQ(ImageLoader::describe(path, info), ImageError::None);
            EXPECT_EQ(info.size, upright.size());
            for (const LoadRequest &request :
                 {fittedInto(QSize()), fittedInto(upright.size() / 2), native()}) {
                KBitmap loaded;
                ASSERT_EQ(ImageLoader::load(path, request, loaded), ImageError::None);
                ASSERT_EQ(loaded.width() * upright.height(), loaded.height() * upright.width());
                const KBitmap rgba = KImage::Convert(loaded, PixelFormat::Rgba8);
                for (const QPointF &at :
                     {QPointF(0.2, 0.2), QPointF(0.8, 0.2), QPointF(0.2, 0.8)}) {
                    const QColor expected = upright.pixelColor(int(at.x() * upright.width()),
                                                               int(at.y() * upright.height()));
                    EXPECT_TRUE(
                        near(pixel(rgba, int(at.x() * rgba.width()), int(at.y() * rgba.height())),
                             {expected.red(), expected.green(), expected.blue(), 255}, 12));
                }
            }
        }
    }
}

TEST(Loader, CameraRawsFollowTheirOptions)
{
    const test::Pictures pictures;
    const QString path = pictures.makeDng("a.DNG");
    ImageInfo info;
    ASSERT_EQ(ImageLoader::describe(path, info), ImageError::None);
    EXPECT_EQ(info.size, QSize(64, 48));
    EXPECT_EQ(info.formatName, "RAW");

    const auto middle = [&path](const RawOptions &options, const QSize &limit = QSize()) {
        LoadRequest request = fittedInto(limit);
        request.raw = options;
        KBitmap bitmap;
        EXPECT_EQ(ImageLoader::load(path, request, bitmap), ImageError::None);
        EXPECT_EQ(bitmap.width() * 3, bitmap.height() * 4);
        return bitmap.isValid() ? pixel(bitmap, bitmap.width() / 2, bitmap.height() / 2)
                                : QVector<int>(4);
    };
    RawOptions plain;
    plain.autoBright = false;
    plain.cameraBalance = false;
    const QVector<int> base = middle(plain);
    EXPECT_TRUE(near(middle(plain, QSize(16, 12)), base, 20));

    // No darker channel, -1: any other colour.
    const std::tuple<std::function<void(RawOptions &)>, int> rows[] = {
        {[](RawOptions &o) { o.brightness = 0.5; }, 1},
        {[](RawOptions &o) { o.gamma = 1.0; }, 1},
        {[](RawOptions &o) { o.redScaling = 0.5; }, 0},
        {[](RawOptions &o) { o.blueScaling = 0.5; }, 2},
        {[](RawOptions &o) { o.autoBright = true; }, -1},
        {[](RawOptions &o) { o.cameraBalance = true; }, -1},
        {[](RawOptions &o) { o.automaticBalance = true; }, -1}};
    for (const auto &[change, darkerChannel] : rows) {
        RawOptions changed = plain;
        change(changed);
        const QVector<int> colour = middle(changed);
        EXPECT_NE(colour, base);
        if (darkerChannel >= 0) {
            EXPECT_LT(colour[darkerChannel], base[darkerChannel] - 20);
        }
    }

    KBitmap deep;
    ASSERT_EQ(ImageLoader::load(path, native(), deep), ImageError::None);
    EXPECT_EQ(deep.format(), PixelFormat::Rgb16);
}

TEST(Loader, BrokenFilesAreErrorsAndStayCheap)
{
    const test::Pictures pictures;
    const QString jpeg = pictures.make("good.jpg", {"-size", "640x320", "plasma:red-blue"});
    const QByteArray bytes = pictures.read("good.jpg");
    const QByteArray exr("\x76\x2f\x31\x01\x02\0\0\0", 8);
    const QByteArray hugeHdr("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 100000 +X 100000\n");
    const QString pipe = pictures.path("pipe.jpg");
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    const std::tuple<QString, ImageError> rows[] = {
        {pictures.path("absent.jpg"), ImageError::FileOpen},
        {pipe, ImageError::FileOpen},
        {pictures.write("empty.jpg", ""), ImageError::FileRead},
        {pictures.write("text.jpg", "just words"), ImageError::UnknownFormat},
        {pictures.write("text.dng", "just words, and more of them"), ImageError::FileRead},
        {pictures.write("text.cr2", bytes), ImageError::UnknownFormat},
        {pictures.write("head.jpg", bytes.left(20)), ImageError::FileRead},
        {pictures.write("head.exr", exr), ImageError::FileRead},
        {pictures.write("a.svgz", "\x1f\x8b"), ImageError::UnknownFormat},
        {pictures.write("bomb.png", pngClaiming("000186a0000186a0", "27309c9f")),
         ImageError::NoMemory},
        {pictures.write("long.png", pngClaiming("001e848000000001", "bba1491e")),
         ImageError::NoMemory},
        {pictures.write("lying.png", pngClaiming("7fffffff7fffffff", "9bab9c31")),
         ImageError::FileRead},
        {pictures.write("bomb.hdr", hugeHdr), ImageError::NoMemory},
        {pictures.write("bomb.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='100000' "
                                    "height='100000'/>"),
         ImageError::NoMemory},
    };
    const long before = test::peakMegabytes();
    for (const auto &[path, error] : rows) {
        SCOPED_TRACE(path.toStdString());
        KBitmap bitmap;
        EXPECT_EQ(ImageLoader::load(path, fittedInto(QSize(64, 64)), bitmap), error);
        EXPECT_FALSE(bitmap.isValid());
    }
    EXPECT_LT(test::peakMegabytes() - before, 64);

    // What is there of a picture is shown.
    KBitmap half;
    ASSERT_EQ(ImageLoader::load(pictures.write("half.jpg", bytes.left(bytes.size() / 2)),
                                fittedInto(QSize()), half),
              ImageError::None);
    EXPECT_EQ(half.size(), QSize(640, 320));

    const std::atomic<bool> cancelled{true};
    LoadRequest request = fittedInto(QSize());
    request.cancelled = &cancelled;
    KBitmap none;
    EXPECT_NE(ImageLoader::load(jpeg, request, none), ImageError::None);
}

TEST(Loader, SuffixesAndSizes)
{
    EXPECT_EQ(ImageFormats::classOf("/a/b.Nef"), ImageClass::Raw);
    EXPECT_EQ(ImageFormats::classOf("/a.dng/b.THM"), ImageClass::Ordinary);
    const QStringList suffixes = ImageFormats::pictureSuffixes();
    for (const char *suffix : {"jpg", "jpeg", "png", "tif", "webp", "hdr", "exr", "heic", "bmp",
                               "svg", "gif", "dng", "arw", "thm"}) {
        EXPECT_EQ(suffixes.count(suffix), 1) << suffix;
        EXPECT_TRUE(ImageFormats::isPictureSuffix(suffix)) << suffix;
    }
    for (const char *suffix : {"pdf", "mp4", "v", ""}) {
        EXPECT_FALSE(suffixes.contains(suffix)) << suffix;
        EXPECT_FALSE(ImageFormats::isPictureSuffix(suffix)) << suffix;
    }

    EXPECT_EQ(ImageLoader::fitted({100, 50}, {50, 50}), QSize(50, 25));
    EXPECT_EQ(ImageLoader::fitted({100, 50}, {0, 50}), QSize(100, 50));
    EXPECT_EQ(ImageLoader::fitted({10, 5}, {50, 50}), QSize(10, 5));
    EXPECT_EQ(ImageLoader::fitted({1000, 1}, {10, 10}), QSize(10, 1));
}
