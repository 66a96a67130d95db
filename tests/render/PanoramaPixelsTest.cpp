#include "render/CameraMath.h"
#include "render/FastBlur.h"
#include "render/KShaderCodeBuilder.h"
#include "support/GlStage.h"
#include "support/PanoramaReference.h"

#include <gtest/gtest.h>

#include <QColor>

#include <cmath>

namespace {

using B = KShaderCodeBuilder;
using shader::ShaderKey;
using test::uniformsFor;

struct PanoramaPixels : ::testing::Test
{
    QImage draw(const QString &text, const PanoramaUniforms &uniforms, const QImage &picture)
    {
        m_texture = test::uploadTexture(picture, m_texture);
        PanoramaProgram program;
        EXPECT_TRUE(program.build(shader::vertexText(), text)) << text.toStdString();
        m_stage.begin(uniforms.viewport.pixels);
        program.draw(m_stage.functions(), uniforms, m_texture);
        return m_stage.end();
    }

    /// The text as it stands, and with what is neutral made constant.
    void expectAsCalculated(const ShaderKey &key, const PanoramaUniforms &uniforms)
    {
        const bool whole = uniforms.yawMax == CameraMath::kPi;
        const QString text = shader::fragmentText(key);
        for (const QString &variant : {text, shader::withFixedUniforms(text, {true, whole})}) {
            const QImage image = draw(variant, uniforms, m_pattern);
            const QString faults = test::pixelFaults(image, {key, uniforms}, m_pattern, 0);
            EXPECT_TRUE(faults.isEmpty()) << faults.toStdString();
            if (!faults.isEmpty())
                image.save(QStringLiteral(ORBILENS_BINARY_DIR "/wrong-pixels.png"));
        }
    }

