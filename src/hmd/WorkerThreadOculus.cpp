#include "hmd/WorkerThreadOculus.h"

#include "app/Application.h"
#include "foundation/KSignalStack.h"
#include "hmd/HeadMotion.h"
#include "hmd/KHmd.h"
#include "hmd/OculusGeometry.h"
#include "settings/KSettings.h"

#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QOpenGLFunctions_3_2_Core>

#include <algorithm>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(logOculus, "oculus", QtWarningMsg)

// The runtime's hand controllers come and go one by one.
constexpr ovrControllerType kControllers[] = {ovrControllerType_Touch, ovrControllerType_Remote,
                                              ovrControllerType_XBox};

QString failureText(const char *reason)
{
    return QStringLiteral("Oculus SDK initialization failed.\n") + QLatin1String(reason);
}

QString successText()
{
    return QStringLiteral("Oculus SDK initialization successful.\n");
}

} // namespace

WorkerThreadOculus::WorkerThreadOculus(KHmd *hmd)
    : WorkerThreadVR(hmd)
    , m_isAutomatic(
          hmd->application()->settings()->get(QStringLiteral("application/hmd/sdk")).toString() ==
          QLatin1String("auto"))
{}

WorkerThreadOculus::~WorkerThreadOculus() = default;

// --- Start and end ------------------------------------------------------------------------------

void WorkerThreadOculus::run()
{
    const KSignalStack signalStack;
    if (initialize()) {
        driveDevice();
        m_runtime.ovr_Shutdown();
    }
    releaseGraphics();
}

bool WorkerThreadOculus::initialize()
{
    ovrInitParams params = {};
    params.Flags = ovrInit_RequestVersion;
    params.RequestedMinorVersion = kOvrRequestedMinorVersion;
    const ovrResult result = m_runtime.ovr_Initialize(&params);
    if (!ovrFailed(result)) {
        qCDebug(logOculus) << "runtime" << m_runtime.ovr_GetVersionString();
        return true;
    }

    ovrErrorInfo error;
    m_runtime.ovr_GetLastErrorInfo(&error);
    qCDebug(logOculus) << "no runtime:" << result << error.ErrorString;
    log(failureText("Unable to initialize Oculus driver.\nEnsure that you have installed Oculus "
                    "driver or try to unplug/replug all cables.\n"));
    if (m_isAutomatic)
        hmd()->setFallbackRequested();
    else
        static_cast<void>(checkHmdMode(false)); // the thread ends either way
    return false;
}

void WorkerThreadOculus::driveDevice()
{
    const bool detected = m_runtime.ovr_GetHmdDesc(nullptr).Type != ovrHmd_None;
    if (!detected)
        log(failureText("No Oculus detected.\n"));
    if (!detected && m_isAutomatic) {
        // Whether there is a headset at all is for the next family to tell.
        hmd()->setFallbackRequested();
        return;
    }
    if (!checkHmdMode(detected) || !detected)
        return;

    const char *failure = nullptr;
    if (!makeCurrent())
        failure = "OpenGL context cannot be current.\n";
    else if (m_functions = glContext()->versionFunctions<QOpenGLFunctions_3_2_Core>();
             !m_functions || !m_functions->initializeOpenGLFunctions())
        failure = "Cannot get OpenGL 3.2 Core functions.\n";
    if (failure) {
        log(failureText(failure));
        if (m_isAutomatic)
            hmd()->setFallbackRequested();
        return;
    }
    log(successText());
    announceDevice();
    renderLoop();
    glContext()->doneCurrent();
}

void WorkerThreadOculus::renderLoop()
{
    while (!isInterruptionRequested()) {
        const Ending ending = runSession();
        closeSession();
        switch (ending) {
        case Ending::Asked:
            return;
        case Ending::RuntimeQuit:
            log(QStringLiteral("The Oculus driver has ended the program's use of the headset.\n"));
            return;
        case Ending::Failed:
            log(QStringLiteral("Error in Oculus driver, try to restart the driver or restart the "
                               "computer.\n"));
            return;
        case Ending::DisplayLost:
            log(QStringLiteral("The Oculus headset's display was lost.\n"));
            sleepFor(kIdleMilliseconds);
            break;
        }
    }
}

