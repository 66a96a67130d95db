#include "desktop/MprisPlayerAdaptor.h"

#include "desktop/MprisRootAdaptor.h"

#include <QMetaProperty>

#include <climits>
#include <cmath>
#include <iterator>

MprisPlayerAdaptor::MprisPlayerAdaptor(PlayerControls *controls, QObject *parent)
    : QDBusAbstractAdaptor(parent)
    , m_controls(controls)
{
    // Without it two equal maps of metadata count as different.
    static const bool known = QMetaType::registerEqualsComparator<QDBusObjectPath>();
    Q_UNUSED(known)
}

QVariantMap MprisPlayerAdaptor::update(const PlayerStatus &status, qint64 now)
{
    // Where the medium stands is asked for, never announced.
    const QLatin1String silent("Position");
    QVariantMap changed;
    const QMetaObject &type = staticMetaObject;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i)
        changed.insert(QLatin1String(type.property(i).name()), type.property(i).read(this));
    if (status.track != m_status.track)
        m_clock.restart();
    m_status = status;
    m_clock.setPlaying(m_status.playback == PlayerStatus::Playback::Playing, now);
    for (auto it = changed.begin(); it != changed.end();) {
        const QVariant value = property(it.key().toLatin1().constData());
        const bool differs = it.key() != silent && value != *it;
        *it = value;
        it = differs ? std::next(it) : changed.erase(it);
    }
    return changed;
}

void MprisPlayerAdaptor::setPosition(qint64 position, qint64 now)
{
    if (m_clock.moveTo(position, now))
        emit Seeked(this->position());
}

QString MprisPlayerAdaptor::playbackStatus() const
{
    switch (m_status.playback) {
    case PlayerStatus::Playback::Playing:
        return QStringLiteral("Playing");
    case PlayerStatus::Playback::Paused:
        return QStringLiteral("Paused");
    case PlayerStatus::Playback::Stopped:
        break;
    }
    return QStringLiteral("Stopped");
}

QString MprisPlayerAdaptor::loopStatus() const
{
    switch (m_status.loop) {
    case PlayerStatus::Loop::Medium:
        return QStringLiteral("Track");
    case PlayerStatus::Loop::List:
        return QStringLiteral("Playlist");
    case PlayerStatus::Loop::None:
        break;
    }
    return QStringLiteral("None");
}

void MprisPlayerAdaptor::setLoopStatus(const QString &status)
{
    if (status == QLatin1String("None"))
        m_controls->setLoop(PlayerStatus::Loop::None);
    else if (status == QLatin1String("Track"))
        m_controls->setLoop(PlayerStatus::Loop::Medium);
    else if (status == QLatin1String("Playlist"))
        m_controls->setLoop(PlayerStatus::Loop::List);
}

void MprisPlayerAdaptor::setRate(double rate)
{
    // The one rate there is needs no change; 0 is the interface's other word for a pause.
    if (rate == 0)
        Pause();
}

QDBusObjectPath MprisPlayerAdaptor::trackId() const
{
    if (!m_status.hasMedium())
        return QDBusObjectPath(QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack"));
    return QDBusObjectPath(
        QStringLiteral("/com/orvex/orbilens_player/track/%1").arg(m_status.track));
}

QVariantMap MprisPlayerAdaptor::metadata() const
{
    QVariantMap map{{QStringLiteral("mpris:trackid"), QVariant::fromValue(trackId())}};
    if (!m_status.hasMedium())
        return map;
    map.insert(QStringLiteral("xesam:url"), m_status.medium.toString(QUrl::FullyEncoded));
    map.insert(QStringLiteral("xesam:title"), m_status.title);
    if (m_status.duration > 0)
        map.insert(QStringLiteral("mpris:length"), qlonglong(m_status.duration) * 1000);
    if (!m_status.artwork.isEmpty())
        map.insert(QStringLiteral("mpris:artUrl"), m_status.artwork.toString(QUrl::FullyEncoded));
    return map;
}

void MprisPlayerAdaptor::setVolume(double volume)
{
    if (std::isfinite(volume))
        m_controls->setVolume(qBound(0.0, volume, 1.0));
}

void MprisPlayerAdaptor::Next()
{
    if (m_status.canGoNext)
        m_controls->next();
}

void MprisPlayerAdaptor::Previous()
{
    if (m_status.canGoPrevious)
        m_controls->previous();
}

void MprisPlayerAdaptor::Pause()
{
    if (m_status.playback == PlayerStatus::Playback::Playing)
        m_controls->pause();
}

void MprisPlayerAdaptor::PlayPause()
{
    if (m_status.playback == PlayerStatus::Playback::Playing)
        Pause();
    else
        Play();
}

void MprisPlayerAdaptor::Stop()
{
    if (m_status.hasMedium())
        m_controls->stop();
}

void MprisPlayerAdaptor::Play()
{
    if (m_status.hasMedium() && m_status.playback != PlayerStatus::Playback::Playing)
        m_controls->play();
}

void MprisPlayerAdaptor::Seek(qlonglong Offset)
{
    if (!canSeek())
        return;
    // Bounded first, as the sum of two arbitrary numbers could overflow.
    const qint64 target = m_clock.position() + qBound<qint64>(-INT_MAX, Offset / 1000, INT_MAX);
    if (target > m_status.duration)
        Next();
    else
        seekTo(qMax<qint64>(0, target));
}

void MprisPlayerAdaptor::SetPosition(const QDBusObjectPath &TrackId, qlonglong Position)
{
    const qint64 target = Position / 1000;
    if (canSeek() && TrackId == trackId() && Position >= 0 && target <= m_status.duration)
        seekTo(target);
}

void MprisPlayerAdaptor::seekTo(qint64 milliseconds)
{
    m_clock.expectJump();
    m_controls->seek(int(milliseconds));
}

void MprisPlayerAdaptor::OpenUri(const QString &Uri)
{
    const QUrl medium(Uri, QUrl::StrictMode);
    if (medium.isValid() && MprisRootAdaptor::uriSchemes().contains(medium.scheme()))
        m_controls->open(medium);
}
