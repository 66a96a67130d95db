#include "render/ShaderText.h"

#include "render/KShaderCodeBuilder.h"
#include "render/ShaderPieces.h"

#include <cmath>

namespace shader {

namespace {

const char *outputPiece(int projection)
{
    switch (projection) {
    case KShaderCodeBuilder::RECTILINEAR:
        return pieces::rectilinear;
    case KShaderCodeBuilder::LITTLE_PLANET:
        return pieces::littlePlanet;
    case KShaderCodeBuilder::FISHEYE:
        return pieces::fisheye;
    default:
        return pieces::orvex;
    }
}

const char *stereoPiece(int stereoMode)
{
    switch (stereoMode) {
    case KShaderCodeBuilder::STEREO_3D_OVERUNDER:
        return pieces::overUnder;
    case KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE:
        return pieces::sideBySide;
    case KShaderCodeBuilder::STEREO_3D_OVERUNDER_INVERTED:
        return pieces::overUnderInverted;
    case KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE_INVERTED:
        return pieces::sideBySideInverted;
    default:
        return "";
    }
}

const char *effectPiece(int effect)
{
    switch (effect) {
    case KShaderCodeBuilder::SEPIA:
        return pieces::sepia;
    case KShaderCodeBuilder::BLACK_AND_WHITE:
        return pieces::blackAndWhite;
    case KShaderCodeBuilder::TV:
        return pieces::tv;
    case KShaderCodeBuilder::INVERT:
        return pieces::invert;
    case KShaderCodeBuilder::RED_ONLY:
        return pieces::redOnly;
    case KShaderCodeBuilder::YELLOW_ONLY:
        return pieces::yellowOnly;
    case KShaderCodeBuilder::BLUE_ONLY:
        return pieces::blueOnly;
    default:
        return "";
    }
}

void appendInputPiece(QString &text, const ShaderKey &key)
{
    switch (key.projectionSource) {
    case KShaderCodeBuilder::CUBEMAP:
        text += QLatin1String(pieces::cubemap);
        break;
    case KShaderCodeBuilder::FISHEYE_CIRCLE:
        if (key.quarterTurn)
            text += QLatin1String(pieces::quarterTurn);
        text += QLatin1String(pieces::fisheyeCircle);
        break;
    default:
        text += QLatin1String(pieces::equirectangular);
        if (key.restrictYawPitch)
            text += QLatin1String(pieces::yawPitchLimits);
    }
}

} // namespace

QString vertexText()
{
    return QLatin1String(pieces::vertex);
}

QString fragmentText(const ShaderKey &requested)
{
    ShaderKey key = requested;
    if (key.overlay) {
        // The panel is laid out on a whole sphere, whatever the medium behind it looks like.
        key.projectionSource = KShaderCodeBuilder::EQUIRECTANGULAR;
        key.restrictYawPitch = false;
    }

    QString text;
    text.reserve(8192);
    text += QLatin1String(pieces::header);
    text += QLatin1String(pieces::uniforms);
    text += QLatin1String(pieces::helpers);

    text += QLatin1String("vec2 p(in float a, in vec2 fragCoord){\n");
    if (key.projectionSource == KShaderCodeBuilder::STANDARD) {
        text += QLatin1String(pieces::flatPanning);
    } else {
        text += QLatin1String(
            outputPiece(key.forceRectilinear ? KShaderCodeBuilder::RECTILINEAR : key.projection));
        if (key.forceRectilinear)
            text += QLatin1String(pieces::scaleCorrector);
        text += QLatin1String(pieces::toWorld);
        appendInputPiece(text, key);
    }
    text += QLatin1String("return uv;}\n");

    text += QLatin1String(pieces::mainStart);
    if (key.flipY)
        text += QLatin1String("a.y = 1.0 - a.y;\n");
    if (key.overlay)
        text += QLatin1String(pieces::planarPanel);
    text += QLatin1String(pieces::discardOutside);
    if (key.overlay) {
        text += QLatin1String(pieces::sampleOverlay);
    } else {
        text += QLatin1String(stereoPiece(key.stereoMode));
        text += QLatin1String("float alpha = 1.0;\n");
        text += QLatin1String(key.invertedColors ? "color = texture2D(uSampler,a).bgr;\n"
                                                 : "color = texture2D(uSampler,a).rgb;\n");
    }
    text += QLatin1String(pieces::colorControls);
    text += QLatin1String(effectPiece(key.effect));
    text += QLatin1String(pieces::mainEnd);
    return text;
}

QString withFixedUniforms(QString fragmentText, const FixedUniforms &fixed)
{
    const struct
    {
        bool known;
        const char *type;
        const char *name;
        const char *value;
    } constants[] = {
        {fixed.neutralColors, "mat4", "uColorMatrix", "mat4(1.0)"},
        {fixed.neutralColors, "float", "uBrightness", "0.0"},
        {fixed.neutralColors, "float", "uContrast", "0.0"},
        {fixed.neutralColors, "float", "uHue", "0.0"},
        {fixed.neutralColors, "float", "uSaturation", "0.0"},
        {fixed.neutralColors, "float", "uVibrance", "0.0"},
        {fixed.neutralColors, "float", "uTime", "0.0"},
        {fixed.neutralColors, "float", "uVignettingRadius", "0.0"},
        {fixed.neutralColors, "float", "uVignettingAmount", "0.0"},
        {fixed.wholeSphere, "float", "uYawMin", "-pi"},
        {fixed.wholeSphere, "float", "uYawMax", "pi"},
        {fixed.wholeSphere, "float", "uPitchMin", "-halfpi"},
        {fixed.wholeSphere, "float", "uPitchMax", "halfpi"},
    };
    for (const auto &constant : constants) {
        if (!constant.known)
            continue;
        const QString declaration =
            QStringLiteral("%1 %2").arg(QLatin1String(constant.type), QLatin1String(constant.name));
        fragmentText.replace(
            QLatin1String("uniform ") + declaration + QLatin1Char(';'),
            QStringLiteral("const %1 = %2;").arg(declaration, QLatin1String(constant.value)));
    }
    return fragmentText;
}

QString blitText(bool invertedColors)
{
    return QLatin1String(pieces::blitStart) +
           QLatin1String(invertedColors
                             ? "gl_FragColor = vec4(color.b,color.g,color.r,color.a);\n}\n"
                             : "gl_FragColor = vec4(color.r,color.g,color.b,color.a);\n}\n");
}

QString dimText()
{
    return QLatin1String("void main(){\ngl_FragColor = vec4(0.0, 0.0, 0.0, 0.5);\n}\n");
}

OrvexParameters orvexParameters(float fov)
{
    constexpr double pi = 3.14159265358979323846;
    double distance = 0.0;
    if (fov > 180.0f) {
        distance = 1.0;
    } else if (fov >= 60.0f) {
        const double t = (double(fov) - 60.0) / 120.0;
        distance = (1.0 + std::sin((2.0 * t - 1.0) * pi / 2.0)) * 0.5;
    }
    const float h = float(double(fov) * pi / 360.0);
    const double scale =
        (1.0 + distance) * std::sin(double(h)) / (distance - std::cos(pi - double(h)));
    return {float(scale), float(distance)};
}

} // namespace shader
