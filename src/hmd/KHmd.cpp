#include "hmd/KHmd.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "foundation/KVersion.h"
#include "hmd/HeadMotion.h"
#include "hmd/HeadsetInterface.h"
#include "hmd/HmdMode.h"
#include "hmd/WorkerThreadVR.h"
#include "render/CameraMath.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"

#include <QDateTime>
#include <QMessageBox>

namespace {

const QString kHmdModeKey = QStringLiteral("application/hmd/hmdMode");
const QString kVideoPluginKey = QStringLiteral("application/videoPlugin");
const QString kRestartReasonKey = QStringLiteral("application/hmd/restartReason");
// The headset's thread needs a texture with a name, which only this backend gives.
const QString kHeadsetVideoPlugin = QStringLiteral("vlc");

} // namespace

/// The view's questions, answered from the device and from the interface inside it.
class KHmd::View : public HeadsetView
{
public:
    explicit View(const KHmd *hmd)
        : m_hmd(hmd)
    {}

    bool isActivated() const override { return m_hmd->activated(); }
    std::optional<QMatrix4x4> pose() const override
    {
        const QMatrix4x4 pose = m_hmd->hmdPose();
        return HeadMotion::isPose(pose) ? std::make_optional(pose) : std::nullopt;
    }
    bool isInterfaceActive() const override
    {
        return m_hmd->headsetInterface() && m_hmd->headsetInterface()->isShown();
    }
    QMatrix4x4 interfaceOrientation() const override
    {
        return m_hmd->headsetInterface() ? m_hmd->headsetInterface()->orientation() : QMatrix4x4();
    }
    int interfaceTextureId(InterfaceLayer layer) const override
    {
        return m_hmd->headsetInterface() ? m_hmd->headsetInterface()->textureId(layer) : 0;
    }

private:
    const KHmd *m_hmd;
};

KHmd::KHmd(Application *application, QObject *parent)
    : QObject(parent)
    , m_application(application)
    , m_headsetView(std::make_unique<View>(this))
{}

KHmd::~KHmd()
{
    stopWorker();
}

template <class Value>
void KHmd::assign(Value &field, const Value &value, void (KHmd::*changed)())
{
    if (field == value)
        return;
    field = value;
    emit(this->*changed)();
}

void KHmd::setActivated(bool activated)
{
    if (m_activated.exchange(activated) == activated)
        return;
    if (m_worker)
        m_worker->wake();
    emit activatedChanged();
}

void KHmd::setLensCenterLeft(QPointF centre)
{
    assign(m_lensCenterLeft, centre, &KHmd::lensCenterLeftChanged);
}

void KHmd::setLensCenterRight(QPointF centre)
{
    assign(m_lensCenterRight, centre, &KHmd::lensCenterRightChanged);
}

void KHmd::setScreenCenterLeft(QPointF centre)
{
    assign(m_screenCenterLeft, centre, &KHmd::screenCenterLeftChanged);
}

void KHmd::setScreenCenterRight(QPointF centre)
{
    assign(m_screenCenterRight, centre, &KHmd::screenCenterRightChanged);
}

void KHmd::setScale(QPointF scale)
{
    assign(m_scale, scale, &KHmd::scaleChanged);
}

void KHmd::setScaleIn(QPointF scale)
{
    assign(m_scaleIn, scale, &KHmd::scaleInChanged);
}

void KHmd::setHmdWarpParam(QVector4D coefficients)
{
    assign(m_hmdWarpParam, coefficients, &KHmd::hmdWarpParamChanged);
}

void KHmd::setLogMessage(QString message)
{
    assign(m_logMessage, message, &KHmd::logMessageChanged);
}

void KHmd::setAvailable(bool available)
{
    assign(m_available, available, &KHmd::availableChanged);
}

void KHmd::setShiftYaw(float radians)
{
    const float wrapped = CameraMath::wrapAngle(radians);
    if (m_shiftYaw.exchange(wrapped) != wrapped)
        emit shiftYawChanged();
}

void KHmd::setScaleCorrector(float corrector)
{
    if (m_scaleCorrector.exchange(corrector) != corrector)
        emit scaleCorrectorChanged();
}

QMatrix4x4 KHmd::hmdPose() const
{
    return m_worker ? m_worker->hmdPose() : HeadMotion::noPose();
}

