#include "KImage/KImage.h"
#include "KImage/MetadataReader.h"
#include "KImage/PanoramaXmp.h"
#include "KImage/Pictures.h"
#include "foundation/KPoolMemManager.h"
#include "foundation/KTemporaryFolder.h"
#include "support/Files.h"

#include <QColor>
#include <QRegularExpression>

#include <cmath>

namespace {

template <class Function>
QString messageOf(Function function)
{
    try {
        function();
    } catch (const KException &error) {
        return error.message;
    }
    return QString();
}

/// One pixel of 8-bit RGBA.
KBitmap onePixel(const QVector<int> &rgba, PixelFormat format = PixelFormat::Rgba8)
{
    KBitmap bitmap(1, 1, PixelFormat::Rgba8);
    for (int i = 0; i < 4; ++i)
        bitmap.line(0)[i] = uchar(rgba.at(i));
    return KImage::Convert(bitmap, format);
}

QVector<int> rgbaOf(const KBitmap &bitmap)
{
    const KBitmap rgba = KImage::Convert(bitmap, PixelFormat::Rgba8);
    const uchar *p = rgba.line(0);
    return {p[0], p[1], p[2], p[3]};
}

KBitmap ramp(int width, int height, PixelFormat format)
{
    KBitmap bitmap(width, height, PixelFormat::Rgba8);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            uchar *p = bitmap.line(y) + 4 * x;
            p[0] = uchar(x * 255 / width);
            p[1] = uchar(y * 255 / height);
            p[2] = 77;
            p[3] = 255;
        }
    }
    return KImage::Convert(bitmap, format);
}

} // namespace

TEST(Bitmap, EveryPairOfFormatsKeepsTheColour)
{
    for (int from = 0; from < kPixelFormatCount; ++from) {
        for (int to = 0; to < kPixelFormatCount; ++to) {
            SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
            const auto source = PixelFormat(from);
            const auto target = PixelFormat(to);
            const bool alpha = hasAlpha(source) && hasAlpha(target);
            const bool gray = channelCount(source) == 1 || channelCount(target) == 1;
            const QVector<int> colour =
                gray ? QVector<int>{90, 90, 90, 128} : QVector<int>{200, 100, 3, 128};
            QVector<int> found = rgbaOf(KImage::Convert(onePixel(colour, source), target));
            for (int c = 0; c < 3; ++c)
                EXPECT_NEAR(found.at(c), colour.at(c), 1);
            EXPECT_EQ(found.at(3), alpha ? 128 : 255);
        }
    }
}

TEST(Bitmap, ConversionsMeetTheStandardsValues)
{
    // Linear light of middle values by IEC 61966-2-1; luma weights by ITU-R BT.709.
    const KBitmap linear = onePixel({188, 0, 255, 255}, PixelFormat::RgbaFloat);
    const auto *f = reinterpret_cast<const float *>(linear.line(0));
    EXPECT_NEAR(f[0], 0.5029F, 1e-3F);
    EXPECT_EQ(f[1], 0.0F);
    EXPECT_EQ(f[2], 1.0F);
    const int grays[][4] = {
        {255, 0, 0, 54}, {0, 255, 0, 182}, {0, 0, 255, 18}, {255, 255, 255, 255}};
    for (const auto &row : grays)
        EXPECT_EQ(onePixel({row[0], row[1], row[2], 255}, PixelFormat::Gray8).line(0)[0], row[3]);

    KBitmap wild(4, 1, PixelFormat::GrayFloat);
    const float values[] = {NAN, -3.0F, 7.0F, INFINITY};
    std::copy_n(values, 4, reinterpret_cast<float *>(wild.line(0)));
    const KBitmap cut = KImage::Convert(wild, PixelFormat::Gray8);
    const int expected[] = {0, 0, 255, 255};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(cut.line(0)[i], expected[i]);

    const QColor colour(200, 100, 3, 128);
    const QRgb premultiplied = qPremultiply(colour.rgba());
    KBitmap bgra = onePixel({200, 100, 3, 128}, PixelFormat::Bgra8Premultiplied);
    const QImage image = bgra.takeImage();
    EXPECT_EQ(reinterpret_cast<const QRgb *>(image.constBits())[0], premultiplied);
    EXPECT_FALSE(bgra.isValid());
}

