#pragma once

// The Oculus runtime, a library of the user's machine bound by name when it is first initialised;
// owned by WorkerThreadOculus, used on its thread only.
//
// A method whose entry point is missing, or that is called before ovr_Initialize has succeeded in
// loading the library, answers ovrError_NotInitialized; one that returns no ovrResult answers
// zeros, one that returns a text kNoLibraryText.

#include "hmd/OvrTypes.h"

#include <QFunctionPointer>
#include <QLibrary>

#include <array>
#include <string_view>

class OvrRuntime
{
public:
    /// Everything the runtime exports in the versions this program asks for; all are looked up, so
    /// that what a runtime lacks is known from the start.
    static constexpr std::array<const char *, 71> kEntryPoints = {
        "ovr_Initialize",
        "ovr_Shutdown",
        "ovr_GetLastErrorInfo",
        "ovr_GetVersionString",
        "ovr_TraceMessage",
        "ovr_IdentifyClient",
        "ovr_GetHmdDesc",
        "ovr_GetTrackerCount",
        "ovr_GetTrackerDesc",
        "ovr_Create",
        "ovr_Destroy",
        "ovr_GetSessionStatus",
        "ovr_SetTrackingOriginType",
        "ovr_GetTrackingOriginType",
        "ovr_RecenterTrackingOrigin",
        "ovr_SpecifyTrackingOrigin",
        "ovr_ClearShouldRecenterFlag",
        "ovr_GetTrackingState",
        "ovr_GetDevicePoses",
        "ovr_GetTrackerPose",
        "ovr_GetInputState",
        "ovr_GetConnectedControllerTypes",
        "ovr_GetTouchHapticsDesc",
        "ovr_SetControllerVibration",
        "ovr_SubmitControllerVibration",
        "ovr_GetControllerVibrationState",
        "ovr_TestBoundary",
        "ovr_TestBoundaryPoint",
        "ovr_SetBoundaryLookAndFeel",
        "ovr_ResetBoundaryLookAndFeel",
        "ovr_GetBoundaryGeometry",
        "ovr_GetBoundaryDimensions",
        "ovr_GetBoundaryVisible",
        "ovr_RequestBoundaryVisible",
        "ovr_GetTextureSwapChainLength",
        "ovr_GetTextureSwapChainCurrentIndex",
        "ovr_GetTextureSwapChainDesc",
        "ovr_CommitTextureSwapChain",
        "ovr_DestroyTextureSwapChain",
        "ovr_DestroyMirrorTexture",
        "ovr_GetFovTextureSize",
        "ovr_GetRenderDesc",
        "ovr_SubmitFrame",
        "ovr_GetPerfStats",
        "ovr_ResetPerfStats",
        "ovr_GetPredictedDisplayTime",
        "ovr_GetTimeInSeconds",
        "ovr_GetBool",
        "ovr_SetBool",
        "ovr_GetInt",
        "ovr_SetInt",
        "ovr_GetFloat",
        "ovr_SetFloat",
        "ovr_GetFloatArray",
        "ovr_SetFloatArray",
        "ovr_GetString",
        "ovr_SetString",
        "ovr_CreateTextureSwapChainDX",
        "ovr_GetTextureSwapChainBufferDX",
        "ovr_CreateMirrorTextureDX",
        "ovr_GetMirrorTextureBufferDX",
        "ovr_CreateTextureSwapChainGL",
        "ovr_GetTextureSwapChainBufferGL",
        "ovr_CreateMirrorTextureGL",
        "ovr_GetMirrorTextureBufferGL",
        "ovr_GetAudioDeviceOutWaveId",
        "ovr_GetAudioDeviceInWaveId",
        "ovr_GetAudioDeviceOutGuidStr",
        "ovr_GetAudioDeviceOutGuid",
        "ovr_GetAudioDeviceInGuidStr",
        "ovr_GetAudioDeviceInGuid",
    };

    /// What texts say while no library is loaded.
    static constexpr const char *kNoLibraryText = "(Unable to load LibOVR)";

    OvrRuntime() = default;
    ~OvrRuntime();
    OvrRuntime(const OvrRuntime &) = delete;
    OvrRuntime &operator=(const OvrRuntime &) = delete;

