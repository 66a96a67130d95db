// The whole program in one process: a real window, real pointer events, a real still.

#include "analytics/KAnalyticsManager.h"
#include "app/Application.h"
#include "app/Deployment.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "support/Files.h"
#include "support/HttpServer.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"
#include "video/YuvReference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QProcess>
#include <QQuickItem>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

namespace {

constexpr float kMoveSpeed = 0.005F;
const QString kSample = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");

struct Scene : ::testing::Test
{
    static void SetUpTestSuite()
    {
        auto *application = static_cast<Application *>(qApp);
        updates = std::make_unique<test::HttpServer>(
            [](const auto &) { return test::HttpServer::reply("404 Not Found", ""); });
        collector = std::make_unique<test::HttpServer>(
            [](const auto &) { return test::HttpServer::reply("200 OK", R"({"status":"ok"})"); });
        damageTheStoreOfEvents();
        KAnalyticsManager::CreateInstance();
        Deployment deployment;
        deployment.collectorServer = collector->address();
        deployment.updateServer = updates->address();
        deployment.productId = "lnd";
        application->setDeployment(deployment);
        application->init();
        ASSERT_NE(application->view()->rootObject(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(application->view()));
    }

    static void TearDownTestSuite()
    {
        KAnalyticsManager::DestroyInstance();
        collector.reset();
        updates.reset();
    }

    /// As an earlier run may have left it on a failing disk.
    static void damageTheStoreOfEvents()
    {
        const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DataLocation));
        test::writeFile(folder.filePath("68c4283db8074b12df1660b31c0220a9"),
                        QByteArray(20000, 'x'));
    }

    Scene()
    {
        view->rootObject()->forceActiveFocus();
        settings->set("application/general/cameraInertia", 0);
        settings->set("application/general/touchMode", true);
        camera->resetYawPitchRollFov();
    }

    void open(const QString &path)
    {
        camera->openFile(path);
        EXPECT_SOON(textures->textureId() > 0) << qPrintable(path);
    }

    QString write(const QString &name, const QByteArray &bytes = "x") const
    {
        return test::writeFile(folder.filePath(name), bytes);
    }

    void drag(const QPoint &from, const QList<QPoint> &path)
    {
        QTest::mousePress(view, Qt::LeftButton, {}, from);
        for (const QPoint &point : path)
            QTest::mouseMove(view, point);
        QTest::mouseRelease(view, Qt::LeftButton, {}, path.isEmpty() ? from : path.last());
        QTest::qWait(1);
    }

    void wheel(const QPoint &pixels, const QPoint &angle)
    {
        const QPointF at(300, 300);
        QWheelEvent event(at, view->mapToGlobal(at.toPoint()), pixels, angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view, &event);
    }

    QQuickItem *item(const char *name) const
    {
        return view->rootObject()->findChild<QQuickItem *>(name);
    }

    /// The text of the message box that shows, which is then closed; empty when none came.
    static QString takeMessage()
    {
        QMessageBox *box = nullptr;
        const bool shown = QTest::qWaitFor(
            [&box] {
                box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                return box != nullptr;
            },
            10000);
        const QString text = shown ? box->text() : QString();
        if (shown)
            box->close();
        return text;
    }

    const QTemporaryDir folder;
    static inline std::unique_ptr<test::HttpServer> updates;
    static inline std::unique_ptr<test::HttpServer> collector;
    test::WarningGuard guard;
    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = application->view();
    KGlobalObject *camera = application->globalObject();
    KTextureProvider *textures = application->textureProvider();
    KSettings *settings = application->settings();
};

} // namespace

TEST_F(Scene, AStillReachesTheViewWithItsSize)
{
    for (int time = 1; time <= 2; ++time) {
        open(kSample);
        EXPECT_EQ(textures->textureSize(), QSize(4096, 2048));
        EXPECT_TRUE(test::soon([&] {
            const auto metadata = camera->mediaPlayer()->property("fileMetadata").toMap();
            return metadata.value("Texture size").toSize() == QSize(4096, 2048);
        })) << time;
    }
    EXPECT_EQ(view->QWindow::title(), "Orbilens Player - file://" + kSample);
    EXPECT_GT(view->maxTextureSize().width(), 0);
    EXPECT_TRUE(view->gpuInfo().contains("Maximum texture size"));
    EXPECT_SOON(view->fps() > 0);
}

