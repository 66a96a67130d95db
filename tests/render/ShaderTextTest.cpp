#include "render/ShaderText.h"
#include "render/KShaderCodeBuilder.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <cmath>

namespace {

using B = KShaderCodeBuilder;

struct Slot
{
    const char *name;
    const char *marker; ///< a text that this choice alone puts into the shader
    bool chosen;
};

std::vector<Slot> slotsOf(const shader::ShaderKey &key)
{
    const bool sphere = key.overlay || key.projectionSource != B::STANDARD;
    const int output = key.forceRectilinear ? int(B::RECTILINEAR) : key.projection;
    const int input = key.overlay ? int(B::EQUIRECTANGULAR) : key.projectionSource;
    const bool equirectangular = sphere && input != B::CUBEMAP && input != B::FISHEYE_CIRCLE;
    const int stereo = key.overlay ? int(B::STEREO_2D) : key.stereoMode;
    const bool oddOutput = output < B::RECTILINEAR || output > B::FISHEYE;
    return {
        {"precision", "#ifdef GL_ES \nprecision highp float; \n#endif \n", true},
        {"macros", "#define toEquiTexCoords(a) (vec2(a.x / twopi, a.y / pi))", true},
        {"uniforms", "uniform sampler2D uSampler;", true},
        {"helpers", "vec3 toCartesian(", true},
        {"p", "vec2 p(in float a, in vec2 fragCoord){", true},
        {"rectilinear", "tan(a / 2.0)", sphere && output == B::RECTILINEAR},
        {"little planet", "float b = .25;", sphere && output == B::LITTLE_PLANET},
        {"fisheye", "return vec2(-1.);", sphere && output == B::FISHEYE},
        {"orvex", "float zs = uProjectionDistance;", sphere && oddOutput},
        {"corrector", "screenPt.y *= uScaleCorrector;", sphere && key.forceRectilinear},
        {"world", "vec3 pt = (getMatViewInverse() *", sphere},
        {"equirectangular", "vec2 uv = toEquiTexCoords(toSpherical(pt).yz);", equirectangular},
        {"limits", "uv.y = uv.y * f_y - g_y;",
         equirectangular && key.restrictYawPitch && !key.overlay},
        {"quarter turn", "float ty = pt.y;pt.y = -pt.x;pt.x = ty;",
         sphere && input == B::FISHEYE_CIRCLE && key.quarterTurn},
        {"fisheye circle", "(pi*1.33)", sphere && input == B::FISHEYE_CIRCLE},
        {"cubemap", "float expandFactor = 1.0 / 1.01;", sphere && input == B::CUBEMAP},
        {"flat", "tp.x -= twopi*step(twopi,tp.x);", !sphere},
        {"end of p", "return uv;}", true},
        {"main",
         "void main(){vec2 pixel = fragCoord() / uViewportSize;vec2 a;float qb=.017453293*uFov;"
         "highp vec3 color,frag;a=p(qb,fragCoord());",
         true},
        {"flip", "\na.y = 1.0 - a.y;", key.flipY},
        {"panel", "a.y = a.y * 4.0 - 1.5;", key.overlay},
        {"discard", "if (a.x < 0.0 || a.x > 1.0 || a.y < 0.0 || a.y > 1.0) discard;", true},
        {"over under", "a.y = a.y / 2.0 + 0.5 * float(uEye);", stereo == 1},
        {"side by side", "a.x = a.x / 2.0 + 0.5 * float(uEye);", stereo == 2},
        {"over under inverted", "a.y = a.y / 2.0 + 0.5 * (1.0 - float(uEye));", stereo == 3},
        {"side by side inverted", "a.x = a.x / 2.0 + 0.5 * (1.0 - float(uEye));", stereo == 4},
        {"opaque", "float alpha = 1.0;", !key.overlay},
        {"blue first", "color = texture2D(uSampler,a).bgr;", !key.overlay && key.invertedColors},
        {"red first", "color = texture2D(uSampler,a).rgb;", key.overlay || !key.invertedColors},
        {"translucent", "float alpha = texture2D(uSampler,a).a;", key.overlay},
        {"border", "color *= (step(0.0, a.x) * step(0.0, 1.0 - a.x));", true},
        {"matrix", "frag = vec4(uColorMatrix * vec4(color,1.0)).xyz;", true},
        {"vibrance", "(-uVibrance * 3.0)", true},
        {"hue", "uHue * pi", true},
        {"contrast", "frag += uBrightness;frag = (frag - 0.5) / (1.0 - uContrast) + 0.5;", true},
        {"sepia", "yy + 0.07", key.effect == B::SEPIA},
        {"black and white", "step(0.5, yy)", key.effect == B::BLACK_AND_WHITE},
        {"tv", "float sweepRate = 60.0;", key.effect == B::TV},
        {"invert", "frag = 1.0 - frag;", key.effect == B::INVERT},
        {"red", "vec3(max(fxavg, thr), gb, gb)", key.effect == B::RED_ONLY},
        {"yellow", "vec3(max(fxavg, thr), max(fxavg, thr), gb)", key.effect == B::YELLOW_ONLY},
        {"blue", "vec3(gb, gb, max(fxavg, thr))", key.effect == B::BLUE_ONLY},
        {"vignette", "vec3 vigtmp = frag * ", true},
        {"result", "gl_FragColor = vec4(vigtmp, alpha);", true},
    };
}

TEST(ShaderText, HoldsEverySlotOfItsKeyOnceAndInOrder)
{
    for (int bits = 0; bits < 64; ++bits) {
        for (int input = 0; input <= B::AUTO; ++input) {
            for (int output = -1; output <= B::LAST_VALUE_PROJECTION; ++output) {
                shader::ShaderKey key;
                key.projectionSource = input;
                key.projection = output;
                // Choices that do not meet each other run along with those that do.
                key.stereoMode = (input + output + bits + 1) % 6;
                key.effect = (bits + 3 * input + output + 1) % 9;
                key.quarterTurn = bits & 1;
                key.restrictYawPitch = bits & 2;
                key.invertedColors = bits & 4;
                key.forceRectilinear = bits & 8;
                key.overlay = bits & 16;
                key.flipY = bits & 32;
                const QString text = shader::fragmentText(key);
                int last = -1;
                for (const Slot &slot : slotsOf(key)) {
                    const QLatin1String marker(slot.marker);
                    ASSERT_EQ(text.count(marker), slot.chosen ? 1 : 0) << slot.name << " in\n"
                                                                       << text.toStdString();
                    if (!slot.chosen)
                        continue;
                    ASSERT_GT(text.indexOf(marker), last) << slot.name << " comes too early";
                    last = text.indexOf(marker);
                }
            }
        }
    }
}

TEST(ShaderText, BlitExchangesRedAndBlueOnlyWhenAsked)
{
    EXPECT_TRUE(
        shader::blitText(true).contains(QLatin1String("vec4(color.b,color.g,color.r,color.a)")));
    EXPECT_TRUE(
        shader::blitText(false).contains(QLatin1String("vec4(color.r,color.g,color.b,color.a)")));
}

TEST(ShaderText, OrvexEasesFromRectilinearToStereographic)
{
    const struct
    {
        float fov;
        double distance;
        double scale; ///< places the edge of the shorter side at half the field of view
    } cases[] = {
        {20, 0, std::tan(10 * M_PI / 180)},
        {59.9f, 0, std::tan(29.95 * M_PI / 180)},
        {60, 0, std::tan(30 * M_PI / 180)},
        {120, 0.5, 1.5 * std::sin(M_PI / 3) / (0.5 + 0.5)},
        {180, 1, 2},
        {181, 1, 2 * std::tan(90.5 * M_PI / 360)},
        {300, 1, 2 * std::tan(75 * M_PI / 180)},
    };
    for (const auto &c : cases) {
        const shader::OrvexParameters parameters = shader::orvexParameters(c.fov);
        EXPECT_NEAR(parameters.distance, c.distance, 1e-6) << c.fov;
        EXPECT_NEAR(parameters.scale, c.scale, 1e-5 * c.scale) << c.fov;
    }
}

} // namespace