    test::GlStage m_stage;
    GLuint m_texture = 0;
    const QImage m_pattern = test::directionPattern(QSize(512, 512));
};

TEST_F(PanoramaPixels, EachProjectionShowsTheDirectionThatItsFormulaTells)
{
    const std::tuple<CameraAngles, float, QSize> cases[] = {{{0, 0, 0}, 90, {120, 80}},
                                                            {{0.7F, -0.4F, 0.3F}, 40, {80, 120}},
                                                            {{-2.6F, 0.9F, -1.2F}, 110, {100, 100}},
                                                            {{3.1F, 1.5F, 0}, 130, {101, 75}}};
    for (int combination = 0; combination < 16; ++combination) {
        for (const auto &[angles, fov, view] : cases) {
            ShaderKey key;
            key.projectionSource = combination / 4;
            key.projection = combination % 4;
            key.quarterTurn = angles.yaw > 0;
            SCOPED_TRACE(testing::Message() << combination << " at " << fov);
            expectAsCalculated(key, uniformsFor(view, fov, angles));
        }
    }
}

TEST_F(PanoramaPixels, WideFieldsOfView)
{
    const std::pair<int, float> cases[] = {
        {B::ORVEX, 60},    {B::ORVEX, 150},   {B::ORVEX, 240},        {B::ORVEX, 300},
        {B::FISHEYE, 240}, {B::FISHEYE, 360}, {B::LITTLE_PLANET, 300}};
    for (const auto &[projection, fov] : cases) {
        ShaderKey key;
        key.projection = projection;
        SCOPED_TRACE(fov);
        expectAsCalculated(key, uniformsFor({151, 101}, fov, {0.4F, 0.2F, 0.1F}));
    }
}

TEST_F(PanoramaPixels, EachEyeTakesItsHalf)
{
    for (const int input : {B::EQUIRECTANGULAR, B::STANDARD, B::CUBEMAP}) {
        for (int stereo = 0; stereo <= B::STEREO_AUTO; ++stereo) {
            ShaderKey key;
            key.projectionSource = input;
            key.stereoMode = stereo;
            PanoramaUniforms uniforms = uniformsFor({90, 70}, 95, {0.3F, -0.2F, 0});
            for (uniforms.eye = 0; uniforms.eye < 2; ++uniforms.eye) {
                SCOPED_TRACE(testing::Message() << input << stereo << uniforms.eye);
                expectAsCalculated(key, uniforms);
            }
        }
    }
}

TEST_F(PanoramaPixels, PartialPanoramasFillTheirExtentOnly)
{
    for (const QVector4D &extent :
         {QVector4D(-1, 1.2F, -0.5F, 0.7F), QVector4D(-3.1F, 0, -1.5F, -0.1F),
          QVector4D(0.2F, 0.9F, -1.2F, 1.2F)}) {
        PanoramaUniforms uniforms = uniformsFor({120, 90}, 100, {0.2F, 0.1F, 0.3F});
        uniforms.yawMin = extent.x();
        uniforms.yawMax = extent.y();
        uniforms.pitchMin = extent.z();
        uniforms.pitchMax = extent.w();
        for (const bool restricted : {true, false}) {
            ShaderKey key;
            key.restrictYawPitch = restricted;
            expectAsCalculated(key, uniforms);
        }
    }
}

TEST_F(PanoramaPixels, HeadsetEyesAndInterfacePanel)
{
    PanoramaUniforms uniforms = uniformsFor({110, 90}, 100, {0.2F, 0.1F, -0.1F});
    ShaderKey key;
    key.projection = B::FISHEYE;
    key.forceRectilinear = true;
    uniforms.scaleCorrector = 0.8F;
    expectAsCalculated(key, uniforms);

    // The medium's projection, stereo mode and limits are not the panel's.
    key = {};
    key.overlay = true;
    key.flipY = true;
    expectAsCalculated(key, uniforms);
    const QImage panel = draw(shader::fragmentText(key), uniforms, m_pattern);
    key.projectionSource = B::STANDARD;
    key.stereoMode = B::STEREO_3D_OVERUNDER;
    uniforms.yawMax = 0.5F;
    EXPECT_EQ(draw(shader::fragmentText(key), uniforms, m_pattern), panel);
}

TEST_F(PanoramaPixels, ColoursFollowControlsAndEffects)
{
    using U = PanoramaUniforms;
    using Color = std::array<double, 3>;
    const double tv = 1.4 * 0.25 * (0.92 + 0.08 * std::sin(15 * 0.545)) * 1.376; // row 4 of 10
    const std::tuple<const char *, int, float U::*, float, Color, Color> cases[] = {
        {"neutral", B::NO_EFFECT, &U::hue, 0, {0.4, 0.6, 0.2}, {0.4, 0.6, 0.2}},
        {"sepia", B::SEPIA, &U::hue, 0, {0.4, 0.6, 0.2}, {0.646, 0.566, 0.376}},
        {"dark", B::BLACK_AND_WHITE, &U::hue, 0, {0.4, 0.6, 0.2}, {0, 0, 0}},
        {"light", B::BLACK_AND_WHITE, &U::hue, 0, {0.4, 0.7, 0.2}, {1, 1, 1}},
        {"television", B::TV, &U::hue, 0, {0.5, 0.5, 0.5}, {0.95 * tv, 1.05 * tv, 0.95 * tv}},
        {"invert", B::INVERT, &U::hue, 0, {0.4, 0.6, 0.2}, {0.6, 0.4, 0.8}},
        {"red", B::RED_ONLY, &U::hue, 0, {1.0 / 3, 0, 0.05}, {0.5, 0.0917, 0.0917}},
        {"no red", B::RED_ONLY, &U::hue, 0, {0.6, 0.4, 0.2}, {0.5, 0.5, 0.5}},
        {"yellow", B::YELLOW_ONLY, &U::hue, 0, {0.9, 0.8, 0}, {1, 1, 0}},
        {"no yellow", B::YELLOW_ONLY, &U::hue, 0, {0.2, 0.6, 0.3}, {0.5, 0.5, 0.5}},
        {"blue", B::BLUE_ONLY, &U::hue, 0, {0.05, 0, 1.0 / 3}, {0.0917, 0.0917, 0.5}},
        {"no blue", B::BLUE_ONLY, &U::hue, 0, {0.6, 0.3, 0.4}, {0.5, 0.5, 0.5}},
        {"brightness", B::NO_EFFECT, &U::brightness, 0.1F, {0.4, 0.6, 0.2}, {0.5, 0.7, 0.3}},
        {"contrast", B::NO_EFFECT, &U::contrast, 0.5F, {0.4, 0.6, 0.3}, {0.3, 0.7, 0.1}},
        {"half hue", B::NO_EFFECT, &U::hue, 1, {0.9, 0.3, 0.3}, {0.1, 0.7, 0.7}},
        {"third hue", B::NO_EFFECT, &U::hue, 2.0F / 3, {0.9, 0.3, 0.3}, {0.3, 0.9, 0.3}},
        {"gray", B::NO_EFFECT, &U::saturation, -1, {0.9, 0.3, 0.3}, {0.5, 0.5, 0.5}},
        {"saturated", B::NO_EFFECT, &U::saturation, 0.501F, {0.6, 0.4, 0.5}, {0.7, 0.3, 0.5}},
        {"vibrance", B::NO_EFFECT, &U::vibrance, -0.5F, {0.9, 0.3, 0.3}, {0.9, 0.66, 0.66}},
        {"vignette", B::NO_EFFECT, &U::vignettingRadius, 0.5F, {0.4, 0.6, 0.2}, {0.4, 0.6, 0.2}},
        {"shade", B::NO_EFFECT, &U::vignettingAmount, 1000, {0.4, 0.6, 0.2}, {0, 0, 0}},
    };
    QImage picture(8, 8, QImage::Format_RGBA8888);
    for (const auto &[what, effect, control, value, source, expected] : cases) {
        PanoramaUniforms uniforms = uniformsFor({11, 10}, 90, {});
        uniforms.*control = value;
        for (const bool blueFirst : {false, true}) {
            ShaderKey key;
            key.effect = effect;
            key.invertedColors = blueFirst;
            const QColor color = QColor::fromRgbF(source[0], source[1], source[2]);
            picture.fill(blueFirst ? QColor(color.blue(), color.green(), color.red()) : color);
            const QImage image = draw(shader::fragmentText(key), uniforms, picture);
            const QColor seen = image.pixelColor(2, effect == B::TV ? 4 : 3);
            EXPECT_NEAR(seen.redF(), expected[0], 0.01) << what;
            EXPECT_NEAR(seen.greenF(), expected[1], 0.01) << what;
            EXPECT_NEAR(seen.blueF(), expected[2], 0.01) << what;
        }
    }
}

TEST_F(PanoramaPixels, EveryKeyCompilesAndLinks)
{
    for (int number = 0; number < 6 * 5 * 5 * B::LAST_VALUE_EFFECT; ++number) {
        const int input = number % 6, output = number / 6 % 5, stereo = number / 30 % 5;
        const int effect = number / 150;
        ShaderKey key;
        key.projectionSource = input % 4;
        key.quarterTurn = input == 5 || input == 3;
        key.restrictYawPitch = input != 4;
        if (input == 5)
            key.projectionSource = B::FISHEYE_CIRCLE;
        key.projection = output % 4;
        key.forceRectilinear = output == 4;
        key.stereoMode = stereo;
        key.effect = effect;
        // These change one line each, away from the other slots.
        key.invertedColors = (stereo + effect) % 2;
        key.flipY = effect % 2;
        key.overlay = stereo == B::STEREO_3D_SIDEBYSIDE_INVERTED && effect % 2;
        const QString text = shader::fragmentText(key);
        PanoramaProgram program;
        ASSERT_TRUE(program.build(shader::vertexText(), text)) << text.toStdString();
    }
    PanoramaProgram program;
    EXPECT_FALSE(program.build(shader::vertexText(), QStringLiteral("void main(){ broken }")));
    EXPECT_FALSE(bool(program));
}

TEST_F(PanoramaPixels, BlurSpreadsEvenlyAndKeepsTheRows)
{
    const double weights[] = {0.159576912161,  0.147308056121,  0.115876621105,   0.0776744219933,
                              0.0443683338718, 0.0215963866053, 0.00895781211794, 0.0044299121055};
    const QPoint dot(60, 20);
    QImage picture(96, 80, QImage::Format_RGBA8888);
    picture.fill(Qt::black);
    picture.setPixelColor(dot, Qt::white);
    const GLuint texture = test::uploadTexture(picture);
    m_stage.begin(QSize(192, 80));
    FastBlur blur;
    ASSERT_TRUE(blur.draw(m_stage.functions(), texture, picture.size(), m_stage.target(),
                          QRect(96, 0, 96, 80)));
    const QImage image = m_stage.end().mirrored(); // texture rows go up in GL
    for (int i = 0; i < 192 * 80; ++i) {
        const QPoint at(i % 192, i / 192);
        const int dx = std::abs(at.x() - 96 - dot.x()), dy = std::abs(at.y() - dot.y());
        const bool tapped = dx % 2 == 0 && dy % 2 == 0 && dx <= 14 && dy <= 14;
        const double expected = tapped ? 255 * weights[dx / 2] * weights[dy / 2] : 0;
        ASSERT_NEAR(qGreen(image.pixel(at)), expected, 1) << at.x() << "," << at.y();
    }
}

} // namespace