TEST_F(Scene, APictureBeyondTheDriversLimitIsScaledDown)
{
    open(kSample);
    const int limit = view->maxTextureSize().width();
    QImage wide(limit + 2000, 40, QImage::Format_RGB32);
    wide.fill(Qt::green);
    ASSERT_TRUE(wide.save(folder.filePath("wide.png")));
    camera->openFile(folder.filePath("wide.png"));
    EXPECT_SOON(textures->textureSize().width() == limit && textures->textureId() > 0);
}

TEST_F(Scene, ColoursOfAFilmReachTheScreenAsTheConversionSays)
{
    for (const char *name : {"white", "black", "gray", "red", "lime", "blue"}) {
        SCOPED_TRACE(name);
        const QString film = folder.filePath(QStringLiteral("%1.mp4").arg(name));
        const QString frame = film + QStringLiteral(".yuv");
        ASSERT_EQ(
            0, QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i",
                                            QStringLiteral("color=c=%1:s=64x32:r=25:d=2").arg(name),
                                            "-pix_fmt", "yuv420p", "-c:v", "libx264", film}));
        ASSERT_EQ(0, QProcess::execute("ffmpeg", {"-v", "error", "-i", film, "-frames:v", "1", "-f",
                                                  "rawvideo", "-pix_fmt", "yuv420p", frame}));
        const QByteArray bytes = test::readFile(frame);
        ASSERT_EQ(bytes.size(), 64 * 32 * 3 / 2);
        const auto sample = [&bytes](int at) { return quint8(bytes[at]) / 255.0; };
        // The converter leaves blue first, and the view puts red first again.
        const auto expected = test::colourOf({sample(0), sample(64 * 32), sample(64 * 32 * 5 / 4)},
                                             YuvColours::Compressed);

        open(film);
        int worst = 255;
        QColor seen;
        QElapsedTimer timer;
        for (timer.start(); worst > 3 && timer.elapsed() < 10000; QTest::qWait(50)) {
            const QImage image = view->grabWindow();
            seen = image.pixelColor(image.width() / 2, image.height() / 3);
            worst =
                std::max({std::abs(seen.red() - expected[2]), std::abs(seen.green() - expected[1]),
                          std::abs(seen.blue() - expected[0])});
            view->update();
        }
        EXPECT_LE(worst, 3) << "seen " << seen.name().toStdString() << ", meant " << expected[2]
                            << ' ' << expected[1] << ' ' << expected[0];
    }
    open(kSample);
}

TEST_F(Scene, DraggingTurnsTheCameraBeyondAThreshold)
{
    // Yaw and pitch in pixels.
    const std::tuple<bool, QList<QPoint>, float, float> rows[] = {
        {true, {{306, 306}, {294, 294}}, 0, 0},
        {true, {{310, 300}}, -10, 0},
        {true, {{310, 300}, {350, 320}}, -50, -20},
        {false, {{300, 330}, {280, 320}}, -20, 20}};
    for (const auto &[touch, path, yaw, pitch] : rows) {
        settings->set("application/general/touchMode", touch);
        camera->resetYawPitchRollFov();
        drag({300, 300}, path);
        EXPECT_NEAR(camera->yaw(), yaw * kMoveSpeed, 1e-5);
        EXPECT_NEAR(camera->pitch(), pitch * kMoveSpeed, 1e-5);
    }

    // With inertia the view glides ten times as far, and pressing stops it.
    settings->set("application/general/cameraInertia", 60);
    camera->resetYawPitchRollFov();
    drag({300, 300}, {{320, 300}});
    EXPECT_SOON(
        qFuzzyCompare(camera->yaw(), 20 * 10 * kMoveSpeed * (camera->touchMode() ? -1 : 1)));
    settings->set("application/general/cameraInertia", 100000);
    camera->resetYawPitchRollFov();
    drag({300, 300}, {{320, 300}});
    drag({300, 300}, {});
    const float stopped = camera->yaw();
    QTest::qWait(50);
    EXPECT_EQ(camera->yaw(), stopped);
}

