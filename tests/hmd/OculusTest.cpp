// The Oculus family against a stand-in runtime: the pictures it is given, what it is asked when,
// and every way in which it can fail.

#include "hmd/HeadsetFixture.h"
#include "hmd/KOculus.h"
#include "support/Soon.h"

namespace {

const QString kFailed = QStringLiteral("Oculus SDK initialization failed.\n");
const QString kNoDriver =
    kFailed + "Unable to initialize Oculus driver.\nEnsure that you have installed Oculus driver "
              "or try to unplug/replug all cables.\n";
const QString kNoDevice = kFailed + "No Oculus detected.\n";
const QString kReady = QStringLiteral("Oculus SDK initialization successful.\n");
const QString kDriverError =
    "Error in Oculus driver, try to restart the driver or restart the computer.\n";

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

struct Oculus : test::HeadsetFixture<KOculus>
{
    Oculus()
    {
        useRuntime("complete");
        script.set("mounted 1");
    }

    static void useRuntime(const char *variant)
    {
        qputenv("LIBOVR_DLL_DIR", QByteArray(ORBILENS_OCULUS_RUNTIMES "/") + variant);
    }
};

} // namespace

TEST_F(Oculus, EyesSeeWhatTheHeadLooksAt)
{
    expectBothEyes("oculus", {});
}

