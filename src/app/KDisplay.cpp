#include "app/KDisplay.h"

KDisplay::KDisplay(QObject *parent)
    : QObject(parent)
{
    if (!isSupported())
        m_logMessage = tr("Other display screen is not supported on this platform.");
}

template <typename T>
void KDisplay::store(T &field, const T &value, void (KDisplay::*changed)())
{
    if (field == value)
        return;
    field = value;
    emit(this->*changed)();
}

void KDisplay::setLogMessage(const QString &value)
{
    store(m_logMessage, value, &KDisplay::logMessageChanged);
}

void KDisplay::setUserMessage(const QString &value)
{
    store(m_userMessage, value, &KDisplay::userMessageChanged);
}

void KDisplay::setActivated(bool value)
{
    store(m_activated, value, &KDisplay::activatedChanged);
}

void KDisplay::setAvailable(bool value)
{
    store(m_available, value, &KDisplay::availableChanged);
}

void KDisplay::setProcessing(bool value)
{
    store(m_processing, value, &KDisplay::processingChanged);
}

void KDisplay::setFailed(bool value)
{
    store(m_failed, value, &KDisplay::failedChanged);
}
