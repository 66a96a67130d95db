#pragma once

// The one camera of the player and the list of what it plays: yaw, pitch, roll, field of view and
// the rotation matrix kept consistent with them, key-point paths, the playlist and the choice of
// projection and stereo mode for each medium. Owned by Application, lives on the GUI thread;
// paint() on the render thread reads the values without a lock.

#include "app/KeyPoints.h"

#include <QMap>
#include <QMatrix4x4>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QVariant>

class Application;
class QPropertyAnimation;

class KGlobalObject : public QObject
{
    Q_OBJECT
    // Angles in radians within [-pi, pi), field of view in degrees.
    Q_PROPERTY(float yaw READ yaw WRITE setYaw NOTIFY yawChanged)
    Q_PROPERTY(float pitch READ pitch WRITE setPitch NOTIFY pitchChanged)
    Q_PROPERTY(float roll READ roll WRITE setRoll NOTIFY rollChanged)
    Q_PROPERTY(float fov READ fov WRITE setFov NOTIFY fovChanged)
    // Extent of a partial panorama, radians.
    Q_PROPERTY(float yawMin READ yawMin WRITE setYawMin NOTIFY yawMinChanged)
    Q_PROPERTY(float yawMax READ yawMax WRITE setYawMax NOTIFY yawMaxChanged)
    Q_PROPERTY(float pitchMin READ pitchMin WRITE setPitchMin NOTIFY pitchMinChanged)
    Q_PROPERTY(float pitchMax READ pitchMax WRITE setPitchMax NOTIFY pitchMaxChanged)
    Q_PROPERTY(float fovLimitMin READ fovLimitMin NOTIFY fovLimitMinChanged)
    Q_PROPERTY(float fovLimitMax READ fovLimitMax NOTIFY fovLimitMaxChanged)
    Q_PROPERTY(QMatrix4x4 rotationMatrix READ rotationMatrix NOTIFY rotationMatrixChanged)
    // Targets of an inertia animation; they may leave [-pi, pi) so that it runs through the seam.
    Q_PROPERTY(float yawInterpolate READ yawInterpolate WRITE setYawInterpolate NOTIFY
                   yawInterpolateChanged)
    Q_PROPERTY(float pitchInterpolate READ pitchInterpolate WRITE setPitchInterpolate NOTIFY
                   pitchInterpolateChanged)
    Q_PROPERTY(int projectionSourceSetting READ projectionSourceSetting NOTIFY
                   projectionSourceSettingChanged)
    Q_PROPERTY(bool splitView READ splitView NOTIFY splitViewChanged)
    Q_PROPERTY(bool tv3dView READ tv3dView NOTIFY tv3dViewChanged)
    Q_PROPERTY(int outputDisplay READ outputDisplay NOTIFY outputDisplayChanged)
    Q_PROPERTY(bool touchMode READ touchMode NOTIFY touchModeChanged)
    Q_PROPERTY(bool touchTable READ touchTable CONSTANT)
    Q_PROPERTY(bool adobePlugin READ adobePlugin CONSTANT)
    // Links of this build; empty where it has none.
    Q_PROPERTY(QString documentationUrl READ documentationUrl CONSTANT)
    Q_PROPERTY(QString privacyUrl READ privacyUrl CONSTANT)
    Q_PROPERTY(int loopMode READ loopMode NOTIFY loopModeChanged)
    Q_PROPERTY(
        int playListIndex READ playListIndex WRITE setPlayListIndex NOTIFY playListIndexChanged)
    // The report of the medium opened last.
    Q_PROPERTY(QString videoLogMessage READ videoLogMessage NOTIFY videoLogMessageChanged)

public:
    enum OutputDisplay { StandardDisplay = 0, Display3D = 1, SplitDisplay = 2 };
    enum LoopMode { NoLoop = 0, LoopList = 1, LoopMedium = 2 };
    /// Results of isVideoFile().
    enum VideoKind { NoVideo = 0, Video = 1, RawVideo = 2 };

    explicit KGlobalObject(Application *application, QObject *parent = nullptr);
    ~KGlobalObject() override;

    // --- Camera -----------------------------------------------------------------------------

    float yaw() const { return m_yaw; }
    float pitch() const { return m_pitch; }
    float roll() const { return m_roll; }
    float fov() const { return m_fov; }
    float yawMin() const { return m_yawMin; }
    float yawMax() const { return m_yawMax; }
    float pitchMin() const { return m_pitchMin; }
    float pitchMax() const { return m_pitchMax; }
    float fovLimitMin() const { return m_fovLimitMin; }
    float fovLimitMax() const { return m_fovLimitMax; }
    float yawInterpolate() const { return m_yawInterpolate; }
    float pitchInterpolate() const { return m_pitchInterpolate; }

    /// The matrix the shader receives: the base rotation of the medium times the camera's.
    QMatrix4x4 rotationMatrix() const { return m_offsetMatrix * m_rotationMatrix; }

