#include "app/KGlobalObject.h"

#include "app/Application.h"
#include "app/Deployment.h"
#include "app/FovLimits.h"
#include "app/KQQuickView.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"

#include <QFile>
#include <QPropertyAnimation>

#include <cmath>

namespace {

constexpr int kMatrixTimerMs = 5000;
constexpr float kDefaultFov = 90;
constexpr float kFlatPictureFov = 180;
/// Larger files are no camera path; the longest real ones are some hundred kilobytes.
constexpr qint64 kKeyPointFileLimit = 16 * 1024 * 1024;

} // namespace

KGlobalObject::KGlobalObject(Application *application, QObject *parent)
    : QObject(parent)
    , m_application(application)
    , m_yawMin(-CameraMath::kPi)
    , m_yawMax(CameraMath::kPi)
    , m_pitchMin(-CameraMath::kPi / 2)
    , m_pitchMax(CameraMath::kPi / 2)
{
    m_matrixTimer.setSingleShot(true);
    m_matrixTimer.setInterval(kMatrixTimerMs);

    m_imageTimer.setSingleShot(true);
    connect(&m_imageTimer, &QTimer::timeout, this, &KGlobalObject::imageTimeoutSetNext);
    connect(this, &KGlobalObject::yawChanged, this, &KGlobalObject::resetYawInterpolate);
    connect(this, &KGlobalObject::pitchChanged, this, &KGlobalObject::resetPitchInterpolate);
    connect(m_application->settings(), &KSettings::settingsChanged, this,
            &KGlobalObject::onSettingsChanged);

    m_touchMode = setting("instance/general/touchMode").toBool();
    m_loopMode = setting("instance/general/loopMode").toInt() % 3;
    applyDisplay(setting("instance/output/display").toString());
    onSettingsChanged(QStringLiteral("application/playlist/imageDisplayDuration"));
    onSettingsChanged(QStringLiteral("application/playlist/imageDisplayDurationNone"));
}

KGlobalObject::~KGlobalObject() = default;

QVariant KGlobalObject::setting(const char *key) const
{
    return m_application->settings()->get(QLatin1String(key));
}

// --- Camera -----------------------------------------------------------------------------------

void KGlobalObject::storeAngle(float &field, float value, void (KGlobalObject::*changed)())
{
    if (!std::isfinite(value))
        return;
    const float wrapped = CameraMath::wrapAngle(value);
    if (wrapped == field)
        return;
    field = wrapped;
    emit(this->*changed)();
}

void KGlobalObject::storeMatrix(const QMatrix4x4 &matrix)
{
    m_matrixTimer.start();
    m_rotationMatrix = matrix;
    emit rotationMatrixChanged();
}

void KGlobalObject::rebuildMatrix()
{
    const QMatrix4x4 matrix = CameraMath::matrixFromAngles(
        {m_yaw + m_offsetYaw, m_pitch + m_offsetPitch, m_roll + m_offsetRoll});
    if (matrix != m_rotationMatrix)
        storeMatrix(matrix);
}

void KGlobalObject::setYaw(float yaw, bool updateMatrix)
{
    const float before = m_yaw;
    storeAngle(m_yaw, yaw, &KGlobalObject::yawChanged);
    if (updateMatrix && m_yaw != before)
        rebuildMatrix();
}

void KGlobalObject::setPitch(float pitch, bool updateMatrix)
{
    const float before = m_pitch;
    storeAngle(m_pitch, pitch, &KGlobalObject::pitchChanged);
    if (updateMatrix && m_pitch != before)
        rebuildMatrix();
}

void KGlobalObject::setRoll(float roll, bool updateMatrix)
{
    const float before = m_roll;
    storeAngle(m_roll, roll, &KGlobalObject::rollChanged);
    if (updateMatrix && m_roll != before)
        rebuildMatrix();
}

void KGlobalObject::setFov(float fov, bool reset)
{
    if (!std::isfinite(fov))
        return;
    const bool inside = fov >= m_fovLimitMin && fov <= m_fovLimitMax;
    if (inside)
        storeFov(fov);
    else if (reset)
        storeFov(kDefaultFov);
    else
        storeFov(fov > m_fovLimitMax ? m_fovLimitMax : m_fovLimitMin);
}

void KGlobalObject::storeFov(float fov)
{
    if (fov == m_fov)
        return;
    m_fov = fov;
    emit fovChanged();
    setPitch(m_pitch);
}

void KGlobalObject::setLimit(float &field, float value, void (KGlobalObject::*changed)())
{
    if (!std::isfinite(value) || field == value)
        return;
    field = value;
    emit(this->*changed)();
}

void KGlobalObject::setYawMin(float value)
{
    setLimit(m_yawMin, value, &KGlobalObject::yawMinChanged);
}

void KGlobalObject::setYawMax(float value)
{
    setLimit(m_yawMax, value, &KGlobalObject::yawMaxChanged);
}