void KHmd::setHeadsetInterface(HeadsetInterface *headsetInterface)
{
    m_interface = headsetInterface;
    if (m_worker)
        m_worker->setHeadsetInterface(headsetInterface);
}

void KHmd::computeFps()
{
    const std::optional<int> fps = m_frameRate.count(QDateTime::currentSecsSinceEpoch());
    if (!fps)
        return;
    QMetaObject::invokeMethod(
        this,
        [this, value = *fps] {
            m_fps = value;
            emit fpsChanged();
        },
        Qt::QueuedConnection);
}

// --- The thread ---------------------------------------------------------------------------------

void KHmd::startWorker(std::unique_ptr<WorkerThreadVR> worker, const QString &sdkName)
{
    if (!worker->prepareContext(m_application->sharedGlContext())) {
        setLogMessage(sdkName + QLatin1String(" SDK initialization failed.\n"
                                              "Unable to initialize opengl context.\n"));
        static_cast<void>(agreeOnMode(false));
        return;
    }
    m_worker = std::move(worker);
    m_worker->setHeadsetInterface(m_interface);
    // A thread that was stopped has been answered for when its signal comes, and another may run.
    connect(
        m_worker.get(), &QThread::finished, this,
        [this, run = ++m_runs] {
            if (m_worker && run == m_runs)
                workerEnded();
        },
        Qt::QueuedConnection);
    m_worker->start(QThread::TimeCriticalPriority);
}

void KHmd::stopWorker()
{
    if (!m_worker)
        return;
    m_worker->stop();
    m_worker->wait();
    workerEnded();
}

void KHmd::workerEnded()
{
    m_worker->wait(); // it has said that it ends, a little before it has
    m_worker.reset();
    setAvailable(false);
    setActivated(false);
    if (KShaderCodeBuilder *builder = m_application->shaderBuilder())
        builder->setHmdMode(false);
    emit workerThreadFinished();
}

// --- The mode -----------------------------------------------------------------------------------

bool KHmd::agreeOnMode(bool detected)
{
    KSettings *settings = m_application->settings();
    HmdModeFacts facts;
    facts.forceOpenGL = settings->get(QStringLiteral("application/advanced/forceopengl")).toBool();
    facts.hostFrames = m_application->sharedMemory();
    facts.hmdMode = settings->get(kHmdModeKey).toBool();
    facts.detected = detected;
    const HmdModeChange change = decideHmdMode(facts);

    KSettingsManager *store = settings->settingsManager();
    const QString lastReason = store->GetString(kRestartReasonKey, QString());
    if (change == HmdModeChange::None) {
        if (!lastReason.isEmpty())
            store->Remove(kRestartReasonKey); // that restart has helped
        return false;
    }
    if (!mayRestart(change, lastReason))
        return false;

    const bool on = change == HmdModeChange::SwitchOn;
    if (on)
        store->Set(kVideoPluginKey, kHeadsetVideoPlugin);
    else
        store->Remove(kVideoPluginKey);
    if (!storeMode(on, reasonOf(change)))
        return false;

    const QString message = on ? tr("HMD detected.\nHMD mode is automatically activated.\n"
                                    "Orbilens Player has to restart.")
                               : tr("No HMD detected.\nHMD mode is automatically deactivated.\n"
                                    "Orbilens Player has to restart.");
    QMetaObject::invokeMethod(this, "displayMessageBoxAndRestart", Qt::QueuedConnection,
                              Q_ARG(QString, message));
    return true;
}

bool KHmd::storeMode(bool hmdMode, const QString &reason)
{
    KSettings *settings = m_application->settings();
    settings->set(kHmdModeKey, hmdMode);
    settings->save();
    settings->settingsManager()->Set(kRestartReasonKey, reason);
    if (!settings->settingsManager()->Flush())
        return false;
    KSettingsManager onDisk = KSettingsManager::ForUser();
    return onDisk.GetBool(kHmdModeKey, !hmdMode) == hmdMode;
}

void KHmd::displayMessageBoxAndRestart(QString message)
{
    QMessageBox::information(nullptr, KVersion::productName(), message);
    if (KGlobalObject *globalObject = m_application->globalObject())
        globalObject->restart();
}
