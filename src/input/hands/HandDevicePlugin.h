#pragma once

// What a plug-in for the makers' libraries of hand trackers and depth cameras offers. The libraries
// are closed and rarely there: behind a plug-in a missing one costs a log text and nothing else.

#include "input/leap/HandTracker.h"
#include "input/realsense/DepthCamera.h"

#include <QtPlugin>

#include <memory>

class HandDevicePlugin
{
public:
    virtual ~HandDevicePlugin() = default;

    /// Null where the plug-in serves no such device.
    virtual std::unique_ptr<HandTracker> createTracker() { return nullptr; }
    virtual std::unique_ptr<DepthCamera> createDepthCamera() { return nullptr; }
};

#define HandDevicePlugin_iid "com.orvex.OrbilensPlayer.HandDevicePlugin/1.0"
Q_DECLARE_INTERFACE(HandDevicePlugin, HandDevicePlugin_iid)