void KGlobalObject::setPitchMin(float value)
{
    setLimit(m_pitchMin, value, &KGlobalObject::pitchMinChanged);
}

void KGlobalObject::setPitchMax(float value)
{
    setLimit(m_pitchMax, value, &KGlobalObject::pitchMaxChanged);
}

void KGlobalObject::setYawInterpolate(float value)
{
    if (!std::isfinite(value))
        return;
    m_yawInterpolate = value;
    emit yawInterpolateChanged();
    setYaw(value);
}

void KGlobalObject::setPitchInterpolate(float value)
{
    if (!std::isfinite(value))
        return;
    m_pitchInterpolate = value;
    emit pitchInterpolateChanged();
    setPitch(value);
}

void KGlobalObject::resetYawInterpolate()
{
    const QPropertyAnimation *animation = m_animations.value(QStringLiteral("yawInterpolate"));
    if (!animation || animation->state() != QAbstractAnimation::Running)
        m_yawInterpolate = m_yaw;
}

void KGlobalObject::resetPitchInterpolate()
{
    const QPropertyAnimation *animation = m_animations.value(QStringLiteral("pitchInterpolate"));
    if (!animation || animation->state() != QAbstractAnimation::Running)
        m_pitchInterpolate = m_pitch;
}

void KGlobalObject::setRotationMatrix(const QMatrix4x4 &matrix, bool updateAngles,
                                      bool restartTimer)
{
    if (matrix == m_rotationMatrix)
        return;
    for (int i = 0; i < 16; ++i) {
        if (!std::isfinite(matrix.constData()[i]))
            return;
    }
    if (restartTimer)
        m_matrixTimer.start();
    m_rotationMatrix = matrix;
    emit rotationMatrixChanged();
    if (!updateAngles)
        return;
    const CameraAngles angles = CameraMath::anglesFromMatrix(matrix);
    setYaw(angles.yaw, false);
    setPitch(angles.pitch, false);
    setRoll(angles.roll, false);
}

void KGlobalObject::setOffsetMatrix(const QMatrix4x4 &matrix)
{
    if (matrix == m_offsetMatrix)
        return;
    m_offsetMatrix = matrix;
    emit rotationMatrixChanged();
}

void KGlobalObject::setOrientationOffset(float yaw, float pitch, float roll)
{
    if (!std::isfinite(yaw) || !std::isfinite(pitch) || !std::isfinite(roll))
        return;
    m_offsetYaw = yaw;
    m_offsetPitch = pitch;
    m_offsetRoll = roll;
    rebuildMatrix();
}

void KGlobalObject::interpolateValue(const QByteArray &property, float newValue, int duration,
                                     bool cumul)
{
    const QVariant current = this->property(property.constData());
    if (!current.canConvert<float>() || !std::isfinite(newValue))
        return;
    const QString name = QString::fromLatin1(property);
    QPropertyAnimation *animation = m_animations.value(name);
    if (!animation) {
        animation = new QPropertyAnimation(this, property, this);
        animation->setEasingCurve(QEasingCurve::OutQuad);
        m_animations.insert(name, animation);
    }

    const bool running = animation->state() == QAbstractAnimation::Running;
    float target = newValue;
    if (cumul)
        target += running ? animation->endValue().toFloat() : current.toFloat();
    const QVariant start = running ? animation->currentValue() : current;
    animation->stop();
    animation->setDuration(qMax(0, duration));
    animation->setStartValue(start.toFloat());
    animation->setEndValue(target);
    animation->start();
}

void KGlobalObject::stopCameraAnimation()
{
    for (const char *name : {"yaw", "pitch", "yawInterpolate", "pitchInterpolate"}) {
        if (QPropertyAnimation *animation = m_animations.value(QLatin1String(name)))
            animation->stop();
    }
}

void KGlobalObject::setFovLimits()
{
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder)
        return;
    const FovLimits limits = fovLimits(builder->projectionSource(), builder->projection());
    setLimit(m_fovLimitMax, limits.max, &KGlobalObject::fovLimitMaxChanged);
    setLimit(m_fovLimitMin, limits.min, &KGlobalObject::fovLimitMinChanged);
}

void KGlobalObject::onProjectionChanged()
{
    setFovLimits();
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    const bool flat = builder && builder->projectionSource() == KShaderCodeBuilder::STANDARD;
    setFov(flat ? kFlatPictureFov : m_fov);
}

float KGlobalObject::clampPitch(float pitch) const
{
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder || builder->projectionSource() != KShaderCodeBuilder::STANDARD)
        return CameraMath::wrapAngle(pitch);
    const float half = m_fov * 0.0174532925F / 2;
    const float highest = -m_pitchMin - half;
    const float lowest = -m_pitchMax + half;
    return pitch > highest ? highest : std::max(lowest, pitch);
}