TEST_F(Scene, WheelAndPinchChangeTheFieldOfView)
{
    const std::tuple<QPoint, QPoint, float> rows[] = {{{0, 3}, {0, 120}, -2},
                                                      {{0, -3}, {0, -120}, 2},
                                                      {{}, {0, 120}, -5},
                                                      {{}, {0, -120}, 5},
                                                      {{}, {120, 0}, 0}};
    camera->setFov(150);
    for (const auto &[pixels, angle, change] : rows) {
        const float before = camera->fov();
        wheel(pixels, angle);
        EXPECT_NEAR(camera->fov(), before + change, 1e-4);
    }

    static QTouchDevice *device = QTest::createTouchDevice();
    camera->setFov(200);
    const float yaw = camera->yaw();
    QWindow *window = view;
    const QPoint left(300, 300), right(400, 300);
    QTest::touchEvent(window, device).press(0, left, window).press(1, right, window);
    for (int spread = 0; spread <= 50; spread += 5) {
        const QPoint by(spread, 0);
        QTest::touchEvent(window, device).move(0, left - by, window).move(1, right + by, window);
    }
    QTest::touchEvent(window, device).release(0, left, window).release(1, right, window);
    EXPECT_LT(camera->fov(), 200);
    EXPECT_GT(camera->fov(), 80);
    EXPECT_EQ(camera->yaw(), yaw);
}

TEST_F(Scene, DoubleClickAsksForFullScreenAfterADelay)
{
    const QPoint besideTheButtons(30, 300);
    QSignalSpy states(view, &KQQuickView::fullScreenChanged);
    QTest::mouseDClick(view, Qt::LeftButton, {}, besideTheButtons);
    EXPECT_EQ(states.count(), 0);
    EXPECT_SOON(view->fullScreen());
    const QVariant width = settings->get("application/window/width");
    QTest::qWait(50);
    EXPECT_EQ(settings->get("application/window/width"), width) << "a screen's size is no choice";
    // The screen of the start answers too.
    QMetaObject::invokeMethod(camera->mediaLoader(), "stop");
    QTest::mouseDClick(view, Qt::LeftButton, {}, besideTheButtons);
    EXPECT_SOON(!view->fullScreen());
    open(kSample);
}

TEST_F(Scene, WhatCannotPlayIsSaidInADialog)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath("empty"));
    ASSERT_TRUE(QDir(folder.path()).mkpath("texts"));
    write("texts/a.txt");
    write("texts/b.txt");
    // The index in the list, -1 without one.
    const std::tuple<QString, const char *, int> rows[] = {
        {write("notes.txt"), "The file format is not supported.", -1},
        {write("raw.YUV"),
         "Raw video format is only supported with custom VLC arguments.<br />See <a href=\"\">"
         "documentation</a>.",
         -1},
        {folder.filePath("empty"), "Error : Directory is empty", -1},
        {folder.filePath("texts"), "The file format is not supported.", 0},
        {write("list.orpl", "[{\"media\":\"list.orpl\"}]"), "The file format is not supported.",
         -1},
        {write("bad.orpl"), "Error : cannot parse json", -1}};
    for (const auto &[path, text, index] : rows) {
        open(kSample);
        camera->openFile(path);
        EXPECT_SOON(qApp->modalWindow() && qApp->modalWindow()->isExposed()) << path.toStdString();
        auto *dialog = view->rootObject()->findChild<QObject *>("messageDialog");
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->property("text").toString().toStdString(), text);
        EXPECT_EQ(camera->mediaPlayer()->property("mediaSource").toUrl(), QUrl());
        EXPECT_EQ(camera->playListIndex(), index);
        QMetaObject::invokeMethod(dialog, "close");
        EXPECT_SOON(textures->textureId() == 0);
    }
    open(kSample);
    QMetaObject::invokeMethod(camera->mediaLoader(), "stop");
    EXPECT_EQ(camera->mediaPlayer()->objectName(), "videoPlayer")
        << "nothing shows, as at the start";
    EXPECT_EQ(view->QWindow::title(), "Orbilens Player");
    open(kSample);
}

