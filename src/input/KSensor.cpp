#include "input/KSensor.h"

#include "app/KGlobalObject.h"

KSensor::KSensor(KGlobalObject *globalObject)
    : m_globalObject(globalObject)
{}

KSensor::~KSensor() = default;

void KSensor::setActivated(bool activated)
{
    if (m_activated == activated || (activated && !m_available))
        return;
    m_activated = activated;
    if (!activated)
        m_rotation.reset();
    emit activatedChanged();
    if (!activated && m_globalObject)
        m_globalObject->setRotationMatrix(QMatrix4x4(), true, true);
}

void KSensor::takeMatrix(const SensorMatrix &matrix)
{
    if (m_activated && m_globalObject)
        m_globalObject->setRotationMatrix(m_rotation.relative(matrix), true, true);
}

void KSensor::appendLog(const QString &text)
{
    m_logMessage += text;
    emit logMessageChanged();
}

void KSensor::setAvailable(bool available)
{
    if (m_available == available)
        return;
    m_available = available;
    emit availableChanged();
}
