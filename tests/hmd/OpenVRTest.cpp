// The OpenVR family against a stand-in runtime: the pictures it is given, what it is told when, and
// every way in which it can fail.

#include "hmd/HeadsetFixture.h"
#include "hmd/KOpenVR.h"
#include "support/Soon.h"

#include <QMessageBox>
#include <QTimer>

namespace {

using test::EyeSight;
using OpenVR = test::HeadsetFixture<KOpenVR>;

const QString kVersion = QStringLiteral("Using OpenVR SDK version 1.0.6.\n");

} // namespace

TEST_F(OpenVR, EyesSeeWhatTheHeadLooksAt)
{
    QMatrix4x4 canted = CameraMath::matrixFromAngles({0.15F, -0.1F, 0.05F});
    canted(0, 3) = 0.032F;
    expectBothEyes("openvr", canted);
}

TEST_F(OpenVR, ChangesOfTheViewReachTheEyes)
{
    startTracking();
    builder->setEffect(KShaderCodeBuilder::INVERT);
    application->globalObject()->setYawMax(1.2F);
    QImage inverted = pattern;
    inverted.invertPixels();
    const EyeSight sight = {{1, 1, 1, 1}, {}};
    expectEye(script.eyePictures("openvr-inverted")[0], 0, sight, {}, {}, inverted);

    application->textureProvider()->setTextureId(0);
    for (const QImage &image : script.eyePictures("openvr-empty"))
        EXPECT_EQ(image.pixel(image.rect().center()), 0xff000000);
}

TEST_F(OpenVR, TheInterfaceStandsBeforeThePanorama)
{
    test::NotedInterface ui;
    QImage blue(8, 8, QImage::Format_RGB32);
    blue.fill(0xff102030);
    show(blue);
    const QImage panel = test::directionPattern(QSize(256, 256));
    QImage veil(8, 8, QImage::Format_RGBA8888);
    veil.fill(QColor(128, 128, 128, 128)); // white, multiplied with its alpha
    const CameraAngles head = {0.5F, 0.1F, 0};
    ui.frame = CameraMath::matrixFromAngles({0.4F, 0, 0}).transposed();
    ui.textures[0] = upload(panel);
    ui.shown = true;
    const EyeSight sight = {{1.2F, 0.8F, 1, 1}, {}};
    describe(0, sight);
    script.set("size 160 140;" +
               test::HeadsetScript::headLines(CameraMath::matrixFromAngles(head)));
    startTracking();
    application->hmd()->setHeadsetInterface(&ui);
    shader::ShaderKey key;
    key.overlay = true;
    key.flipY = true;
    expectEye(script.eyePictures("openvr-panel")[0], 0, sight,
              ui.frame * CameraMath::matrixFromAngles(head), key, panel, 0xff102030);

    ui.textures[0] = 0;
    ui.textures[1] = upload(veil);
    const QImage image = script.eyePictures("openvr-veil")[0];
    const QColor middle = image.pixelColor(96, 70);
    EXPECT_NEAR(middle.blue(), 128 + 0x30 / 2, 2) << middle.name().toStdString();
    application->setHmd(nullptr);
}

TEST_F(OpenVR, ControllersAndGazeReachTheInterface)
{
    setting("application/hmd/gazeUI", true);
    test::NotedInterface ui;
    startTracking();
    application->hmd()->setHeadsetInterface(&ui);
    EXPECT_SOON(ui.gazes.contains('g'));
    ui.nod = true;
    EXPECT_SOON(ui.gazes.count('T') == 1);

    const std::pair<const char *, const char *> presses[] = {{"2 0 0", "2"},
                                                             {"4294967296 -0.6 0.9", "3"},
                                                             {"4294967296 0.6 -0.9", "4"},
                                                             {"4294967296 0 0.6", "5"},
                                                             {"4294967296 0 -0.6", "6"},
                                                             {"2 0 0", "2"}};
    for (const auto &press : presses) {
        ui.codes.clear();
        script.set(QByteArray("controller7 ") + press.first);
        EXPECT_SOON(ui.codes == press.second) << press.first;
    }
    // Neither a held button nor other buttons, with or without the touchpad, ask for anything.
    ui.codes.clear();
    for (const char *pressed :
         {"2 0 0", "6 0 0", "4294967296 0.4 0.4", "4294967298 0.9 0", "4 0 0"}) {
        script.set(QByteArray("controller7 ") + pressed);
        script.eyePictures("openvr-straight");
    }
    EXPECT_EQ(ui.codes, QByteArray());
    application->setHmd(nullptr);
}

