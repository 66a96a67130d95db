// Films and stills in the whole program, with everything left to what the file says of itself: the
// view is compared with the panorama's mapping calculated apart.

#include "KImage/Pictures.h"
#include "MovParserLib/MovFileReader.h"
#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "app/StillOptions.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "support/Files.h"
#include "support/HttpServer.h"
#include "support/PanoramaReference.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"
#include "video/YuvReference.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

using B = KShaderCodeBuilder;
using namespace Orvex::MovParserLib;

constexpr QSize kFrame(512, 256);

/// What a file says of its sphere; nothing without a projection.
struct Tags
{
    Projection projection = NoProjection;
    quint32 stereo = 0;
    CameraAngles degrees;
};

void tool(const QString &program, const QStringList &arguments)
{
    EXPECT_EQ(QProcess::execute(program, arguments), 0) << program.toStdString();
}

/// Gray in which each small step of either coordinate shows and whose halves differ.
QImage grayPattern()
{
    QImage image(kFrame, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double u = (x + 0.5) / image.width();
            const double v = (y + 0.5) / image.height();
            image.scanLine(y)[x] =
                uchar(128 + 50 * std::sin(4.4 * M_PI * u + 0.5) + 50 * std::sin(5.2 * M_PI * v));
        }
    }
    return image;
}

