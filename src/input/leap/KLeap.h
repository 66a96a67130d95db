#pragma once

// The hand tracker as the scene knows it, there `kLeap`: the user's options, what the hands do, and
// the log. Owned by Application; everything but run() happens on the GUI thread, where it lives.
// Its own thread only finds the tracker, whose library may take its time, and ends.

#include "input/hands/HandAnalysis.h"
#include "input/leap/HandCamera.h"
#include "input/leap/HandTracker.h"
#include "input/leap/LeapTutorial.h"

#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QVector4D>

#include <functional>
#include <memory>

class Application;
class KGlobalObject;

class KLeap final : public QThread
{
    Q_OBJECT
    Q_PROPERTY(bool available READ available NOTIFY availableChanged)
    /// Only an available tracker can be switched on; a lost one is off.
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    Q_PROPERTY(double sensitivityYawPitch READ sensitivityYawPitch WRITE setSensitivityYawPitch
                   NOTIFY sensitivityYawPitchChanged)
    /// Milliseconds of one seek step.
    Q_PROPERTY(short sensitivitySeekJump READ sensitivitySeekJump WRITE setSensitivitySeekJump
                   NOTIFY sensitivitySeekJumpChanged)
    Q_PROPERTY(bool pitchInv READ pitchInv WRITE setPitchInv NOTIFY pitchInvChanged)
    Q_PROPERTY(bool yawInv READ yawInv WRITE setYawInv NOTIFY yawInvChanged)
    Q_PROPERTY(bool rollMode READ rollMode WRITE setRollMode NOTIFY rollModeChanged)
    Q_PROPERTY(bool fovMode READ fovMode WRITE setFovMode NOTIFY fovModeChanged)
    Q_PROPERTY(bool playPauseGesture READ playPauseGesture WRITE setPlayPauseGesture NOTIFY
                   playPauseGestureChanged)
    Q_PROPERTY(bool seekGesture READ seekGesture WRITE setSeekGesture NOTIFY seekGestureChanged)
    /// A HandCameraMode; others are ignored.
    Q_PROPERTY(uchar cameraMode READ cameraMode WRITE setCameraMode NOTIFY cameraModeChanged)
    /// x, y in window pixels; z depth from 0 to 1; w 1 while it is shown.
    Q_PROPERTY(QVector4D pointer READ pointer NOTIFY pointerChanged)
    Q_PROPERTY(double pointerSensibility READ pointerSensibility WRITE setPointerSensibility NOTIFY
                   pointerSensibilityChanged)
    /// 0 follows at once, 10 is very calm.
    Q_PROPERTY(uchar pointerInterpolation READ pointerInterpolation WRITE setPointerInterpolation
                   NOTIFY pointerInterpolationChanged)
    Q_PROPERTY(bool menuState READ menuState WRITE setMenuState NOTIFY menuStateChanged)
    /// HandZone::Edge bits.
    Q_PROPERTY(uchar handOutZone READ handOutZone NOTIFY handOutZoneChanged)
    Q_PROPERTY(bool drawHand READ drawHand WRITE setDrawHand NOTIFY drawHandChanged)
    /// -1 no tutorial, -2 asks for it, else the number of the page shown.
    Q_PROPERTY(int tutoState READ tutoState WRITE setTutoState NOTIFY tutoStateChanged)
    Q_PROPERTY(QString logMessage READ logMessage NOTIFY logMessageChanged)
    Q_PROPERTY(QString logLink READ logLink NOTIFY logLinkChanged)

public:
    using TrackerMaker = std::function<std::unique_ptr<HandTracker>()>;

    explicit KLeap(Application *application);
    /// @p makeTracker runs on this object's thread; it may return null.
    KLeap(Application *application, TrackerMaker makeTracker);
    ~KLeap() override;

    bool available() const { return m_available; }
    bool activated() const { return m_activated; }
    double sensitivityYawPitch() const { return m_options.sensitivity; }
    short sensitivitySeekJump() const { return m_seekJump; }
    bool pitchInv() const { return m_options.pitchInverted; }
    bool yawInv() const { return m_options.yawInverted; }
    bool rollMode() const { return m_options.roll; }
    bool fovMode() const { return m_options.zoom; }
    bool playPauseGesture() const { return m_options.playPause; }
    bool seekGesture() const { return m_options.seek; }
    uchar cameraMode() const { return uchar(m_options.mode); }
    QVector4D pointer() const { return m_pointer; }
    double pointerSensibility() const { return m_options.pointerSensibility; }
    uchar pointerInterpolation() const { return uchar(m_options.pointerInterpolation); }
    bool menuState() const { return m_options.menu; }
    uchar handOutZone() const { return m_handOutZone; }
    bool drawHand() const { return m_drawHand; }
    int tutoState() const { return m_tutoState; }
    QString logMessage() const { return m_logMessage; }
    QString logLink() const { return m_logLink; }

