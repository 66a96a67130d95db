#include "render/CameraMath.h"
#include "render/FastBlur.h"
#include "render/KShaderCodeBuilder.h"
#include "render/PanoramaProgram.h"
#include "support/GlStage.h"
#include "support/PanoramaReference.h"

#include <gtest/gtest.h>

#include <QDir>

#include <cmath>

namespace {

using B = KShaderCodeBuilder;
using shader::ShaderKey;

/// Levels of 255. Rounding of source and result takes 1, the 8 fractional bits that a driver may
/// use to weigh texels take up to 1 more where the pattern is steepest, and drivers approximate
/// inverse trigonometry to about 1e-4 radians, a tenth of a level.
constexpr double kTolerance = 3;

/// More excluded pixels than this would hide a fault.
constexpr double kMostOnEdges = 0.12;

PanoramaUniforms uniformsFor(const QSize &view, float fov, const CameraAngles &angles)
{
    PanoramaUniforms uniforms;
    uniforms.matrix = QuadProgram::fullViewport();
    uniforms.viewport = viewportParameters(view, EyeLayout::Single, 1.0);
    uniforms.matViewInverse = CameraMath::matrixFromAngles(angles);
    uniforms.fov = fov;
    uniforms.cameraYaw = angles.yaw;
    uniforms.cameraPitch = angles.pitch;
    uniforms.yawMin = -CameraMath::kPi;
    uniforms.yawMax = CameraMath::kPi;
    uniforms.pitchMin = -CameraMath::kPi / 2;
    uniforms.pitchMax = CameraMath::kPi / 2;
    const shader::OrvexParameters orvex = shader::orvexParameters(fov);
    uniforms.projScale = orvex.scale;
    uniforms.projectionDistance = orvex.distance;
    return uniforms;
}

class PanoramaPixels : public ::testing::Test
{
protected:
    QImage draw(const ShaderKey &key, const PanoramaUniforms &uniforms, const QImage &picture,
                const QSize &view)
    {
        return draw(shader::fragmentText(key), uniforms, picture, view);
    }

    QImage draw(const QString &fragmentText, const PanoramaUniforms &uniforms,
                const QImage &picture, const QSize &view)
    {
        const GLuint texture = m_stage.texture(picture);
        PanoramaProgram program;
        EXPECT_TRUE(program.build(shader::vertexText(), fragmentText));
        m_stage.begin(view);
        program.draw(m_stage.functions(), uniforms, texture);
        return m_stage.end();
    }

    void expectAsCalculated(const ShaderKey &key, const PanoramaUniforms &uniforms,
                            const QSize &view, const std::string &what)
    {
        const QImage image = draw(key, uniforms, m_pattern, view);
        // Kept to be looked at.
        const QString folder = QStringLiteral(ORBILENS_BINARY_DIR "/artefacts/render");
        QDir().mkpath(folder);
        image.save(folder + QLatin1Char('/') + QString::fromStdString(what) +
                   QLatin1String(".png"));
        const test::PixelComparison result =
            comparePixels(image, test::PanoramaReference(key, uniforms), m_pattern, kTolerance,
                          qRgba(0, 0, 0, 0));
        EXPECT_EQ(result.wrong, 0)
            << what << ", first at " << result.firstWrong.x() << "," << result.firstWrong.y();
        EXPECT_LE(result.onEdges, kMostOnEdges * result.pixels) << what;
    }

