#include "KImage/ImageDef.h"
#include "KImage/KImage.h"
#include "KImage/MetadataGuard.h"
#include "KImage/MetadataReader.h"
#include "KImage/MetadataWriter.h"
#include "KImage/Pictures.h"

#include <QtEndian>

namespace {

using MetadataText::kUnreadable;

ExifEntry entry(const char *name, const QString &value)
{
    ExifEntry result;
    result.name = name;
    result.value = value;
    return result;
}

} // namespace

TEST(MetadataText, NumbersDatesCoordinatesAndUnits)
{
    const std::tuple<const char *, double> numbers[] = {
        {"1/250", 0.004},      {"2,8", 2.8},         {"f/2.8", 2.8},
        {"200", 200},          {"50.0 mm", 50},      {"-3333/10000", -0.3333},
        {"1.5/2", 0.75},       {"1/0", kUnreadable}, {"0/0", kUnreadable},
        {"none", kUnreadable}, {"", kUnreadable},    {"/5", 5}};
    for (const auto &[text, expected] : numbers)
        EXPECT_DOUBLE_EQ(MetadataText::number(text), expected) << text;
    EXPECT_EQ(MetadataText::number(QString(10000000, '9') + "/1"),
              MetadataText::number(QString(128, '9')));

    const std::tuple<const char *, const char *, double> coordinates[] = {
        {"48\u00B0 51' 29.6\"", "North", 48.858222},
        {"48\u00B0 51' 29,6\"", "South", -48.858222},
        {"2\u00B0 17' 402/10\"", "East", 2.2945},
        {"2\u00B0 17.5' 0\"", "West", -2.291667},
        {"2\u00B0 17'", "East", kUnreadable},
        {"2\u00B0 1/0' 0\"", "East", kUnreadable},
        {"", "", kUnreadable}};
    for (const auto &[text, reference, expected] : coordinates)
        EXPECT_NEAR(MetadataText::coordinate(QString::fromUtf8(text), reference), expected, 1e-6)
            << text;

    EXPECT_EQ(MetadataText::date("2020:01:02 03:04:05"), QDateTime({2020, 1, 2}, {3, 4, 5}));
    for (const char *text : {"2020:13:02 03:04:05", "2020:01:02", "", "99999999999999:1:1 1:1:1"})
        EXPECT_FALSE(MetadataText::date(text).isValid()) << text;

    EXPECT_EQ(MetadataText::unitInMillimetres("Inch"), 25.4);
    EXPECT_EQ(MetadataText::unitInMillimetres("inch (2)"), 25.4);
    EXPECT_EQ(MetadataText::unitInMillimetres("cm"), 10.0);
    EXPECT_EQ(MetadataText::unitInMillimetres("um"), 0.001);
    EXPECT_EQ(MetadataText::unitInMillimetres(QString::fromUtf8("\u00B5m")), 0.001);
    EXPECT_EQ(MetadataText::unitInMillimetres("none"), kUnreadable);
}

TEST(FocalLength, EachRuleInItsOrder)
{
    FocalInput plane; // 6000 x 4000 pixels at 2562.8 pixels a centimetre
    plane.focal = 10;
    plane.width = 6000;
    plane.height = 4000;
    plane.resolutionX = plane.resolutionY = 2562.8;
    plane.unit = 10;
    FocalInput camera = plane;
    camera.cameraScale = 1.5;
    FocalInput equivalent = camera;
    equivalent.focal35 = 28;
    FocalInput noFocal = equivalent;
    noFocal.focal = 0;
    FocalInput noUnit = plane;
    noUnit.unit = 0;
    const std::tuple<FocalInput, FocalSource, double, double> rows[] = {
        {equivalent, FocalSource::Equivalent, 2.8, 28},
        {camera, FocalSource::Camera, 1.5, 15},
        {plane, FocalSource::FocalPlane, 1.537680, 15.37680},
        {noUnit, FocalSource::Nothing, 1, 10},
        {noFocal, FocalSource::Nothing, 1, 50},
        {{}, FocalSource::Nothing, 1, 50}};
    for (const auto &[input, source, scale, focal35] : rows) {
        const FocalResult result = FocalLength::compute(input);
        EXPECT_EQ(result.source, source);
        EXPECT_NEAR(result.scale, scale, 1e-4);
        EXPECT_NEAR(result.focal35, focal35, 1e-3);
    }
    EXPECT_NEAR(FocalLength::fieldOfView(18), 90, 1e-9);
}

