#pragma once

// The orientation sensor of a Windows tablet, by the Windows Sensor API; made by KSensor::create(),
// lives on the GUI thread. Its reports come through SensorEventSink on threads of the service.

#include "input/KSensor.h"
#include "input/SensorStart.h"
#include "video/ComOwner_windows.h"

#include <sensorsapi.h>

class SensorEventSink;

class KSensorWindows final : public KSensor, private SensorService
{
    Q_OBJECT

public:
    explicit KSensorWindows(KGlobalObject *globalObject);
    ~KSensorWindows() override;

    /// On, the sink hears the sensor; off, it does not, so that the sensor may sleep.
    void setActivated(bool activated) override;
    bool isSupported() const override { return true; }

private:
    [[nodiscard]] bool createManager() override;
    [[nodiscard]] bool openOrientationSensors() override;
    int sensorCount() override;
    bool isAggregatedOrientation(int index) override;
    [[nodiscard]] bool chooseSensor(int index) override;
    bool supportsRotationMatrix() override;
    [[nodiscard]] bool connectToSensor() override;

    ComOwner<ISensor> sensorAt(int index);

    ComOwner<ISensorManager> m_manager;
    ComOwner<ISensorCollection> m_collection; // during the start only
    ComOwner<ISensor> m_sensor;
    ComOwner<SensorEventSink> m_sink;
};