    test::GlStage m_stage;
    const QImage m_pattern = test::directionPattern(QSize(512, 512));
};

const char *const kInputs[] = {"equirectangular", "standard", "cubemap", "fisheyecircle"};
const char *const kOutputs[] = {"orvex", "rectilinear", "littleplanet", "fisheye"};

TEST_F(PanoramaPixels, EachProjectionShowsTheDirectionThatItsFormulaTells)
{
    const struct
    {
        CameraAngles angles;
        float fov;
        QSize view;
    } cases[] = {
        {{0, 0, 0}, 90, {120, 80}},
        {{0.7F, -0.4F, 0.3F}, 40, {80, 120}},
        {{-2.6F, 0.9F, -1.2F}, 110, {100, 100}},
        {{3.1F, 1.5F, 0}, 130, {101, 75}},
    };
    for (int input = 0; input < 4; ++input) {
        for (int output = 0; output < 4; ++output) {
            for (const auto &c : cases) {
                ShaderKey key;
                key.projectionSource = input;
                key.projection = output;
                key.quarterTurn = c.angles.yaw > 0;
                expectAsCalculated(key, uniformsFor(c.view, c.fov, c.angles), c.view,
                                   std::string(kInputs[input]) + "-" + kOutputs[output] + "-" +
                                       std::to_string(int(c.fov)));
            }
        }
    }
}

TEST_F(PanoramaPixels, WideFieldsOfView)
{
    const struct
    {
        int output;
        float fov;
    } cases[] = {{B::ORVEX, 60},    {B::ORVEX, 150},   {B::ORVEX, 240}, {B::LITTLE_PLANET, 300},
                 {B::FISHEYE, 240}, {B::FISHEYE, 360}, {B::ORVEX, 300}};
    for (const auto &c : cases) {
        ShaderKey key;
        key.projection = c.output;
        const QSize view(150, 100);
        expectAsCalculated(key, uniformsFor(view, c.fov, {0.4F, 0.2F, 0.1F}), view,
                           std::string("wide-") + kOutputs[c.output] + "-" +
                               std::to_string(int(c.fov)));
    }
}

TEST_F(PanoramaPixels, EachEyeTakesItsHalf)
{
    for (int input : {B::EQUIRECTANGULAR, B::STANDARD, B::CUBEMAP}) {
        for (int stereo = 0; stereo <= B::STEREO_AUTO; ++stereo) {
            for (int eye : {0, 1}) {
                ShaderKey key;
                key.projectionSource = input;
                key.stereoMode = stereo;
                const QSize view(90, 70);
                PanoramaUniforms uniforms = uniformsFor(view, 95, {0.3F, -0.2F, 0});
                uniforms.eye = eye;
                expectAsCalculated(key, uniforms, view,
                                   std::string("stereo-") + kInputs[input] + "-" +
                                       std::to_string(stereo) + (eye ? "-right" : "-left"));
            }
        }
    }
}

TEST_F(PanoramaPixels, PartialPanoramasFillTheirExtentOnly)
{
    const struct
    {
        float yawMin, yawMax, pitchMin, pitchMax;
    } extents[] = {{-1, 1.2F, -0.5F, 0.7F}, {-3.1F, 0, -1.5F, -0.1F}, {0.2F, 0.9F, -1.2F, 1.2F}};
    int number = 0;
    for (const auto &extent : extents) {
        ++number;
        for (const int output : {B::RECTILINEAR, B::ORVEX}) {
            const QSize view(120, 90);
            PanoramaUniforms uniforms = uniformsFor(view, 100, {0.2F, 0.1F, 0.3F});
            uniforms.yawMin = extent.yawMin;
            uniforms.yawMax = extent.yawMax;
            uniforms.pitchMin = extent.pitchMin;
            uniforms.pitchMax = extent.pitchMax;
            ShaderKey key;
            key.projection = output;
            expectAsCalculated(key, uniforms, view,
                               "partial-" + std::to_string(number) + kOutputs[output]);
            key.restrictYawPitch = false;
            expectAsCalculated(key, uniforms, view,
                               "unlimited-" + std::to_string(number) + kOutputs[output]);
        }
    }
}

TEST_F(PanoramaPixels, HeadsetEyesAndInterfacePanel)
{
    const QSize view(110, 90);
    const CameraAngles angles{0.2F, 0.1F, -0.1F};
    ShaderKey eyeKey;
    eyeKey.projection = B::FISHEYE;
    eyeKey.forceRectilinear = true;
    PanoramaUniforms uniforms = uniformsFor(view, 100, angles);
    uniforms.scaleCorrector = 0.8F;
    expectAsCalculated(eyeKey, uniforms, view, "forced-rectilinear");

    for (const int source : {B::EQUIRECTANGULAR, B::STANDARD, B::CUBEMAP}) {
        ShaderKey panelKey;
        panelKey.projectionSource = source;
        panelKey.stereoMode = B::STEREO_3D_OVERUNDER;
        panelKey.projection = B::RECTILINEAR;
        panelKey.overlay = true;
        panelKey.flipY = true;
        PanoramaUniforms panel = uniformsFor(view, 100, angles);
        panel.yawMax = 0.5F; // the medium's limits are not the panel's
        ShaderKey asDrawn = panelKey;
        asDrawn.stereoMode = B::STEREO_2D;
        const QImage image = draw(panelKey, panel, m_pattern, view);
        EXPECT_EQ(image, draw(asDrawn, panel, m_pattern, view));
        expectAsCalculated(asDrawn, panel, view, "panel-" + std::to_string(source));
    }
}

TEST_F(PanoramaPixels, ColoursFollowControlsAndEffects)
{
    using Change = void (*)(PanoramaUniforms &);
    const auto gray = [](double level) { return test::Color{level, level, level}; };
    const Change none = [](PanoramaUniforms &) {};
    const struct
    {
        const char *what;
        test::Color source; // 0 to 1
        int effect;
        Change change;
        test::Color expected; // 0 to 1
    } cases[] = {
        {"neutral", {0.4, 0.6, 0.2}, B::NO_EFFECT, none, {0.4, 0.6, 0.2}},
        {"sepia", {0.4, 0.6, 0.2}, B::SEPIA, none, {0.646, 0.566, 0.376}},
        {"dark", {0.4, 0.6, 0.2}, B::BLACK_AND_WHITE, none, gray(0)},
        {"light", {0.4, 0.7, 0.2}, B::BLACK_AND_WHITE, none, gray(1)},
        {"invert", {0.4, 0.6, 0.2}, B::INVERT, none, {0.6, 0.4, 0.8}},
        {"red kept", {1, 0, 0}, B::RED_ONLY, none, {1, 0, 0}},
        {"red half", {1.0 / 3, 0, 0.05}, B::RED_ONLY, none, {0.5, 0.0917, 0.0917}},
        {"no red", {0.5, 0.5, 0.5}, B::RED_ONLY, none, gray(1.75 / 3)},
        {"yellow kept", {1, 1, 0}, B::YELLOW_ONLY, none, {1, 1, 0}},
        {"no yellow", {0.2, 0.6, 0.4}, B::YELLOW_ONLY, none, gray(1.6 / 3)},
        {"blue kept", {0, 0, 1}, B::BLUE_ONLY, none, {0, 0, 1}},
        {"no blue", {0.6, 0.2, 0.4}, B::BLUE_ONLY, none, gray(1.4 / 3)},
        {"brightness",
         {0.4, 0.6, 0.2},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.brightness = 0.1F; },
         {0.5, 0.7, 0.3}},
        {"contrast",
         {0.4, 0.6, 0.3},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.contrast = 0.5F; },
         {0.3, 0.7, 0.1}},
        {"half hue",
         {0.9, 0.3, 0.3},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.hue = 1; },
         {0.1, 0.7, 0.7}},
        {"third hue",
         {0.9, 0.3, 0.3},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.hue = 2.0F / 3; },
         {0.3, 0.9, 0.3}},
        {"desaturated",
         {0.9, 0.3, 0.3},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.saturation = -1; },
         gray(0.5)},
        {"saturated",
         {0.6, 0.4, 0.5},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.saturation = 0.501F; },
         {0.7, 0.3, 0.5}},
        {"vibrance",
         {0.9, 0.3, 0.3},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.vibrance = -0.5F; },
         {0.9, 0.66, 0.66}},
        {"colour matrix",
         {0.4, 0.6, 0.2},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) {
             u.colorMatrix = QMatrix4x4(0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0.5F, 0, 0, 0, 1);
         },
         {0.2, 0.6, 0.5}},
        {"vignette inside",
         {0.4, 0.6, 0.2},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.vignettingRadius = 0.5F; },
         {0.4, 0.6, 0.2}},
        {"vignette outside",
         {0.4, 0.6, 0.2},
         B::NO_EFFECT,
         [](PanoramaUniforms &u) { u.vignettingAmount = 1000; },
         gray(0)},
    };
    const QSize view(10, 10);
    QImage picture(8, 8, QImage::Format_RGBA8888);
    for (const auto &c : cases) {
        ShaderKey key;
        key.effect = c.effect;
        PanoramaUniforms uniforms = uniformsFor(view, 90, {});
        c.change(uniforms);
        for (const bool blueFirst : {false, true}) {
            key.invertedColors = blueFirst;
            const QColor color = QColor::fromRgbF(c.source[blueFirst ? 2 : 0], c.source[1],
                                                  c.source[blueFirst ? 0 : 2]);
            picture.fill(color);
            const QRgb seen = draw(key, uniforms, picture, view).pixel(2, 3);
            EXPECT_NEAR(qRed(seen), 255 * c.expected[0], 2) << c.what;
            EXPECT_NEAR(qGreen(seen), 255 * c.expected[1], 2) << c.what;
            EXPECT_NEAR(qBlue(seen), 255 * c.expected[2], 2) << c.what;
        }
    }
}

