#include "input/leap/LeapPlugin.h"

#include "input/leap/LeapTracker.h"

std::unique_ptr<HandTracker> LeapPlugin::createTracker()
{
    return std::make_unique<LeapTracker>();
}