struct AutomaticView : ::testing::Test
{
    static void SetUpTestSuite()
    {
        auto *application = static_cast<Application *>(qApp);
        application->init();
        ASSERT_NE(application->view()->rootObject(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(application->view()));
        application->settings()->set("application/input/projection", int(B::AUTO));
        application->settings()->set("application/input/stereoscopy", int(B::STEREO_AUTO));
    }

    /// A film without losses that shows @p picture for some seconds.
    QString film(const QString &name, const QImage &picture, const Tags &tags)
    {
        const QString png = folder.filePath(name + ".png");
        const QString path = folder.filePath(name + ".mp4");
        EXPECT_TRUE(picture.save(png));
        tool("ffmpeg", {"-v", "error", "-loop", "1", "-i", png, "-t", "20", "-r", "5", "-pix_fmt",
                        "yuv420p", "-c:v", "libx264", "-qp", "0", path});
        MovFileReader reader;
        if (tags.projection == NoProjection || reader.open(path) != 0)
            return path;
        MovieAtom movie = reader.movie();
        TrackAtom &track = *movie.tracks[0];
        EXPECT_EQ(track.setProjection(tags.projection) | track.setStereoMode(tags.stereo) |
                      track.setInitialOrientation(tags.degrees.yaw, tags.degrees.pitch,
                                                  tags.degrees.roll) |
                      track.setWritingTool("builder"),
                  0U);
        // The movie stands behind the media, so it may grow in place.
        QByteArray bytes(int(movie.computeSize()), '\0');
        FileBuffer buffer;
        EXPECT_EQ(buffer.attach(quint32(bytes.size()), bytes.data()), 0U);
        EXPECT_EQ(movie.write(buffer), 0U);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite) && file.resize(qint64(reader.movieOffset())) &&
                    file.seek(file.size()) && file.write(bytes) == bytes.size());
        return path;
    }

    /// The film's first frame in the colours that the view gives it.
    QImage shownFrame(const QString &path)
    {
        const QString raw = folder.filePath("frame.yuv");
        tool("ffmpeg", {"-v", "error", "-y", "-i", path, "-frames:v", "1", "-f", "rawvideo",
                        "-pix_fmt", "yuv420p", raw});
        const int pixels = kFrame.width() * kFrame.height();
        const QByteArray planes = test::readFile(raw);
        EXPECT_EQ(planes.size(), pixels * 3 / 2);
        const QByteArray luma = planes.left(pixels);
        QImage image(kFrame, QImage::Format_RGB32);
        for (int i = 0; i < luma.size(); ++i) {
            constexpr double kNoColour = 128 / 255.0;
            const auto shown = test::colourOf({quint8(luma[i]) / 255.0, kNoColour, kNoColour},
                                              YuvColours::Compressed);
            image.setPixel(i % kFrame.width(), i / kFrame.width(),
                           qRgb(shown[2], shown[1], shown[0])); // leaves blue first
        }
        return image;
    }

    void open(const QString &path)
    {
        camera->openFile(path);
        EXPECT_SOON(textures->textureId() > 0) << qPrintable(path);
    }

    /// Where the panorama lies in the window.
    QRect panorama() const
    {
        const auto *item = view->rootObject()->findChild<OrbilensView *>();
        return item->mapRectToScene(item->boundingRect()).toRect();
    }

    QImage grab() const
    {
        view->update();
        return view->grabWindow().copy(panorama());
    }

    /// The reference at the view's size, looking where @p angles say.
    test::PanoramaReference reference(int projection, int stereo, const CameraAngles &angles) const
    {
        test::PanoramaReference reference;
        reference.key.projectionSource = projection;
        reference.key.stereoMode = stereo;
        const float fov = projection == B::STANDARD ? 180 : 90;
        reference.uniforms = test::uniformsFor(panorama().size(), fov, angles);
        return reference;
    }

    /// Share of the view's middle, where no panel lies, that is not as calculated.
    double wrongShare(const test::PanoramaReference &expected, const QImage &picture) const
    {
        const QImage seen = grab();
        const QSizeF pixel(1.0 / seen.width(), 1.0 / seen.height());
        constexpr int kStep = 3;
        constexpr double kTolerance = 6;
        int compared = 0, wrong = 0;
        for (int row = seen.height() / 4; row < seen.height() * 3 / 4; row += kStep) {
            for (int column = seen.width() / 8; column < seen.width() * 7 / 8; column += kStep) {
                const double x = (column + 0.5) * pixel.width();
                const double y = 1 - (row + 0.5) * pixel.height();
                if (expected.onEdge(x, y, pixel))
                    continue;
                ++compared;
                const auto at = expected.pictureAt(x, y);
                const QPointF inside = at ? expected.inTexture(*at) : QPointF();
                const QRgb meant = picture.pixel(
                    qBound(0, int(inside.x() * picture.width()), kFrame.width() - 1),
                    qBound(0, int(inside.y() * picture.height()), kFrame.height() - 1));
                wrong += !at || std::abs(qRed(meant) - qRed(seen.pixel(column, row))) > kTolerance;
            }
        }
        return compared > 1000 ? double(wrong) / compared : 1;
    }

    void expectShown(const test::PanoramaReference &expected, const QImage &picture,
                     const QString &name)
    {
        double wrong = 1;
        QElapsedTimer timer;
        for (timer.start(); wrong > 0.002 && timer.elapsed() < 15000; QTest::qWait(50))
            wrong = wrongShare(expected, picture);
        EXPECT_LE(wrong, 0.002);
        QDir(ORBILENS_BINARY_DIR).mkpath("screenshots");
        view->grabWindow().save(ORBILENS_BINARY_DIR "/screenshots/automatic-" + name + ".png");
    }

    test::WarningGuard guard;
    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = application->view();
    KGlobalObject *camera = application->globalObject();
    KTextureProvider *textures = application->textureProvider();
    QTemporaryDir folder;
};

} // namespace

