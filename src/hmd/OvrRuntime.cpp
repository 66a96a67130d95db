#include "hmd/OvrRuntime.h"

#include "hmd/OvrLibrary.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <cstring>

namespace {

Q_LOGGING_CATEGORY(logOculus, "oculus", QtWarningMsg)

/// A structure that the runtime fills and that later versions make longer, with room to spare.
template <class Struct, std::size_t Size>
struct Roomy
{
    Struct value;
    std::uint8_t room[Size - sizeof(Struct)];
};

} // namespace

OvrRuntime::~OvrRuntime()
{
    unload();
}

bool OvrRuntime::load()
{
    if (m_library.isLoaded())
        return true;
    const QStringList files =
        OvrLibrary::candidates(qEnvironmentVariable("LIBOVR_DLL_DIR"),
                               OvrLibrary::standardDirectories(), OvrLibrary::fileNameFormat());
    for (const QString &file : files) {
        const bool hasDirectory =
            file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\'));
        if (hasDirectory && !QFileInfo(file).isFile())
            continue;
        if (OvrLibrary::codeSignature(file) == OvrLibrary::CodeSignature::Untrusted) {
            qCWarning(logOculus) << "not loaded, its signature is not trusted:" << file;
            continue;
        }
        m_library.setFileName(file);
        if (!m_library.load())
            continue;
        std::transform(kEntryPoints.begin(), kEntryPoints.end(), m_functions.begin(),
                       [this](const char *name) { return m_library.resolve(name); });
        return true;
    }
    return false;
}

void OvrRuntime::unload()
{
    m_functions.fill(nullptr);
    if (m_library.isLoaded())
        m_library.unload();
}

ovrResult OvrRuntime::ovr_Initialize(const ovrInitParams *params)
{
    if (!load())
        return ovrError_LibLoad;
    return call(entry("ovr_Initialize"), ovrError_NotInitialized, params);
}

void OvrRuntime::ovr_Shutdown()
{
    callVoid(entry("ovr_Shutdown"));
}

const char *OvrRuntime::ovr_GetVersionString() const
{
    return call(entry("ovr_GetVersionString"), kNoLibraryText);
}

void OvrRuntime::ovr_GetLastErrorInfo(ovrErrorInfo *info) const
{
    *info = {};
    info->Result = ovrError_NotInitialized;
    std::strncpy(info->ErrorString, kNoLibraryText, sizeof(info->ErrorString) - 1);
    callVoid(entry("ovr_GetLastErrorInfo"), info);
    info->ErrorString[sizeof(info->ErrorString) - 1] = '\0';
}

ovrResult OvrRuntime::ovr_Create(ovrSession *session, ovrGraphicsLuid *luid) const
{
    return call(entry("ovr_Create"), ovrError_NotInitialized, session, luid);
}

void OvrRuntime::ovr_Destroy(ovrSession session) const
{
    callVoid(entry("ovr_Destroy"), session);
}

ovrHmdDesc OvrRuntime::ovr_GetHmdDesc(ovrSession session) const
{
    return call(entry("ovr_GetHmdDesc"), ovrHmdDesc{}, session);
}

ovrResult OvrRuntime::ovr_GetSessionStatus(ovrSession session, ovrSessionStatus *status) const
{
    Roomy<ovrSessionStatus, 32> roomy = {};
    const ovrResult result =
        call(entry("ovr_GetSessionStatus"), ovrError_NotInitialized, session, &roomy.value);
    *status = roomy.value;
    return result;
}

ovrResult OvrRuntime::ovr_SetTrackingOriginType(ovrSession session, ovrTrackingOrigin origin) const
{
    return call(entry("ovr_SetTrackingOriginType"), ovrError_NotInitialized, session, origin);
}

ovrResult OvrRuntime::ovr_RecenterTrackingOrigin(ovrSession session) const
{
    return call(entry("ovr_RecenterTrackingOrigin"), ovrError_NotInitialized, session);
}