TEST(Bitmap, RowsOfAnyLengthConvertWhole)
{
    for (int width = 1; width < 12; ++width) {
        const KBitmap rgb = ramp(width, 2, PixelFormat::Rgb8);
        for (const PixelFormat wide : {PixelFormat::Rgba8, PixelFormat::Bgra8Premultiplied}) {
            const KBitmap back = KImage::Convert(KImage::Convert(rgb, wide), PixelFormat::Rgb8);
            EXPECT_TRUE(std::equal(rgb.line(0), rgb.line(0) + rgb.byteCount(), back.line(0)));
        }
    }
}

TEST(Bitmap, CopyPlacesARectangle)
{
    const KBitmap source = ramp(20, 10, PixelFormat::Rgb16);
    KBitmap target(8, 8, PixelFormat::Rgba8);
    KImage_Copy::Copy(source, QRect(10, 5, 4, 3), target, QPoint(3, 4));
    EXPECT_EQ(target.line(4)[4 * 3], 10 * 255 / 20);
    EXPECT_EQ(target.line(6)[4 * 6 + 1], 7 * 255 / 10);
    EXPECT_EQ(target.line(3)[4 * 3 + 3], 0);
    EXPECT_EQ(target.line(4)[4 * 7 + 3], 0);
    for (const QRect &area : {QRect(), QRect(-1, 0, 2, 2), QRect(18, 0, 3, 1), QRect(0, 0, 9, 1)})
        EXPECT_EQ(messageOf([&] { KImage_Copy::Copy(source, area, target, QPoint()); }),
                  "Invalid Parameter");
}

TEST(Bitmap, EachOperationRefusesWhatItCannotUse)
{
    const KBitmap none;
    const KBitmap some = ramp(4, 4, PixelFormat::Rgb8);
    LoadRequest gray;
    gray.format = PixelFormat::Gray8;
    KImage::SaveOptions tooGood;
    tooGood.quality = 101;
    const test::Pictures pictures;
    const QString text = pictures.write("a.jpg", "text");
    const std::pair<QString, QString> rows[] = {
        {messageOf([&] { KImage::Convert(none, PixelFormat::Rgb8); }), "Invalid Bitmap"},
        {messageOf([&] { KImage::Scale(none, QSize(1, 1)); }), "Invalid Bitmap"},
        {messageOf([&] { KImage::ID_WriteToCache(none); }), "Invalid Bitmap"},
        {messageOf([&] { KImage::Save(none, "a.jpg"); }), "Invalid Bitmap"},
        {messageOf([&] { KImage::Scale(some, QSize(0, 1)); }), "Invalid Parameter"},
        {messageOf([&] { KImage::Save(some, "a.bmp"); }), "Invalid Parameter"},
        {messageOf([&] { KImage::Save(some, "a.jpg", tooGood); }), "Invalid Parameter"},
        {messageOf([&] { KImage::Read("a.jpg", gray); }), "Invalid Parameter"},
        {messageOf([&] { KBitmap(0, 5, PixelFormat::Rgb8); }), "Invalid Parameter"},
        {messageOf([&] { KBitmap(40000, 20000, PixelFormat::Rgb8); }), "Not enough memory"},
        {messageOf([&] { KImage::Scale(some, QSize(2000000, 1)); }), "Not enough memory"},
        {messageOf([&] { KImage::SaveIntoMemory(some, "bmp"); }),
         "Error GFL : \"GFL_ERROR_BAD_FORMAT_INDEX\""},
        {messageOf([&] { KImage::Read(text); }),
         "Error GFL : \"GFL_ERROR_UNKNOWN_FORMAT\"\nFile : \"" + text + "\""},
        {messageOf([&] { KImage::Save(some, "/proc/a.jpg"); }),
         "Cannot write into file \"/proc/a.jpg\""},
    };
    int index = 0;
    for (const auto &[message, expected] : rows)
        EXPECT_EQ(message.toStdString(), expected.toStdString()) << "row " << index++;
    try {
        KImage::Scale(none, QSize(1, 1));
    } catch (const KException &error) {
        EXPECT_TRUE(error.location.startsWith("File: \"KImage\" Line: "));
    }
}

