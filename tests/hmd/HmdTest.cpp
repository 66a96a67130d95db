// What headsets share, without a device.

#include "app/Application.h"
#include "hmd/EyeGeometry.h"
#include "hmd/FrameRate.h"
#include "hmd/HeadMotion.h"
#include "hmd/KOpenVR.h"
#include "render/HeadsetView.h"
#include "settings/KSettings.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>

namespace {

using CameraMath::kPi;

} // namespace

TEST(HeadMotion, VelocityTakesTheShorterWayRound)
{
    const std::tuple<CameraAngles, CameraAngles, float, std::array<float, 3>> rows[] = {
        {{0, 0, 0}, {0.2F, -0.1F, 0.3F}, 0.5F, {0.4F, -0.2F, 0.6F}},
        {{3.1F, 0, -3.1F}, {-3.1F, 0, 3.1F}, 0.1F, {0.83185F, 0, -0.83185F}},
        {{0, 0, 0}, {kPi, 0, 0}, 1, {kPi, 0, 0}},
        {{0, 0, 0}, {1, 1, 1}, 0, {0, 0, 0}},
        {{0, 0, 0}, {1, 1, 1}, -1, {0, 0, 0}}};
    for (const auto &[from, to, seconds, expected] : rows) {
        const auto velocity = HeadMotion::angularVelocity(from, to, seconds);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(velocity[i], expected[i], 1e-4) << i;
    }
}

TEST(EyeGeometry, AProjectionThatIsNoneBecomesASymmetricOneOf90Degrees)
{
    QMatrix4x4 projections[5];
    projections[0].fill(0);
    projections[1](0, 0) = std::nanf("");
    projections[2](0, 0) = -1;
    projections[3](1, 1) = 1e-6F;
    projections[4](0, 2) = 1e30F;
    for (const QMatrix4x4 &projection : projections) {
        const EyeQuad quad = eyeQuad(projection, {1.5F, 1});
        EXPECT_NEAR(quad.fov, 90, 1e-3);
        const QVector3D corner = quad.matrix.map(QVector3D(0, 1, 0));
        EXPECT_NEAR(corner.x(), -1, 1e-5);
        EXPECT_NEAR(corner.y(), 1, 1e-5);
    }
}

TEST(FrameRate, AnswersOnceASecondWithTheFramesSinceThen)
{
    FrameRate rate;
    QVector<int> answers;
    for (const qint64 second : {100, 100, 100, 101, 101, 103, 103, 102, 104})
        answers << rate.count(second).value_or(-1);
    EXPECT_EQ(answers, QVector<int>({1, -1, -1, 3, -1, 2, -1, -1, 3}));
}

TEST(KHmd, KeepsItsTurnWithinOneTurn)
{
    KOpenVR hmd(static_cast<Application *>(qApp));
    QSignalSpy shifted(&hmd, &KHmd::shiftYawChanged);
    hmd.setShiftYaw(5 * kPi / 2);
    EXPECT_NEAR(hmd.shiftYaw(), kPi / 2, 1e-5);
    hmd.setShiftYaw(hmd.shiftYaw());
    EXPECT_EQ(shifted.count(), 1);
    hmd.setShiftYaw(std::nanf(""));
    EXPECT_EQ(hmd.shiftYaw(), 0);
}

TEST(KHmd, WithoutAContextTellsSoAndHasNoPose)
{
    auto *application = static_cast<Application *>(qApp);
    application->settings()->set("application/hmd/hmdMode", false);
    KOpenVR hmd(application);
    hmd.stopThread();
    hmd.startThread();
    EXPECT_EQ(hmd.logMessage(), "Using OpenVR SDK version 1.0.6.\n"
                                "OpenVR SDK initialization failed.\n"
                                "Unable to initialize opengl context.\n");
    EXPECT_FALSE(hmd.isRunning() || hmd.headsetView()->pose());
    EXPECT_FLOAT_EQ(hmd.defaultFov(), 90.5F);
    const QMatrix4x4 none = hmd.hmdPose();
    EXPECT_EQ(none(0, 1), 1.0F / 128);
    EXPECT_EQ(none(1, 0), 1.0F / 128);
}
