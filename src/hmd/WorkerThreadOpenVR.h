#pragma once

// The thread that draws into an OpenVR headset: opens the session with the runtime, draws each eye
// into a multisampled target, and hands both over in step with the device. Owned by KOpenVR.

#include "hmd/OpenVRRuntime.h"
#include "hmd/WorkerThreadVR.h"
#include "render/CameraMath.h"

class EyeTarget;
class QOpenGLFunctions_3_2_Core;

class WorkerThreadOpenVR : public WorkerThreadVR
{
    Q_OBJECT

public:
    explicit WorkerThreadOpenVR(KHmd *hmd);
    ~WorkerThreadOpenVR() override;

protected:
    void run() override;
    void renderLoop() override;
    void headVelocity(float out[3]) override;
    int controllerCommand() override;

private:
    void serveDevice();
    [[nodiscard]] bool describeEyes();
    [[nodiscard]] bool makeTargets();
    void drawFrame();
    void submit();
    [[nodiscard]] bool waitForPoses();
    void takePose(const openvr::DevicePose &head);
    [[nodiscard]] bool isGone(bool waited);
    [[nodiscard]] bool isAskedToQuit();

    // All of the run alone.
    OpenVRRuntime m_runtime;
    QOpenGLFunctions_3_2_Core *m_functions = nullptr;
    QSize m_renderSize;
    std::array<std::unique_ptr<EyeTarget>, 2> m_targets;
    std::array<openvr::DevicePose, openvr::kMaxDevices> m_poses = {};
    CameraAngles m_previousHead;
    CameraAngles m_head;
    float m_frameTime = 0;  // seconds
    QElapsedTimer m_absent; // since the headset last answered
};
