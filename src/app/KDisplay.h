#pragma once

// State of a second display screen for the scene. Owned by Application, GUI thread.

#include <QObject>

class KDisplay : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString logMessage READ logMessage WRITE setLogMessage NOTIFY logMessageChanged)
    Q_PROPERTY(QString userMessage READ userMessage WRITE setUserMessage NOTIFY userMessageChanged)
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    Q_PROPERTY(bool available READ available WRITE setAvailable NOTIFY availableChanged)
    Q_PROPERTY(bool processing READ processing WRITE setProcessing NOTIFY processingChanged)
    Q_PROPERTY(bool failed READ failed WRITE setFailed NOTIFY failedChanged)

public:
    explicit KDisplay(QObject *parent = nullptr);

    /// Whether this platform can drive a second display; the log message says when it cannot.
    Q_INVOKABLE bool isSupported() const { return false; }

    QString logMessage() const { return m_logMessage; }
    QString userMessage() const { return m_userMessage; }
    bool activated() const { return m_activated; }
    bool available() const { return m_available; }
    bool processing() const { return m_processing; }
    bool failed() const { return m_failed; }

    void setLogMessage(const QString &value);
    void setUserMessage(const QString &value);
    void setActivated(bool value);
    void setAvailable(bool value);
    void setProcessing(bool value);
    void setFailed(bool value);

signals:
    void logMessageChanged();
    void userMessageChanged();
    void activatedChanged();
    void availableChanged();
    void processingChanged();
    void failedChanged();

private:
    template <typename T>
    void store(T &field, const T &value, void (KDisplay::*changed)());

    QString m_logMessage;
    QString m_userMessage;
    bool m_activated = false;
    bool m_available = false;
    bool m_processing = false;
    bool m_failed = false;
};
