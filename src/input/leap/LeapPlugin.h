#pragma once

// The plug-in that brings the Leap Motion tracker. Built where its maker's SDK is found; used on
// KLeap's thread, once.

#include "input/hands/HandDevicePlugin.h"

#include <QObject>

class LeapPlugin : public QObject, public HandDevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID HandDevicePlugin_iid)
    Q_INTERFACES(HandDevicePlugin)

public:
    std::unique_ptr<HandTracker> createTracker() override;
};