    // Numbers outside an option's range become the nearer end; what is no number is ignored.
    void setActivated(bool activated);
    void setSensitivityYawPitch(double value);
    void setSensitivitySeekJump(short milliseconds);
    void setPitchInv(bool on);
    void setYawInv(bool on);
    void setRollMode(bool on);
    void setFovMode(bool on);
    void setPlayPauseGesture(bool on);
    void setSeekGesture(bool on);
    void setCameraMode(uchar mode);
    void setPointerSensibility(double value);
    void setPointerInterpolation(uchar value);
    void setMenuState(bool on);
    void setDrawHand(bool on);
    void setTutoState(int state);

    /// The scene's item for short feedback, which has onShowPlayerText and onShowPlayerImage.
    Q_INVOKABLE void setPlayerImage(QObject *pi);
    Q_INVOKABLE bool isSupported() const { return true; }
    Q_INVOKABLE void nextTutorialPage();

public slots:
    void frameCaptured();
    void resizeWidth();
    void resizeHeight();
    void leapConnected(bool a);
    /// The next change of the projection is a gesture's.
    void onProjectionChangedByLeap();
    void onProjectionChanged();
    /// The scene has brought the camera back, see pitchBounce().
    void animationFinished();
    /// A headset was switched on or off.
    void hmdActivated();
    void onSettingsChanged(QString key);

signals:
    void availableChanged();
    void activatedChanged();
    void sensitivityYawPitchChanged();
    void sensitivitySeekJumpChanged();
    void pitchInvChanged();
    void yawInvChanged();
    void rollModeChanged();
    void fovModeChanged();
    void playPauseGestureChanged();
    void seekGestureChanged();
    void cameraModeChanged();
    void pointerChanged();
    void pointerSensibilityChanged();
    void pointerInterpolationChanged();
    void menuStateChanged();
    void handOutZoneChanged();
    void drawHandChanged();
    void tutoStateChanged();
    void logMessageChanged();
    void logLinkChanged();

    /// The scene is to animate pitch, field of view and roll there, pitch alone with a @p fov_end
    /// of -1, and call animationFinished(). Radians and degrees.
    void pitchBounce(double pitch_end, double fov_end, double roll_end);
    void iconProjChange();
    /// Fingers to paint over the window, or before the eyes of a headset.
    void drawFingersSignal(FingerList fingersExtended);
    void drawFingersSignalHmd(FingerList fingersExtended);
    void setGlobalObject(KGlobalObject *go);

protected:
    void run() override;

private:
    template <class Value>
    void change(Value &field, const Value &value, void (KLeap::*changed)());
    void changeOption(bool &field, bool on, void (KLeap::*changed)());
    void restoreOptions();
    void storeOptions() const;

    void carryOut(const HandActions &actions);
    void moveCamera(const HandActions &actions);
    void bringBack(const std::optional<HandCamera::Bounce> &bounce);
    void switchMenu(const HandActions &actions);
    void driveMenu(const HandActions &actions);
    void changeProjection(int step);
    void seek(int steps);
    void togglePlayback();
    void drawHands(const FingerList &fingers);
    void rest();
    void showTutorialPage();
    QObject *activeHeadset() const;
    void showText(const QString &text);
    void setLog(const QString &message, const QString &link);

    Application *const m_application;
    const TrackerMaker m_makeTracker;
    /// Made by run(); used here once a signal of it has come, deleted when the thread has ended.
    std::unique_ptr<HandTracker> m_tracker;
    QPointer<QObject> m_playerImage;

    HandOptions m_options;
    short m_seekJump = 5000;
    HandAnalysis m_analysis;
    HandCamera m_camera;
    LeapTutorial m_tutorial;
    QTimer m_silence; // a tracker that says nothing shows nothing

    bool m_available = false;
    bool m_wasAvailable = false;
    bool m_activated = false;
    QVector4D m_pointer;
    bool m_menuByPointer = false;
    bool m_pressing = false;
    uchar m_handOutZone = 0;
    bool m_drawHand = true;
    bool m_handsDrawn = false;
    int m_tutoState = LeapTutorial::kNone;
    bool m_projectionByLeap = false;
    QString m_logMessage;
    QString m_logLink;
};
