#pragma once

// The values and structures of the LibOVR C interface that this program exchanges with the Oculus
// runtime, in the runtime's own names; plain data, used on the headset's worker thread only.
//
// Names, values and layouts are those of the Oculus SDK's public C headers, versions 1.10 to 1.16
// for 64 bits. From 1.17 on ovrEyeRenderDesc and ovrViewScaleDesc carry a pose in place of the
// eye's offset and belong to other entry points (ovr_GetRenderDesc2, ovr_SubmitFrame2), which is
// why kOvrRequestedMinorVersion may not leave that range.
//
// No member has a default value: a structure returned by value has to stay what C calls plain, or
// compilers disagree about where it is returned. Callers write `{}`.

#include <cstddef>
#include <cstdint>
#include <type_traits>

constexpr int kOvrMajorVersion = 1;
constexpr std::uint32_t kOvrRequestedMinorVersion = 10;
static_assert(kOvrRequestedMinorVersion >= 10 && kOvrRequestedMinorVersion <= 16);

/// Failure when negative.
using ovrResult = std::int32_t;
using ovrBool = std::uint8_t;

constexpr ovrResult ovrSuccess = 0;
constexpr ovrResult ovrSuccess_NotVisible = 1000;
constexpr ovrResult ovrError_NotInitialized = -1004;
constexpr ovrResult ovrError_LibLoad = -3001;
constexpr ovrResult ovrError_DisplayLost = -6000;
constexpr ovrResult ovrError_TextureSwapChainInvalid = -6002;

constexpr bool ovrFailed(ovrResult result)
{
    return result < 0;
}

using ovrSession = struct ovrHmdStruct *;
using ovrTextureSwapChain = struct ovrTextureSwapChainData *;

enum ovrInitFlags : std::uint32_t { ovrInit_RequestVersion = 4 };
enum ovrEyeType : std::int32_t { ovrEye_Left = 0, ovrEye_Right = 1, ovrEye_Count = 2 };
enum ovrHmdType : std::int32_t { ovrHmd_None = 0 };
enum ovrTrackingOrigin : std::int32_t { ovrTrackingOrigin_EyeLevel = 0 };
enum ovrStatusBits : std::uint32_t { ovrStatus_OrientationTracked = 1 };
enum ovrTextureType : std::int32_t { ovrTexture_2D = 0 };
enum ovrTextureFormat : std::int32_t { OVR_FORMAT_R8G8B8A8_UNORM_SRGB = 5 };
enum ovrLayerType : std::int32_t { ovrLayerType_EyeFov = 1 };
enum ovrLayerFlags : std::uint32_t { ovrLayerFlag_TextureOriginAtBottomLeft = 2 };
enum ovrHandType : std::int32_t { ovrHand_Left = 0, ovrHand_Right = 1, ovrHand_Count = 2 };

enum ovrControllerType : std::uint32_t {
    ovrControllerType_Touch = 3,
    ovrControllerType_Remote = 4,
    ovrControllerType_XBox = 0x10
};

enum ovrButton : std::uint32_t {
    ovrButton_A = 0x1,
    ovrButton_B = 0x2,
    ovrButton_X = 0x100,
    ovrButton_Y = 0x200,
    ovrButton_Up = 0x10000,
    ovrButton_Down = 0x20000,
    ovrButton_Left = 0x40000,
    ovrButton_Right = 0x80000,
    ovrButton_Enter = 0x100000,
    ovrButton_Back = 0x200000
};

struct ovrVector2i
{
    std::int32_t x, y;
};

struct ovrSizei
{
    std::int32_t w, h;
};

struct ovrRecti
{
    ovrVector2i Pos;
    ovrSizei Size;
};

struct ovrQuatf
{
    float x, y, z, w;
};

struct ovrVector2f
{
    float x, y;
};

struct ovrVector3f
{
    float x, y, z;
};

/// Right-handed, +x right, +y up, -z forward; metres.
struct ovrPosef
{
    ovrQuatf Orientation;
    ovrVector3f Position;
};

struct ovrPoseStatef
{
    ovrPosef ThePose;
    ovrVector3f AngularVelocity;
    ovrVector3f LinearVelocity;
    ovrVector3f AngularAcceleration;
    ovrVector3f LinearAcceleration;
    double TimeInSeconds;
};

/// Tangents of the angles between the view axis and the four edges, all positive.
struct ovrFovPort
{
    float UpTan, DownTan, LeftTan, RightTan;
};

struct alignas(8) ovrGraphicsLuid
{
    char Reserved[8];
};

