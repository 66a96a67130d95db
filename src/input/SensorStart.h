#pragma once

// The search for an orientation sensor: which steps are taken in which order, which sensor is
// chosen, and what the log says. The platform carries the steps out; no device here.

#include <QString>

/// The steps as the platform's sensor service offers them. Each answers whether it succeeded.
class SensorService
{
public:
    virtual ~SensorService() = default;

    [[nodiscard]] virtual bool createManager() = 0;
    [[nodiscard]] virtual bool openOrientationSensors() = 0;
    virtual int sensorCount() = 0;
    /// Whether the sensor at @p index merges its sources into one orientation of the device.
    virtual bool isAggregatedOrientation(int index) = 0;
    [[nodiscard]] virtual bool chooseSensor(int index) = 0;
    virtual bool supportsRotationMatrix() = 0;
    [[nodiscard]] virtual bool connectToSensor() = 0;
};

struct SensorStart
{
    bool available = false;
    QString logMessage;
};

/// Takes the first sensor of the aggregated type.
SensorStart startSensor(SensorService &service);
