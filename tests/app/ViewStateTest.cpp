#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

namespace {

using CameraMath::kPi;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct ViewState : ::testing::Test
{
    ViewState()
    {
        application->settings()->set("application/output/projection", KShaderCodeBuilder::ORVEX);
        application->settings()->set("application/input/projection",
                                     KShaderCodeBuilder::EQUIRECTANGULAR);
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<KShaderCodeBuilder>(application));
        state = application->globalObject();
        state->setFovLimits();
    }

    ~ViewState() override
    {
        application->setShaderBuilder(nullptr);
        application->setGlobalObject(nullptr);
    }

    void expectAngles(double yaw, double pitch, double roll, double tolerance) const
    {
        EXPECT_NEAR(state->yaw(), yaw, tolerance);
        EXPECT_NEAR(state->pitch(), pitch, tolerance);
        EXPECT_NEAR(state->roll(), roll, tolerance);
    }

    Application *application = static_cast<Application *>(qApp);
    KGlobalObject *state = nullptr;
};

QMatrix4x4 expectedMatrix(const CameraAngles &a)
{
    // Ry(-yaw) Rx(-pitch) Rz(roll), composed by Qt's own rotations.
    constexpr float kDegrees = 180 / kPi;
    QMatrix4x4 m;
    m.rotate(-a.yaw * kDegrees, 0, 1, 0);
    m.rotate(-a.pitch * kDegrees, 1, 0, 0);
    m.rotate(a.roll * kDegrees, 0, 0, 1);
    return m;
}

void expectNear(const QMatrix4x4 &a, const QMatrix4x4 &b)
{
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(a.constData()[i], b.constData()[i], 2e-6) << "element " << i;
}

} // namespace

TEST(CameraMath, AnglesWrapIntoOneTurn)
{
    const float rows[][2] = {{0, 0},
                             {kPi, -kPi},
                             {-kPi, -kPi},
                             {4, 4 - 2 * kPi},
                             {-4, 2 * kPi - 4},
                             {kNaN, 0},
                             {std::numeric_limits<float>::infinity(), 0}};
    for (const auto &[in, out] : rows)
        EXPECT_NEAR(CameraMath::wrapAngle(in), out, 1e-5) << in;
    for (const float value : {1e7F, -3e20F, 3.1415925F, -3.1415925F, 9.42477F}) {
        EXPECT_GE(CameraMath::wrapAngle(value), -kPi) << value;
        EXPECT_LE(CameraMath::wrapAngle(value), kPi) << value;
    }
    EXPECT_EQ(CameraMath::wrapAngle(kPi), -kPi);
}

TEST(CameraMath, MatrixAndAnglesAgreeBothWays)
{
    for (const CameraAngles &angles : {CameraAngles{0, 0, 0}, CameraAngles{1, 0.5F, -0.25F},
                                       CameraAngles{-2.5F, -1.2F, 3}, CameraAngles{3, 1.5F, -2}}) {
        const QMatrix4x4 matrix = CameraMath::matrixFromAngles(angles);
        expectNear(matrix, expectedMatrix(angles));
        const CameraAngles back = CameraMath::anglesFromMatrix(matrix);
        EXPECT_NEAR(back.yaw, angles.yaw, 1e-4);
        EXPECT_NEAR(back.pitch, angles.pitch, 1e-4);
        EXPECT_NEAR(back.roll, angles.roll, 1e-4);
        expectNear(CameraMath::matrixFromQuaternion(CameraMath::quaternionFromMatrix(matrix)),
                   matrix);
    }
    // At the poles yaw snaps to a quarter turn and the free angle stands in pitch.
    for (const float sign : {1.0F, -1.0F}) {
        QMatrix4x4 pole = CameraMath::matrixFromAngles({0.5F, sign * kPi / 2, 0});
        pole(1, 2) = sign;
        const CameraAngles angles = CameraMath::anglesFromMatrix(pole);
        EXPECT_EQ(angles.yaw, -sign * kPi / 2);
        EXPECT_NEAR(angles.pitch, -sign * 0.5F, 1e-6);
        EXPECT_EQ(angles.roll, 0);
    }
}

TEST(CameraMath, OppositeQuaternionsDoNotDivideByZero)
{
    const QVector4D q(0, 0, 0, 1);
    for (const float t : {0.0F, 0.5F, 1.0F})
        EXPECT_EQ(CameraMath::slerp(q, -q, t), q);
}