TEST(Bitmap, ScalingKeepsColoursAndDoesNotBleed)
{
    for (int f = 0; f < kPixelFormatCount; ++f) {
        const KBitmap source = ramp(64, 32, PixelFormat(f));
        for (const QSize &size : {QSize(16, 16), QSize(100, 70), QSize(1, 1), QSize(7, 31)}) {
            const KBitmap scaled = KImage::Scale(source, size);
            ASSERT_EQ(scaled.size(), size);
            ASSERT_EQ(scaled.format(), PixelFormat(f));
            const KBitmap rgba = KImage::Convert(scaled, PixelFormat::Rgba8);
            EXPECT_EQ(rgba.line(size.height() / 2)[3], 255);
            const uchar *middle = rgba.line(size.height() / 2);
            EXPECT_NEAR(middle[2], channelCount(source.format()) > 1 ? 77 : middle[0], 1);
        }
    }
    // Transparent green beside opaque red: no green may show.
    KBitmap edge(16, 16, PixelFormat::Rgba8);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            uchar *p = edge.line(y) + 4 * x;
            p[0] = x < 8 ? 255 : 0;
            p[1] = x < 8 ? 0 : 255;
            p[3] = x < 8 ? 255 : 0;
        }
    }
    const KBitmap small = KImage::Scale(edge, QSize(5, 5));
    EXPECT_LE(small.line(2)[4 * 2 + 1], 2);
    EXPECT_NEAR(small.line(2)[4 * 2 + 3], 128, 20);
}

TEST(Bitmap, CacheGivesBackTheSamePixels)
{
    const KBitmap bitmap = ramp(31, 17, PixelFormat::Rgb16);
    EXPECT_EQ(messageOf([&] { KImage::ID_WriteToCache(bitmap); }),
              "No more space in temporary folder");
    KTemporaryFolder::CreateInstance();
    const QString path = KImage::ID_WriteToCache(bitmap);
    EXPECT_NE(KImage::ID_WriteToCache(bitmap), path);
    const KBitmap back = KImage::ID_Read(path);
    ASSERT_EQ(back.format(), bitmap.format());
    ASSERT_EQ(back.size(), bitmap.size());
    EXPECT_TRUE(std::equal(back.line(0), back.line(0) + back.byteCount(), bitmap.line(0)));

    const QByteArray bytes = test::readFile(path);
    const test::Pictures files;
    QByteArray lying = bytes;
    lying[5] = '\x7F';
    for (const QByteArray &broken :
         {bytes.left(10), bytes.left(bytes.size() - 1), bytes + 'x', "X" + bytes.mid(1), lying}) {
        const QString name = files.write("cache", broken);
        EXPECT_TRUE(messageOf([&] { KImage::ID_Read(name); }).contains("GFL_ERROR_FILE_READ"));
    }
    KTemporaryFolder::DestroyInstance();
    EXPECT_EQ(messageOf([&] { KImage::ID_Read(path); }), "File \"" + path + "\" is not found\n");
}

TEST(Bitmap, PixelsComeFromThePoolAsLongAsItLasts)
{
    KPoolMemManager::CreateInstance();
    KPoolMemManager *pool = KPoolMemManager::Instance();
    pool->Allocate(1, 1, 1);
    {
        KBitmap pooled(100, 100, PixelFormat::Rgba8);
        EXPECT_EQ(pool->Take(), nullptr);
        const KBitmap heap(100, 100, PixelFormat::Rgba8);
        EXPECT_TRUE(heap.isValid());
        pooled.line(0)[0] = 9;
        const KBitmap moved = std::move(pooled);
        EXPECT_EQ(moved.line(0)[0], 9);
        EXPECT_EQ(pool->Take(), nullptr);
    }
    EXPECT_EQ(KBitmap(1, 1, PixelFormat::Rgba8).line(0)[0], 0);
    KPoolMemManager::DestroyInstance();
}

