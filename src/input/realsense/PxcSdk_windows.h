#pragma once

// The interfaces of the depth camera's SDK. A build for use takes the maker's own headers. Without
// them the declarations below stand in, with just the operations that PxcDepthCamera calls, so that
// its source is checked everywhere; nothing is ever linked against these, as the order of the
// functions in a real object is the maker's.

#if __has_include(<pxcsensemanager.h>)
#include <pxchandconfiguration.h>
#include <pxchanddata.h>
#include <pxchandmodule.h>
#include <pxcsensemanager.h>
#include <pxcsession.h>
#include <pxcversion.h>
#else

#include <cstdint>

#define PXCAPI __stdcall

using pxcI32 = std::int32_t;
using pxcI64 = std::int64_t;
using pxcF32 = float;
using pxcBool = int;
using pxcCHAR = wchar_t;
using pxcEnum = int;

enum pxcStatus {
    PXC_STATUS_EXEC_TIMEOUT = -301,
    PXC_STATUS_DEVICE_LOST = -602,
    PXC_STATUS_NO_ERROR = 0
};

constexpr pxcI32 PXC_VERSION_MAJOR = 7;
constexpr pxcI32 PXC_VERSION_MINOR = 0;
constexpr pxcI32 PXC_VERSION_BUILD = 0;

struct PXCPointF32
{
    pxcF32 x, y;
};

struct PXCPoint3DF32
{
    pxcF32 x, y, z;
};

class PXCBase
{
public:
    virtual void PXCAPI Release() = 0;

protected:
    ~PXCBase() = default;
};

class PXCImage : public PXCBase
{
public:
    enum PixelFormat { PIXEL_FORMAT_Y8 = 0x00030000 };
    enum Access { ACCESS_READ = 1 };
    struct ImageInfo
    {
        pxcI32 width, height;
    };
    struct ImageData
    {
        pxcI32 pitches[4];
        unsigned char *planes[4];
    };
    virtual ImageInfo PXCAPI QueryInfo() = 0;
    virtual pxcStatus PXCAPI AcquireAccess(Access access, PixelFormat format, ImageData *data) = 0;
    virtual pxcStatus PXCAPI ReleaseAccess(ImageData *data) = 0;
};

class PXCHandConfiguration : public PXCBase
{
public:
    virtual pxcStatus PXCAPI DisableAllGestures() = 0;
    virtual pxcStatus PXCAPI EnableGesture(const pxcCHAR *name, pxcBool continuous) = 0;
    virtual pxcStatus PXCAPI EnableSegmentationImage(pxcBool enable) = 0;
    virtual pxcStatus PXCAPI ApplyChanges() = 0;
};

class PXCHandData : public PXCBase
{
public:
    enum AccessOrderType { ACCESS_ORDER_BY_TIME = 1 };
    enum GestureStateType {
        GESTURE_STATE_START = 0,
        GESTURE_STATE_IN_PROGRESS = 1,
        GESTURE_STATE_END = 2
    };
    enum JointType { JOINT_WRIST = 0 };
    static constexpr int NUMBER_OF_JOINTS = 22;
    struct GestureData
    {
        pxcI64 timeStamp;
        GestureStateType state;
        pxcCHAR name[64];
    };
    struct JointData
    {
        PXCPoint3DF32 positionImage;
    };
    class IHand
    {
    public:
        virtual PXCPointF32 PXCAPI QueryMassCenterImage() = 0;
        virtual PXCPoint3DF32 PXCAPI QueryMassCenterWorld() = 0;
        virtual pxcI32 PXCAPI QueryOpenness() = 0;
        virtual pxcStatus PXCAPI QueryTrackedJoint(JointType joint, JointData &data) = 0;
        virtual pxcStatus PXCAPI QuerySegmentationImage(PXCImage *&image) = 0;

    protected:
        ~IHand() = default;
    };
    virtual pxcStatus PXCAPI Update() = 0;
    virtual pxcI32 PXCAPI QueryFiredGesturesNumber() = 0;
    virtual pxcStatus PXCAPI QueryFiredGestureData(pxcI32 index, GestureData &data) = 0;
    virtual pxcStatus PXCAPI QueryHandData(AccessOrderType order, pxcI32 index, IHand *&hand) = 0;
};

class PXCHandModule : public PXCBase
{
public:
    virtual PXCHandConfiguration *PXCAPI CreateActiveConfiguration() = 0;
    virtual PXCHandData *PXCAPI CreateOutput() = 0;
};

class PXCSenseManager : public PXCBase
{
public:
    virtual pxcStatus PXCAPI EnableHand() = 0;
    virtual PXCHandModule *PXCAPI QueryHand() = 0;
    virtual pxcStatus PXCAPI Init() = 0;
    virtual pxcStatus PXCAPI AcquireFrame(pxcBool ifAll, pxcI32 timeoutMs) = 0;
    virtual void PXCAPI ReleaseFrame() = 0;
    virtual void PXCAPI Close() = 0;
};

class PXCSession : public PXCBase
{
public:
    struct ImplVersion
    {
        std::int16_t major, minor;
    };
    virtual ImplVersion PXCAPI QueryVersion() = 0;
    virtual PXCSenseManager *PXCAPI CreateSenseManager() = 0;
};

#endif

/// What the runtime library exports as "PXCSession_CreateExt".
using PxcCreateSession = pxcStatus(PXCAPI *)(pxcI32 major, pxcI32 minor, pxcI32 build,
                                             pxcI32 reserved, pxcEnum options, pxcI32 reserved2,
                                             PXCSession **session);