int largestDifference(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.bytesPerLine(); ++x)
            largest = std::max(largest, std::abs(a.constScanLine(y)[x] - b.constScanLine(y)[x]));
    return largest;
}

TEST_F(PanoramaPixels, FixedUniformsChangeNoPicture)
{
    const QSize view(64, 48);
    for (int effect = 0; effect < B::LAST_VALUE_EFFECT; ++effect) {
        ShaderKey key;
        key.effect = effect;
        PanoramaUniforms uniforms = uniformsFor(view, 100, {0.4F, 0.2F, 0.1F});
        const QString text = shader::fragmentText(key);
        const QImage whole = draw(text, uniforms, m_pattern, view);
        const auto drawFixed = [&](const shader::FixedUniforms &fixed) {
            return draw(shader::withFixedUniforms(text, fixed), uniforms, m_pattern, view);
        };
        EXPECT_LE(largestDifference(drawFixed({true, true}), whole), 1) << effect;
        uniforms.yawMax = 0.5F;
        const QImage partial = draw(text, uniforms, m_pattern, view);
        EXPECT_GT(largestDifference(partial, whole), 100);
        EXPECT_LE(largestDifference(drawFixed({true, false}), partial), 1) << effect;
    }
}

TEST_F(PanoramaPixels, TelevisionEffectDrawsLines)
{
    const QSize view(4, 64);
    QImage picture(8, 8, QImage::Format_RGBA8888);
    picture.fill(QColor(127, 127, 127));
    ShaderKey key;
    key.effect = B::TV;
    PanoramaUniforms uniforms = uniformsFor(view, 90, {});
    uniforms.time = 1.25F;
    const QImage image = draw(key, uniforms, picture, view);
    for (int row = 0; row < view.height(); ++row) {
        const double level = 127 / 255.0, t = 1.25;
        const double y = 1 - (row + 0.5) / view.height();
        const double line = 0.5 + (y - 0.5) * (0.9 + 0.1 * std::sin(0.2 * t));
        double expected = 1.4 * level * level;
        expected *= 0.92 + 0.08 * std::sin(60 * t + view.height() * 1.5 * line);
        expected *= 1.3 + 0.04 * (0.9 * std::cos(10 * t) + std::cos(40 * t));
        EXPECT_NEAR(qRed(image.pixel(1, row)), 255 * expected * 0.95, 2) << row;
        EXPECT_NEAR(qGreen(image.pixel(1, row)), 255 * expected * 1.05, 2) << row;
    }
}

