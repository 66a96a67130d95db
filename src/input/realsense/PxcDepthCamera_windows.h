#pragma once

// The depth camera by its maker's SDK, found at run time: turns that library's answers into ours
// and nothing more. Made by the plug-in, owned by KRealSense; acquire() runs on the camera's
// thread.

#include "input/realsense/DepthCamera.h"
#include "input/realsense/PxcSdk_windows.h"

#include <QLibrary>

#include <memory>

struct PxcRelease
{
    template <class Interface>
    void operator()(Interface *object) const
    {
        object->Release();
    }
};

template <class Interface>
using PxcOwner = std::unique_ptr<Interface, PxcRelease>;

class PxcDepthCamera final : public DepthCamera
{
public:
    PxcDepthCamera();
    ~PxcDepthCamera() override;

    bool driversFound() override;
    [[nodiscard]] bool createManager() override;
    [[nodiscard]] bool enableHandModule() override;
    [[nodiscard]] bool enableGestures(const QStringList &names) override;
    std::array<int, 4> version() override;
    Acquired acquire(DepthFrame *frame) override;

private:
    void readHand(DepthFrame *frame);
    void readGestures(DepthFrame *frame);
    void readPicture(PXCHandData::IHand *hand, DepthFrame *frame);

    QLibrary m_library;
    PxcOwner<PXCSession> m_session;
    PxcOwner<PXCSenseManager> m_manager;
    PxcOwner<PXCHandConfiguration> m_configuration;
    PxcOwner<PXCHandData> m_data;
    QSizeF m_pictureSize{640, 480}; // of the camera, until the first picture tells
};