WorkerThreadOculus::Ending WorkerThreadOculus::runSession()
{
    if (const Result ending = openSession()) {
        if (m_isAutomatic && !m_hadSession)
            hmd()->setFallbackRequested();
        return *ending;
    }
    if (std::exchange(m_hadSession, true))
        log(successText()); // the display is back
    while (!isInterruptionRequested()) {
        if (const Result ending = frame())
            return *ending;
    }
    return Ending::Asked;
}

WorkerThreadOculus::Result WorkerThreadOculus::checked(ovrResult result) const
{
    if (!ovrFailed(result))
        return std::nullopt;
    ovrErrorInfo error;
    m_runtime.ovr_GetLastErrorInfo(&error);
    qCInfo(logOculus) << "failure" << result << error.ErrorString;
    return result == ovrError_DisplayLost ? Ending::DisplayLost : Ending::Failed;
}

WorkerThreadOculus::Result WorkerThreadOculus::openSession()
{
    ovrGraphicsLuid luid = {};
    if (ovrFailed(m_runtime.ovr_Create(&m_session, &luid))) {
        m_session = nullptr;
        return Ending::Failed;
    }
    m_device = m_runtime.ovr_GetHmdDesc(m_session);
    for (const ovrEyeType eye : {ovrEye_Left, ovrEye_Right}) {
        const ovrSizei size =
            m_runtime.ovr_GetFovTextureSize(m_session, eye, m_device.DefaultEyeFov[eye], 1.0F);
        m_textures[eye] = std::make_unique<TextureBuffer>(m_runtime, m_session, m_functions,
                                                          QSize(size.w, size.h));
        if (const Result ending = checked(m_textures[eye]->create()))
            return ending;
        setEye(eye, OculusGeometry::eyeProjection(m_device.DefaultEyeFov[eye]), QMatrix4x4(),
               m_textures[eye]->size());
    }
    // A picture around the head has no floor to stand on.
    m_runtime.ovr_SetTrackingOriginType(m_session, ovrTrackingOrigin_EyeLevel);
    m_isVisible = true;
    m_frameIndex = 0;
    return std::nullopt;
}

void WorkerThreadOculus::closeSession()
{
    for (auto &texture : m_textures)
        texture.reset();
    if (m_session)
        m_runtime.ovr_Destroy(m_session);
    m_session = nullptr;
}

// --- A frame ------------------------------------------------------------------------------------

WorkerThreadOculus::Result WorkerThreadOculus::frame()
{
    if (const Result ending = readStatus())
        return ending;
    if (!m_wasMounted)
        sleepFor(OculusGeometry::pauseOfFrame(m_device.DisplayRefreshRate));
    if (!hmd()->activated()) {
        sleepFor(kIdleMilliseconds);
        return std::nullopt;
    }
    onFrameStart();
    trackHead();
    // A headset that lies on the desk turns the window's picture but needs none of its own.
    if (!m_wasMounted)
        return std::nullopt;
    if (m_isVisible) {
        if (const Result ending = drawEyes())
            return ending;
    }
    return submit();
}

WorkerThreadOculus::Result WorkerThreadOculus::readStatus()
{
    ovrSessionStatus status = {};
    if (const Result ending = checked(m_runtime.ovr_GetSessionStatus(m_session, &status)))
        return ending;
    if (status.ShouldQuit)
        return Ending::RuntimeQuit;
    if (status.DisplayLost)
        return Ending::DisplayLost;
    if (status.ShouldRecenter)
        m_runtime.ovr_RecenterTrackingOrigin(m_session);
    m_wasMounted = m_wasMounted || status.HmdMounted;
    return std::nullopt;
}

