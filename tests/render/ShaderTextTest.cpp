#include "render/ShaderText.h"
#include "render/KShaderCodeBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using B = KShaderCodeBuilder;

/// A text of each slot, in the order of the slots; several where a slot has a choice.
std::vector<std::pair<const char *, bool>> slotsOf(const shader::ShaderKey &key)
{
    const bool sphere = key.overlay || key.projectionSource != B::STANDARD;
    const int output = key.forceRectilinear ? int(B::RECTILINEAR) : key.projection;
    const int input = key.overlay ? int(B::EQUIRECTANGULAR) : key.projectionSource;
    const bool circle = sphere && input == B::FISHEYE_CIRCLE;
    const bool equirectangular = sphere && !circle && input != B::CUBEMAP;
    const int stereo = key.overlay ? int(B::STEREO_2D) : key.stereoMode;
    return {
        {"#ifdef GL_ES \nprecision highp float; \n#endif \n", true},
        {"vec2 p(in float a, in vec2 fragCoord){", true},
        {"tan(a / 2.0)", sphere && output == B::RECTILINEAR},
        {"float b = .25;", sphere && output == B::LITTLE_PLANET},
        {"return vec2(-1.);", sphere && output == B::FISHEYE},
        {"float zs = uProjectionDistance;", sphere && (output < 1 || output > 3)},
        {"screenPt.y *= uScaleCorrector;", sphere && key.forceRectilinear},
        {"vec2 uv = toEquiTexCoords(toSpherical(pt).yz);", equirectangular},
        {"uv.y = uv.y * f_y - g_y;", equirectangular && key.restrictYawPitch && !key.overlay},
        {"float ty = pt.y;pt.y = -pt.x;pt.x = ty;", circle && key.quarterTurn},
        {"float expandFactor = 1.0 / 1.01;", sphere && input == B::CUBEMAP},
        {"tp.x -= twopi*step(twopi,tp.x);", !sphere},
        {"return uv;}", true},
        {"void main(){vec2 pixel = fragCoord() / uViewportSize;vec2 a;float qb=.017453293*uFov;"
         "highp vec3 color,frag;a=p(qb,fragCoord());",
         true},
        {"\na.y = 1.0 - a.y;", key.flipY},
        {"a.y = a.y * 4.0 - 1.5;", key.overlay},
        {"if (a.x < 0.0 || a.x > 1.0 || a.y < 0.0 || a.y > 1.0) discard;", true},
        {"a.y = a.y / 2.0", stereo == 1 || stereo == 3},
        {"a.x = a.x / 2.0", stereo == 2 || stereo == 4},
        {"color = texture2D(uSampler,a).bgr;", !key.overlay && key.invertedColors},
        {"color = texture2D(uSampler,a).rgb;", key.overlay || !key.invertedColors},
        {"float alpha = texture2D(uSampler,a).a;", key.overlay},
        {"color *= (step(0.0, a.x) * step(0.0, 1.0 - a.x));", true},
        {"frag = vec4(uColorMatrix * vec4(color,1.0)).xyz;", true},
        {"frag += uBrightness;frag = (frag - 0.5) / (1.0 - uContrast) + 0.5;", true},
        {"frag = 1.0 - frag;", key.effect == B::INVERT},
        {"vec3 vigtmp = frag * ", true},
        {"gl_FragColor = vec4(vigtmp, alpha);", true},
    };
}

TEST(ShaderText, HoldsEverySlotOfItsKeyOnceAndInOrder)
{
    for (int number = 0; number < 64 * 5 * 6; ++number) {
        const int bits = number % 64;
        shader::ShaderKey key;
        key.projectionSource = number / 64 % 5;
        key.projection = number / 320 - 1;
        key.stereoMode = number % 6; // does not meet the projections
        key.effect = number % 9;
        key.quarterTurn = bits & 1;
        key.restrictYawPitch = bits & 2;
        key.invertedColors = bits & 4;
        key.forceRectilinear = bits & 8;
        key.overlay = bits & 16;
        key.flipY = bits & 32;
        const QString text = shader::fragmentText(key);
        int last = -1;
        for (const auto &[marker, chosen] : slotsOf(key)) {
            ASSERT_EQ(text.count(QLatin1String(marker)), chosen ? 1 : 0) << marker << " in\n"
                                                                         << text.toStdString();
            ASSERT_TRUE(!chosen || text.indexOf(QLatin1String(marker)) > last) << marker;
            last = std::max(last, text.indexOf(QLatin1String(marker)));
        }
    }
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