    /// Loads the library on the first call: from the folder that the environment variable
    /// LIBOVR_DLL_DIR names, else from the system's standard locations. ovrError_LibLoad when none
    /// of them has it.
    [[nodiscard]] ovrResult ovr_Initialize(const ovrInitParams *params);
    void ovr_Shutdown();
    const char *ovr_GetVersionString() const;
    void ovr_GetLastErrorInfo(ovrErrorInfo *info) const;

    [[nodiscard]] ovrResult ovr_Create(ovrSession *session, ovrGraphicsLuid *luid) const;
    void ovr_Destroy(ovrSession session) const;

    /// Without a session: of the headset that is plugged in; Type is ovrHmd_None without one.
    ovrHmdDesc ovr_GetHmdDesc(ovrSession session) const;
    [[nodiscard]] ovrResult ovr_GetSessionStatus(ovrSession session,
                                                 ovrSessionStatus *status) const;
    ovrResult ovr_SetTrackingOriginType(ovrSession session, ovrTrackingOrigin origin) const;
    ovrResult ovr_RecenterTrackingOrigin(ovrSession session) const;
    ovrTrackingState ovr_GetTrackingState(ovrSession session, double time,
                                          ovrBool latencyMarker) const;

    [[nodiscard]] ovrResult ovr_GetInputState(ovrSession session, ovrControllerType type,
                                              ovrInputState *state) const;
    std::uint32_t ovr_GetConnectedControllerTypes(ovrSession session) const;

    ovrSizei ovr_GetFovTextureSize(ovrSession session, ovrEyeType eye, ovrFovPort fov,
                                   float pixelDensity) const;
    ovrEyeRenderDesc ovr_GetRenderDesc(ovrSession session, ovrEyeType eye, ovrFovPort fov) const;
    double ovr_GetPredictedDisplayTime(ovrSession session, std::int64_t frameIndex) const;
    double ovr_GetTimeInSeconds() const;

    [[nodiscard]] ovrResult ovr_CreateTextureSwapChainGL(ovrSession session,
                                                         const ovrTextureSwapChainDesc *desc,
                                                         ovrTextureSwapChain *chain) const;
    [[nodiscard]] ovrResult
    ovr_GetTextureSwapChainLength(ovrSession session, ovrTextureSwapChain chain, int *length) const;
    [[nodiscard]] ovrResult ovr_GetTextureSwapChainCurrentIndex(ovrSession session,
                                                                ovrTextureSwapChain chain,
                                                                int *index) const;
    [[nodiscard]] ovrResult ovr_GetTextureSwapChainBufferGL(ovrSession session,
                                                            ovrTextureSwapChain chain, int index,
                                                            std::uint32_t *texture) const;
    [[nodiscard]] ovrResult ovr_CommitTextureSwapChain(ovrSession session,
                                                       ovrTextureSwapChain chain) const;
    void ovr_DestroyTextureSwapChain(ovrSession session, ovrTextureSwapChain chain) const;
    [[nodiscard]] ovrResult ovr_SubmitFrame(ovrSession session, std::int64_t frameIndex,
                                            const ovrViewScaleDesc *scale,
                                            const ovrLayerHeader *const *layers,
                                            std::uint32_t layerCount) const;

private:
    bool load();
    void unload();

    /// Place of @p name in the table; a name that is not in it does not compile.
    static constexpr std::size_t entry(std::string_view name)
    {
        std::size_t index = 0;
        while (kEntryPoints[index] != name)
            ++index;
        return index;
    }

    /// Calls the entry point, which takes exactly these arguments; @p missing without one.
    template <class Result, class... Arguments>
    Result call(std::size_t entry, Result missing, Arguments... arguments) const
    {
        const auto function = reinterpret_cast<Result (*)(Arguments...)>(m_functions[entry]);
        return function ? function(arguments...) : missing;
    }

    template <class... Arguments>
    void callVoid(std::size_t entry, Arguments... arguments) const
    {
        if (const auto function = reinterpret_cast<void (*)(Arguments...)>(m_functions[entry]))
            function(arguments...);
    }

    QLibrary m_library;
    std::array<QFunctionPointer, kEntryPoints.size()> m_functions = {};
};