TEST_F(AutomaticView, FilmsOpenTheWayTheyAreTagged)
{
    const std::tuple<const char *, Tags, int, int, const char *> rows[] = {
        {"cube",
         {CubeMap, 2, {30, -20, 10}},
         B::CUBEMAP,
         B::STEREO_3D_OVERUNDER,
         "Projection : Cubemap \nStereoscopy : Over under \nWriting Tool : builder \n"},
        {"flat", {}, B::STANDARD, B::STEREO_2D, "Projection : Standard \nStereoscopy : None \n"}};
    const QImage pattern = grayPattern();
    for (const auto &[name, tags, projection, stereo, report] : rows) {
        SCOPED_TRACE(name);
        const QString path = film(name, pattern, tags);
        open(path);
        const KShaderCodeBuilder *builder = application->shaderBuilder();
        EXPECT_EQ(builder->projectionSource(), projection);
        EXPECT_EQ(builder->stereoMode(), stereo);
        EXPECT_EQ(camera->fov(), projection == B::STANDARD ? 180 : 90);
        const float radians = CameraMath::kPi / 180;
        const CameraAngles &degrees = tags.degrees;
        const CameraAngles angles{degrees.yaw * radians, degrees.pitch * radians,
                                  degrees.roll * radians};
        EXPECT_NEAR(camera->yaw(), angles.yaw, 1e-5);
        EXPECT_NEAR(camera->pitch(), angles.pitch, 1e-5);
        EXPECT_NEAR(camera->roll(), angles.roll, 1e-5);
        EXPECT_EQ(camera->videoLogMessage().toStdString(),
                  "Media : file://" + path.toStdString() +
                      " \nFrame width : 512 \nFrame height : 256 \nVideo frame rate : 5 \n" +
                      report);
        expectShown(reference(projection, stereo, angles), shownFrame(path), name);
    }
}

TEST_F(AutomaticView, AStillBeginsWhereItSays)
{
    const QString path = folder.filePath("a #?%41 é.jpg");
    const QImage picture = grayPattern().convertToFormat(QImage::Format_RGB32);
    ASSERT_TRUE(picture.save(path, "JPG", 100));
    tool("exiv2",
         {"-M", "set Xmp.aux.LensID ZenithEs", "-M", "set Exif.Photo.UserComment 40 -25", path});
    open(path);
    const float radians = CameraMath::kPi / 180;
    const CameraAngles angles{40 * radians, -25 * radians, 0};
    EXPECT_EQ(camera->yaw(), 0);
    EXPECT_EQ(camera->videoLogMessage(), "Media : " + QUrl::fromLocalFile(path).toString() + " \n");
    expectShown(reference(B::EQUIRECTANGULAR, B::STEREO_2D, angles), picture, "still");

    // The next medium does not inherit it.
    const QString plain = folder.filePath("plain.png");
    ASSERT_TRUE(picture.save(plain));
    open(plain);
    expectShown(reference(B::EQUIRECTANGULAR, B::STEREO_2D, {}), picture, "plain");
}

TEST_F(AutomaticView, AStillIsShownAnewWhenItsOptionsChange)
{
    const test::Pictures pictures;
    open(pictures.makeDng("a.dng"));
    const auto level = [this] {
        const QImage seen = grab();
        return qGreen(seen.pixel(seen.width() / 2, seen.height() / 2));
    };
    KSettingsManager *store = application->settings()->settingsManager();
    // What stands there while a picture loads (34) lies in none of the ranges.
    const std::tuple<const char *, double, int, int> rows[] = {
        {nullptr, 0, 40, 50}, {"image/rawGamma", 1, 3, 9}, {"image/rawBrightness", 3, 13, 24}};
    for (const auto &[key, value, darkest, brightest] : rows) {
        if (key)
            store->Set(key, value);
        EXPECT_TRUE(test::soon([&, from = darkest, to = brightest] {
            const int seen = level();
            return seen >= from && seen <= to;
        })) << (key ? key : "as opened")
            << ": " << level();
    }
    const int edition = application->stillOptions()->edition();
    store->Set("image/exifForcedFocal35mm", 20);
    EXPECT_EQ(application->stillOptions()->edition(), edition) << "no pixel depends on it";
    EXPECT_EQ(application->stillOptions()->options().forcedFocal35mm, 20);
}

TEST_F(AutomaticView, AStillFromAServerIsFetched)
{
    const QImage picture = grayPattern();
    QByteArray png;
    QBuffer buffer(&png);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG"));
    const test::HttpServer server(
        [&png](const auto &) { return test::HttpServer::reply("200 OK", png); });
    open(server.address() + "/pictures/a.png");
    EXPECT_EQ(textures->textureSize(), kFrame);
    expectShown(reference(B::EQUIRECTANGULAR, B::STEREO_2D, {}),
                picture.convertToFormat(QImage::Format_RGB32), "fetched");
}
