#include "input/KSensorWindows_windows.h"

std::unique_ptr<KSensor> KSensor::create(KGlobalObject *globalObject)
{
    return std::make_unique<KSensorWindows>(globalObject);
}
