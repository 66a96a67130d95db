#pragma once

// The plug-in that brings the depth camera. Built where its maker's SDK is found; used on the GUI
// thread, once.

#include "input/hands/HandDevicePlugin.h"

#include <QObject>

class RealSensePlugin : public QObject, public HandDevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID HandDevicePlugin_iid)
    Q_INTERFACES(HandDevicePlugin)

public:
    std::unique_ptr<DepthCamera> createDepthCamera() override;
};
