#pragma once

// The plug-in that brings the stand-in for a depth camera.

#include "input/hands/HandDevicePlugin.h"

#include <QObject>

std::unique_ptr<DepthCamera> makeStandInCamera();

class CameraPlugin : public QObject, public HandDevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID HandDevicePlugin_iid)
    Q_INTERFACES(HandDevicePlugin)

public:
    std::unique_ptr<DepthCamera> createDepthCamera() override { return makeStandInCamera(); }
};
