#include "input/realsense/PxcDepthCamera_windows.h"

#include "input/realsense/PxcRuntime.h"

#include <QDeadlineTimer>
#include <QSettings>

#include <algorithm>

namespace {

constexpr pxcI32 kWaitMs = 100;
constexpr float kMillimetres = 1000; // in the SDK's metre
constexpr float kFullyOpen = 100;

QString runtimePath()
{
    const QStringList keys = PxcRuntime::registryKeys();
    for (const QString &key : keys) {
        const QSettings registry(QStringLiteral("HKEY_LOCAL_MACHINE\\") + key,
                                 QSettings::NativeFormat);
        QString path =
            PxcRuntime::libraryPath(registry.value(PxcRuntime::registryValue()).toString());
        if (!path.isEmpty())
            return path;
    }
    return QStringLiteral("libpxcsession.dll");
}

qint64 microseconds()
{
    return QDeadlineTimer::current(Qt::PreciseTimer).deadlineNSecs() / 1000;
}

DepthGesture::Phase phase(PXCHandData::GestureStateType state)
{
    if (state == PXCHandData::GESTURE_STATE_END)
        return DepthGesture::Ends;
    return state == PXCHandData::GESTURE_STATE_START ? DepthGesture::Begins : DepthGesture::Lasts;
}

} // namespace

PxcDepthCamera::PxcDepthCamera()
    : m_library(runtimePath())
{}

PxcDepthCamera::~PxcDepthCamera()
{
    if (m_manager)
        m_manager->Close();
}

bool PxcDepthCamera::driversFound()
{
    return m_library.load();
}

bool PxcDepthCamera::createManager()
{
    const auto create =
        reinterpret_cast<PxcCreateSession>(m_library.resolve("PXCSession_CreateExt"));
    PXCSession *session = nullptr;
    if (!create || create(PXC_VERSION_MAJOR, PXC_VERSION_MINOR, PXC_VERSION_BUILD, 0, 0, 0,
                          &session) < PXC_STATUS_NO_ERROR)
        return false;
    m_session.reset(session);
    if (m_session)
        m_manager.reset(m_session->CreateSenseManager());
    return bool(m_manager);
}

bool PxcDepthCamera::enableHandModule()
{
    if (m_manager->EnableHand() < PXC_STATUS_NO_ERROR)
        return false;
    PXCHandModule *module = m_manager->QueryHand();
    if (!module)
        return false;
    m_data.reset(module->CreateOutput());
    m_configuration.reset(module->CreateActiveConfiguration());
    return m_data && m_configuration;
}

bool PxcDepthCamera::enableGestures(const QStringList &names)
{
    if (m_configuration->DisableAllGestures() < PXC_STATUS_NO_ERROR)
        return false;
    constexpr pxcBool kContinuous = 1;
    for (const QString &name : names) {
        if (m_configuration->EnableGesture(name.toStdWString().c_str(), kContinuous) <
            PXC_STATUS_NO_ERROR)
            return false;
    }
    return m_configuration->EnableSegmentationImage(1) >= PXC_STATUS_NO_ERROR &&
           m_configuration->ApplyChanges() >= PXC_STATUS_NO_ERROR &&
           m_manager->Init() >= PXC_STATUS_NO_ERROR;
}

std::array<int, 4> PxcDepthCamera::version()
{
    const PXCSession::ImplVersion version = m_session->QueryVersion();
    return {version.major, version.minor, PXC_VERSION_BUILD, 0};
}

DepthCamera::Acquired PxcDepthCamera::acquire(DepthFrame *frame)
{
    const pxcStatus status = m_manager->AcquireFrame(1, kWaitMs);
    if (status == PXC_STATUS_DEVICE_LOST)
        return Acquired::Lost;
    if (status < PXC_STATUS_NO_ERROR)
        return Acquired::Nothing;
    frame->timestamp = microseconds();
    if (m_data->Update() >= PXC_STATUS_NO_ERROR) {
        readGestures(frame);
        readHand(frame);
    }
    m_manager->ReleaseFrame();
    return Acquired::Frame;
}

void PxcDepthCamera::readGestures(DepthFrame *frame)
{
    const pxcI32 count = m_data->QueryFiredGesturesNumber();
    for (pxcI32 i = 0; i < count; ++i) {
        PXCHandData::GestureData data{};
        if (m_data->QueryFiredGestureData(i, data) >= PXC_STATUS_NO_ERROR)
            frame->gestures.append(
                {QString::fromWCharArray(data.name).toLatin1(), phase(data.state)});
    }
}

void PxcDepthCamera::readHand(DepthFrame *frame)
{
    PXCHandData::IHand *hand = nullptr;
    if (m_data->QueryHandData(PXCHandData::ACCESS_ORDER_BY_TIME, 0, hand) < PXC_STATUS_NO_ERROR ||
        !hand)
        return;
    readPicture(hand, frame);
    // As in a mirror.
    const auto place = [this](float x, float y) {
        return QPointF(1 - double(x) / m_pictureSize.width(), double(y) / m_pictureSize.height());
    };
    frame->handSeen = true;
    const PXCPointF32 middle = hand->QueryMassCenterImage();
    frame->position = place(middle.x, middle.y);
    frame->depth = hand->QueryMassCenterWorld().z * kMillimetres;
    frame->openness = float(hand->QueryOpenness()) / kFullyOpen;
    for (int i = 0; i < PXCHandData::NUMBER_OF_JOINTS; ++i) {
        PXCHandData::JointData joint{};
        if (hand->QueryTrackedJoint(PXCHandData::JointType(i), joint) >= PXC_STATUS_NO_ERROR)
            frame->points.append(place(joint.positionImage.x, joint.positionImage.y));
    }
}

void PxcDepthCamera::readPicture(PXCHandData::IHand *hand, DepthFrame *frame)
{
    PXCImage *picture = nullptr;
    if (hand->QuerySegmentationImage(picture) < PXC_STATUS_NO_ERROR || !picture)
        return;
    const PXCImage::ImageInfo info = picture->QueryInfo();
    PXCImage::ImageData data{};
    if (info.width <= 0 || info.height <= 0 ||
        picture->AcquireAccess(PXCImage::ACCESS_READ, PXCImage::PIXEL_FORMAT_Y8, &data) <
            PXC_STATUS_NO_ERROR)
        return;
    m_pictureSize = QSizeF(info.width, info.height);
    // The copy outlives the SDK's pixels.
    frame->image =
        QImage(data.planes[0], info.width, info.height, data.pitches[0], QImage::Format_Grayscale8)
            .mirrored(true, false);
    picture->ReleaseAccess(&data);
}
