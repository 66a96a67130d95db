#pragma once

// Turns the view with the device in the user's hand. Owned by Application, in the scene `kSensor`,
// lives on the GUI thread. This class alone stands for a platform without orientation sensors.

#include "input/SensorRotation.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class KGlobalObject;

class KSensor : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString logMessage READ logMessage NOTIFY logMessageChanged)
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    Q_PROPERTY(bool available READ available NOTIFY availableChanged)

public:
    explicit KSensor(KGlobalObject *globalObject);
    ~KSensor() override;

    /// The sensor that this platform has.
    static std::unique_ptr<KSensor> create(KGlobalObject *globalObject);

    QString logMessage() const { return m_logMessage; }
    bool activated() const { return m_activated; }
    bool available() const { return m_available; }

    /// Without a sensor it stays off. Off, the view goes back to its neutral rotation.
    virtual void setActivated(bool activated);
    Q_INVOKABLE virtual bool isSupported() const { return false; }

public slots:
    /// One pose of the device; without effect while not activated. Sensors call it queued, as
    /// their reports come on threads of their own.
    void takeMatrix(const SensorMatrix &matrix);

signals:
    void logMessageChanged();
    void yawChanged();
    void pitchChanged();
    void rollChanged();
    void activatedChanged();
    void availableChanged();
    void rotationMatrixChanged();

protected:
    void appendLog(const QString &text);
    void setAvailable(bool available);

private:
    QString m_logMessage;
    bool m_activated = false;
    bool m_available = false;
    SensorRotation m_rotation;
    QPointer<KGlobalObject> m_globalObject; // dies before the sensor
};
