#include "net/SlaveRules.h"

#include "render/KShaderCodeBuilder.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

constexpr qint64 kHighestPort = 65535;
constexpr int kHighestPlaybackState = 2; // stopped, playing, paused

QString bareFileName(const QString &url)
{
    // Decoding may bring slashes up again: they are cut a second time.
    const QString decoded = QUrl(url).fileName(QUrl::FullyDecoded);
    QString name = QFileInfo(decoded).fileName();
    name = name.mid(name.lastIndexOf(QLatin1Char('\\')) + 1);
    const bool usable = name != QLatin1String(".") && name != QLatin1String("..") &&
                        !name.contains(QChar(QChar::Null));
    return usable ? name : QString();
}

} // namespace

SyncRole syncRole(const QString &option, const QString &setting, qint64 port)
{
    const QString role = option.isEmpty() ? setting : option;
    if (port < 1 || port > kHighestPort)
        return SyncRole::Off;
    if (role == QLatin1String("master"))
        return SyncRole::Master;
    if (role == QLatin1String("slave"))
        return SyncRole::Slave;
    return SyncRole::Off;
}

QString syncRoleName(SyncRole role)
{
    switch (role) {
    case SyncRole::Master:
        return QStringLiteral("master");
    case SyncRole::Slave:
        return QStringLiteral("slave");
    case SyncRole::Off:
        break;
    }
    return QStringLiteral("off");
}

int syncInterval(int rate)
{
    return std::max(1, rate);
}

QUrl slaveUrl(const QString &url, SlaveUrl mode, const FileLocator &locate)
{
    static const QStringList kSchemes{QStringLiteral("file"), QStringLiteral("http"),
                                      QStringLiteral("https"), QStringLiteral("rtsp"),
                                      QStringLiteral("udp")};
    switch (mode) {
    case SlaveUrl::Absolute: {
        const QUrl absolute(url);
        return kSchemes.contains(absolute.scheme()) ? absolute : QUrl();
    }
    case SlaveUrl::Movies:
    case SlaveUrl::Desktop: {
        const QString name = bareFileName(url);
        const QString found = name.isEmpty() ? QString() : locate(name);
        return found.isEmpty() ? QUrl() : QUrl::fromLocalFile(found);
    }
    case SlaveUrl::Off:
        break;
    }
    return {};
}

SlaveActions slaveActions(const SyncPacket &packet, const SlaveState &slave, int seekTolerance)
{
    SlaveActions actions;
    // The automatic mode exists in the settings only, never as a picture's own.
    if (packet.stereoMode >= KShaderCodeBuilder::STEREO_2D &&
        packet.stereoMode < KShaderCodeBuilder::STEREO_AUTO &&
        packet.stereoMode != slave.stereoMode)
        actions.stereoMode = packet.stereoMode;

    if (packet.state >= 0 && packet.state <= kHighestPlaybackState &&
        packet.state != slave.playbackState)
        actions.playbackState = packet.state;

    const qint64 end = slave.duration > 0 ? slave.duration : std::numeric_limits<int>::max();
    const qint64 target = std::clamp<qint64>(packet.position, 0, end);
    const bool near =
        slave.position >= target - seekTolerance && slave.position <= target + seekTolerance;
    if (slave.seekAllowed && !near)
        actions.seekTo = int(std::min<qint64>(target, std::numeric_limits<int>::max()));
    return actions;
}