void KGlobalObject::resetYawPitchRollFov(const QVariantMap &metadata)
{
    const auto radians = [&metadata](const char *key) {
        return metadata.value(QLatin1String(key)).toFloat() * CameraMath::kDegToRad;
    };
    setYaw(radians("Initial yaw"), false);
    setPitch(radians("Initial pitch"), false);
    setRoll(radians("Initial roll"), false);
    rebuildMatrix();

    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    const bool flat = builder && builder->projectionSource() == KShaderCodeBuilder::STANDARD;
    setFov(flat ? kFlatPictureFov : kDefaultFov);
    rebuildMatrix();
}

void KGlobalObject::resetYawPitchRollFov()
{
    resetYawPitchRollFov(currentMetadata());
}

void KGlobalObject::buildKeyPoints(const QVariant &url)
{
    m_keyPoints.clear();
    const QString path = KeyPoints::filePath(url.toUrl().toLocalFile());
    if (path.isEmpty())
        return;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && file.size() <= kKeyPointFileLimit)
        m_keyPoints = KeyPoints::parse(file.readAll());
}

void KGlobalObject::interpolateKeyPoints(int time)
{
    if (m_keyPoints.size() < 2)
        return;
    const KeyPointPose pose = KeyPoints::poseAt(m_keyPoints, time);
    setRotationMatrix(CameraMath::matrixFromQuaternion(pose.rotation), true, true);
    setFov(pose.fov);
    rebuildMatrix();
    // The path plays on at each position report; only a change is worth a signal to everybody.
    static const QString kProjection = QStringLiteral("instance/output/projection");
    KSettings *settings = m_application->settings();
    if (settings->get(kProjection).toInt() != pose.projection)
        settings->set(kProjection, pose.projection);
}

void KGlobalObject::onTextureSizeChanged()
{
    QObject *player = mediaPlayer();
    const KTextureProvider *provider = m_application->textureProvider();
    if (!player || !provider)
        return;
    QVariantMap metadata = currentMetadata();
    metadata.insert(QStringLiteral("Texture size"), provider->textureSize());
    player->setProperty("fileMetadata", metadata);
}

// --- Settings and display ---------------------------------------------------------------------

bool KGlobalObject::touchTable() const
{
    return m_application->option(QStringLiteral("touchtable")).toBool();
}

bool KGlobalObject::adobePlugin() const
{
    return m_application->option(QStringLiteral("adobeplugin")).toBool();
}

int KGlobalObject::projectionSourceSetting() const
{
    return setting("instance/input/projection").toInt();
}

void KGlobalObject::applyDisplay(const QString &display)
{
    const auto store = [this](bool &field, bool value, void (KGlobalObject::*changed)()) {
        if (field == value)
            return;
        field = value;
        emit(this->*changed)();
    };
    bool split = false;
    bool tv3d = false;
    int output = StandardDisplay;
    if (display == QLatin1String("3d")) {
        split = tv3d = true;
        output = Display3D;
    } else if (display == QLatin1String("split")) {
        split = true;
        output = SplitDisplay;
    } else if (display != QLatin1String("standard")) {
        return;
    }
    store(m_splitView, split, &KGlobalObject::splitViewChanged);
    store(m_tv3dView, tv3d, &KGlobalObject::tv3dViewChanged);
    m_outputDisplay = output;
    emit outputDisplayChanged();
}

void KGlobalObject::onSettingsChanged(const QString &key)
{
    const QVariant value = m_application->settings()->get(key);
    if (key == QLatin1String("instance/output/projection")) {
        if (KShaderCodeBuilder *builder = m_application->shaderBuilder())
            builder->setProjection(value.toInt());
    } else if (key == QLatin1String("instance/input/projection")) {
        emit projectionSourceSettingChanged();
        resolveProjection(currentMetadata());
    } else if (key == QLatin1String("instance/input/stereoscopy")) {
        resolveStereoMode(currentMetadata());
    } else if (key == QLatin1String("instance/output/display")) {
        applyDisplay(value.toString());
    } else if (key == QLatin1String("instance/general/touchMode")) {
        if (m_touchMode != value.toBool()) {
            m_touchMode = value.toBool();
            emit touchModeChanged();
        }
    } else if (key == QLatin1String("instance/general/loopMode")) {
        const int mode = value.toInt() % 3;
        if (m_loopMode != mode) {
            m_loopMode = mode;
            emit loopModeChanged();
        }
    } else if (key == QLatin1String("application/playlist/imageDisplayDuration")) {
        m_imageDisplayDuration = int(qBound(0.0, value.toDouble() * 1000, 2147483647.0));
    } else if (key == QLatin1String("application/playlist/imageDisplayDurationNone")) {
        m_imageDisplayDurationNone = value.toBool();
    }
}

QString KGlobalObject::documentationUrl() const
{
    return m_application->deployment().documentationUrl;
}

QString KGlobalObject::privacyUrl() const
{
    return m_application->deployment().privacyUrl;
}
