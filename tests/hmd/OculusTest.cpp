// The Oculus family against a stand-in runtime: the pictures it is given, what it is asked when,
// and every way in which it can fail.

#include "hmd/HeadsetFixture.h"
#include "hmd/KOculus.h"

namespace {

using B = KShaderCodeBuilder;
using test::EyeSight;

const QString kFailed = QStringLiteral("Oculus SDK initialization failed.\n");
const QString kNoDriver =
    kFailed + "Unable to initialize Oculus driver.\nEnsure that you have installed Oculus driver "
              "or try to unplug/replug all cables.\n";
const QString kNoDevice = kFailed + "No Oculus detected.\n";
const QString kReady = QStringLiteral("Oculus SDK initialization successful.\n");
const QString kDriverError =
    "Error in Oculus driver, try to restart the driver or restart the computer.\n";

QByteArray textOf(const QMatrix4x4 &matrix)
{
    const QVector4D q = CameraMath::quaternionFromMatrix(matrix);
    QByteArray text;
    for (int i = 0; i < 4; ++i)
        text += QByteArray::number(double(q[i]), 'g', 9) + ' ';
    return text;
}

/// Notes the fastest nod that it is told of.
class NoddedInterface : public test::NotedInterface
{
public:
    bool detectTap(const std::array<float, 3> &velocity, float) override
    {
        fastest = std::max<float>(fastest, velocity[1]);
        return false;
    }
    std::atomic<float> fastest{0};
};

class Oculus : public test::HeadsetFixture
{
protected:
    Oculus()
        : HeadsetFixture("ORBILENS_VR_FOLDER")
    {
        useRuntime("complete");
        script({{"mounted", "1"}});
    }
    ~Oculus() override
    {
        application->setHmd(nullptr);
        expectCleanEnd();
    }

    void expectCleanEnd()
    {
        EXPECT_EQ(count("wrong"), 0) << "calls that the runtime would refuse";
        EXPECT_EQ(count("unended"), 0);
    }

    static void useRuntime(const char *variant)
    {
        qputenv("LIBOVR_DLL_DIR", QByteArray(ORBILENS_OCULUS_RUNTIMES "/") + variant);
    }

    KHmd *startTracking()
    {
        KHmd *hmd = start<KOculus>();
        EXPECT_TRUE(within([&] { return HeadMotion::isPose(hmd->hmdPose()); }))
            << hmd->logMessage().toStdString();
        EXPECT_TRUE(hmd->available() && hmd->activated() && builder->hmdMode());
        return hmd;
    }

    bool turnsTo(const KHmd *hmd, const QMatrix4x4 &pose)
    {
        return within([&] {
            for (int i = 0; i < 16; ++i) {
                if (std::abs(hmd->hmdPose()(i / 4, i % 4) - pose(i / 4, i % 4)) > 1e-5F)
                    return false;
            }
            return true;
        });
    }
};

} // namespace