TEST_F(Oculus, FailuresAreToldAndLeaveThePlayer)
{
    const QString lost = QStringLiteral("The Oculus headset's display was lost.\n");
    const QString quit =
        QStringLiteral("The Oculus driver has ended the program's use of the headset.\n");
    const struct
    {
        const char *runtime, *script;
        QStringList logs;
        bool fallsBack; // under the automatic choice
    } cases[] = {
        {"none", "", {kNoDriver}, true},
        {"bare", "", {kNoDevice}, true},
        {"complete", "ovr_Initialize -3003 0", {kNoDriver}, true},
        {"complete", "type 0", {kNoDevice}, true},
        {"complete", "ovr_Create -1007 0", {kReady, kDriverError}, true},
        {"complete", "size 0 100", {kReady, kDriverError}, true},
        {"complete", "size 100 1000000", {kReady, kDriverError}, true},
        {"complete", "ovr_CreateTextureSwapChainGL -1006 2", {kReady, kDriverError}, true},
        {"complete", "ovr_GetTextureSwapChainLength -1006 0", {kReady, kDriverError}, true},
        {"complete", "ovr_GetTextureSwapChainBufferGL -1006 4", {kReady, kDriverError}, true},
        {"complete", "ovr_GetSessionStatus -1006 3", {kReady, kDriverError}, false},
        {"complete", "ovr_GetTextureSwapChainCurrentIndex -1 3", {kReady, kDriverError}, false},
        {"complete", "ovr_GetTextureSwapChainBufferGL -1 9", {kReady, kDriverError}, false},
        {"complete", "ovr_CommitTextureSwapChain -6002 4", {kReady, kDriverError}, false},
        {"complete", "ovr_SubmitFrame -6003 2", {kReady, kDriverError}, false},
        {"complete",
         "ovr_SubmitFrame -6000 2;ovr_Create -1007 2",
         {kReady, lost, kDriverError},
         false},
        {"complete", "quit 1", {kReady, quit}, false},
    };
    for (const auto &c : cases) {
        for (const QString sdk : {"oculus", "auto"}) {
            SCOPED_TRACE(testing::Message() << &c - cases << ' ' << sdk.toStdString());
            setting("application/hmd/sdk", sdk);
            // Agrees with what is found, so that no restart is asked for.
            setting("application/hmd/hmdMode", c.logs.first() == kReady || sdk == "auto");
            useRuntime(c.runtime);
            script.set(c.script);
            KHmd *hmd = start();
            QStringList logs;
            QObject::connect(hmd, &KHmd::logMessageChanged, [&] { logs += hmd->logMessage(); });
            QSignalSpy available(hmd, &KHmd::availableChanged);
            QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
            EXPECT_SOON(finished.count() == 1);
            EXPECT_EQ(logs, c.logs);
            EXPECT_EQ(hmd->fallbackRequested(), c.fallsBack && sdk == "auto");
            expectOff(hmd);
            EXPECT_EQ(available.count(), c.logs.first() == kReady ? 2 : 0);
            script.unset(c.script);
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
    EXPECT_SOON(application->hmd()->sdkType() == "openvr");
    const QString both = kNoDriver + "\nUsing OpenVR SDK version 1.0.6.\n"
                                     "OpenVR SDK initialization failed.\n"
                                     "Unable to initialize OpenVR runtime.\n"
                                     "Cannot load library openvr_api:";
    const KHmd *next = application->hmd();
    EXPECT_SOON(next->logMessage().startsWith(both)) << next->logMessage().toStdString();
    EXPECT_FALSE(next->available());
}

TEST_F(Oculus, ALostDisplayIsTakenUpAgain)
{
    script.set("lost 1");
    KHmd *hmd = startTracking();
    EXPECT_SOON(hmd->logMessage() == kReady);
    EXPECT_SOON(hmd->logMessage() != kReady);
    EXPECT_SOON(hmd->logMessage() == kReady);
    script.set("recenter 1");
    script.eyePictures("oculus-straight");
    EXPECT_EQ(script.count("sessions"), 2);
    EXPECT_GE(script.count("ovr_RecenterTrackingOrigin"), 1);
    EXPECT_TRUE(hmd->available());
}

TEST_F(Oculus, DrawsOnlyWhatSomeoneSees)
{
    // Not yet worn: only the head is followed.
    script.set("mounted 0");
    KHmd *hmd = startTracking();
    for (const float yaw : {0.5F, -1.0F, 2.0F}) {
        const QMatrix4x4 head = CameraMath::matrixFromAngles({yaw, 0, 0});
        script.set(test::HeadsetScript::headLines(head));
        EXPECT_TRUE(turnsTo(head));
    }
    hmd->stopThread();
    const int rounds = script.count("ovr_GetSessionStatus");
    EXPECT_GE(rounds, 3);
    EXPECT_EQ(script.count("ovr_SubmitFrame") + script.count("ovr_CommitTextureSwapChain"), 0);
    EXPECT_LE(script.count("ovr_GetRenderDesc"), 2 * rounds);

    // Worn once, something else is seen; then taken off.
    script.set("mounted 1;visible 0");
    hmd->startThread();
    EXPECT_SOON(hmd->available());
    script.set("head 0 0 0 1");
    EXPECT_TRUE(turnsTo({}));
    hmd->stopThread();
    EXPECT_EQ(script.count("ovr_CommitTextureSwapChain"), 2)
        << "one frame, to learn that it is not seen";
    EXPECT_GE(script.count("ovr_SubmitFrame"), 2);
    script.set("visible 1");
    hmd->startThread();
    script.eyePictures("oculus-straight");
    script.set("mounted 0");
    script.eyePictures("oculus-straight");
}

TEST_F(Oculus, ControllersAndNodsReachTheInterface)
{
    setting("application/hmd/gazeUI", true);
    KHmd *hmd = startTracking();
    NoddedInterface ui;
    hmd->setHeadsetInterface(&ui);
    // A select key, and 0.1 radians down between two frames 10 ms apart.
    script.set("input 4 1048576 0 0 0 0;" +
               test::HeadsetScript::headLines(CameraMath::matrixFromAngles({0, 0.1F, 0})));
    EXPECT_SOON(ui.codes == "1" && ui.fastest > 0);
    EXPECT_NEAR(ui.fastest, 10, 0.01);
    application->setHmd(nullptr);
}

TEST_F(Oculus, EndsTwentyTimesInAnyMoment)
{
    expectEndsInAnyMoment();
}
