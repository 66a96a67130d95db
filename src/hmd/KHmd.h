#pragma once

// The device-neutral front of a headset for the scene (`kHmdDevice`) and for the view; owned by
// Application, lives on the GUI thread. The device's own work happens in its WorkerThreadVR, which
// it owns.
//
// What other threads may call is named below; everything else belongs to the GUI thread.

#include "hmd/FrameRate.h"

#include <QMatrix4x4>
#include <QObject>
#include <QPointF>
#include <QVector4D>

#include <atomic>
#include <memory>

class Application;
class HeadsetInterface;
class HeadsetView;
class WorkerThreadVR;

class KHmd : public QObject
{
    Q_OBJECT
    /// The user looks through the headset.
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    /// Values of a side by side preview's warp: centres and scales in fractions of the area.
    Q_PROPERTY(QPointF lensCenterLeft READ lensCenterLeft WRITE setLensCenterLeft NOTIFY
                   lensCenterLeftChanged)
    Q_PROPERTY(QPointF lensCenterRight READ lensCenterRight WRITE setLensCenterRight NOTIFY
                   lensCenterRightChanged)
    Q_PROPERTY(QPointF screenCenterLeft READ screenCenterLeft WRITE setScreenCenterLeft NOTIFY
                   screenCenterLeftChanged)
    Q_PROPERTY(QPointF screenCenterRight READ screenCenterRight WRITE setScreenCenterRight NOTIFY
                   screenCenterRightChanged)
    Q_PROPERTY(QPointF scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(QPointF scaleIn READ scaleIn WRITE setScaleIn NOTIFY scaleInChanged)
    Q_PROPERTY(
        QVector4D hmdWarpParam READ hmdWarpParam WRITE setHmdWarpParam NOTIFY hmdWarpParamChanged)
    /// What became of the device, for the software log.
    Q_PROPERTY(QString logMessage READ logMessage WRITE setLogMessage NOTIFY logMessageChanged)
    /// A device works.
    Q_PROPERTY(bool available READ available WRITE setAvailable NOTIFY availableChanged)
    /// Radians that the user turns the view by, positive to the left; within [-pi, pi).
    Q_PROPERTY(float shiftYaw READ shiftYaw WRITE setShiftYaw NOTIFY shiftYawChanged)
    /// Factor of the eyes' pictures in height; 0 for none.
    Q_PROPERTY(float scaleCorrector READ scaleCorrector WRITE setScaleCorrector NOTIFY
                   scaleCorrectorChanged)
    /// Frames that the headset was given in the last whole second.
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)

public:
    explicit KHmd(Application *application, QObject *parent = nullptr);
    ~KHmd() override;

    virtual void setLogMessage(QString message);
    Q_INVOKABLE virtual bool isSupported() const { return true; }
    Q_INVOKABLE virtual QString sdkType() const { return QStringLiteral("oculus"); }

public slots:
    void displayMessageBoxAndRestart(QString message);

    /// Once the scene graph's context exists; a device whose thread runs already goes on.
    virtual void startThread() = 0;
    virtual void stopThread() = 0;

public:
    /// Degrees.
    Q_INVOKABLE float defaultFov() const { return m_defaultFov; }

    bool activated() const { return m_activated; } ///< any thread
    QPointF lensCenterLeft() const { return m_lensCenterLeft; }
    QPointF lensCenterRight() const { return m_lensCenterRight; }
    QPointF screenCenterLeft() const { return m_screenCenterLeft; }
    QPointF screenCenterRight() const { return m_screenCenterRight; }
    QPointF scale() const { return m_scale; }
    QPointF scaleIn() const { return m_scaleIn; }
    QVector4D hmdWarpParam() const { return m_hmdWarpParam; }
    QString logMessage() const { return m_logMessage; }
    bool available() const { return m_available; }
    float shiftYaw() const { return m_shiftYaw; }             ///< any thread
    float scaleCorrector() const { return m_scaleCorrector; } ///< any thread
    int fps() const { return m_fps; }

    void setActivated(bool activated);
    void setLensCenterLeft(QPointF centre);
    void setLensCenterRight(QPointF centre);
    void setScreenCenterLeft(QPointF centre);
    void setScreenCenterRight(QPointF centre);
    void setScale(QPointF scale);
    void setScaleIn(QPointF scale);
    void setHmdWarpParam(QVector4D coefficients);
    void setAvailable(bool available);
    void setShiftYaw(float radians);
    void setScaleCorrector(float corrector);

    /// The head's orientation, camera to world; what HeadMotion::isPose() refuses while nothing
    /// tracks a head. GUI thread, and the render thread while the GUI thread waits for it.
    QMatrix4x4 hmdPose() const;

    /// What the panorama view asks of this headset; lives as long as this object.
    HeadsetView *headsetView() const { return m_headsetView.get(); }

    /// The interface inside the headset, null while there is none; it must outlive the thread.
    void setHeadsetInterface(HeadsetInterface *headsetInterface);
    HeadsetInterface *headsetInterface() const { return m_interface; }

    /// Set under the automatic choice by a family that found no runtime or no device: the next one
    /// is to be tried. Any thread.
    bool fallbackRequested() const { return m_fallbackRequested; }
    void setFallbackRequested() { m_fallbackRequested = true; }

    Application *application() const { return m_application; }

    /// A thread has been started and has not ended yet.
    bool isRunning() const { return m_worker != nullptr; }

    /// Counts a frame; device thread.
    void computeFps();

    /// Brings the stored mode in line with what was @p detected. True when a restart was asked
    /// for, so that no device should start any more.
    [[nodiscard]] bool agreeOnMode(bool detected);

signals:
    void activatedChanged();
    void lensCenterLeftChanged();
    void lensCenterRightChanged();
    void screenCenterLeftChanged();
    void screenCenterRightChanged();
    void scaleChanged();
    void scaleInChanged();
    void hmdWarpParamChanged();
    void logMessageChanged();
    void availableChanged();
    void shiftYawChanged();
    void scaleCorrectorChanged();
    void fpsChanged();
    /// Once for each thread that ran, after its end.
    void workerThreadFinished();

protected:
    /// Gives @p worker its GL context and starts it. @p sdkName begins the text of a failure.
    void startWorker(std::unique_ptr<WorkerThreadVR> worker, const QString &sdkName);

    /// Ends the thread and waits for it; nothing happens while none runs.
    void stopWorker();

private:
    class View;

    template <class Value>
    void assign(Value &field, const Value &value, void (KHmd::*changed)());
    void workerEnded();
    [[nodiscard]] bool storeMode(bool hmdMode, const QString &reason);

    Application *const m_application;
    std::atomic<bool> m_fallbackRequested{false};
    std::atomic<bool> m_activated{false};
    QPointF m_lensCenterLeft, m_lensCenterRight;
    QPointF m_screenCenterLeft, m_screenCenterRight;
    QPointF m_scale, m_scaleIn;
    QVector4D m_hmdWarpParam;
    QString m_logMessage;
    bool m_available = false;
    std::atomic<float> m_shiftYaw{0};
    const float m_defaultFov = 90.5F;
    std::atomic<float> m_scaleCorrector{0};
    int m_fps = 0;
    FrameRate m_frameRate; // device thread
    HeadsetInterface *m_interface = nullptr;
    std::unique_ptr<HeadsetView> m_headsetView;
    std::unique_ptr<WorkerThreadVR> m_worker;
    int m_runs = 0; // threads started so far
};
