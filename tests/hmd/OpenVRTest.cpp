// The OpenVR family against a stand-in runtime: the pictures it is given, what it is told when, and
// every way in which it can fail.

#include "hmd/HeadsetFixture.h"
#include "hmd/KOpenVR.h"

#include <QMessageBox>
#include <QTimer>

namespace {

using B = KShaderCodeBuilder;
using test::EyeSight;

class OpenVR : public test::HeadsetFixture
{
protected:
    OpenVR()
        : HeadsetFixture("ORBILENS_VR_FOLDER")
    {
        script({{"pose", test::numbersOf({})}});
    }

    void describe(int eye, const EyeSight &sight)
    {
        const QByteArray number = QByteArray::number(eye);
        QByteArray tangents;
        for (int i = 0; i < 4; ++i)
            tangents += QByteArray::number(double(sight.tangents[i])) + ' ';
        script(
            {{"frustum" + number, tangents}, {"eye" + number, test::numbersOf(sight.eyeToHead)}});
    }

    /// Switched on and tracking.
    void startRendering()
    {
        KHmd *hmd = start<KOpenVR>();
        ASSERT_TRUE(within([&] { return HeadMotion::isPose(hmd->hmdPose()); }))
            << hmd->logMessage().toStdString();
        EXPECT_TRUE(hmd->available() && hmd->activated() && builder->hmdMode());
    }

    void expectOff(KHmd *hmd)
    {
        EXPECT_FALSE(hmd->available() || hmd->activated() || builder->hmdMode());
        EXPECT_FALSE(HeadMotion::isPose(hmd->hmdPose()));
    }
};

const QString kVersion = QStringLiteral("Using OpenVR SDK version 1.0.6.\n");

} // namespace

