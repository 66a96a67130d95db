#include "input/realsense/RealSensePlugin_windows.h"

#include "input/realsense/PxcDepthCamera_windows.h"

std::unique_ptr<DepthCamera> RealSensePlugin::createDepthCamera()
{
    return std::make_unique<PxcDepthCamera>();
}