TEST_F(ViewState, SettersSignalOnlyChangesAndIgnoreWhatIsNoNumber)
{
    QSignalSpy yawSpy(state, &KGlobalObject::yawChanged);
    QSignalSpy matrixSpy(state, &KGlobalObject::rotationMatrixChanged);
    state->setYaw(1);
    state->setYaw(1);
    state->setYaw(1 + 2 * kPi - 1e-9F, true);
    state->setYaw(kNaN);
    state->setFov(kNaN);
    state->setPitch(kNaN);
    state->setYawInterpolate(kNaN);
    state->setOrientationOffset(kNaN, 0, 0);
    QMatrix4x4 broken;
    broken(1, 1) = kNaN;
    state->setRotationMatrix(broken, true, true);
    EXPECT_LE(yawSpy.count(), 2); // a whole turn may round to a neighbouring number
    EXPECT_NEAR(state->yaw(), 1, 1e-6);
    expectNear(state->rotationMatrix(), expectedMatrix({1, 0, 0}));

    matrixSpy.clear();
    state->setPitch(2, false);
    EXPECT_EQ(matrixSpy.count(), 0);
    EXPECT_EQ(state->pitch(), 2); // pitch goes over the poles
}

TEST_F(ViewState, MatrixSetsAnglesWithoutBuildingItselfAnew)
{
    const QMatrix4x4 pose = CameraMath::matrixFromAngles({0.3F, -0.4F, 0.2F});
    QSignalSpy matrixSpy(state, &KGlobalObject::rotationMatrixChanged);
    state->setRotationMatrix(pose, true, false);
    state->setRotationMatrix(pose, true, false);
    EXPECT_EQ(matrixSpy.count(), 1);
    EXPECT_EQ(state->rotationMatrix(), pose);
    expectAngles(0.3, -0.4, 0.2, 1e-6);

    QMatrix4x4 base;
    base.rotate(90, 0, 1, 0);
    state->setOffsetMatrix(base);
    expectNear(state->rotationMatrix(), base * pose);
    state->setOffsetMatrix({});

    state->setOrientationOffset(0.1F, 0.2F, 0.3F);
    expectNear(state->rotationMatrix(), expectedMatrix({0.4F, -0.2F, 0.5F}));
}

TEST_F(ViewState, FieldOfViewObeysLimitsAndProjection)
{
    const std::tuple<float, bool, float> rows[] = {
        {100, false, 100}, {500, true, 90}, {500, false, 300}, {3, false, 80}, {3, true, 90}};
    for (const auto &[value, reset, expected] : rows) {
        state->setFov(value, reset);
        EXPECT_EQ(state->fov(), expected) << value;
    }

    KSettings *settings = application->settings();
    state->setFov(300);
    settings->set("instance/output/projection", KShaderCodeBuilder::RECTILINEAR);
    EXPECT_EQ(state->fov(), 130);
    EXPECT_EQ(state->fovLimitMax(), 130);
    settings->set("instance/input/projection", KShaderCodeBuilder::STANDARD);
    EXPECT_EQ(state->fov(), 180);
    EXPECT_EQ(state->fovLimitMax(), 180);

    // A flat picture that fills the view at 90 degrees moves by 45 at most, then not at all.
    state->setFov(90);
    EXPECT_NEAR(state->clampPitch(1.5F), kPi / 4, 1e-5);
    EXPECT_NEAR(state->clampPitch(-1.5F), -kPi / 4, 1e-5);
    EXPECT_NEAR(state->clampPitch(0.2F), 0.2, 1e-6);
    settings->set("instance/input/projection", KShaderCodeBuilder::EQUIRECTANGULAR);
    EXPECT_NEAR(state->clampPitch(4), 4 - 2 * kPi, 1e-5);
}

TEST_F(ViewState, ResetTurnsToTheMediumsOwnStart)
{
    state->setYaw(1);
    state->setRoll(-1);
    state->setFov(120);
    QSignalSpy matrixSpy(state, &KGlobalObject::rotationMatrixChanged);
    state->resetYawPitchRollFov({{"Initial yaw", 90.0F}, {"Initial pitch", -30.0F}});
    EXPECT_EQ(matrixSpy.count(), 1);
    expectAngles(kPi / 2, -kPi / 6, 0, 1e-4);
    EXPECT_EQ(state->fov(), 90);
    expectNear(state->rotationMatrix(), expectedMatrix({state->yaw(), state->pitch(), 0}));
}

