#include "KImage/ImageDef.h"
#include "KImage/Pictures.h"
#include "foundation/KException.h"
#include "settings/KSettingsReaders.h"

#include <memory>

namespace {

QString lockMessage(KIImageDef &image, bool full)
{
    try {
        full ? image.LockFullSize() : image.Lock();
    } catch (const KException &error) {
        return error.message;
    }
    return QString();
}

} // namespace

TEST(ImageDef, DescribesAndLoadsOnDemand)
{
    const test::Pictures pictures;
    const QString path = pictures.make(
        "a.tif", test::Pictures::orangeAndBlue() +
                     QStringList{"-depth", "16", "-define", "tiff:tile-geometry=16x16"});
    const std::unique_ptr<KIImageDef> image =
        std::make_unique<ImageDef>(path, ImageOptions(), QSize(32, 32));
    EXPECT_TRUE(image->isValid());
    EXPECT_EQ(QSize(image->getWidth(), image->getHeight()), QSize(32, 16));
    EXPECT_EQ(QSize(image->getFullWidth(), image->getFullHeight()), QSize(64, 32));
    EXPECT_EQ(static_cast<ImageDef &>(*image).getFormatName(), "TIFF tiled");

    const KBitmap &working = image->Lock();
    EXPECT_EQ(working.size(), QSize(32, 16));
    EXPECT_EQ(working.format(), PixelFormat::Rgba8);
    EXPECT_EQ(&image->Lock(), &working);
    const KBitmap &full = image->LockFullSize();
    EXPECT_EQ(full.size(), QSize(64, 32));
    EXPECT_EQ(full.format(), PixelFormat::Rgb16);
    image->UnlockFullSize();
    EXPECT_FALSE(full.isValid());
    image->Unlock();
    EXPECT_TRUE(working.isValid());
    image->Unlock();
    EXPECT_FALSE(working.isValid());
    image->Unlock();
    EXPECT_TRUE(image->Lock().isValid());
}

TEST(ImageDef, FailuresAreExceptionsWithTheirMessages)
{
    const test::Pictures pictures;
    const QString gray =
        pictures.make("gray.jpg", {"-size", "16x16", "xc:gray50", "-colorspace", "Gray"});
    const QString text = pictures.write("text.png", "text");
    const QString absent = pictures.path("absent.png");
    const std::tuple<QString, bool, QString> rows[] = {
        {absent, false, "File \"" + absent + "\" is not found\n"},
        {text, false, "File \"" + text + "\" cannot be loaded"},
        {gray, true, "gray.jpg: gray pictures are not supported."}};
    for (const auto &[path, valid, message] : rows) {
        ImageDef image(path);
        EXPECT_EQ(image.isValid(), valid);
        EXPECT_EQ(image.getWidth() > 0, valid);
        EXPECT_EQ(lockMessage(image, false), message);
        EXPECT_EQ(lockMessage(image, true), message);
        image.Unlock();
    }
}

TEST(ImageDef, DumpListsEveryEntry)
{
    const test::Pictures pictures;
    pictures.make("a.jpg", {"-size", "16x16", "xc:red"});
    QString text;
    const QString plain = pictures.make("a.png", {"-size", "16x16", "xc:red", "-strip"});
    ImageDef(plain).DumpExif(text);
    EXPECT_EQ(text, "No Exif\n");
    text.clear();
    ImageDef(pictures.path("absent")).DumpExif(text);
    EXPECT_EQ(text, "ImageDef::DumpExif() Error\n");

    pictures.run("exiftool",
                 {"-q", "-overwrite_original", "-Make=A %1 b", "-ExposureTime=1/250",
                  "-ExposureProgram=Manual", "-GPSLatitude=48.858222", "-GPSLatitudeRef=N",
                  "-UserComment=hello", "-InteropIndex=R98", "-IFD0:ModifyDate=2020:01:02 03:04:05",
                  "-MeteringMode=Spot", "a.jpg"});
    pictures.run("exiv2", {"-M", "set Exif.Photo.DeviceSettingDescription Undefined 1 2 3", "-M",
                           "set Exif.GPSInfo.GPSLongitude 25/10 0/1 0/1", "-M",
                           "set Exif.GPSInfo.GPSLongitudeRef W", "a.jpg"});
    text.clear();
    ImageDef image(pictures.path("a.jpg"));
    image.DumpExif(text);
    const QStringList lines = text.split('\n');
    EXPECT_EQ(lines.first(), "(  Tag  ) ------------------------Value----------------------");
    for (const char *line :
         {"(1_271) Manufacturer of image input equipment | \"A %1 b\"",
          "(1_306) File change date and time | \"2020:01:02 03:04:05\"",
          "(2_33434) Exposure time | \"1/250\"", "(2_34850) Exposure program | \"Manual\"",
          "(2_37383) Metering mode | \"Spot\"", "(2_37510) User comments | \"hello\"",
          "(4_1) NA | \"R98\"", "(16_1) NA | \"North\"", "(16_2) NA | \"48\u00B0 51' 29.5992\"\"",
          "(2_41995) Device settings description | \"Binary Value\""})
        EXPECT_EQ(lines.count(QString::fromUtf8(line)), 1) << line << "\n" << text.toStdString();
    EXPECT_EQ(image.dumpedTags().value("2_33434"), "Exposure time | \"1/250\"");
    EXPECT_NEAR(image.getMetadata().latitude, 48.858222, 1e-5);
    EXPECT_EQ(image.getMetadata().longitude, -2.5);
}

TEST(ImageOptions, ReadFromSettingsWithinSensibleBounds)
{
    QHash<QString, QVariant> values{{"image/exifMode", 2},          {"image/exifForcedK2", -0.25},
                                    {"image/rawHighlight", 10},     {"image/rawGamma", 0.0},
                                    {"image/rawRedScaling", "nan"}, {"image/rawBrightness", 2.0}};
    KSRFromQHash reader(&values);
    const ImageOptions options = ImageOptions::read(reader);
    EXPECT_EQ(options.exifMode, ExifMode::Forced);
    EXPECT_EQ(options.forcedK2, -0.25);
    EXPECT_EQ(options.raw.highlight, 0);
    EXPECT_EQ(options.raw.gamma, 2.2);
    EXPECT_EQ(options.raw.redScaling, 1.0);
    EXPECT_EQ(options.raw.brightness, 2.0);
}
