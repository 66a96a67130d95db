#pragma once

// The depth camera as the scene knows it, there `kRealSense`: what the user's hand does before it,
// the camera's picture, and the log. Owned by Application, lives on the GUI thread; frames come
// from KRealSenseThread by a queued signal.

#include "input/realsense/DepthCamera.h"
#include "input/realsense/DepthGestures.h"

#include <QImage>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class Application;
class KRealSenseThread;

class KRealSense : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool available READ available NOTIFY availableChanged)
    /// Only an available camera can be switched on; a lost one is off.
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    Q_PROPERTY(QString logMessage READ logMessage NOTIFY logMessageChanged)
    Q_PROPERTY(QString logLink READ logLink NOTIFY logLinkChanged)
    /// An RSMode.
    Q_PROPERTY(int uiState READ uiState NOTIFY uiStateChanged)
    /// Frames of the camera in the last second.
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)
    Q_PROPERTY(int calibrationState READ calibrationState NOTIFY calibrationStateChanged)
    /// 0 to 1 along the timeline, while seeking.
    Q_PROPERTY(float seekProgression READ seekProgression NOTIFY seekProgressionChanged)
    Q_PROPERTY(bool feedbackScreen READ feedbackScreen NOTIFY feedbackScreenChanged)

public:
    enum RSMode { SeekMode = 0, ControlViewMode = 1 };
    Q_ENUM(RSMode)
    enum CalibrationState { Idle = 0, Calibrating = 1, Calibrated = 2 };
    Q_ENUM(CalibrationState)

    using CameraMaker = std::function<std::unique_ptr<DepthCamera>()>;

    explicit KRealSense(Application *application);
    /// @p makeCamera may return null.
    KRealSense(Application *application, const CameraMaker &makeCamera);
    ~KRealSense() override;

    bool available() const { return m_available; }
    bool activated() const { return m_activated; }
    QString logMessage() const { return m_logMessage; }
    QString logLink() const { return m_logLink; }
    int uiState() const { return m_uiState; }
    int fps() const { return m_fps; }
    int calibrationState() const { return m_calibrationState; }
    float seekProgression() const { return m_seekProgression; }
    bool feedbackScreen() const { return m_feedbackScreen; }

    void setActivated(bool activated);

    /// Whether there can be such a camera on this platform.
    Q_INVOKABLE bool isSupported() const;

    /// The picture and the joints in it of the last frame; empty while not activated.
    const QImage &image() const { return m_image; }
    const QVector<QPointF> &handPoints() const { return m_handPoints; }

public slots:
    void processData();
    void onSettingsChanged(QString key);
    void computeFps();

signals:
    void availableChanged();
    void activatedChanged();
    void logMessageChanged();
    void logLinkChanged();
    void uiStateChanged();
    void fpsChanged();
    void calibrationStateChanged();
    void seekProgressionChanged();
    void feedbackScreenChanged();

    void imageChanged();
    /// "pinch", "v_sign", "thumb_up", "thumb_down" or "move_camera".
    void gestureFired(QString gestureId);

private slots:
    void loseCamera();

private:
    template <class Value>
    void change(Value &field, const Value &value, void (KRealSense::*changed)());
    static void registerTypes();
    void startCamera(const CameraMaker &makeCamera);
    void rest();
    void carryOut(const DepthActions &actions);
    void moveCamera(const DepthActions &actions);
    void invokeLoader(const char *method);
    float playedShare() const;

    Application *const m_application;
    std::unique_ptr<DepthCamera> m_camera;
    std::unique_ptr<KRealSenseThread> m_thread; // ends before m_camera
    DepthGestures m_gestures;
    QTimer m_fpsTimer;

    bool m_available = false;
    bool m_activated = false;
    QString m_logMessage;
    QString m_logLink;
    int m_uiState = ControlViewMode;
    int m_fps = 0;
    int m_frames = 0;
    int m_calibrationState = Idle;
    float m_seekProgression = 0;
    bool m_feedbackScreen = true;
    QImage m_image;
    QVector<QPointF> m_handPoints;
    std::optional<float> m_pitch; // where the hand has brought the view, while it moves it
};
