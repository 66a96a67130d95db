#include "hmd/GazeMapping.h"
#include "hmd/TapDetector.h"
#include "render/CameraMath.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr float kDegree = CameraMath::kPi / 180;
const QSize kPanel(4000, 2000);

QPoint pixelOf(float openedAt, const CameraAngles &degrees)
{
    const QMatrix4x4 pose = CameraMath::matrixFromAngles(
        {degrees.yaw * kDegree, degrees.pitch * kDegree, degrees.roll * kDegree});
    return GazeMapping::panelPixel(
        GazeMapping::panelPoint(GazeMapping::panelFrame(openedAt * kDegree), pose), kPanel);
}

} // namespace

TEST(Gaze, MeetsThePanelWhereItIsDrawn)
{
    // The panel's plane is one away: a slope of 1 is this many pixels on both axes.
    const double slope = 4000 * 2 * 0.07919222016226815;
    const auto at = [slope](double right, double down) {
        return QPoint(int(2000 + slope * right), int(1000 + slope * down));
    };
    // The head in degrees; yaw to the right, pitch down.
    const std::tuple<float, CameraAngles, QPoint, bool> rows[] = {
        {0, {0, 0, 0}, at(0, 0), true},
        {90, {90, 0, 30}, at(0, 0), true}, // ahead of the yaw at opening, whatever the roll
        {-170, {170, 0, 0}, at(-std::tan(20 * kDegree), 0), true},
        {0, {45, 0, 0}, at(1, 0), true},
        {0, {-45, 0, 0}, at(-1, 0), true},
        {0, {0, 30, 0}, at(0, std::tan(30 * kDegree)), true},
        {0, {60, -20, 0}, at(std::tan(60 * kDegree), -2 * std::tan(20 * kDegree)), true},
        {0, {73, 0, 0}, at(std::tan(73 * kDegree), 0), false},
        {0, {0, 58, 0}, at(0, std::tan(58 * kDegree)), false},
        {0, {170, 0, 0}, {6000, 1000}, false}, // behind: as at 81 degrees
        {0, {0, -90, 0}, {6000, 1000}, false}};
    for (const auto &[openedAt, head, expected, inside] : rows) {
        const QPoint pixel = pixelOf(openedAt, head);
        EXPECT_NEAR(pixel.x(), expected.x(), 1) << head.yaw << ' ' << head.pitch;
        EXPECT_NEAR(pixel.y(), expected.y(), 1) << head.yaw << ' ' << head.pitch;
        EXPECT_EQ(GazeMapping::isInside(pixel, kPanel), inside) << head.yaw << ' ' << head.pitch;
    }

    QMatrix4x4 broken;
    broken(1, 2) = NAN;
    const QPoint nowhere =
        GazeMapping::panelPixel(GazeMapping::panelPoint(QMatrix4x4(), broken), kPanel);
    EXPECT_FALSE(GazeMapping::isInside(nowhere, kPanel));
    EXPECT_FALSE(GazeMapping::isInside({0, 5}, kPanel));
    EXPECT_EQ(GazeMapping::sceneSize({6001, 3001}, 1.5), QSize(4000, 2000));
}

TEST(Tap, IsANodOfAHeadThatRested)
{
    const float steep = CameraMath::kPi / 4;
    const std::tuple<float, float, bool>
        steps[] = {{9, 0, false},                                       // never rested yet
                   {2, 0, false},      {9, 0, false},                   // 2 is no rest
                   {1.9F, 0, false},   {8, 0, false},                   // nor 8 a nod
                   {1, 0, false},      {9, 0, true},     {9, 0, false}, // once only
                   {3, 0, false},      {9, 0, false},    {1, steep, false},
                   {9, 0, false}, // rests that do not count
                   {1, -steep, false}, {9, 0, false},    {1, NAN, false},
                   {9, 0, false},      {1, 0.7F, false}, {9, steep, false},
                   {9, 0.7F, true}, // armed stays armed
                   {1, 0, false},      {NAN, 0, false},  {9, 0, true}};
    TapDetector detector;
    int number = 0;
    for (const auto &[speed, pitch, tap] : steps) {
        // The length counts, not one axis.
        const float axis = speed / std::sqrt(3.0F);
        EXPECT_EQ(detector.detect(speed > 5 ? std::array<float, 3>{axis, -axis, axis}
                                            : std::array<float, 3>{0, -speed, 0},
                                  pitch),
                  tap)
            << "step " << number;
        ++number;
    }
}