void WorkerThreadOculus::trackHead()
{
    ovrEyeRenderDesc eyes[ovrEye_Count];
    for (const ovrEyeType eye : {ovrEye_Left, ovrEye_Right})
        eyes[eye] = m_runtime.ovr_GetRenderDesc(m_session, eye, m_device.DefaultEyeFov[eye]);
    const double displayTime = m_runtime.ovr_GetPredictedDisplayTime(m_session, m_frameIndex);
    m_sampleTime = m_runtime.ovr_GetTimeInSeconds();
    const ovrTrackingState tracking = m_runtime.ovr_GetTrackingState(m_session, displayTime, 1);

    const ovrPosef &head = tracking.HeadPose.ThePose;
    const std::optional<CameraAngles> angles = OculusGeometry::headAngles(head.Orientation);
    if (!angles || !(tracking.StatusFlags & ovrStatus_OrientationTracked))
        return; // the last pose stays while the head is not seen
    for (const ovrEyeType eye : {ovrEye_Left, ovrEye_Right})
        m_eyePoses[eye] = OculusGeometry::eyePose(head, eyes[eye].HmdToEyeOffset);
    m_headBefore = std::exchange(m_head, *angles);
    m_displayTimeBefore = std::exchange(m_displayTime, displayTime);
    storePose(CameraMath::matrixFromAngles(*angles));
}

WorkerThreadOculus::Result WorkerThreadOculus::drawEyes()
{
    for (const ovrEyeType eye : {ovrEye_Left, ovrEye_Right}) {
        TextureBuffer &texture = *m_textures[eye];
        if (const Result ending = checked(texture.begin()))
            return ending;
        renderEye(eye);
        if (const Result ending = checked(texture.commit()))
            return ending;
    }
    return std::nullopt;
}

WorkerThreadOculus::Result WorkerThreadOculus::submit()
{
    ovrLayerEyeFov layer = {};
    layer.Header.Type = ovrLayerType_EyeFov;
    layer.Header.Flags = ovrLayerFlag_TextureOriginAtBottomLeft;
    for (const ovrEyeType eye : {ovrEye_Left, ovrEye_Right}) {
        const QSize size = m_textures[eye]->size();
        layer.ColorTexture[eye] = m_textures[eye]->chain();
        layer.Viewport[eye] = {{0, 0}, {size.width(), size.height()}};
        layer.Fov[eye] = m_device.DefaultEyeFov[eye];
        layer.RenderPose[eye] = m_eyePoses[eye];
    }
    layer.SensorSampleTime = m_sampleTime;
    const ovrLayerHeader *const layers[] = {&layer.Header};
    const ovrResult result = m_runtime.ovr_SubmitFrame(m_session, m_frameIndex, nullptr, layers, 1);
    if (const Result ending = checked(result))
        return ending;
    ++m_frameIndex;

    // While something else is seen the runtime returns at once and wants no more pictures.
    m_isVisible = result != ovrSuccess_NotVisible;
    if (m_isVisible)
        hmd()->computeFps();
    else
        sleepFor(OculusGeometry::pauseOfFrame(m_device.DisplayRefreshRate));
    return std::nullopt;
}

// --- What the common part asks ------------------------------------------------------------------

void WorkerThreadOculus::headVelocity(float out[3])
{
    const auto velocity = HeadMotion::angularVelocity(m_headBefore, m_head,
                                                      float(m_displayTime - m_displayTimeBefore));
    std::copy(velocity.begin(), velocity.end(), out);
}

int WorkerThreadOculus::controllerCommand()
{
    const std::uint32_t connected = m_runtime.ovr_GetConnectedControllerTypes(m_session);
    ovrInputState input = {};
    for (const ovrControllerType type : kControllers) {
        ovrInputState state;
        if ((connected & type) != 0 &&
            !ovrFailed(m_runtime.ovr_GetInputState(m_session, type, &state)))
            OculusControls::merge(&input, state);
    }
    return m_controls.command(input);
}
