#include "input/realsense/KRealSense.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "input/hands/HandDevices.h"
#include "input/realsense/DepthCameraStart.h"
#include "input/realsense/KRealSenseThread.h"
#include "input/realsense/RealSenseCamera.h"
#include "render/CameraMath.h"
#include "settings/KSettings.h"

#include <QSysInfo>
#include <QtQml>

#include <algorithm>

namespace {

constexpr int kGlideMs = 200;
constexpr int kSecondMs = 1000;
const char kFeedbackScreen[] = "application/realsense/feedbackScreen";

} // namespace

KRealSense::KRealSense(Application *application)
    : KRealSense(application, &HandDevices::createDepthCamera)
{}

KRealSense::KRealSense(Application *application, const CameraMaker &makeCamera)
    : m_application(application)
{
    onSettingsChanged(QLatin1String(kFeedbackScreen));
    connect(application->settings(), &KSettings::settingsChanged, this,
            &KRealSense::onSettingsChanged);
    registerTypes();
    connect(&m_fpsTimer, &QTimer::timeout, this, &KRealSense::computeFps);
    m_fpsTimer.setInterval(kSecondMs);
    startCamera(makeCamera);
}

KRealSense::~KRealSense() = default;

void KRealSense::registerTypes()
{
    const char *const uri = "Orbilens";
    qmlRegisterUncreatableType<KRealSense>(uri, 1, 0, "KRealSense", QStringLiteral("Enums only"));
    qmlRegisterType<RealSenseCamera>(uri, 1, 0, "RealSenseCamera");
}

void KRealSense::startCamera(const CameraMaker &makeCamera)
{
    m_camera = makeCamera();
    const DepthCameraStart start = DepthCameraStart::run(m_camera.get());
    m_logMessage = start.logMessage;
    const QString url = m_application->realSenseSdkUrl();
    if (start.driversMissing && !url.isEmpty())
        m_logLink = QStringLiteral("<a href=\"%1\">%2</a>")
                        .arg(url.toHtmlEscaped(), tr("Download the RealSense runtime"));
    m_available = start.available;
    if (!m_available)
        return;
    m_thread = std::make_unique<KRealSenseThread>(m_camera.get());
    connect(m_thread.get(), &KRealSenseThread::frameReady, this, &KRealSense::processData,
            Qt::QueuedConnection);
    connect(m_thread.get(), &KRealSenseThread::cameraLost, this, &KRealSense::loseCamera,
            Qt::QueuedConnection);
    m_thread->start();
}

template <class Value>
void KRealSense::change(Value &field, const Value &value, void (KRealSense::*changed)())
{
    if (field == value)
        return;
    field = value;
    emit(this->*changed)();
}

bool KRealSense::isSupported() const
{
    return m_camera || QSysInfo::kernelType() == QLatin1String("winnt");
}

void KRealSense::onSettingsChanged(QString key)
{
    if (key == QLatin1String(kFeedbackScreen))
        change(m_feedbackScreen, m_application->settings()->getTyped(key).toBool(),
               &KRealSense::feedbackScreenChanged);
}

void KRealSense::setActivated(bool activated)
{
    if (activated == m_activated || (activated && !m_available))
        return;
    if (activated) {
        m_gestures.start();
        m_fpsTimer.start();
    } else {
        rest();
    }
    m_thread->setWanted(activated);
    change(m_calibrationState, int(m_gestures.calibration()), &KRealSense::calibrationStateChanged);
    change(m_activated, activated, &KRealSense::activatedChanged);
}

void KRealSense::rest()
{
    m_gestures.stop();
    m_fpsTimer.stop();
    m_frames = 0;
    m_pitch.reset();
    m_image = {};
    m_handPoints.clear();
    change(m_fps, 0, &KRealSense::fpsChanged);
    change(m_uiState, int(ControlViewMode), &KRealSense::uiStateChanged);
}

void KRealSense::loseCamera()
{
    setActivated(false);
    change(m_logMessage, m_logMessage + tr("\nThe camera does not answer any more.\n"),
           &KRealSense::logMessageChanged);
    change(m_available, false, &KRealSense::availableChanged);
}

void KRealSense::computeFps()
{
    change(m_fps, m_frames, &KRealSense::fpsChanged);
    m_frames = 0;
}

void KRealSense::processData()
{
    std::optional<DepthFrame> frame = m_thread->take();
    if (!frame || !m_activated)
        return;
    ++m_frames;
    const std::optional<DepthActions> actions =
        m_gestures.update(*frame, playedShare(), m_application->globalObject()->fov());
    m_image = std::move(frame->image);
    m_handPoints = std::move(frame->points);
    emit imageChanged();
    if (actions)
        carryOut(*actions);
}

float KRealSense::playedShare() const
{
    const QObject *player = m_application->globalObject()->mediaPlayer();
    const int duration = player ? player->property("duration").toInt() : 0;
    return duration > 0 ? float(player->property("position").toInt()) / float(duration) : 0.0F;
}

void KRealSense::invokeLoader(const char *method)
{
    if (QObject *loader = m_application->globalObject()->mediaLoader())
        QMetaObject::invokeMethod(loader, method);
}

void KRealSense::carryOut(const DepthActions &actions)
{
    change(m_calibrationState, int(m_gestures.calibration()), &KRealSense::calibrationStateChanged);
    if (actions.seekProgression)
        change(m_seekProgression, *actions.seekProgression, &KRealSense::seekProgressionChanged);
    change(m_uiState, int(actions.seeking ? SeekMode : ControlViewMode),
           &KRealSense::uiStateChanged);
    for (const QByteArray &id : actions.fired)
        emit gestureFired(QString::fromLatin1(id));
    QObject *player = m_application->globalObject()->mediaPlayer();
    if (actions.seekEnds && player) {
        const int position =
            qRound(double(m_seekProgression) * player->property("duration").toDouble());
        player->setProperty("position", position);
        // A backend learns of the new position by this.
        QMetaObject::invokeMethod(player, "seek", Q_ARG(QVariant, position));
        QMetaObject::invokeMethod(player, "play");
    }
    if (actions.playPause)
        invokeLoader("playPause");
    for (int i = 0; i < std::abs(actions.volumeSteps); ++i)
        invokeLoader(actions.volumeSteps > 0 ? "volumeUp" : "volumeDown");
    moveCamera(actions);
}

void KRealSense::moveCamera(const DepthActions &actions)
{
    KGlobalObject *camera = m_application->globalObject();
    if (actions.yaw != 0)
        camera->interpolateValue("yaw", actions.yaw, kGlideMs, true);
    if (actions.pitch != 0) {
        constexpr float kPole = CameraMath::kPi / 2;
        m_pitch = std::clamp(m_pitch.value_or(camera->pitch()) + actions.pitch, -kPole, kPole);
        camera->interpolateValue("pitch", *m_pitch, kGlideMs);
    }
    if (!actions.moving)
        m_pitch.reset();
    if (actions.fov) {
        const float fov =
            std::max(camera->fovLimitMin(), std::min(*actions.fov, camera->fovLimitMax()));
        camera->interpolateValue("fov", fov, kGlideMs);
    }
}
