#pragma once

// What plays and how, on the session's bus (MPRIS D-Bus Interface 2.2,
// org.mpris.MediaPlayer2.Player). Times there are microseconds. A child of the object that
// MprisService registers; GUI thread.

#include "desktop/PlaybackClock.h"
#include "desktop/PlayerControls.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

class MprisPlayerAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QString LoopStatus READ loopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ hasMedium)
    Q_PROPERTY(bool CanPause READ hasMedium)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)

public:
    MprisPlayerAdaptor(PlayerControls *controls, QObject *parent);

    /// Takes the new status over at @p now (milliseconds of a steady clock); returns the properties
    /// that changed with it, by name.
    QVariantMap update(const PlayerStatus &status, qint64 now);

    /// @p position in milliseconds, as the player reports it at @p now.
    void setPosition(qint64 position, qint64 now);

    QString playbackStatus() const;
    QString loopStatus() const;
    void setLoopStatus(const QString &status);
    double rate() const { return 1; }
    void setRate(double rate);
    QVariantMap metadata() const;
    double volume() const { return m_status.volume; }
    void setVolume(double volume);
    qlonglong position() const { return m_clock.position() * 1000; }
    bool canGoNext() const { return m_status.canGoNext; }
    bool canGoPrevious() const { return m_status.canGoPrevious; }
    bool hasMedium() const { return m_status.hasMedium(); }
    bool canSeek() const { return m_status.canSeek(); }
    bool canControl() const { return true; }

public slots:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    /// By @p Offset microseconds; beyond the end it is the next medium.
    void Seek(qlonglong Offset);
    /// To @p Position microseconds, unless @p TrackId is another medium by now.
    void SetPosition(const QDBusObjectPath &TrackId, qlonglong Position);
    void OpenUri(const QString &Uri);

signals:
    /// The position changed otherwise than by playing, microseconds.
    void Seeked(qlonglong Position);

private:
    QDBusObjectPath trackId() const;
    void seekTo(qint64 milliseconds);

    PlayerControls *const m_controls;
    PlayerStatus m_status;
    PlaybackClock m_clock;
};