TEST_F(PanoramaPixels, EveryKeyCompilesAndLinks)
{
    const auto expectLinks = [](const ShaderKey &key) {
        PanoramaProgram program;
        const QString text = shader::fragmentText(key);
        ASSERT_TRUE(program.build(shader::vertexText(), text)) << text.toStdString();
        const QString fixed = shader::withFixedUniforms(text, {true, true});
        ASSERT_TRUE(program.build(shader::vertexText(), fixed)) << fixed.toStdString();
    };
    struct Input
    {
        int source;
        bool quarterTurn, restricted;
    };
    for (const Input &input :
         {Input{B::EQUIRECTANGULAR, false, false}, Input{B::EQUIRECTANGULAR, false, true},
          Input{B::STANDARD, false, true}, Input{B::CUBEMAP, false, true},
          Input{B::FISHEYE_CIRCLE, false, true}, Input{B::FISHEYE_CIRCLE, true, true}}) {
        for (int output = 0; output < 5; ++output) {
            for (int stereo = 0; stereo < B::STEREO_AUTO; ++stereo) {
                for (int effect = 0; effect < B::LAST_VALUE_EFFECT; ++effect) {
                    ShaderKey key;
                    key.projectionSource = input.source;
                    key.quarterTurn = input.quarterTurn;
                    key.restrictYawPitch = input.restricted;
                    key.projection = output % 4;
                    key.forceRectilinear = output == 4;
                    key.stereoMode = stereo;
                    key.effect = effect;
                    // The two flags change one line each, away from the other slots.
                    key.invertedColors = (stereo + effect) % 2;
                    key.flipY = effect % 2;
                    key.overlay = stereo == B::STEREO_3D_SIDEBYSIDE_INVERTED && effect % 2;
                    ASSERT_NO_FATAL_FAILURE(expectLinks(key));
                }
            }
        }
    }
}