TEST_F(ViewState, AnimationsRunThroughTheSeamAndAddUp)
{
    state->setYaw(3);
    state->interpolateValue("yawInterpolate", 3.5F, 60);
    EXPECT_SOON(qFuzzyCompare(state->yawInterpolate(), 3.5F));
    EXPECT_NEAR(state->yaw(), 3.5 - 2 * kPi, 1e-5);

    state->setFov(100);
    state->interpolateValue("fov", 10, 10000, true);
    state->interpolateValue("fov", 10, 30, true); // on top of the target of the running one
    EXPECT_SOON(qFuzzyCompare(state->fov(), 120.0F));

    state->interpolateValue("yaw", 1, 10000);
    state->stopCameraAnimation();
    const float stopped = state->yaw();
    QTest::qWait(50);
    EXPECT_EQ(state->yaw(), stopped);
    state->interpolateValue("no such property", 1);
    state->interpolateValue("fov", kNaN);
    EXPECT_EQ(state->fov(), 120.0F);
}

TEST_F(ViewState, CameraPathBesideAFilmMovesTheView)
{
    QTemporaryDir folder;
    const QUrl film = QUrl::fromLocalFile(folder.filePath("film.mp4"));
    const QString path = folder.filePath("film.json");
    test::writeFile(path, "[{\"points\":[{\"ts\":1,\"yaw\":10}]}]");
    state->buildKeyPoints(film);
    state->interpolateKeyPoints(1000);
    EXPECT_EQ(state->yaw(), 0) << "one point is no path";

    test::writeFile(path, "[{\"points\":[{\"ts\":0,\"fov\":90,\"projection\":\"fisheye\"},"
                          "{\"ts\":2,\"yaw\":40,\"pitch\":20,\"fov\":110}]}]");
    state->buildKeyPoints(film);
    state->interpolateKeyPoints(2000);
    expectAngles(40 * kPi / 180, 20 * kPi / 180, 0, 1e-4);
    EXPECT_NEAR(state->fov(), 110, 1e-4);
    EXPECT_EQ(application->shaderBuilder()->projection(), KShaderCodeBuilder::FISHEYE);
    const float held = state->yaw();
    state->interpolateKeyPoints(900000);
    EXPECT_NEAR(state->yaw(), held, 1e-5);

    state->buildKeyPoints(QUrl::fromLocalFile(folder.filePath("other.mp4")));
    state->setYaw(0);
    state->interpolateKeyPoints(1000);
    EXPECT_EQ(state->yaw(), 0);
}

TEST_F(ViewState, DisplayAndTouchFollowTheSettingsOfThisRun)
{
    KSettings *settings = application->settings();
    const std::tuple<const char *, bool, bool, int> rows[] = {
        {"3d", true, true, KGlobalObject::Display3D},
        {"split", true, false, KGlobalObject::SplitDisplay},
        {"nonsense", true, false, KGlobalObject::SplitDisplay},
        {"standard", false, false, KGlobalObject::StandardDisplay}};
    for (const auto &[display, split, tv3d, output] : rows) {
        settings->set("instance/output/display", display);
        EXPECT_EQ(state->splitView(), split) << display;
        EXPECT_EQ(state->tv3dView(), tv3d) << display;
        EXPECT_EQ(state->outputDisplay(), output) << display;
    }
    QSignalSpy touchSpy(state, &KGlobalObject::touchModeChanged);
    settings->toggle("instance/general/touchMode");
    EXPECT_FALSE(state->touchMode());
    settings->toggle("instance/general/touchMode");
    EXPECT_EQ(touchSpy.count(), 2);

    for (const int value : {2, 3, 4}) {
        settings->set("instance/general/loopMode", value);
        EXPECT_EQ(state->loopMode(), value % 3);
    }
}

TEST_F(ViewState, AFolderIsWritableWhereItOrWhatItWillStandInIs)
{
    const QTemporaryDir folder;
    const QString file = test::writeFile(folder.filePath("file"));
    const std::tuple<QUrl, bool> rows[] = {
        {QUrl::fromLocalFile(folder.path()), true},
        {QUrl::fromLocalFile(folder.filePath("new/deeper")), true},
        {QUrl::fromLocalFile(file), false},
        {QUrl::fromLocalFile(file + "/below"), false},
        {QUrl("http://host/folder"), false},
        {QUrl(), false},
        {QUrl("file:"), false}};
    for (const auto &[url, writable] : rows)
        EXPECT_EQ(state->isWritableFolder(url), writable) << url.toString().toStdString();
}