TEST_F(Scene, BadStillsLeaveAMessageAndTheProgramAlive)
{
    const QByteArray bytes = test::readFile(kSample);
    QQuickItem *panorama = item("orbilensView");
    ASSERT_NE(panorama, nullptr);
    const QStringList files{folder.filePath("missing.jpg"), write("empty.jpg", ""),
                            write("text.jpg", "this is no picture"),
                            write("header.jpg", bytes.left(200)),
                            write("noise.png", QByteArray(5000, 'x'))};
    for (const QString &file : files) {
        camera->openFile(file);
        EXPECT_SOON(camera->mediaPlayer()->property("errorString").toString() ==
                    QStringLiteral("An error occurred while loading the image"));
        EXPECT_EQ(textures->textureId(), 0) << file.toStdString();
        // A picture of the view that cannot be taken any more is not taken of the next medium.
        EXPECT_EQ(panorama->property("printScreenRequested"), 0);
        panorama->setProperty("printScreenRequested", 1);
    }
    guard.take(); // the scene's own messages name each of these files

    // Half a picture is shown as far as it goes, and the next good one opens as ever.
    open(write("half.jpg", bytes.left(bytes.size() / 2)));
    open(kSample);
    guard.take();
}

TEST_F(Scene, UsageIsReportedOverADamagedStore)
{
    EXPECT_SOON(collector->requests.size() == 8);
}

TEST_F(Scene, ANewVersionIsOfferedWithItsChangeLog)
{
    QByteArray version = "2.4.0.410_2026-11-02";
    QByteArray changeLog = "<h3>What is new</h3><ul>";
    for (int i = 1; i <= 30; ++i)
        changeLog += "<li>Change " + QByteArray::number(i) +
                     ", told at <a href=\"https://example.org\">some length</a> so that it wraps "
                     "at the end of its line</li>";
    changeLog += "</ul><img src=\"http://127.0.0.1:1/x.png\"><script>alert(1)</script>";
    updates->setAnswer([&](const test::HttpServer::Request &request) {
        return test::HttpServer::reply("200 OK",
                                       request.line.contains("changelog") ? changeLog : version);
    });
    updates->requests.clear();
    view->checkUpdate();
    QQuickItem *log = nullptr;
    // The panel is made piece by piece; its loader has it when it is whole.
    const QQuickItem *frame = item("popupLoader");
    ASSERT_TRUE(test::soon([&] {
        log = item("changeLog");
        return log && frame->property("item").value<QQuickItem *>();
    }));
    EXPECT_TRUE(log->property("text").toString().contains("<li>Change 30"));
    EXPECT_FALSE(log->property("text").toString().contains("img"));
    EXPECT_THAT(item("released")->property("text").toString().toStdString(),
                testing::HasSubstr("2026"));
    EXPECT_TRUE(item("installerButton")->isEnabled());
    EXPECT_SOON(frame->y() == 0);
    const QString pictures = QStringLiteral(ORBILENS_BINARY_DIR "/screenshots/");
    EXPECT_TRUE(QDir().mkpath(pictures));
    EXPECT_TRUE(view->grabWindow().save(pictures + "update.png"));
    // A dialog of an earlier test has taken the focus, and here no window manager gives it back.
    view->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view, 5000));
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_SOON(item("changeLog") == nullptr);
    EXPECT_EQ(updates->requests.size(), 2);

    version = "2.3.1.400_2026-01-01";
    view->checkUpdate();
    EXPECT_EQ(takeMessage(), "There is no update for this product.\n"
                             "Your are already running the most up to date version.");
}

TEST_F(Scene, AScreenshotThatCannotBeSavedIsTold)
{
    open(kSample);
    settings->set("application/general/printSavePath", "file:///proc/nowhere");
    item("orbilensView")->setProperty("printScreenRequested", 1);
    EXPECT_TRUE(takeMessage().endsWith("/proc/nowhere"));
    settings->resetDefaultValue("application/general/printSavePath");
}
