#pragma once

// Hears the sensor for KSensorWindows; counted by COM, called on threads of the sensor service.

#include <QMutex>

#include <atomic>

#include <sensorsapi.h>

class KSensorWindows;

class SensorEventSink final : public ISensorEvents
{
public:
    /// Made with one reference, the maker's.
    explicit SensorEventSink(KSensorWindows *owner)
        : m_owner(owner)
    {}

    /// The owner dies; the service may hold this object longer.
    void detach();

    STDMETHODIMP QueryInterface(REFIID id, void **object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP OnStateChanged(ISensor *sensor, SensorState state) override;
    STDMETHODIMP OnDataUpdated(ISensor *sensor, ISensorDataReport *report) override;
    STDMETHODIMP OnEvent(ISensor *sensor, REFGUID event, IPortableDeviceValues *data) override;
    STDMETHODIMP OnLeave(REFSENSOR_ID sensor) override;

private:
    ~SensorEventSink() = default;

    std::atomic<ULONG> m_references{1};
    QMutex m_ownerLock;
    KSensorWindows *m_owner; // under m_ownerLock
};
