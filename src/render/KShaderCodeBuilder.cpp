#include "render/KShaderCodeBuilder.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/ShaderText.h"
#include "settings/KSettings.h"

namespace {

/// Stores and tells whether anything changed.
template <class Value>
bool assign(Value &member, const Value &value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

} // namespace

KShaderCodeBuilder::KShaderCodeBuilder(Application *application)
    : m_application(application)
{
    if (KSettings *settings = application->settings()) {
        m_projection = settings->get(QStringLiteral("instance/output/projection")).toInt();
        m_stereoMode = settings->get(QStringLiteral("instance/input/stereoscopy")).toInt();
        m_projectionSource = settings->get(QStringLiteral("instance/input/projection")).toInt();
    }
    if (KGlobalObject *globalObject = application->globalObject()) {
        connect(this, &KShaderCodeBuilder::projectionChanged, globalObject,
                &KGlobalObject::onProjectionChanged);
        connect(this, &KShaderCodeBuilder::projectionSourceChanged, globalObject,
                &KGlobalObject::onProjectionChanged);
    }
}

void KShaderCodeBuilder::setHmdMode(bool hmdMode)
{
    if (assign(m_hmdMode, hmdMode))
        emit hmdModeChanged();
}

void KShaderCodeBuilder::setEffect(int effect)
{
    if (assign(m_effect, effect))
        emit effectChanged();
}

void KShaderCodeBuilder::setProjection(int projection)
{
    if (assign(m_projection, projection))
        emit projectionChanged();
}

void KShaderCodeBuilder::setStereoMode(int stereoMode)
{
    if (assign(m_stereoMode, stereoMode))
        emit stereoModeChanged();
}

void KShaderCodeBuilder::setProjectionSource(int projectionSource)
{
    if (assign(m_projectionSource, projectionSource))
        emit projectionSourceChanged();
}

void KShaderCodeBuilder::setRotationSource(int rotationSource)
{
    if (assign(m_rotationSource, rotationSource))
        emit rotationSourceChanged();
}

void KShaderCodeBuilder::setInvertedColors(bool invertedColors)
{
    if (assign(m_invertedColors, invertedColors))
        emit invertedColorsChanged();
}

void KShaderCodeBuilder::setTexturePixelFormat(const QString &texturePixelFormat)
{
    if (assign(m_texturePixelFormat, texturePixelFormat))
        emit texturePixelFormatChanged();
}

void KShaderCodeBuilder::setNextEffect()
{
    const int next = m_effect + 1;
    setEffect(next >= LAST_VALUE_EFFECT ? int(NO_EFFECT) : next);
}

void KShaderCodeBuilder::setNextProjection()
{
    const int next = m_projection + 1;
    m_application->settings()->set(QStringLiteral("instance/output/projection"),
                                   next >= LAST_VALUE_PROJECTION ? int(ORVEX) : next);
}

void KShaderCodeBuilder::switchEyeStereoscopy()
{
    switch (m_stereoMode) {
    case STEREO_3D_OVERUNDER:
        setStereoMode(STEREO_3D_OVERUNDER_INVERTED);
        break;
    case STEREO_3D_OVERUNDER_INVERTED:
        setStereoMode(STEREO_3D_OVERUNDER);
        break;
    case STEREO_3D_SIDEBYSIDE:
        setStereoMode(STEREO_3D_SIDEBYSIDE_INVERTED);
        break;
    case STEREO_3D_SIDEBYSIDE_INVERTED:
        setStereoMode(STEREO_3D_SIDEBYSIDE);
        break;
    default:
        break;
    }
}

QString KShaderCodeBuilder::vertexShaderCode() const
{
    return shader::vertexText();
}

QString KShaderCodeBuilder::fragmentShaderCode(bool forceRectilinear, bool overlay, bool flipY)
{
    const bool hostFrames = m_application->option(QStringLiteral("adobeplugin")).toBool();
    if (hostFrames)
        m_invertedColors = true;

    shader::ShaderKey key;
    key.projectionSource = m_projectionSource;
    key.projection = m_projection;
    key.stereoMode = m_stereoMode;
    key.effect = m_effect;
    key.quarterTurn = m_rotationSource == 2;
    key.restrictYawPitch = m_restrictYawPitch;
    // Shared frames hold blue first, also when a setting and not the option turned them on.
    key.invertedColors = m_invertedColors || m_application->sharedMemory();
    key.forceRectilinear = forceRectilinear;
    key.overlay = overlay;
    key.flipY = flipY || hostFrames;
    return shader::fragmentText(key);
}

QString KShaderCodeBuilder::blitShaderCode() const
{
    return shader::blitText(m_invertedColors);
}

QPair<float, float> KShaderCodeBuilder::orvexProjectionParameters(float fov)
{
    const shader::OrvexParameters parameters = shader::orvexParameters(fov);
    return {parameters.scale, parameters.distance};
}