TEST_F(Oculus, EyesSeeWhatTheHeadLooksAt)
{
    const struct
    {
        const char *name;
        int source, stereo;
        CameraAngles head;
        float shiftYaw;
        const char *size;
        QVector4D left, right; // tangents
    } cases[] = {
        {"straight",
         B::EQUIRECTANGULAR,
         B::STEREO_2D,
         {},
         0,
         "120 100",
         {1, 1, 1, 1},
         {1, 1, 1, 1}},
        {"off-centre",
         B::EQUIRECTANGULAR,
         B::STEREO_3D_OVERUNDER,
         {0.8F, -0.5F, 0.4F},
         0.9F,
         "160 144",
         {1.25F, 0.75F, 1.1F, 0.8F},
         {0.75F, 1.25F, 1.1F, 0.8F}},
        {"cubes",
         B::CUBEMAP,
         B::STEREO_3D_SIDEBYSIDE_INVERTED,
         {-2.4F, 1.1F, -0.7F},
         -2,
         "120 168",
         {1.25F, 0.75F, 1.3F, 1.3F},
         {0.75F, 1.25F, 1.3F, 1.3F}},
        {"flat",
         B::STANDARD,
         B::STEREO_3D_SIDEBYSIDE,
         {0.3F, 0.2F, 0.1F},
         0,
         "120 100",
         {1.2F, 1.2F, 1, 1},
         {1.2F, 1.2F, 1, 1}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        builder->setProjectionSource(c.source);
        builder->setStereoMode(c.stereo);
        const QMatrix4x4 head = CameraMath::matrixFromAngles(c.head);
        QByteArray frustums[2];
        for (int i = 0; i < 4; ++i) {
            frustums[0] += QByteArray::number(double(c.left[i])) + ' ';
            frustums[1] += QByteArray::number(double(c.right[i])) + ' ';
        }
        script({{"size", c.size},
                {"head", textOf(head)},
                {"frustum0", frustums[0]},
                {"frustum1", frustums[1]}});
        KHmd *hmd = startTracking();
        hmd->setShiftYaw(c.shiftYaw);
        const QMatrix4x4 pose = CameraMath::matrixFromAngles({-c.shiftYaw, 0, 0}) * head;
        ASSERT_TRUE(turnsTo(hmd, pose));
        shader::ShaderKey key;
        key.projectionSource = c.source;
        key.stereoMode = c.stereo;
        const auto images = eyePictures(QStringLiteral("oculus-%1").arg(QLatin1String(c.name)));
        expectEye(images[0], 0, EyeSight{c.left, {}}, pose, key, pattern);
        expectEye(images[1], 1, EyeSight{c.right, {}}, pose, key, pattern);
        application->setHmd(nullptr);
    }
}

TEST_F(Oculus, FailuresAreToldAndLeaveThePlayer)
{
    const struct
    {
        const char *runtime;
        QMap<QByteArray, QByteArray> script;
        QStringList logs;
        bool fallsBack; // under the automatic choice
    } cases[] = {
        {"none", {}, {kNoDriver}, true},
        {"bare", {}, {kNoDevice}, true},
        {"complete", {{"ovr_Initialize", "-3003 0"}}, {kNoDriver}, true},
        {"complete", {{"type", "0"}}, {kNoDevice}, true},
        {"complete", {{"ovr_Create", "-1007 0"}}, {kReady, kDriverError}, true},
        {"complete", {{"size", "0 100"}}, {kReady, kDriverError}, true},
        {"complete", {{"size", "100 1000000"}}, {kReady, kDriverError}, true},
        {"complete", {{"ovr_CreateTextureSwapChainGL", "-1006 2"}}, {kReady, kDriverError}, true},
        {"complete", {{"ovr_GetTextureSwapChainLength", "-1006 0"}}, {kReady, kDriverError}, true},
        {"complete",
         {{"ovr_GetTextureSwapChainBufferGL", "-1006 4"}},
         {kReady, kDriverError},
         true},
        {"complete", {{"ovr_GetSessionStatus", "-1006 3"}}, {kReady, kDriverError}, false},
        {"complete",
         {{"ovr_GetTextureSwapChainCurrentIndex", "-1 3"}},
         {kReady, kDriverError},
         false},
        {"complete", {{"ovr_GetTextureSwapChainBufferGL", "-1 9"}}, {kReady, kDriverError}, false},
        {"complete", {{"ovr_CommitTextureSwapChain", "-6002 4"}}, {kReady, kDriverError}, false},
        {"complete", {{"ovr_SubmitFrame", "-6003 2"}}, {kReady, kDriverError}, false},
        {"complete",
         {{"ovr_SubmitFrame", "-6000 2"}, {"ovr_Create", "-1007 2"}},
         {kReady, "The Oculus headset's display was lost.\n", kDriverError},
         false},
        {"complete",
         {{"quit", "1"}},
         {kReady, "The Oculus driver has ended the program's use of the headset.\n"},
         false},
    };
    for (const auto &c : cases) {
        for (const QString sdk : {"oculus", "auto"}) {
            SCOPED_TRACE(testing::Message() << &c - cases << ' ' << sdk.toStdString());
            setting("application/hmd/sdk", sdk);
            // Agrees with what is found, so that no restart is asked for.
            setting("application/hmd/hmdMode", c.logs.first() == kReady || sdk == "auto");
            useRuntime(c.runtime);
            script(c.script);
            KHmd *hmd = start<KOculus>();
            QStringList logs;
            QObject::connect(hmd, &KHmd::logMessageChanged, [&] { logs += hmd->logMessage(); });
            QSignalSpy available(hmd, &KHmd::availableChanged);
            QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
            EXPECT_TRUE(within([&] { return finished.count() == 1; }));
            EXPECT_EQ(logs, c.logs);
            EXPECT_EQ(hmd->fallbackRequested(), c.fallsBack && sdk == "auto");
            EXPECT_FALSE(hmd->available() || hmd->activated() || builder->hmdMode());
            EXPECT_EQ(available.count(), c.logs.first() == kReady ? 2 : 0);
            for (const QByteArray &key : c.script.keys())
                script({{key, ""}});
        }
    }
}

TEST_F(Oculus, AnAutomaticChoiceGoesOnWithTheNextFamilyAndKeepsTheLog)
{
    useRuntime("none");
    setting("application/hmd/sdk", "auto");
    application->setHmd(nullptr);
    application->initHmdSdk();
    EXPECT_EQ(application->hmd()->sdkType(), "oculus");
    application->hmd()->startThread();
    EXPECT_TRUE(within([&] { return application->hmd()->sdkType() == "openvr"; }));
    EXPECT_TRUE(application->hmd()->logMessage().startsWith(kNoDriver + '\n'));
}

TEST_F(Oculus, ALostDisplayIsTakenUpAgain)
{
    script({{"lost", "1"}});
    KHmd *hmd = startTracking();
    EXPECT_TRUE(within([&] { return hmd->logMessage() == kReady; }));
    EXPECT_TRUE(within([&] { return hmd->logMessage() != kReady; }));
    EXPECT_TRUE(within([&] { return hmd->logMessage() == kReady; }));
    script({{"recenter", "1"}});
    eyePictures("oculus-straight");
    EXPECT_EQ(count("sessions"), 2);
    EXPECT_GE(count("ovr_RecenterTrackingOrigin"), 1);
    EXPECT_TRUE(hmd->available());
}

TEST_F(Oculus, DrawsOnlyWhatSomeoneSees)
{
    // Not yet worn: only the head is followed.
    script({{"mounted", "0"}});
    KHmd *hmd = startTracking();
    for (const float yaw : {0.5F, -1.0F, 2.0F}) {
        const QMatrix4x4 head = CameraMath::matrixFromAngles({yaw, 0, 0});
        script({{"head", textOf(head)}});
        EXPECT_TRUE(turnsTo(hmd, head));
    }
    hmd->stopThread();
    const int rounds = count("ovr_GetSessionStatus");
    EXPECT_GE(rounds, 3);
    EXPECT_EQ(count("ovr_SubmitFrame") + count("ovr_CommitTextureSwapChain"), 0);
    EXPECT_LE(count("ovr_GetRenderDesc"), 2 * rounds);

    // Worn once, something else is seen; then taken off.
    script({{"mounted", "1"}, {"visible", "0"}});
    hmd->startThread();
    EXPECT_TRUE(within([&] { return hmd->available(); }));
    script({{"head", "0 0 0 1"}});
    EXPECT_TRUE(turnsTo(hmd, {}));
    hmd->stopThread();
    EXPECT_EQ(count("ovr_CommitTextureSwapChain"), 2) << "one frame, to learn that it is not seen";
    EXPECT_GE(count("ovr_SubmitFrame"), 2);
    script({{"visible", "1"}});
    hmd->startThread();
    eyePictures("oculus-straight");
    script({{"mounted", "0"}});
    eyePictures("oculus-straight");
}

TEST_F(Oculus, ControllersAndNodsReachTheInterface)
{
    setting("application/hmd/gazeUI", true);
    KHmd *hmd = startTracking();
    NoddedInterface ui;
    hmd->setHeadsetInterface(&ui);
    // A select key, and 0.1 radians down between two frames 10 ms apart.
    script({{"input", "4 1048576 0 0 0 0"},
            {"head", textOf(CameraMath::matrixFromAngles({0, 0.1F, 0}))}});
    EXPECT_TRUE(within([&] { return ui.codes == "1" && ui.fastest > 0; }));
    EXPECT_NEAR(ui.fastest, 10, 0.01);
    application->setHmd(nullptr);
}

TEST_F(Oculus, EndsTwentyTimesInAnyMoment)
{
    for (int i = 0; i < 20; ++i) {
        KHmd *hmd = start<KOculus>();
        if (i % 4 != 0) {
            EXPECT_TRUE(within([&] { return hmd->available(); }));
        }
        if (i % 4 == 2)
            eyePictures("oculus-straight");
        if (i % 4 == 3)
            hmd->setActivated(false); // from its sleep of a second
        QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
        hmd->stopThread();
        EXPECT_EQ(finished.count(), 1);
        expectCleanEnd();
    }
}