    /// Rotation that a medium's own metadata puts before the camera's.
    void setOffsetMatrix(const QMatrix4x4 &matrix);
    QMatrix4x4 offsetMatrix() const { return m_offsetMatrix; }

    // A value that is no number is ignored by all setters.
    void setYaw(float yaw, bool updateMatrix = true);
    void setPitch(float pitch, bool updateMatrix = true);
    void setRoll(float roll, bool updateMatrix = true);
    /// Outside the limits: 90 degrees with @p reset, else the nearer limit.
    Q_INVOKABLE void setFov(float fov, bool reset = false);
    void setYawMin(float value);
    void setYawMax(float value);
    void setPitchMin(float value);
    void setPitchMax(float value);
    void setYawInterpolate(float value);
    void setPitchInterpolate(float value);

    /// Applies what setters with updateMatrix off have stored.
    void rebuildMatrix();

    /// Takes a whole pose, as devices give it. @p updateAngles also recomputes yaw, pitch and roll;
    /// @p restartTimer restarts the timer of camera changes.
    Q_INVOKABLE void setRotationMatrix(const QMatrix4x4 &matrix, bool updateAngles,
                                       bool restartTimer);

    /// Angles added before the matrix is built, radians.
    void setOrientationOffset(float yaw, float pitch, float roll);

    /// Animates the float property @p property to @p newValue (with @p cumul: by it) in @p duration
    /// milliseconds.
    Q_INVOKABLE void interpolateValue(const QByteArray &property, float newValue,
                                      int duration = 200, bool cumul = false);
    Q_INVOKABLE void stopCameraAnimation();

    Q_INVOKABLE void resetYawPitchRollFov(const QVariantMap &metadata);
    /// The same with the metadata of the medium that plays now.
    Q_INVOKABLE void resetYawPitchRollFov();

    /// @p pitch limited so that a flat picture never shows beyond its edge; wrapped for others.
    Q_INVOKABLE float clampPitch(float pitch) const;

    /// Reads the camera path stored beside the medium @p url; without one the path is empty.
    Q_INVOKABLE void buildKeyPoints(const QVariant &url);
    /// Moves the camera to the path's pose at @p time, milliseconds.
    Q_INVOKABLE void interpolateKeyPoints(int time);

    // --- Display ----------------------------------------------------------------------------

    bool splitView() const { return m_splitView; }
    bool tv3dView() const { return m_tv3dView; }
    int outputDisplay() const { return m_outputDisplay; }
    bool touchMode() const { return m_touchMode; }
    bool touchTable() const;
    bool adobePlugin() const;
    QString documentationUrl() const;
    QString privacyUrl() const;
    /// The setting's value, AUTO included.
    int projectionSourceSetting() const;

    // --- Media and playlist -----------------------------------------------------------------

    Q_INVOKABLE void setMediaLoader(QObject *loader);
    QObject *mediaLoader() const { return m_mediaLoader; }
    /// The player that the loader has chosen; null without one.
    Q_INVOKABLE QObject *mediaPlayer() const;

    Q_INVOKABLE void openFile(const QString &url, bool dragAndDrop = false);
    /// Texts become URLs: http, https, rtsp, udp and file schemes as they are, others are paths.
    Q_INVOKABLE void openFiles(const QStringList &files, bool dragAndDrop = false);
    /// One file, a directory, a playlist file, or several media, which become the playlist.
    Q_INVOKABLE void openFiles(const QList<QUrl> &urls, bool dragAndDrop = false);

    /// True with fewer than two entries: a single medium is no playlist.
    Q_INVOKABLE bool playListIsEmpty() const { return m_playList.size() < 2; }
    Q_INVOKABLE void playListSetNext(bool forceNext = true);
    Q_INVOKABLE void playListSetPrevious();
    Q_INVOKABLE QList<QUrl> getPlayList() const { return m_playList; }
    Q_INVOKABLE QStringList getPlayListNames() const;
    Q_INVOKABLE void clearPlayList();
    Q_INVOKABLE QUrl getDynamicLogo(const QUrl &medium) const;
    Q_INVOKABLE QUrl getThumb(const QUrl &medium) const;
    Q_INVOKABLE QString getStereoConfig(const QUrl &medium) const;
    int playListIndex() const { return m_playListIndex; }
    void setPlayListIndex(int index, bool dragAndDrop = false);
    int loopMode() const { return m_loopMode; }

    Q_INVOKABLE bool isImageFile(const QUrl &url) const;
    /// A VideoKind.
    Q_INVOKABLE int isVideoFile(const QUrl &url) const;
    Q_INVOKABLE QStringList getSupportedImageFormats() const;
    Q_INVOKABLE QStringList getSupportedVideoFormats() const;
    Q_INVOKABLE bool isValidFilePath(const QUrl &url) const;
    Q_INVOKABLE bool isFile(const QUrl &url) const;
    /// A resource URL becomes a file URL; others stay.
    Q_INVOKABLE QUrl checkFilePath(const QUrl &url) const;

