#include "hmd/OculusControls.h"
#include "hmd/OculusGeometry.h"
#include "hmd/OvrLibrary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(OculusValues, LooksForTheLibraryUnderItsNameInEachFolder)
{
    using OvrLibrary::candidates;
    const char *windows = "%lsLibOVRRT%hs_%d.dll";
    EXPECT_EQ(candidates("", {"C:/Oculus", "D:/\u00e9/", "C:/Oculus/"}, windows),
              QStringList({"C:/Oculus/LibOVRRT64_1.dll", "D:/\u00e9/LibOVRRT64_1.dll"}));
    EXPECT_EQ(candidates("/own", {""}, OvrLibrary::fileNameFormat()),
              QStringList({"/own/libOVRRT64.so.1", "libOVRRT64.so.1"}));
}

TEST(OculusValues, HeadAnglesAreThoseOfTheTurnedView)
{
    const float half = std::sqrt(0.5F), not_a_number = std::numeric_limits<float>::quiet_NaN();
    const std::tuple<ovrQuatf, std::optional<CameraAngles>> rows[] = {
        {{0, 0, 0, 1}, CameraAngles{0, 0, 0}},
        {{0, half, 0, half}, CameraAngles{-CameraMath::kPi / 2, 0, 0}}, // to the left
        {{0, 0, 2 * half, 2 * half}, CameraAngles{0, 0, CameraMath::kPi / 2}},
        {{half, 0, 0, half}, CameraAngles{0, -1.5708F, 0}}, // straight up
        {{-half, 0, 0, half}, CameraAngles{0, 1.5708F, 0}},
        {{0.5F, 0.5F, 0.5F, 0.5F}, CameraAngles{-CameraMath::kPi / 2, 0, CameraMath::kPi / 2}},
        {{0, 0, 0, 0}, std::nullopt},
        {{0, not_a_number, 0, 1}, std::nullopt},
    };
    for (const auto &[q, expected] : rows) {
        SCOPED_TRACE(testing::Message() << q.x << ' ' << q.y << ' ' << q.z << ' ' << q.w);
        const auto angles = OculusGeometry::headAngles(q);
        ASSERT_EQ(angles.has_value(), expected.has_value());
        if (!angles)
            continue;
        EXPECT_NEAR(angles->yaw, expected->yaw, 1e-4);
        EXPECT_NEAR(angles->pitch, expected->pitch, 1e-4);
        EXPECT_NEAR(angles->roll, expected->roll, 1e-4);
    }

    // Everywhere, the poles included, the angles give the turned view back.
    for (float yaw = -3; yaw < 3; yaw += 0.7F) {
        for (const float pitch : {-1.5707963F, -1.5705F, -0.4F, 0.0F, 1.2F, 1.5707F, 1.5707963F}) {
            const QMatrix4x4 matrix = CameraMath::matrixFromAngles({yaw, pitch, 0.6F});
            const QVector4D q = CameraMath::quaternionFromMatrix(matrix);
            const auto angles = OculusGeometry::headAngles({q.x(), q.y(), q.z(), q.w()});
            ASSERT_TRUE(angles);
            const QMatrix4x4 back = CameraMath::matrixFromAngles(*angles);
            for (int i = 0; i < 16; ++i)
                EXPECT_NEAR(back(i / 4, i % 4), matrix(i / 4, i % 4), 2e-3) << yaw << ' ' << pitch;
        }
    }
}

TEST(OculusValues, EyesStandBesideTheHeadAndSeeTheirOwnFrustum)
{
    const float half = std::sqrt(0.5F);
    const ovrPosef eye =
        OculusGeometry::eyePose({{0, 2 * half, 0, 2 * half}, {1, 2, 3}}, {0.03F, 0, 0.01F});
    EXPECT_NEAR(eye.Position.x, 1.01, 1e-6);
    EXPECT_NEAR(eye.Position.y, 2, 1e-6);
    EXPECT_NEAR(eye.Position.z, 2.97, 1e-6);
    EXPECT_EQ(eye.Orientation.y, 2 * half) << "as the runtime gave it";

    const QMatrix4x4 projection = OculusGeometry::eyeProjection({1.1F, 0.8F, 1.25F, 0.75F});
    for (const auto &[seen, corner] : {std::pair<QVector3D, QPointF>{{0.75F, 1.1F, -1}, {1, 1}},
                                       {{-1.25F, -0.8F, -1}, {-1, -1}}}) {
        EXPECT_NEAR(projection.map(seen).x(), corner.x(), 1e-5);
        EXPECT_NEAR(projection.map(seen).y(), corner.y(), 1e-5);
    }

    for (const auto &[rate, pause] : {std::pair<float, int>{90, 10},
                                      {60, 15},
                                      {0, 15},
                                      {-5, 15},
                                      {std::nanf(""), 15},
                                      {5000, 1}})
        EXPECT_EQ(OculusGeometry::pauseOfFrame(rate), pause);
}

TEST(OculusValues, ButtonsAndSticksBecomeCodes)
{
    OculusControls controls;
    const std::tuple<unsigned, ovrVector2f, ovrVector2f, int> rows[] = {
        {0, {}, {}, 0},
        {ovrButton_Enter, {}, {}, 1},
        {ovrButton_X, {}, {}, 1},
        {ovrButton_Y | ovrButton_Left, {}, {}, 2},
        {ovrButton_Back, {}, {}, 2},
        {ovrButton_Right, {}, {}, 4},
        {0x4 | 0x1000000, {}, {}, 0}, // a thumb, the menu's home key
        {0, {-0.6F, 0}, {}, 3},
        {0, {-0.4F, 0}, {}, 3}, // not yet let go
        {0, {-0.2F, 0}, {}, 0},
        {0, {-0.4F, 0}, {}, 0},
        {0, {}, {0.9F, 0.2F}, 4},
        {0, {0.1F, 0.8F}, {}, 5},
        {0, {}, {0, -0.8F}, 6},
        {0, {std::nanf(""), 0}, {}, 0},
    };
    for (const auto &[buttons, left, right, code] : rows) {
        ovrInputState remote = {}, hands = {};
        remote.Buttons = buttons;
        hands.Thumbstick[ovrHand_Left] = left;
        hands.Thumbstick[ovrHand_Right] = right;
        OculusControls::merge(&hands, remote);
        EXPECT_EQ(controls.command(hands), code) << buttons << ' ' << left.x << ' ' << right.y;
    }
}