TEST(Bitmap, SavedFilesAreReadByOthers)
{
    const test::Pictures pictures;
    KImage::SaveOptions options;
    options.quality = 95;
    options.software = "Orbilens Player 2.3";
    options.maker = "Orvex";
    options.model = "Snapshot";
    options.xmpPacket = PanoramaXmp::packet(QSize(64, 32), "Orbilens \"<&>\"", 3);
    pictures.make("tagged.jpg", {"-size", "8x8", "xc:red"});
    pictures.run("exiftool", {"-q", "-overwrite_original", "-IPTC:Keywords=sphere", "tagged.jpg"});
    pictures.run("vips", {"icc_transform", "tagged.jpg", "profiled.jpg", "srgb"});
    options.iptc = MetadataReader::readBlocks(pictures.path("tagged.jpg"))->iptc;
    options.iccProfile = MetadataReader::readBlocks(pictures.path("profiled.jpg"))->iccProfile;
    EXPECT_FALSE(options.iptc.isEmpty() || options.iccProfile.isEmpty());
    const std::tuple<const char *, PixelFormat, const char *> rows[] = {
        {"a.jpg", PixelFormat::Rgba8, "JPEG 64 32 8"},
        {"b.JPG", PixelFormat::GrayFloat, "JPEG 64 32 8"},
        {"a.tif", PixelFormat::Rgb16, "TIFF 64 32 16"},
        {"b.tif", PixelFormat::Bgra8Premultiplied, "TIFF 64 32 8"},
        {"a.hdr", PixelFormat::RgbFloat, "HDR 64 32 16"},
        {"b.hdr", PixelFormat::Gray8, "HDR 64 32 16"},
    };
    for (const auto &[name, format, identified] : rows) {
        SCOPED_TRACE(name);
        const KBitmap bitmap = ramp(64, 32, format);
        KImage::Save(bitmap, pictures.path(name), options);
        EXPECT_EQ(pictures.run("identify", {"-format", "%m %w %h %z", name}), identified);
        const KBitmap back = KImage::Read(pictures.path(name));
        const KBitmap expected = KImage::Convert(bitmap, PixelFormat::Rgba8);
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(back.line(16)[4 * 32 + c], expected.line(16)[4 * 32 + c], 5);
    }
    for (const char *name : {"a.jpg", "a.tif"}) {
        EXPECT_EQ(pictures
                      .run("exiftool", {"-s3", "-Software", "-Make", "-Model", "-ProjectionType",
                                        "-UsePanoramaViewer", "-FullPanoWidthPixels",
                                        "-CroppedAreaImageHeightPixels", "-SourcePhotosCount",
                                        "-StitchingSoftware", "-Keywords", name})
                      .toStdString(),
                  "Orbilens Player 2.3\nOrvex\nSnapshot\nequirectangular\nTrue\n64\n32\n3\n"
                  "Orbilens \"<&>\"\nsphere\n");
        const auto blocks = MetadataReader::readBlocks(pictures.path(name));
        ASSERT_TRUE(blocks);
        EXPECT_EQ(blocks->iptc, options.iptc);
        EXPECT_EQ(blocks->iccProfile, options.iccProfile);
        EXPECT_TRUE(blocks->xmp.contains("equirectangular"));
        EXPECT_TRUE(pictures.run("exiv2", {"-Pkv", name}).contains("Orvex"));
        EXPECT_TRUE(QRegularExpression("^\\d{4}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d\\n$")
                        .match(pictures.run("exiftool", {"-s3", "-IFD0:ModifyDate", name}))
                        .hasMatch());
    }
}