struct alignas(8) ovrHmdDesc
{
    ovrHmdType Type;
    std::int32_t Padding;
    char ProductName[64];
    char Manufacturer[64];
    std::int16_t VendorId;
    std::int16_t ProductId;
    char SerialNumber[24];
    std::int16_t FirmwareMajor;
    std::int16_t FirmwareMinor;
    std::uint32_t AvailableHmdCaps;
    std::uint32_t DefaultHmdCaps;
    std::uint32_t AvailableTrackingCaps;
    std::uint32_t DefaultTrackingCaps;
    ovrFovPort DefaultEyeFov[ovrEye_Count];
    ovrFovPort MaxEyeFov[ovrEye_Count];
    ovrSizei Resolution;
    float DisplayRefreshRate;
};

struct ovrTrackingState
{
    ovrPoseStatef HeadPose;
    std::uint32_t StatusFlags;
    ovrPoseStatef HandPoses[ovrHand_Count];
    std::uint32_t HandStatusFlags[ovrHand_Count];
    ovrPosef CalibratedOrigin;
};

struct ovrEyeRenderDesc
{
    ovrEyeType Eye;
    ovrFovPort Fov;
    ovrRecti DistortedViewport;
    ovrVector2f PixelsPerTanAngleAtCenter;
    ovrVector3f HmdToEyeOffset;
};

struct ovrViewScaleDesc
{
    ovrVector3f HmdToEyeOffset[ovrEye_Count];
    float HmdSpaceToWorldScaleInMeters;
};

struct ovrTextureSwapChainDesc
{
    ovrTextureType Type;
    ovrTextureFormat Format;
    std::int32_t ArraySize;
    std::int32_t Width;
    std::int32_t Height;
    std::int32_t MipLevels;
    std::int32_t SampleCount;
    ovrBool StaticImage;
    std::uint32_t MiscFlags;
    std::uint32_t BindFlags;
};

struct ovrInputState
{
    double TimeInSeconds;
    std::uint32_t Buttons;
    std::uint32_t Touches;
    float IndexTrigger[ovrHand_Count];
    float HandTrigger[ovrHand_Count];
    ovrVector2f Thumbstick[ovrHand_Count];
    ovrControllerType ControllerType;
    float IndexTriggerNoDeadzone[ovrHand_Count];
    float HandTriggerNoDeadzone[ovrHand_Count];
    ovrVector2f ThumbstickNoDeadzone[ovrHand_Count];
};

struct ovrInitParams
{
    std::uint32_t Flags;
    std::uint32_t RequestedMinorVersion;
    void (*LogCallback)(std::uintptr_t userData, int level, const char *text);
    std::uintptr_t UserData;
    std::uint32_t ConnectionTimeoutMS;
};

struct ovrErrorInfo
{
    ovrResult Result;
    char ErrorString[512];
};

struct ovrSessionStatus
{
    ovrBool IsVisible;
    ovrBool HmdPresent;
    ovrBool HmdMounted;
    ovrBool DisplayLost;
    ovrBool ShouldQuit;
    ovrBool ShouldRecenter;
};

struct alignas(8) ovrLayerHeader
{
    ovrLayerType Type;
    std::uint32_t Flags;
};

struct ovrLayerEyeFov
{
    ovrLayerHeader Header;
    ovrTextureSwapChain ColorTexture[ovrEye_Count];
    ovrRecti Viewport[ovrEye_Count];
    ovrFovPort Fov[ovrEye_Count];
    ovrPosef RenderPose[ovrEye_Count];
    double SensorSampleTime;
};