TEST_F(OpenVR, EyesSeeWhatTheHeadLooksAt)
{
    QMatrix4x4 canted = CameraMath::matrixFromAngles({0.15F, -0.1F, 0.05F});
    canted(0, 3) = 0.032F;
    const struct
    {
        const char *name;
        int source, stereo;
        CameraAngles head, medium;
        float shiftYaw;
        QByteArray size;
        EyeSight left, right;
    } cases[] = {
        {"straight",
         B::EQUIRECTANGULAR,
         B::STEREO_2D,
         {},
         {},
         0,
         "120 100",
         {{1, 1, 1, 1}, {}},
         {{1, 1, 1, 1}, {}}},
        {"off-centre",
         B::EQUIRECTANGULAR,
         B::STEREO_3D_OVERUNDER,
         {0.6F, -0.3F, 0.2F},
         {},
         0,
         "120 140",
         {{1.4F, 0.9F, 1.1F, 1.3F}, {}},
         {{0.9F, 1.4F, 1.1F, 1.3F}, {}}},
        {"canted",
         B::CUBEMAP,
         B::STEREO_3D_SIDEBYSIDE_INVERTED,
         {-2.1F, 0.7F, -0.5F},
         {0.4F, 0, 0},
         1.1F,
         "140 100",
         {{1.6F, 0.7F, 0.9F, 1.2F}, canted.inverted()},
         {{0.7F, 1.6F, 0.9F, 1.2F}, canted}},
        {"flat",
         B::STANDARD,
         B::STEREO_3D_SIDEBYSIDE,
         {0.3F, 0.2F, 0.4F},
         {},
         0,
         "120 100",
         {{1.2F, 1.2F, 1, 1}, {}},
         {{1.2F, 1.2F, 1, 1}, {}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        builder->setProjectionSource(c.source);
        builder->setStereoMode(c.stereo);
        const QMatrix4x4 head = CameraMath::matrixFromAngles(c.head);
        application->globalObject()->setOffsetMatrix(CameraMath::matrixFromAngles(c.medium));
        script({{"size", c.size}, {"pose", test::numbersOf(head)}});
        describe(0, c.left);
        describe(1, c.right);
        startRendering();
        application->hmd()->setShiftYaw(c.shiftYaw);
        const QMatrix4x4 pose = CameraMath::matrixFromAngles({-c.shiftYaw, 0, 0}) * head;
        ASSERT_TRUE(within([&] { return qFuzzyCompare(application->hmd()->hmdPose(), pose); }));
        shader::ShaderKey key;
        key.projectionSource = c.source;
        key.stereoMode = c.stereo;
        const auto images = eyePictures(QStringLiteral("openvr-%1").arg(QLatin1String(c.name)));
        expectEye(images[0], 0, c.left, pose, key, pattern);
        expectEye(images[1], 1, c.right, pose, key, pattern);
        application->setHmd(nullptr);
    }
}

TEST_F(OpenVR, ChangesOfTheViewReachTheEyes)
{
    startRendering();
    builder->setEffect(B::INVERT);
    application->globalObject()->setYawMax(1.2F);
    QImage inverted = pattern;
    inverted.invertPixels();
    const EyeSight sight = {{1, 1, 1, 1}, {}};
    expectEye(eyePictures("openvr-inverted")[0], 0, sight, {}, {}, inverted);

    application->textureProvider()->setTextureId(0);
    for (const QImage &image : eyePictures("openvr-empty"))
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
    script({{"pose", test::numbersOf(CameraMath::matrixFromAngles(head))}, {"size", "160 140"}});
    startRendering();
    application->hmd()->setHeadsetInterface(&ui);
    shader::ShaderKey key;
    key.overlay = true;
    key.flipY = true;
    expectEye(eyePictures("openvr-panel")[0], 0, sight,
              ui.frame * CameraMath::matrixFromAngles(head), key, panel, 0xff102030);

    ui.textures[0] = 0;
    ui.textures[1] = upload(veil);
    const QImage image = eyePictures("openvr-veil")[0];
    const QColor middle = image.pixelColor(96, 70);
    EXPECT_NEAR(middle.blue(), 128 + 0x30 / 2, 2) << middle.name().toStdString();
    application->setHmd(nullptr);
}

TEST_F(OpenVR, ControllersAndGazeReachTheInterface)
{
    setting("application/hmd/gazeUI", true);
    test::NotedInterface ui;
    startRendering();
    application->hmd()->setHeadsetInterface(&ui);
    EXPECT_TRUE(within([&] { return ui.gazes.contains('g'); }));
    ui.nod = true;
    EXPECT_TRUE(within([&] { return ui.gazes.count('T') == 1; }));

    const std::pair<const char *, const char *> presses[] = {{"2 0 0", "2"},
                                                             {"4294967296 -0.6 0.9", "3"},
                                                             {"4294967296 0.6 -0.9", "4"},
                                                             {"4294967296 0 0.6", "5"},
                                                             {"4294967296 0 -0.6", "6"},
                                                             {"2 0 0", "2"}};
    for (const auto &press : presses) {
        ui.codes.clear();
        script({{"controller7", press.first}});
        EXPECT_TRUE(within([&] { return ui.codes == press.second; })) << press.first;
    }
    // Neither a held button nor other buttons, with or without the touchpad, ask for anything.
    ui.codes.clear();
    for (const char *pressed :
         {"2 0 0", "6 0 0", "4294967296 0.4 0.4", "4294967298 0.9 0", "4 0 0"}) {
        script({{"controller7", pressed}});
        eyePictures("openvr-straight");
    }
    EXPECT_EQ(ui.codes, QByteArray());
    application->setHmd(nullptr);
}

TEST_F(OpenVR, EachFailureIsToldAndLeavesNoDevice)
{
    setting("application/advanced/forceopengl", true); // no word on the mode, which is on
    const QString failed = QStringLiteral("OpenVR SDK initialization failed.\n");
    const QString noRuntime = failed + "Unable to initialize OpenVR runtime.\nEnglish of %1\n";
    const struct
    {
        QMap<QByteArray, QByteArray> script;
        QString text;
        int shutdowns;
    } cases[] = {
        {{{"installed", "0"}}, noRuntime.arg(110), 0},
        {{{"initError", "108"}}, noRuntime.arg(108), 1},
        {{{"valid", "0"}}, noRuntime.arg(105), 1},
        {{{"refuse", "1"}}, failed + "Unable to get render model interface: English of 105", 1},
        {{{"refuse", "3"}}, failed + "Unable to get compositor interface: English of 105", 1},
        {{{"size", "0 9"}}, failed + "Cannot make a framebuffer for each eye.\n", 1},
        {{{"size", "9 99999"}}, failed + "Cannot make a framebuffer for each eye.\n", 1},
    };
    const QMap<QByteArray, QByteArray> healthy = {
        {"installed", "1"}, {"initError", "0"}, {"valid", "1"}, {"refuse", "0"}, {"size", "9 9"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        script(healthy);
        script(c.script);
        const int shutdowns = count("shutdowns");
        KHmd *hmd = start<KOpenVR>();
        QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
        EXPECT_TRUE(within([&] { return finished.count() == 1; }));
        EXPECT_EQ(hmd->logMessage(), kVersion + c.text);
        EXPECT_EQ(count("shutdowns") - shutdowns, c.shutdowns);
        expectOff(hmd);
    }
    setting("application/advanced/forceopengl", false);
}

TEST_F(OpenVR, ALostSessionIsTakenUpAgain)
{
    startRendering();
    for (const char *losses : {"1", "2"}) {
        script({{"lose", losses}});
        eyePictures("openvr-straight");
        eyePictures("openvr-straight");
    }
    EXPECT_EQ(count("stale"), 0) << "calls into a session that had ended";
    EXPECT_TRUE(application->hmd()->available());
}

TEST_F(OpenVR, AHeadsetThatGoesAwayLeavesTheProgramPlaying)
{
    const std::pair<QMap<QByteArray, QByteArray>, const char *> ends[] = {
        {{{"connected", "0"}}, "The OpenVR headset does not answer any more.\n"},
        {{{"connected", "0"}, {"wait", "1"}}, "The OpenVR headset does not answer any more.\n"},
        {{{"quit", "1"}}, "The OpenVR runtime has ended.\n"}};
    for (const auto &[change, text] : ends) {
        script({{"connected", "1"}, {"wait", "0"}, {"quit", "0"}});
        startRendering();
        KHmd *hmd = application->hmd();
        QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
        script(change);
        EXPECT_TRUE(within([&] { return finished.count() == 1; }));
        EXPECT_EQ(hmd->logMessage(),
                  kVersion + "OpenVR SDK initialization successful.\n" + kVersion + text);
        expectOff(hmd);
    }
    EXPECT_EQ(count("acknowledged"), 1);
}

TEST_F(OpenVR, EndsTwentyTimesWhileItDraws)
{
    for (int i = 0; i < 20; ++i) {
        startRendering();
        QSignalSpy finished(application->hmd(), &KHmd::workerThreadFinished);
        if (i % 2)
            application->hmd()->setActivated(false); // from its sleep of a second
        application->hmd()->stopThread();
        application->hmd()->stopThread();
        EXPECT_EQ(finished.count(), 1);
        expectOff(application->hmd());
    }
    EXPECT_EQ(count("inits"), count("shutdowns"));
    EXPECT_TRUE(within([&] {
        if (!application->hmd()->isRunning())
            application->hmd()->startThread();
        return application->hmd()->fps() > 0;
    }));
}

TEST_F(OpenVR, TheStoredModeFollowsTheDeviceByOneRestart)
{
    KSettingsManager *store = application->settings()->settingsManager();
    const struct
    {
        bool stored;
        const char *installed;
        QString message; ///< empty: no restart
        QString plugin;
    } runs[] = {
        {true, "0",
         "No HMD detected.\nHMD mode is automatically deactivated.\n"
         "Orbilens Player has to restart.",
         "none"},
        {true, "0", "", "other"}, // the same again has not helped before
        {false, "0", "", "other"},
        {true, "0",
         "No HMD detected.\nHMD mode is automatically deactivated.\n"
         "Orbilens Player has to restart.",
         "none"},
        {false, "1",
         "HMD detected.\nHMD mode is automatically activated.\n"
         "Orbilens Player has to restart.",
         "vlc"},
    };
    for (const auto &run : runs) {
        SCOPED_TRACE(testing::Message() << &run - runs);
        setting("application/hmd/hmdMode", run.stored);
        store->Set("application/videoPlugin", "other");
        script({{"installed", run.installed}});
        QString message;
        KHmd *hmd = start<KOpenVR>();
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, hmd, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                message = box->text();
                box->accept();
            }
        });
        watch.start(10);
        QObject::connect(hmd, &KHmd::workerThreadFinished, qApp, [&] {
            if (run.message.isEmpty())
                QCoreApplication::exit(0);
        });
        EXPECT_EQ(QCoreApplication::exec(),
                  run.message.isEmpty() ? 0 : Application::kRestartStatus);
        EXPECT_EQ(message, run.message);
        EXPECT_EQ(store->GetString("application/videoPlugin", "none"), run.plugin);
        EXPECT_EQ(application->settings()->get("application/hmd/hmdMode").toBool(),
                  run.stored == run.message.isEmpty());
        EXPECT_FALSE(hmd->available());
        application->setHmd(nullptr);
    }
}
