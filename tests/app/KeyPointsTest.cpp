#include "app/KeyPoints.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"

#include <gtest/gtest.h>

namespace {

QByteArray file(const char *points)
{
    return QByteArray("[{\"points\":[") + points + "]}]";
}

} // namespace

TEST(KeyPoints, WhatIsNoPathGivesNone)
{
    const std::tuple<QByteArray, int> rows[] = {{"", 0},
                                                {"no json", 0},
                                                {"{\"points\":[{}]}", 0},
                                                {"[]", 0},
                                                {"[{}]", 0},
                                                {"[{\"points\":7}]", 0},
                                                {"[[]]", 0},
                                                {file("1,\"x\",null,[]"), 0},
                                                {file("{}"), 1},
                                                {file("{},{}"), 1},
                                                {file("{\"ts\":-1}"), 1},
                                                {file("{\"ts\":-1e300}"), 0},
                                                {file("{\"ts\":1e300}"), 0},
                                                {file("{\"ts\":\"later\"},{\"ts\":2}"), 2},
                                                {file("{\"yaw\":1e999}"), 0},
                                                {file("{\"ts\":1,\"yaw\":1e300}"), 0},
                                                {QByteArray(100000, '['), 0}};
    for (const auto &[json, count] : rows) {
        const auto points = KeyPoints::parse(json);
        EXPECT_EQ(points.size(), count) << json.left(60).toStdString();
        for (const KeyPoint &point : points)
            EXPECT_NEAR(point.rotation.lengthSquared(), 1, 1e-5);
    }
}

TEST(KeyPoints, PointsCarryTimeProjectionAndRotation)
{
    const auto points = KeyPoints::parse(
        file("{\"ts\":2.5,\"yaw\":90,\"fov\":70,\"projection\":\"littlePlanet\"},"
             "{\"ts\":0,\"projection\":\"fisheye\"},{\"ts\":1,\"projection\":\"orvex\"},"
             "{\"ts\":3},{\"ts\":2.5,\"yaw\":-90,\"fov\":60,\"projection\":\"planar\"}"));
    ASSERT_EQ(points.keys(), (QList<int>{0, 1000, 2500, 3000}));
    EXPECT_EQ(points[0].projection, KShaderCodeBuilder::FISHEYE);
    EXPECT_EQ(points[1000].projection, KShaderCodeBuilder::ORVEX);
    EXPECT_EQ(points[2500].projection, KShaderCodeBuilder::RECTILINEAR);
    EXPECT_EQ(points[2500].fov, 60);
    const CameraAngles angles =
        CameraMath::anglesFromMatrix(CameraMath::matrixFromQuaternion(points[2500].rotation));
    EXPECT_NEAR(angles.yaw, -CameraMath::kPi / 2, 1e-5);
    EXPECT_EQ(points[3000].fov, 90);
}

TEST(KeyPoints, PosesLieOnTheArcAndHoldAtTheEnds)
{
    const auto points =
        KeyPoints::parse(file("{\"ts\":1,\"yaw\":0,\"fov\":40},{\"ts\":2,\"yaw\":60,\"fov\":80},"
                              "{\"ts\":2147483,\"yaw\":60,\"fov\":80}"));
    const std::tuple<int, float, float> rows[] = {
        {-5, 0, 40},    {0, 0, 40},     {1000, 0, 40},       {1500, 30, 60},
        {1750, 45, 70}, {2000, 60, 80}, {2147483647, 60, 80}};
    for (const auto &[time, yaw, fov] : rows) {
        const KeyPointPose pose = KeyPoints::poseAt(points, time);
        const CameraAngles angles =
            CameraMath::anglesFromMatrix(CameraMath::matrixFromQuaternion(pose.rotation));
        EXPECT_NEAR(angles.yaw * 180 / CameraMath::kPi, yaw, 1e-3) << time;
        EXPECT_NEAR(pose.fov, fov, 1e-3) << time;
    }
}

TEST(KeyPoints, OnlyFilmsOfOneKindHaveAPath)
{
    EXPECT_EQ(KeyPoints::filePath("/a.mp4.d/b.mp4"), "/a.mp4.d/b.json");
    for (const char *path : {"/a/b.jpg", "/a/b.MP4", "/a.mp4/b.mov", ""})
        EXPECT_TRUE(KeyPoints::filePath(path).isEmpty()) << path;
}
