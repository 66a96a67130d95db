#include "hmd/WorkerThreadOpenVR.h"

#include "foundation/KSignalStack.h"
#include "hmd/EyeTarget.h"
#include "hmd/HeadMotion.h"
#include "hmd/KHmd.h"
#include "hmd/OpenVRMath.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions_3_2_Core>

using namespace openvr;

namespace {

constexpr float kNearPlane = 0.1F; // metres
constexpr float kFarPlane = 30.0F;
constexpr int kNoPoseMilliseconds = 10;
// A cable or a radio link that comes back within this time is not noticed.
constexpr int kAbsentMilliseconds = 1000;
// The runtime's queue is drained over several frames rather than in one.
constexpr int kEventsPerFrame = 64;

const QString kFailed = QStringLiteral("OpenVR SDK initialization failed.\n");

} // namespace

WorkerThreadOpenVR::WorkerThreadOpenVR(KHmd *hmd)
    : WorkerThreadVR(hmd)
{}

WorkerThreadOpenVR::~WorkerThreadOpenVR() = default;

void WorkerThreadOpenVR::run()
{
    const KSignalStack signalStack;
    if (m_runtime.open()) {
        if (checkHmdMode(true))
            serveDevice();
    } else {
        log(kFailed +
            QStringLiteral("Unable to initialize OpenVR runtime.\n%1\n").arg(m_runtime.error()));
        static_cast<void>(checkHmdMode(false));
    }
    releaseGraphics();
    m_runtime.close();
}

void WorkerThreadOpenVR::serveDevice()
{
    if (!m_runtime.fetchTables()) {
        log(kFailed + QStringLiteral("Unable to get %1 interface: %2")
                          .arg(m_runtime.missingInterface(), m_runtime.error()));
        return;
    }
    if (!makeCurrent()) {
        log(kFailed + QStringLiteral("OpenGL context cannot be current.\n"));
        return;
    }
    m_functions = glContext()->versionFunctions<QOpenGLFunctions_3_2_Core>();
    if (!m_functions || !m_functions->initializeOpenGLFunctions()) {
        log(kFailed + QStringLiteral("Cannot get OpenGL 3.2 Core functions.\n"));
        return;
    }
    if (!describeEyes() || !makeTargets()) {
        log(kFailed + QStringLiteral("Cannot make a framebuffer for each eye.\n"));
    } else {
        log(QStringLiteral("OpenVR SDK initialization successful.\n"));
        announceDevice();
        renderLoop();
    }
    for (std::unique_ptr<EyeTarget> &target : m_targets)
        target.reset();
}

bool WorkerThreadOpenVR::describeEyes()
{
    const SystemTable *system = m_runtime.system();
    if (!system)
        return false;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    system->GetRecommendedRenderTargetSize(&width, &height);
    GLint largest = 0;
    m_functions->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (width == 0 || height == 0 || width > std::uint32_t(largest) ||
        height > std::uint32_t(largest))
        return false;
    m_renderSize = QSize(int(width), int(height));
    for (int eye = 0; eye < 2; ++eye)
        setEye(eye, toMatrix(system->GetProjectionMatrix(eye, kNearPlane, kFarPlane)),
               toMatrix(system->GetEyeToHeadTransform(eye)), m_renderSize);
    return true;
}

bool WorkerThreadOpenVR::makeTargets()
{
    for (std::unique_ptr<EyeTarget> &target : m_targets) {
        target = std::make_unique<EyeTarget>(m_functions);
        if (!target->create(m_renderSize))
            return false;
    }
    return true;
}

