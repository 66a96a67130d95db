#include "input/KSensor.h"

std::unique_ptr<KSensor> KSensor::create(KGlobalObject *globalObject)
{
    return std::make_unique<KSensor>(globalObject);
}
