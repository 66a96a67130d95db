#include "input/KSensorWindows_windows.h"

#include "input/SensorEventSink_windows.h"

#include <initguid.h>
#include <objbase.h>
#include <sensors.h>

KSensorWindows::KSensorWindows(KGlobalObject *globalObject)
    : KSensor(globalObject)
{
    const SensorStart start = startSensor(*this);
    m_collection.reset();
    setAvailable(start.available);
    appendLog(start.logMessage);
}

KSensorWindows::~KSensorWindows()
{
    if (m_sensor)
        m_sensor->SetEventSink(nullptr);
    if (m_sink)
        m_sink->detach();
}

void KSensorWindows::setActivated(bool activated)
{
    KSensor::setActivated(activated);
    if (m_sensor)
        m_sensor->SetEventSink(this->activated() ? m_sink.get() : nullptr);
}

bool KSensorWindows::createManager()
{
    ISensorManager *manager = nullptr;
    const HRESULT result = ::CoCreateInstance(CLSID_SensorManager, nullptr, CLSCTX_INPROC_SERVER,
                                              IID_PPV_ARGS(&manager));
    m_manager.reset(manager);
    return SUCCEEDED(result) && m_manager;
}

bool KSensorWindows::openOrientationSensors()
{
    ISensorCollection *collection = nullptr;
    const HRESULT result =
        m_manager->GetSensorsByCategory(SENSOR_CATEGORY_ORIENTATION, &collection);
    m_collection.reset(collection);
    return SUCCEEDED(result) && m_collection;
}

int KSensorWindows::sensorCount()
{
    ULONG count = 0;
    return SUCCEEDED(m_collection->GetCount(&count)) ? int(count) : 0;
}

ComOwner<ISensor> KSensorWindows::sensorAt(int index)
{
    ISensor *sensor = nullptr;
    const HRESULT result = m_collection->GetAt(ULONG(index), &sensor);
    ComOwner<ISensor> owned(sensor);
    return SUCCEEDED(result) ? std::move(owned) : nullptr;
}

bool KSensorWindows::isAggregatedOrientation(int index)
{
    const ComOwner<ISensor> sensor = sensorAt(index);
    SENSOR_TYPE_ID type = {};
    return sensor && SUCCEEDED(sensor->GetType(&type)) &&
           ::IsEqualGUID(type, SENSOR_TYPE_AGGREGATED_DEVICE_ORIENTATION);
}

bool KSensorWindows::chooseSensor(int index)
{
    m_sensor = sensorAt(index);
    return m_sensor != nullptr;
}

bool KSensorWindows::supportsRotationMatrix()
{
    VARIANT_BOOL supported = VARIANT_FALSE;
    return SUCCEEDED(m_sensor->SupportsDataField(SENSOR_DATA_TYPE_ROTATION_MATRIX, &supported)) &&
           supported != VARIANT_FALSE;
}

bool KSensorWindows::connectToSensor()
{
    m_sink.reset(new SensorEventSink(this));
    return SUCCEEDED(m_sensor->SetEventSink(m_sink.get()));
}
