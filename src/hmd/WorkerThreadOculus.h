#pragma once

// Draws into an Oculus headset; owned by KOculus. The constructor runs on the GUI thread, all else
// on the thread itself, which alone talks to the runtime.

#include "hmd/OculusControls.h"
#include "hmd/OvrRuntime.h"
#include "hmd/TextureBuffer.h"
#include "hmd/WorkerThreadVR.h"
#include "render/CameraMath.h"

#include <array>
#include <memory>
#include <optional>

class QOpenGLFunctions_3_2_Core;

class WorkerThreadOculus : public WorkerThreadVR
{
    Q_OBJECT

public:
    explicit WorkerThreadOculus(KHmd *hmd);
    ~WorkerThreadOculus() override;

protected:
    void run() override;
    void renderLoop() override;
    void headVelocity(float out[3]) override;
    int controllerCommand() override;

private:
    /// How a session or a call of it ended.
    enum class Ending {
        Asked,       ///< this program ends the thread
        RuntimeQuit, ///< the runtime wants the program to leave the headset
        DisplayLost, ///< the display is gone; another session may find it again
        Failed
    };
    using Result = std::optional<Ending>; ///< nothing while the session goes on

    [[nodiscard]] bool initialize();
    void driveDevice();
    [[nodiscard]] Result checked(ovrResult result) const;
    [[nodiscard]] Result openSession();
    void closeSession();
    [[nodiscard]] Ending runSession();
    [[nodiscard]] Result frame();
    [[nodiscard]] Result readStatus();
    void trackHead();
    [[nodiscard]] Result drawEyes();
    [[nodiscard]] Result submit();

    const bool m_isAutomatic; // other families are tried when this one cannot work

    OvrRuntime m_runtime;
    QOpenGLFunctions_3_2_Core *m_functions = nullptr; // of the context
    ovrSession m_session = nullptr;
    ovrHmdDesc m_device = {};
    std::array<std::unique_ptr<TextureBuffer>, ovrEye_Count> m_textures;
    OculusControls m_controls;

    bool m_hadSession = false;
    bool m_wasMounted = false; // on a head, once
    bool m_isVisible = true;   // by the last submission
    std::int64_t m_frameIndex = 0;
    ovrPosef m_eyePoses[ovrEye_Count] = {};
    double m_sampleTime = 0; // seconds of the runtime's clock, as are the next two
    double m_displayTime = 0;
    double m_displayTimeBefore = 0;
    CameraAngles m_head;
    CameraAngles m_headBefore;
};