ovrTrackingState OvrRuntime::ovr_GetTrackingState(ovrSession session, double time,
                                                  ovrBool latencyMarker) const
{
    return call(entry("ovr_GetTrackingState"), ovrTrackingState{}, session, time, latencyMarker);
}

ovrResult OvrRuntime::ovr_GetInputState(ovrSession session, ovrControllerType type,
                                        ovrInputState *state) const
{
    Roomy<ovrInputState, 256> roomy = {};
    const ovrResult result =
        call(entry("ovr_GetInputState"), ovrError_NotInitialized, session, type, &roomy.value);
    *state = roomy.value;
    return result;
}

std::uint32_t OvrRuntime::ovr_GetConnectedControllerTypes(ovrSession session) const
{
    return call(entry("ovr_GetConnectedControllerTypes"), std::uint32_t(0), session);
}

ovrSizei OvrRuntime::ovr_GetFovTextureSize(ovrSession session, ovrEyeType eye, ovrFovPort fov,
                                           float pixelDensity) const
{
    return call(entry("ovr_GetFovTextureSize"), ovrSizei{}, session, eye, fov, pixelDensity);
}

ovrEyeRenderDesc OvrRuntime::ovr_GetRenderDesc(ovrSession session, ovrEyeType eye,
                                               ovrFovPort fov) const
{
    return call(entry("ovr_GetRenderDesc"), ovrEyeRenderDesc{}, session, eye, fov);
}

double OvrRuntime::ovr_GetPredictedDisplayTime(ovrSession session, std::int64_t frameIndex) const
{
    return call(entry("ovr_GetPredictedDisplayTime"), 0.0, session, frameIndex);
}

double OvrRuntime::ovr_GetTimeInSeconds() const
{
    return call(entry("ovr_GetTimeInSeconds"), 0.0);
}

ovrResult OvrRuntime::ovr_CreateTextureSwapChainGL(ovrSession session,
                                                   const ovrTextureSwapChainDesc *desc,
                                                   ovrTextureSwapChain *chain) const
{
    return call(entry("ovr_CreateTextureSwapChainGL"), ovrError_NotInitialized, session, desc,
                chain);
}

ovrResult OvrRuntime::ovr_GetTextureSwapChainLength(ovrSession session, ovrTextureSwapChain chain,
                                                    int *length) const
{
    return call(entry("ovr_GetTextureSwapChainLength"), ovrError_NotInitialized, session, chain,
                length);
}

ovrResult OvrRuntime::ovr_GetTextureSwapChainCurrentIndex(ovrSession session,
                                                          ovrTextureSwapChain chain,
                                                          int *index) const
{
    return call(entry("ovr_GetTextureSwapChainCurrentIndex"), ovrError_NotInitialized, session,
                chain, index);
}

ovrResult OvrRuntime::ovr_GetTextureSwapChainBufferGL(ovrSession session, ovrTextureSwapChain chain,
                                                      int index, std::uint32_t *texture) const
{
    return call(entry("ovr_GetTextureSwapChainBufferGL"), ovrError_NotInitialized, session, chain,
                index, texture);
}

ovrResult OvrRuntime::ovr_CommitTextureSwapChain(ovrSession session,
                                                 ovrTextureSwapChain chain) const
{
    return call(entry("ovr_CommitTextureSwapChain"), ovrError_NotInitialized, session, chain);
}

void OvrRuntime::ovr_DestroyTextureSwapChain(ovrSession session, ovrTextureSwapChain chain) const
{
    callVoid(entry("ovr_DestroyTextureSwapChain"), session, chain);
}

ovrResult OvrRuntime::ovr_SubmitFrame(ovrSession session, std::int64_t frameIndex,
                                      const ovrViewScaleDesc *scale,
                                      const ovrLayerHeader *const *layers,
                                      std::uint32_t layerCount) const
{
    return call(entry("ovr_SubmitFrame"), ovrError_NotInitialized, session, frameIndex, scale,
                layers, layerCount);
}