namespace OvrLayout {

static_assert(sizeof(void *) == 8, "the layouts below are those of 64 bits");

template <class Struct>
constexpr bool measures(std::size_t size, std::size_t alignment)
{
    return sizeof(Struct) == size && alignof(Struct) == alignment && std::is_trivial_v<Struct> &&
           std::is_standard_layout_v<Struct>;
}

static_assert(measures<ovrVector2i>(8, 4));
static_assert(measures<ovrSizei>(8, 4));
static_assert(measures<ovrRecti>(16, 4));
static_assert(measures<ovrQuatf>(16, 4));
static_assert(measures<ovrVector2f>(8, 4));
static_assert(measures<ovrVector3f>(12, 4));
static_assert(measures<ovrPosef>(28, 4) && offsetof(ovrPosef, Position) == 16);
static_assert(measures<ovrPoseStatef>(88, 8));
static_assert(offsetof(ovrPoseStatef, AngularVelocity) == 28);
static_assert(offsetof(ovrPoseStatef, LinearVelocity) == 40);
static_assert(offsetof(ovrPoseStatef, AngularAcceleration) == 52);
static_assert(offsetof(ovrPoseStatef, LinearAcceleration) == 64);
static_assert(offsetof(ovrPoseStatef, TimeInSeconds) == 80);
static_assert(measures<ovrFovPort>(16, 4));
static_assert(measures<ovrGraphicsLuid>(8, 8));
static_assert(measures<ovrHmdDesc>(264, 8));
static_assert(offsetof(ovrHmdDesc, ProductName) == 8);
static_assert(offsetof(ovrHmdDesc, Manufacturer) == 72);
static_assert(offsetof(ovrHmdDesc, VendorId) == 136);
static_assert(offsetof(ovrHmdDesc, ProductId) == 138);
static_assert(offsetof(ovrHmdDesc, SerialNumber) == 140);
static_assert(offsetof(ovrHmdDesc, FirmwareMajor) == 164);
static_assert(offsetof(ovrHmdDesc, FirmwareMinor) == 166);
static_assert(offsetof(ovrHmdDesc, AvailableHmdCaps) == 168);
static_assert(offsetof(ovrHmdDesc, DefaultHmdCaps) == 172);
static_assert(offsetof(ovrHmdDesc, AvailableTrackingCaps) == 176);
static_assert(offsetof(ovrHmdDesc, DefaultTrackingCaps) == 180);
static_assert(offsetof(ovrHmdDesc, DefaultEyeFov) == 184);
static_assert(offsetof(ovrHmdDesc, MaxEyeFov) == 216);
static_assert(offsetof(ovrHmdDesc, Resolution) == 248);
static_assert(offsetof(ovrHmdDesc, DisplayRefreshRate) == 256);
static_assert(measures<ovrTrackingState>(312, 8));
static_assert(offsetof(ovrTrackingState, StatusFlags) == 88);
static_assert(offsetof(ovrTrackingState, HandPoses) == 96);
static_assert(offsetof(ovrTrackingState, HandStatusFlags) == 272);
static_assert(offsetof(ovrTrackingState, CalibratedOrigin) == 280);
static_assert(measures<ovrEyeRenderDesc>(56, 4));
static_assert(offsetof(ovrEyeRenderDesc, Fov) == 4);
static_assert(offsetof(ovrEyeRenderDesc, DistortedViewport) == 20);
static_assert(offsetof(ovrEyeRenderDesc, PixelsPerTanAngleAtCenter) == 36);
static_assert(offsetof(ovrEyeRenderDesc, HmdToEyeOffset) == 44);
static_assert(measures<ovrViewScaleDesc>(28, 4));
static_assert(offsetof(ovrViewScaleDesc, HmdSpaceToWorldScaleInMeters) == 24);
static_assert(measures<ovrTextureSwapChainDesc>(40, 4));
static_assert(offsetof(ovrTextureSwapChainDesc, Format) == 4);
static_assert(offsetof(ovrTextureSwapChainDesc, Width) == 12);
static_assert(offsetof(ovrTextureSwapChainDesc, SampleCount) == 24);
static_assert(offsetof(ovrTextureSwapChainDesc, StaticImage) == 28);
static_assert(offsetof(ovrTextureSwapChainDesc, MiscFlags) == 32);
static_assert(measures<ovrInputState>(88, 8));
static_assert(offsetof(ovrInputState, Buttons) == 8);
static_assert(offsetof(ovrInputState, IndexTrigger) == 16);
static_assert(offsetof(ovrInputState, HandTrigger) == 24);
static_assert(offsetof(ovrInputState, Thumbstick) == 32);
static_assert(offsetof(ovrInputState, ControllerType) == 48);
static_assert(offsetof(ovrInputState, IndexTriggerNoDeadzone) == 52);
static_assert(offsetof(ovrInputState, ThumbstickNoDeadzone) == 68);
static_assert(measures<ovrInitParams>(32, 8));
static_assert(offsetof(ovrInitParams, RequestedMinorVersion) == 4);
static_assert(offsetof(ovrInitParams, LogCallback) == 8);
static_assert(offsetof(ovrInitParams, UserData) == 16);
static_assert(offsetof(ovrInitParams, ConnectionTimeoutMS) == 24);
static_assert(measures<ovrErrorInfo>(516, 4));
static_assert(measures<ovrSessionStatus>(6, 1));
static_assert(offsetof(ovrSessionStatus, HmdMounted) == 2);
static_assert(offsetof(ovrSessionStatus, DisplayLost) == 3);
static_assert(offsetof(ovrSessionStatus, ShouldRecenter) == 5);
static_assert(measures<ovrLayerHeader>(8, 8));
static_assert(measures<ovrLayerEyeFov>(152, 8));
static_assert(offsetof(ovrLayerEyeFov, ColorTexture) == 8);
static_assert(offsetof(ovrLayerEyeFov, Viewport) == 24);
static_assert(offsetof(ovrLayerEyeFov, Fov) == 56);
static_assert(offsetof(ovrLayerEyeFov, RenderPose) == 88);
static_assert(offsetof(ovrLayerEyeFov, SensorSampleTime) == 144);

} // namespace OvrLayout