TEST_F(PanoramaPixels, AProgramThatDoesNotLinkIsEmpty)
{
    PanoramaProgram program;
    EXPECT_TRUE(program.build(shader::vertexText(), shader::fragmentText({})));
    EXPECT_FALSE(program.build(shader::vertexText(), QStringLiteral("void main(){ broken }")));
    EXPECT_FALSE(bool(program));
}

TEST_F(PanoramaPixels, BlurSpreadsEvenlyAndKeepsTheRows)
{
    const QSize size(96, 80);
    const QPoint dot(60, 20);
    QImage picture(size, QImage::Format_RGBA8888);
    picture.fill(Qt::black);
    picture.setPixelColor(dot, Qt::white);
    const QRect halfOfTarget(96, 0, 96, 80);
    FastBlur blur;
    GLint target = 0;

    const GLuint texture = m_stage.texture(picture);
    m_stage.begin(QSize(192, 80));
    m_stage.functions()->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);
    ASSERT_TRUE(blur.draw(m_stage.functions(), texture, size, GLuint(target), halfOfTarget));
    // Texture rows go up in GL, those of the result image down.
    const QImage image = m_stage.end();

    const double weights[] = {0.159576912161,   0.147308056121,       0.115876621105,
                              0.0776744219933,  0.0443683338718,      0.0215963866053,
                              0.00895781211794, 0.0044299121055113265};
    for (int row = 0; row < size.height(); ++row) {
        for (int column = 0; column < 192; ++column) {
            const int dx = std::abs(column - 96 - dot.x());
            const int dy = std::abs(size.height() - 1 - row - dot.y());
            const bool tapped = dx % 2 == 0 && dy % 2 == 0 && dx <= 14 && dy <= 14;
            const double expected = tapped ? 255 * weights[dx / 2] * weights[dy / 2] : 0;
            ASSERT_NEAR(qGreen(image.pixel(column, row)), expected, 1) << column << "," << row;
        }
    }
}

} // namespace
