#include "render/ShaderText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(ShaderText, BeginsWithThePrecisionThatEmbeddedDriversAskFor)
{
    EXPECT_TRUE(shader::fragmentText({}).startsWith(
        QLatin1String("#ifdef GL_ES \nprecision highp float; \n#endif \n")));
}

TEST(ShaderText, OrvexEasesFromRectilinearToStereographic)
{
    // Field of view, distance, scale: the edge of the shorter side lies at half the field of view.
    const double cases[][3] = {
        {20, 0, std::tan(10 * M_PI / 180)},        {60, 0, std::tan(M_PI / 6)},
        {120, 0.5, 1.5 * std::sin(M_PI / 3)},      {180, 1, 2},
        {181, 1, 2 * std::tan(90.5 * M_PI / 360)}, {300, 1, 2 * std::tan(75 * M_PI / 180)}};
    for (const auto &c : cases) {
        const shader::OrvexParameters parameters = shader::orvexParameters(float(c[0]));
        EXPECT_NEAR(parameters.distance, c[1], 1e-6) << c[0];
        EXPECT_NEAR(parameters.scale, c[2], 1e-5 * c[2]) << c[0];
    }
}

} // namespace
