#include "input/SensorStart.h"

#include "input/KSensor.h"

namespace {

SensorStart failed(const QString &error)
{
    return {false, error};
}

QString closingLine()
{
    return KSensor::tr("Sensor initialization failed.\n");
}

int firstAggregated(SensorService &service, int count)
{
    for (int i = 0; i < count; ++i) {
        if (service.isAggregatedOrientation(i))
            return i;
    }
    return -1;
}

} // namespace

SensorStart startSensor(SensorService &service)
{
    if (!service.createManager())
        return failed(KSensor::tr("Error : cannot initialize sensor manager.\n") + closingLine());
    if (!service.openOrientationSensors())
        return failed(KSensor::tr("Error : cannot initialize sensor collection.\n") +
                      closingLine());
    const int count = service.sensorCount();
    if (count <= 0)
        return failed(KSensor::tr("Error : no orientation sensor found.\n") + closingLine());
    const int chosen = firstAggregated(service, count);
    if (chosen < 0 || !service.chooseSensor(chosen))
        return failed(KSensor::tr("Error : cannot find a sensor with supported type.\n"));
    if (!service.supportsRotationMatrix())
        return failed(KSensor::tr("Error : sensor data type is not supported.\n"));
    if (!service.connectToSensor())
        return failed(KSensor::tr("Error : cannot connect to sensor.\n"));
    return {true, KSensor::tr("Sensor initialization succeeded.\n")};
}