TEST_F(OpenVR, EachFailureIsToldAndLeavesNoDevice)
{
    setting("application/advanced/forceopengl", true); // no word on the mode, which is on
    const QString failed = QStringLiteral("OpenVR SDK initialization failed.\n");
    const QString noRuntime = failed + "Unable to initialize OpenVR runtime.\nEnglish of %1\n";
    const QString none = failed + "Unable to get %1 interface: English of 105";
    const QString noTarget = failed + "Cannot make a framebuffer for each eye.\n";
    const QString ended = "OpenVR SDK initialization successful.\n" + kVersion;
    const QString silent = ended + "The OpenVR headset does not answer any more.\n";
    const std::tuple<const char *, const char *, QString> cases[] = {
        {"installed 0", "", noRuntime.arg(110)},
        {"initError 108", "", noRuntime.arg(108)},
        {"valid 0", "", noRuntime.arg(105)},
        {"refuse 1", "", none.arg("render model")},
        {"refuse 3", "", none.arg("compositor")},
        {"size 0 9", "", noTarget},
        {"size 9 99999", "", noTarget},
        {"", "connected 0", silent},
        {"", "connected 0;wait 1", silent},
        {"", "quit 1", ended + "The OpenVR runtime has ended.\n"},
    };
    for (const auto &[atStart, later, text] : cases) {
        SCOPED_TRACE(text.toStdString());
        script.set(atStart);
        KHmd *hmd = *later ? startTracking() : start();
        QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
        script.set(later);
        EXPECT_SOON(finished.count() == 1);
        EXPECT_EQ(hmd->logMessage(), kVersion + text);
        expectOff(hmd);
        expectCleanEnd();
        script.unset(atStart);
        script.unset(later);
    }
    EXPECT_EQ(script.count("acknowledged"), 1);
    setting("application/advanced/forceopengl", false);
}

TEST_F(OpenVR, ALostSessionIsTakenUpAgain)
{
    startTracking();
    for (const char *losses : {"1", "2"}) {
        script.set(QByteArray("lose ") + losses);
        script.eyePictures("openvr-straight");
        script.eyePictures("openvr-straight");
    }
    EXPECT_TRUE(application->hmd()->available());
}

TEST_F(OpenVR, EndsTwentyTimesInAnyMomentAndStartsAgain)
{
    expectEndsInAnyMoment();
    application->hmd()->startThread();
    EXPECT_SOON(application->hmd()->fps() > 0);
}

TEST_F(OpenVR, TheStoredModeFollowsTheDeviceByOneRestart)
{
    KSettingsManager *store = application->settings()->settingsManager();
    const QString off = "No HMD detected.\nHMD mode is automatically deactivated.\n"
                        "Orbilens Player has to restart.";
    const QString on = "HMD detected.\nHMD mode is automatically activated.\n"
                       "Orbilens Player has to restart.";
    // Without a message no restart.
    const std::tuple<bool, const char *, QString, QString> runs[] = {
        {true, "0", off, "none"},  {true, "0", "", "other"}, // the same again has not helped before
        {false, "0", "", "other"}, {true, "0", off, "none"}, {false, "1", on, "vlc"},
    };
    for (const auto &[stored, installed, expected, plugin] : runs) {
        SCOPED_TRACE(testing::Message() << stored << installed << plugin.toStdString());
        const bool restarts = !expected.isEmpty();
        setting("application/hmd/hmdMode", stored);
        store->Set("application/videoPlugin", "other");
        script.set(QByteArray("installed ") + installed);
        QString message;
        KHmd *hmd = start();
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, hmd, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                message = box->text();
                box->accept();
            }
        });
        watch.start(10);
        QObject::connect(hmd, &KHmd::workerThreadFinished, qApp, [&] {
            if (!restarts)
                QCoreApplication::exit(0);
        });
        EXPECT_EQ(QCoreApplication::exec(), restarts ? Application::kRestartStatus : 0);
        EXPECT_EQ(message, expected);
        EXPECT_EQ(store->GetString("application/videoPlugin", "none"), plugin);
        EXPECT_EQ(application->settings()->get("application/hmd/hmdMode").toBool(),
                  stored != restarts);
        EXPECT_FALSE(hmd->available());
        application->setHmd(nullptr);
    }
}