TEST(Metadata, EntriesBecomeTheStructureAndTheTable)
{
    const ExifEntries entries{
        entry("Make", "NIKON CORPORATION"),
        entry("Model", "NIKON D7500"),
        entry("FocalLength", "8/1"),
        entry("ExposureTime", "1/250"),
        entry("FNumber", "28/10"),
        entry("DateTimeOriginal", "2020:01:02 03:04:05"),
        entry("FocalPlaneResolutionUnit", "cm"),
        entry("GPSLatitude", QString::fromUtf8("48\u00B0 51' 29.6\"")),
        entry("GPSLatitudeRef", "South"),
        // 8 mm is 5 mm times 2 to the 16/24, f/3.6 is 2 to the 44/24, f/1.4 to the 12/24.
        entry("LensIDNumber", "74"),
        entry("MinFocalLength", "16"),
        entry("MaxFocalLength", "16"),
        entry("MaxApertureAtMinFocal", "44"),
        entry("MaxApertureAtMaxFocal", "12"),
    };
    const ImageMetadata metadata = Metadata::fromEntries(entries, QSize(100, 100));
    EXPECT_EQ(metadata.iso, kUnreadable);
    EXPECT_NEAR(metadata.latitude, -48.858222, 1e-6);
    EXPECT_EQ(metadata.lensId, "8 8 74 3.6 1.4");
    EXPECT_EQ(metadata.lensType, LensType::Fisheye);
    EXPECT_TRUE(metadata.lensModel.contains("8mm"));
    EXPECT_EQ(metadata.focalLength.source, FocalSource::Camera);
    EXPECT_NEAR(metadata.focalLength.focal35, 8 * 1.534, 1e-6);
    EXPECT_EQ(metadata.tableText().section("FOV:", 0, 0).toStdString(),
              "Maker: \"NIKON CORPORATION\";\nModel: \"NIKON D7500\";\n"
              "Real focal length: \"8/1\";\nExposure time: \"1/250\";\nF Number: \"28/10\";\n"
              "Date Time: \"2020:01:02 03:04:05\";\nFocal plan res. unit: \"cm (3)\";\n"
              "LensID: \"8 8 74 3.6 1.4\";\n");

    EXPECT_EQ(
        Metadata::fromEntries({entry("LensID", "6"), entry("Make", "Canon")}, QSize()).lensModel,
        "");
    EXPECT_EQ(Metadata::fromEntries({entry("LensID", "14"), entry("Make", "Canon"),
                                     entry("LensSpecification", "50/1 200/1 35/10 45/10")},
                                    QSize())
                  .lensModel,
              "Canon EF 50-200mm f/3.5-4.5L");
    EXPECT_TRUE(Metadata::fromEntries({}, QSize()).table.isEmpty());
}

TEST(Metadata, DefaultAndForcedValuesCompete)
{
    ImageOptions options;
    options.defaultFocal35mm = 20;
    options.defaultLensModel = "default";
    options.forcedFocal35mm = 30;
    options.forcedLensModel = "forced";
    options.forcedK1 = 0.1;
    const ExifEntries full{entry("FocalLength", "8/1"), entry("LensModel", "own")};
    const std::tuple<ExifMode, ExifEntries, double, const char *, double> rows[] = {
        {ExifMode::Exif, full, 8, "own", 0},
        {ExifMode::Exif, {}, 20, "default", 0},
        {ExifMode::Default, full, 20, "default", 0},
        {ExifMode::Forced, full, 30, "forced", 0.1},
        {ExifMode::Forced, {}, 30, "forced", 0.1}};
    for (const auto &[mode, entries, focal35, lens, k1] : rows) {
        options.exifMode = mode;
        ImageMetadata metadata = Metadata::fromEntries(entries, QSize(10, 10));
        Metadata::applyOptions(metadata, options);
        EXPECT_EQ(metadata.focalLength.focal35, focal35);
        EXPECT_EQ(metadata.lensModel, lens);
        EXPECT_EQ(metadata.k1, k1);
    }
}

TEST(MetadataReader, SeveralMakersAndContainers)
{
    const test::Pictures pictures;
    // With one more tag of exiv2, which comes back as the table's last line.
    const std::tuple<const char *, const char *, const char *, const char *, double, const char *>
        rows[] = {
            {"a.jpg", "NIKON CORPORATION", "NIKON D7500", "FNumber 28/10", 1.534,
             "F Number: \"28/10\";"},
            {"a.tif", "Canon", "Canon EOS 5D", "FocalLengthIn35mmFilm 75", 1.5,
             "35mm f.length: \"75\";"},
            {"a.png", "SONY", "ILCE-6000", "ExposureTime 1/250", 1.534,
             "Exposure time: \"1/250\";"},
            {"a.webp", "FUJIFILM", "X-T1", "ExposureBiasValue -1/3", 1.529,
             "Exposure bias value: \"-1/3\";"},
        };
    for (const auto &[file, maker, model, more, scale, line] : rows) {
        SCOPED_TRACE(file);
        const QString path = pictures.make(file, {"-size", "16x8", "xc:red", "-strip"});
        pictures.run("exiv2", {"-M", QString("set Exif.Image.Make ") + maker, "-M",
                               QString("set Exif.Image.Model ") + model, "-M",
                               "set Exif.Photo.FocalLength 50/1", "-M",
                               QString("set Exif.Photo.") + more, file});
        const std::optional<ExifEntries> entries = MetadataReader::read(path);
        ASSERT_TRUE(entries);
        const ImageMetadata metadata = Metadata::fromEntries(*entries, QSize(16, 8));
        EXPECT_NEAR(metadata.focalLength.scale, scale, 1e-3);
        EXPECT_EQ(metadata.tableText().section("FOV:", 0, 0).toStdString(),
                  QStringLiteral("Maker: \"%1\";\nModel: \"%2\";\n"
                                 "Real focal length: \"50/1\";\n%3\n")
                      .arg(maker, model, line)
                      .toStdString());
    }
}