    /// What the medium says about itself; prepares the view for it.
    Q_INVOKABLE QVariantMap readMetaData(const QVariant &url);
    /// The same map as text for the debug panel and, kept here, for the software log.
    Q_INVOKABLE QString logMetaData(const QVariant &url, const QVariantMap &metadata);
    QString videoLogMessage() const { return m_videoLogMessage; }

    Q_INVOKABLE void startTimerNextImage();
    Q_INVOKABLE void pauseTimerNextImage();
    Q_INVOKABLE void resumeTimerNextImage();

    // --- Settings window and popups ---------------------------------------------------------

    /// Whether this run takes the user's own texts for libvlc.
    Q_INVOKABLE bool isVlcCustom() const;
    /// The texts for libvlc of @p kind "instance" or "media", separated by ",": the user's with
    /// @p custom, else the default ones.
    Q_INVOKABLE QString getVlcCmdInfos(bool custom, const QString &kind) const;
    /// Stores and saves the user's texts of that kind.
    Q_INVOKABLE void setVlcCustomCmd(const QString &kind, const QString &text);
    /// The components in this build and their licences, as rich text.
    Q_INVOKABLE QString aboutThirdParty() const;
    /// Whether files can be made in a folder of this machine, or the folder itself can.
    Q_INVOKABLE bool isWritableFolder(const QUrl &folder) const;

    Q_INVOKABLE void hideCursor();
    Q_INVOKABLE void restoreCursor();
    Q_INVOKABLE QString platformOS() const;
    Q_INVOKABLE void restart();
    Q_INVOKABLE void quit();
    /// Makes the fallback backend report its position often enough for camera paths.
    Q_INVOKABLE void hackQmlMediaPlayer(QObject *player);

public slots:
    void resetYawInterpolate();
    void resetPitchInterpolate();
    void onProjectionChanged();
    void setFovLimits();
    void onTextureSizeChanged();
    void onSettingsChanged(const QString &key);

signals:
    void yawChanged();
    void pitchChanged();
    void rollChanged();
    void fovChanged();
    void yawMinChanged();
    void yawMaxChanged();
    void pitchMinChanged();
    void pitchMaxChanged();
    void fovLimitMinChanged();
    void fovLimitMaxChanged();
    void rotationMatrixChanged();
    void yawInterpolateChanged();
    void pitchInterpolateChanged();
    void projectionSourceSettingChanged();
    void splitViewChanged();
    void tv3dViewChanged();
    void outputDisplayChanged();
    void touchModeChanged();
    void loopModeChanged();
    void playListIndexChanged();
    void playListChanged();
    /// What the user named, playlists unread; not what comes after in a playlist.
    void opened(const QList<QUrl> &urls);
    void endOfPlaylistReached();
    void videoLogMessageChanged();

private slots:
    void imageTimeoutSetNext();

private:
    void storeMatrix(const QMatrix4x4 &matrix);
    void storeAngle(float &field, float value, void (KGlobalObject::*changed)());
    void storeFov(float fov);
    void setLimit(float &field, float value, void (KGlobalObject::*changed)());
    void applyDisplay(const QString &display);
    void invokeLoader(const char *method, const QVariantList &arguments = {});
    void processFileSource(const QVariant &source, const QString &error, bool dragAndDrop);
    void resolveProjection(const QVariantMap &metadata);
    void resolveStereoMode(const QVariantMap &metadata);
    QVariantMap currentMetadata() const;
    QVariant setting(const char *key) const;

    Application *m_application;

    float m_yaw = 0;
    float m_pitch = 0;
    float m_roll = 0;
    float m_fov = 90;
    float m_yawMin;
    float m_yawMax;
    float m_pitchMin;
    float m_pitchMax;
    float m_fovLimitMin = 20;
    float m_fovLimitMax = 300;
    QMatrix4x4 m_rotationMatrix;
    QMatrix4x4 m_offsetMatrix;
    float m_yawInterpolate = 0;
    float m_pitchInterpolate = 0;
    float m_offsetYaw = 0;
    float m_offsetPitch = 0;
    float m_offsetRoll = 0;
    QMap<QString, QPropertyAnimation *> m_animations; // children of this object
    QMap<int, KeyPoint> m_keyPoints;                  // by time in milliseconds
    QTimer m_matrixTimer;

    bool m_splitView = false;
    bool m_tv3dView = false;
    int m_outputDisplay = StandardDisplay;
    bool m_touchMode = true;

    QPointer<QObject> m_mediaLoader;
    QList<QUrl> m_playList;
    int m_playListIndex = -1;
    QTimer m_imageTimer;
    int m_imageTimerRemaining = 0;
    int m_imageDisplayDuration = 0; // milliseconds
    bool m_imageDisplayDurationNone = false;
    QMap<QUrl, QUrl> m_logoMap;
    QMap<QUrl, QUrl> m_thumbMap;
    QMap<QUrl, QString> m_stereoMap;
    int m_loopMode = LoopList;
    QString m_videoLogMessage;
};
