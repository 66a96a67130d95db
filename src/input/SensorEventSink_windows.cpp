#include "input/SensorEventSink_windows.h"

#include "input/KSensorWindows_windows.h"

#include <sensors.h>

void SensorEventSink::detach()
{
    const QMutexLocker lock(&m_ownerLock);
    m_owner = nullptr;
}

STDMETHODIMP SensorEventSink::QueryInterface(REFIID id, void **object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (id != __uuidof(IUnknown) && id != __uuidof(ISensorEvents))
        return E_NOINTERFACE;
    *object = static_cast<ISensorEvents *>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) SensorEventSink::AddRef()
{
    return ++m_references;
}

STDMETHODIMP_(ULONG) SensorEventSink::Release()
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

STDMETHODIMP SensorEventSink::OnDataUpdated(ISensor *, ISensorDataReport *report)
{
    if (!report)
        return E_INVALIDARG;
    PROPVARIANT value = {};
    const HRESULT result = report->GetSensorValue(SENSOR_DATA_TYPE_ROTATION_MATRIX, &value);
    if (FAILED(result))
        return result;
    const std::optional<SensorMatrix> matrix =
        sensorMatrixFromReport(value.vt, value.caub.pElems, value.caub.cElems);
    ::PropVariantClear(&value);
    if (!matrix)
        return S_OK;

    // The view state belongs to the GUI thread; while the lock is held its sensor lives.
    const QMutexLocker lock(&m_ownerLock);
    if (KSensorWindows *owner = m_owner) {
        QMetaObject::invokeMethod(
            owner, [owner, matrix = *matrix] { owner->takeMatrix(matrix); }, Qt::QueuedConnection);
    }
    return S_OK;
}

STDMETHODIMP SensorEventSink::OnStateChanged(ISensor *, SensorState)
{
    return S_OK;
}

STDMETHODIMP SensorEventSink::OnEvent(ISensor *, REFGUID, IPortableDeviceValues *)
{
    return S_OK;
}

STDMETHODIMP SensorEventSink::OnLeave(REFSENSOR_ID)
{
    return S_OK;
}