TEST(MetadataWriter, APngOfQtCarriesExif)
{
    const test::Pictures pictures;
    KImage::SaveOptions options;
    options.software = "Player 1.2";
    options.maker = "Maker";
    options.model = "Model";
    QImage image(8, 4, QImage::Format_RGB888);
    image.fill(Qt::red);
    const QMap<QString, QString> texts = MetadataWriter::pngTexts(options);
    for (auto text = texts.begin(); text != texts.end(); ++text)
        image.setText(text.key(), text.value());
    ASSERT_TRUE(image.save(pictures.path("a.png")));
    const QString seen =
        pictures.run("exiftool", {"-s3", "-EXIF:Make", "-EXIF:Model", "-EXIF:Software", "a.png"});
    EXPECT_EQ(seen.toStdString(), "Maker\nModel\nPlayer 1.2\n");
    const ImageMetadata metadata = ImageDef(pictures.path("a.png")).getMetadata();
    EXPECT_EQ(metadata.model, "Model");
    EXPECT_TRUE(metadata.dateTime.isValid());
}

TEST(MetadataReader, BrokenAndHugeMetadataIsHarmless)
{
    const test::Pictures pictures;
    const QString path = pictures.make("a.jpg", {"-size", "16x8", "xc:red"});
    pictures.run("exiftool", {"-q", "-overwrite_original", "-Make=Canon", "-ISO=200", "a.jpg"});
    const QByteArray bytes = pictures.read("a.jpg");
    for (int size = 0; size < bytes.size(); size += 7)
        MetadataReader::read(pictures.write("cut.jpg", bytes.left(size)));
    // Every byte of the directories damaged once, counts and links into themselves among them.
    for (int i = 20; i < 160 && i < bytes.size(); ++i) {
        for (const char value : {'\xFF', '\0', '\x08'}) {
            QByteArray damaged = bytes;
            damaged[i] = value;
            const auto entries = MetadataReader::read(pictures.write("bad.jpg", damaged));
            EXPECT_TRUE(!entries || entries->size() < 1000);
        }
    }
    EXPECT_FALSE(MetadataReader::read(pictures.path("absent")));
    EXPECT_FALSE(MetadataReader::read(pictures.path("")));
    const auto none = MetadataReader::read(pictures.write("a.txt", QByteArray(200, 't')));
    EXPECT_TRUE(none && none->isEmpty());
}

TEST(MetadataReader, AHundredMegabytesOfXmpCostNoMore)
{
    const test::Pictures pictures;
    const QByteArray packet = "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" +
                              QByteArray("<rdf:li>x</rdf:li>").repeated(100 * 1024 * 1024 / 18);
    const auto big = [](qint64 value) {
        QByteArray bytes(4, '\0');
        qToBigEndian(quint32(value), bytes.data());
        return bytes;
    };
    // One directory with the packet alone, and a chunk of it behind the header of a picture.
    const QByteArray tiff = "MM" + big(42).right(2) + big(8) + QByteArray("\0\1\2\xbc\0\1", 6) +
                            big(packet.size()) + big(26) + big(0) + packet;
    pictures.make("head.png", {"-size", "8x8", "xc:red", "-strip"});
    const QByteArray text = QByteArray("XML:com.adobe.xmp\0\0\0\0\0", 22) + packet;
    constexpr int kHeaderBytes = 33;
    const QByteArray png = pictures.read("head.png").left(kHeaderBytes) + big(text.size()) +
                           "iTXt" + text + big(0) + pictures.read("head.png").mid(kHeaderBytes);
    const QString paths[] = {pictures.write("a.tif", tiff), pictures.write("a.png", png)};
    const long before = test::peakMegabytes();
    for (const QString &path : paths) {
        EXPECT_FALSE(MetadataReader::read(path)) << path.toStdString();
        EXPECT_EQ(MetadataGuard::packetsWithinBounds(path), path.endsWith("png"));
    }
    EXPECT_LT(test::peakMegabytes() - before, 150);
}