void WorkerThreadOpenVR::renderLoop()
{
    m_absent.start();
    while (!isInterruptionRequested()) {
        m_runtime.renewTables();
        if (isAskedToQuit()) {
            log(QStringLiteral("The OpenVR runtime has ended.\n"));
            return;
        }
        if (!hmd()->activated()) {
            sleepFor(kIdleMilliseconds);
            m_absent.start();
            continue;
        }
        drawFrame();
        submit();
        m_functions->glFinish();
        m_functions->glClearColor(0, 0, 0, 1);
        m_functions->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        m_functions->glFlush();
        m_functions->glFinish();

        const bool waited = waitForPoses();
        if (isGone(waited)) {
            log(QStringLiteral("The OpenVR headset does not answer any more.\n"));
            return;
        }
        if (!waited)
            sleepFor(kNoPoseMilliseconds);
    }
}

void WorkerThreadOpenVR::drawFrame()
{
    onFrameStart();
    for (int eye = 0; eye < 2; ++eye) {
        EyeTarget &target = *m_targets[std::size_t(eye)];
        target.beginDrawing();
        renderEye(eye);
        target.endDrawing();
        target.resolve();
    }
}

void WorkerThreadOpenVR::submit()
{
    for (int eye = 0; eye < 2; ++eye) {
        const CompositorTable *compositor = m_runtime.compositor();
        if (!compositor)
            return;
        const std::uintptr_t name = m_targets[std::size_t(eye)]->texture();
        const Texture texture{reinterpret_cast<void *>(name), kTextureOpenGL, kColorSpaceGamma};
        // A runtime that shows another program, or its own menu, refuses; the next frame may do.
        compositor->Submit(eye, &texture, nullptr, kSubmitDefault);
    }
}

bool WorkerThreadOpenVR::waitForPoses()
{
    const CompositorTable *compositor = m_runtime.compositor();
    if (!compositor ||
        compositor->WaitGetPoses(m_poses.data(), kMaxDevices, nullptr, 0) != kCompositorErrorNone)
        return false;
    takePose(m_poses[kHeadDevice]);
    return true;
}

void WorkerThreadOpenVR::takePose(const DevicePose &head)
{
    m_frameTime = secondsOfFrame();
    if (head.poseIsValid) {
        storePose(toMatrix(head.deviceToAbsolute));
        m_previousHead = m_head;
        m_head = CameraMath::anglesFromMatrix(hmdPose());
    }
    hmd()->computeFps();
}

bool WorkerThreadOpenVR::isGone(bool waited)
{
    // A wait may also fail because the runtime shows its own menu; the headset is there then.
    const SystemTable *system = m_runtime.system();
    if (waited ? m_poses[kHeadDevice].deviceIsConnected
               : system && system->IsTrackedDeviceConnected(kHeadDevice))
        m_absent.start();
    return m_absent.hasExpired(kAbsentMilliseconds);
}

bool WorkerThreadOpenVR::isAskedToQuit()
{
    const SystemTable *system = m_runtime.system();
    if (!system || !system->PollNextEvent)
        return false;
    Event event = {};
    for (int i = 0; i < kEventsPerFrame && system->PollNextEvent(&event, sizeof(event)); ++i) {
        if (event.type != kEventQuit)
            continue;
        // Unanswered, the runtime would end this program and with it the window.
        if (system->AcknowledgeQuit_Exiting)
            system->AcknowledgeQuit_Exiting();
        return true;
    }
    return false;
}

void WorkerThreadOpenVR::headVelocity(float out[3])
{
    const std::array<float, 3> velocity =
        HeadMotion::angularVelocity(m_previousHead, m_head, m_frameTime);
    std::copy(velocity.begin(), velocity.end(), out);
}

int WorkerThreadOpenVR::controllerCommand()
{
    for (std::uint32_t device = kHeadDevice + 1; device < kMaxDevices; ++device) {
        const SystemTable *system = m_runtime.system();
        if (!system)
            return 0;
        if (!system->IsTrackedDeviceConnected(device) ||
            system->GetTrackedDeviceClass(device) != kClassController)
            continue;
        ControllerState state = {};
        if (!system->GetControllerState(device, &state, sizeof(state)))
            continue;
        if (const int command = openvr::controllerCommand(state))
            return command;
    }
    return 0;
}
