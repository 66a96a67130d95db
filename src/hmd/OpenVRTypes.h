#pragma once

// Our own declarations of the parts of the OpenVR client interface that the player uses; values
// only, any thread. Sizes, offsets and slots are those of the OpenVR SDK 1.0.6 (Valve, public
// interface of tag v1.0.6), checked below against what its headers compile to.

#include <cstddef>
#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define ORBILENS_OPENVR_CALL __stdcall
#else
#define ORBILENS_OPENVR_CALL
#endif

namespace openvr {

constexpr char kSdkVersion[] = "1.0.6";

// Interfaces of that release by their version names; plain tables are asked for with the prefix.
constexpr char kTablePrefix[] = "FnTable:";
constexpr char kSystemVersion[] = "IVRSystem_015";
constexpr char kRenderModelsVersion[] = "IVRRenderModels_005";
constexpr char kCompositorVersion[] = "IVRCompositor_020";

constexpr std::uint32_t kMaxDevices = 16;
constexpr std::uint32_t kHeadDevice = 0;
constexpr std::size_t kAxes = 5;

// Enumerations of the interface are 32-bit integers.
constexpr std::int32_t kErrorNone = 0;
constexpr std::int32_t kErrorInterfaceNotFound = 105;
constexpr std::int32_t kErrorPathRegistryNotFound = 110;
constexpr std::int32_t kApplicationScene = 1;
constexpr std::int32_t kClassController = 2;
constexpr std::int32_t kTextureOpenGL = 1;
constexpr std::int32_t kColorSpaceGamma = 1;
constexpr std::int32_t kSubmitDefault = 0;
constexpr std::int32_t kCompositorErrorNone = 0;
constexpr std::uint32_t kEventQuit = 700;

constexpr std::uint64_t buttonMask(int button)
{
    return std::uint64_t(1) << button;
}
constexpr std::uint64_t kApplicationMenuMask = buttonMask(1);
constexpr std::uint64_t kAxis0Mask = buttonMask(32);

// Every structure of the SDK is packed to 4 bytes outside Windows and to 8 on it.
#if defined(_WIN32)
#pragma pack(push, 8)
#else
#pragma pack(push, 4)
#endif

/// Row major; column 3 is the translation in metres. Column vectors, x right, y up, -z ahead.
struct Matrix34
{
    float m[3][4];
};

struct Matrix44
{
    float m[4][4]; ///< row major
};

struct Texture
{
    void *handle; ///< an OpenGL name, widened
    std::int32_t type;
    std::int32_t colorSpace;
};

struct DevicePose
{
    Matrix34 deviceToAbsolute;
    float velocity[3];        ///< metres per second
    float angularVelocity[3]; ///< radians per second
    std::int32_t trackingResult;
    bool poseIsValid;
    bool deviceIsConnected;
};

struct ControllerAxis
{
    float x, y; ///< -1 to 1
};

struct ControllerState
{
    std::uint32_t packetNumber;
    std::uint64_t buttonPressed; ///< a bit for each button
    std::uint64_t buttonTouched;
    ControllerAxis axis[kAxes];
};

struct Event
{
    std::uint32_t type;
    std::uint32_t deviceIndex;
    float ageSeconds;
    std::uint64_t data[3]; ///< a union that nobody here reads
};

#pragma pack(pop)

/// Slots that the player never calls.
template <int count>
using Unused = void *[count];

struct SystemTable
{
    void(ORBILENS_OPENVR_CALL *GetRecommendedRenderTargetSize)(std::uint32_t *width,
                                                               std::uint32_t *height);
    Matrix44(ORBILENS_OPENVR_CALL *GetProjectionMatrix)(std::int32_t eye, float nearZ, float farZ);
    Unused<2> slots2to3;
    Matrix34(ORBILENS_OPENVR_CALL *GetEyeToHeadTransform)(std::int32_t eye);
    Unused<14> slots5to18;
    std::int32_t(ORBILENS_OPENVR_CALL *GetTrackedDeviceClass)(std::uint32_t device);
    bool(ORBILENS_OPENVR_CALL *IsTrackedDeviceConnected)(std::uint32_t device);
    Unused<7> slots21to27;
    bool(ORBILENS_OPENVR_CALL *PollNextEvent)(Event *event, std::uint32_t size);
    Unused<3> slots29to31;
    bool(ORBILENS_OPENVR_CALL *GetControllerState)(std::uint32_t device, ControllerState *state,
                                                   std::uint32_t size);
    Unused<9> slots33to41;
    void(ORBILENS_OPENVR_CALL *AcknowledgeQuit_Exiting)();
    Unused<1> slot43;
};

struct CompositorTable
{
    Unused<2> slots0to1;
    std::int32_t(ORBILENS_OPENVR_CALL *WaitGetPoses)(DevicePose *renderPoses,
                                                     std::uint32_t renderCount,
                                                     DevicePose *gamePoses,
                                                     std::uint32_t gameCount);
    Unused<2> slots3to4;
    std::int32_t(ORBILENS_OPENVR_CALL *Submit)(std::int32_t eye, const Texture *texture,
                                               const void *bounds, std::int32_t flags);
    Unused<35> slots6to40;
};

/// Asked for as a sign of a complete runtime; none of its slots is called.
struct RenderModelsTable
{
    Unused<18> slots0to17;
};

// --- Flat entry points of the client library (cdecl) --------------------------------------------

using InitInternal = std::uint32_t (*)(std::int32_t *error, std::int32_t applicationType);
using ShutdownInternal = void (*)();
using IsRuntimeInstalled = bool (*)();
using GetGenericInterface = void *(*)(const char *version, std::int32_t *error);
using IsInterfaceVersionValid = bool (*)(const char *version);
using GetInitToken = std::uint32_t (*)();
using GetInitErrorAsEnglishDescription = const char *(*)(std::int32_t error);

// --- What the SDK's own headers compile to ------------------------------------------------------

#if defined(_WIN32)
constexpr std::size_t byPlatform(std::size_t, std::size_t natural)
{
    return natural;
}
#else
constexpr std::size_t byPlatform(std::size_t packed, std::size_t)
{
    return packed;
}
#endif

static_assert(sizeof(Matrix34) == 48 && sizeof(Matrix44) == 64);
static_assert(sizeof(DevicePose) == 80 && alignof(DevicePose) == 4);
static_assert(offsetof(DevicePose, velocity) == 48 && offsetof(DevicePose, angularVelocity) == 60);
static_assert(offsetof(DevicePose, trackingResult) == 72 &&
              offsetof(DevicePose, poseIsValid) == 76);
static_assert(offsetof(DevicePose, deviceIsConnected) == 77);
static_assert(offsetof(ControllerState, buttonPressed) == byPlatform(4, 8));
static_assert(offsetof(ControllerState, buttonTouched) == byPlatform(12, 16));
static_assert(offsetof(ControllerState, axis) == byPlatform(20, 24));
static_assert(sizeof(ControllerState) == byPlatform(60, 64));
static_assert(offsetof(Event, data) == byPlatform(12, 16) && sizeof(Event) == byPlatform(36, 40));
#if UINTPTR_MAX == UINT64_MAX
static_assert(sizeof(Texture) == 16 && offsetof(Texture, type) == 8);
static_assert(offsetof(Texture, colorSpace) == 12);

constexpr std::size_t slot(std::size_t number)
{
    return 8 * number;
}

static_assert(offsetof(SystemTable, GetProjectionMatrix) == slot(1));
static_assert(offsetof(SystemTable, GetEyeToHeadTransform) == slot(4));
static_assert(offsetof(SystemTable, GetTrackedDeviceClass) == slot(19));
static_assert(offsetof(SystemTable, IsTrackedDeviceConnected) == slot(20));
static_assert(offsetof(SystemTable, PollNextEvent) == slot(28));
static_assert(offsetof(SystemTable, GetControllerState) == slot(32));
static_assert(offsetof(SystemTable, AcknowledgeQuit_Exiting) == slot(42));
static_assert(sizeof(SystemTable) == slot(44));
static_assert(offsetof(CompositorTable, WaitGetPoses) == slot(2));
static_assert(offsetof(CompositorTable, Submit) == slot(5));
static_assert(sizeof(CompositorTable) == slot(41));
static_assert(sizeof(RenderModelsTable) == slot(18));
#endif

} // namespace openvr
