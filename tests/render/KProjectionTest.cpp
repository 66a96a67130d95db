#include "render/KProjection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180;

/// Every member as it comes, and the two families with parameters at their other values.
std::vector<std::unique_ptr<KProjection>> allMembers()
{
    std::vector<std::unique_ptr<KProjection>> members;
    const auto add = [&members](std::unique_ptr<KProjection> member, double parameter = NAN) {
        member->setParameter(0, parameter);
        members.push_back(std::move(member));
    };
    add(std::make_unique<Equirect>());
    add(std::make_unique<Cylindrical>());
    add(std::make_unique<Planar>());
    add(std::make_unique<Mercator>());
    add(std::make_unique<MirrorBall>());
    add(std::make_unique<Hammer>());
    add(std::make_unique<Orthographic>());
    add(std::make_unique<Stereographic>());
    add(std::make_unique<Fisheye>());
    add(std::make_unique<Twist>());
    for (double distance : {1.0, 0.5, -1.0})
        add(std::make_unique<Panini>(), distance);
    for (double distance : {1.0, 0.3, 0.0})
        add(std::make_unique<Azimutal>(), distance);
    return members;
}

} // namespace

TEST(KProjection, EveryMemberBringsADirectionBack)
{
    for (const auto &member : allMembers()) {
        SCOPED_TRACE(member->dump().toStdString());
        for (int longitude = -75; longitude <= 75; longitude += 15) {
            for (int latitude = -75; latitude <= 75; latitude += 25) {
                double x = 0, y = 0, backLongitude = 0, backLatitude = 0;
                member->forward(longitude * kDegree, latitude * kDegree, &x, &y);
                member->inverse(x, y, &backLongitude, &backLatitude);
                EXPECT_NEAR(backLongitude, longitude * kDegree, 1e-9) << latitude;
                EXPECT_NEAR(backLatitude, latitude * kDegree, 1e-9) << longitude;
            }
        }
    }
}

TEST(KProjection, EveryMemberLooksAheadInItsMiddleWithUpAboveAndItsLimitsAtItsSides)
{
    for (const auto &member : allMembers()) {
        SCOPED_TRACE(member->dump().toStdString());
        double x = 0, y = 0;
        member->forward(0, 0, &x, &y);
        EXPECT_NEAR(x, 0.5, 1e-12);
        EXPECT_NEAR(y, 0.5, 1e-12);
        member->forward(0, 0.1, &x, &y);
        EXPECT_LT(y, 0.5);
        member->forward(0.1, 0, &x, &y);
        EXPECT_GT(x, 0.5);
        // The middle of each side is reached, and no input goes past it.
        member->forward(member->limits().maxLongitude, 0, &x, &y);
        EXPECT_NEAR(x, 1, 1e-12);
        if (!member->isFullLatitude()) {
            member->forward(0, -10, &x, &y);
            EXPECT_NEAR(y, 1, 1e-12);
        }
        // At the scale of the centre one radian is one radian of the extent.
        double width = 0, height = 0, right = 0, down = 0;
        member->getExtent(&width, &height);
        member->forward(1e-5, 0, &right, &down);
        EXPECT_NEAR((right - 0.5) * width, 1e-5, 1e-9);
        member->forward(0, -1e-5, &right, &down);
        EXPECT_NEAR((down - 0.5) * height, 1e-5, 1e-9);
    }
}

TEST(KProjection, KnownDirectionsLieWhereTheFormulasSay)
{
    const Equirect equirect;
    const Cylindrical cylindrical;
    const Planar planar;
    const Mercator mercator;
    const MirrorBall ball;
    const Hammer hammer;
    const Stereographic stereographic;
    Panini panini;
    Azimutal azimutal;
    panini.setParameter(0, 0); // both are Planar then
    azimutal.setParameter(0, 0);
    // Longitude and latitude in degrees.
    const std::tuple<const KProjection &, double, double, double, double> rows[] = {
        {equirect, -180, 0, 0, 0.5},
        {equirect, -270, 45, 0.75, 0.25}, // one turn round
        {equirect, 450, -120, 0.75, 1},
        {cylindrical, 200, 45, 1.0 / 18, 0.5 - 0.07919222016226815},
        {planar, 45, 0, 0.5 + 0.07919222016226815, 0.5},
        {planar, 45, -45, 0.5 + 0.07919222016226815, 0.5 + 0.07919222016226815 * M_SQRT2},
        {panini, 45, -45, 0.5 + 0.07919222016226815, 0.5 + 0.07919222016226815 * M_SQRT2},
        {azimutal, 45, -45, 0.5 + 0.07919222016226815, 0.5 + 0.07919222016226815 * M_SQRT2},
        {planar, 120, 0, 1, 0.5}, // as at 81
        {planar, -89, 0, 0, 0.5},
        {mercator, 400, 0, 1, 0.5}, // does not wrap
        {mercator, 0, 30, 0.5, 0.5 - 0.5493061443340548 * 0.1966885178069602},
        {ball, 0, 90, 0.5, 0.5 - 0.5 * M_SQRT1_2},
        {ball, 90, 0, 0.5 + 0.5 * M_SQRT1_2, 0.5},
        {hammer, 180, 0, 1, 0.5},
        {hammer, 0, -90, 0.5, 1},
        {stereographic, 60, 0, 0.5 + 0.5 / std::sqrt(3.0), 0.5}};
    for (const auto &[member, longitude, latitude, expectedX, expectedY] : rows) {
        SCOPED_TRACE(member.dump().toStdString());
        double x = 0, y = 0;
        member.forward(longitude * kDegree, latitude * kDegree, &x, &y);
        EXPECT_NEAR(x, expectedX, 1e-9) << longitude;
        EXPECT_NEAR(y, expectedY, 1e-9) << latitude;
    }
}
