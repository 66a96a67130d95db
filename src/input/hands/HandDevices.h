#pragma once

// Looks for the plug-ins of hand devices in the folder "handdevices" of each of Qt's library paths.
// Any thread.

#include "input/hands/HandDevicePlugin.h"

#include <QStringList>

namespace HandDevices {

/// The first that a plug-in makes; null where there is none or its library is missing.
std::unique_ptr<HandTracker> createTracker();
std::unique_ptr<DepthCamera> createDepthCamera();

} // namespace HandDevices
