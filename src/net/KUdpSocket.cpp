#include "net/KUdpSocket.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"

#include <QElapsedTimer>
#include <QStandardPaths>

#include <vector>

namespace {

constexpr int kSeekPauseMs = 1000;
/// One call drains no more than this, so that the event loop turns under any flood; what is left
/// comes with the next turn.
constexpr int kDatagramsPerTurn = 512;
constexpr qint64 kBytesPerTurn = 1024 * 1024;
/// Looking for the newest sound packet among foreign ones ends after this long.
constexpr qint64 kDecodeBudgetMs = 4;

SyncFormat syncFormat(int packetFormat)
{
    return packetFormat == KUdpSocket::QtBinary ? SyncFormat::QtBinary : SyncFormat::Json;
}

QString locateIn(QStandardPaths::StandardLocation location, const QString &fileName)
{
    return QStandardPaths::locate(location, fileName);
}

/// A loader without the function is no fault: scenes differ.
void invoke(QObject *loader, const char *signature, const char *method, const QVariant &argument)
{
    if (loader->metaObject()->indexOfMethod(signature) >= 0)
        QMetaObject::invokeMethod(loader, method, Q_ARG(QVariant, argument));
}

} // namespace

KUdpSocket::KUdpSocket(const QString &udpOption, Application *application)
    : m_application(application)
{
    m_port = setting("application/communication/port").toLongLong();
    m_role = syncRole(udpOption, setting("application/communication/state").toString(), m_port);
    if (m_role == SyncRole::Off)
        return;

    m_socket.reset(new QUdpSocket);
    m_packetId = QStringLiteral("lnd");
    m_rate = syncInterval(setting("application/communication/rate").toInt());
    m_packetFormat = setting("application/communication/format").toInt();
    if (m_role == SyncRole::Master)
        startMaster();
    else
        startSlave();
}

KUdpSocket::~KUdpSocket()
{
    if (m_timer)
        m_timer->stop();
}

void KUdpSocket::startMaster()
{
    const QString mode = setting("application/communication/ipMode").toString();
    if (mode == QLatin1String("broadcast"))
        m_destination = QHostAddress::Broadcast;
    else if (mode == QLatin1String("localhost"))
        m_destination = QHostAddress::LocalHost;
    else
        m_destination.setAddress(setting("application/communication/ipCustom").toString());

    m_timer.reset(new QTimer);
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer.data(), &QTimer::timeout, this, &KUdpSocket::writeData);
    m_timer->setInterval(m_rate);
    m_timer->start();
}

void KUdpSocket::startSlave()
{
    m_urlMode = setting("application/communication/urlMode").toInt();
    m_orientationMode = setting("application/communication/orientationMode").toInt();
    // Shared, so that several slaves on one machine hear the same broadcast.
    m_socket->bind(QHostAddress::Any, quint16(m_port),
                   QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint);
    connect(m_socket.data(), &QUdpSocket::readyRead, this, &KUdpSocket::readData);
}

QVariant KUdpSocket::setting(const char *key) const
{
    return m_application->settings()->get(QLatin1String(key));
}

// --- Master -----------------------------------------------------------------------------------

SyncPacket KUdpSocket::currentPacket() const
{
    SyncPacket packet;
    packet.id = m_packetId;
    if (const KGlobalObject *globalObject = m_application->globalObject()) {
        packet.yaw = globalObject->yaw();
        packet.pitch = globalObject->pitch();
        packet.roll = globalObject->roll();
        packet.fov = globalObject->fov();
        if (const QObject *player = globalObject->mediaPlayer()) {
            packet.url = player->property("mediaSource").toString();
            packet.state = player->property("playbackState").toInt();
            packet.position = player->property("position").toInt();
        }
    }
    if (const KShaderCodeBuilder *builder = m_application->shaderBuilder())
        packet.stereoMode = builder->stereoMode();
    return packet;
}

void KUdpSocket::writeData()
{
    if (m_role == SyncRole::Master)
        m_socket->writeDatagram(encodeSyncPacket(currentPacket(), syncFormat(m_packetFormat)),
                                m_destination, quint16(m_port));
}

// --- Slave ------------------------------------------------------------------------------------

void KUdpSocket::readData()
{
    if (m_role != SyncRole::Slave)
        return;
    std::vector<QByteArray> datagrams;
    qint64 bytes = 0;
    while (m_socket->hasPendingDatagrams() && int(datagrams.size()) < kDatagramsPerTurn &&
           bytes < kBytesPerTurn) {
        QByteArray datagram(int(std::max<qint64>(0, m_socket->pendingDatagramSize())), '\0');
        const qint64 read = m_socket->readDatagram(datagram.data(), datagram.size());
        datagram.truncate(int(std::max<qint64>(0, read)));
        bytes += datagram.size();
        datagrams.push_back(std::move(datagram));
    }

    // Only the newest packet matters, but the newest datagram may be somebody else's.
    QElapsedTimer decoding;
    decoding.start();
    for (auto datagram = datagrams.crbegin(); datagram != datagrams.crend(); ++datagram) {
        if (const auto packet =
                decodeSyncPacket(*datagram, syncFormat(m_packetFormat), m_packetId)) {
            apply(*packet);
            return;
        }
        if (decoding.elapsed() >= kDecodeBudgetMs)
            return;
    }
}

void KUdpSocket::apply(const SyncPacket &packet)
{
    KGlobalObject *globalObject = m_application->globalObject();
    if (!globalObject)
        return;
    applyOrientation(packet);
    const HeadsetView *headset = m_application->headsetView();
    if (packet.fov > 0 && !(headset && headset->isActivated()))
        globalObject->setFov(packet.fov, false);

    const auto location =
        m_urlMode == Movies ? QStandardPaths::MoviesLocation : QStandardPaths::DesktopLocation;
    const QUrl url = slaveUrl(packet.url, SlaveUrl(m_urlMode),
                              [location](const QString &name) { return locateIn(location, name); });
    if (followMedium(url))
        followPlayback(packet);
}

void KUdpSocket::applyOrientation(const SyncPacket &packet)
{
    KGlobalObject *globalObject = m_application->globalObject();
    if (m_orientationMode == AbsoluteOrientation) {
        globalObject->setYaw(packet.yaw, false);
        globalObject->setPitch(packet.pitch, false);
        globalObject->setRoll(packet.roll, false);
        globalObject->rebuildMatrix();
    } else if (m_orientationMode == OffsetOrientation) {
        globalObject->setOrientationOffset(packet.yaw, packet.pitch, packet.roll);
    }
}

bool KUdpSocket::followMedium(const QUrl &url)
{
    KGlobalObject *globalObject = m_application->globalObject();
    if (m_urlMode == Off)
        return true;
    if (url.isEmpty()) {
        m_requestedUrl.clear();
        return false;
    }
    QObject *loader = globalObject->mediaLoader();
    const QObject *player = globalObject->mediaPlayer();
    if (!loader || !player)
        return false;
    // A medium that cannot be opened is asked for once, not with every packet.
    if (url != player->property("mediaSource").toUrl() && url != m_requestedUrl) {
        m_requestedUrl = url;
        QMetaObject::invokeMethod(loader, "processFileSource", Q_ARG(QVariant, url),
                                  Q_ARG(QVariant, false), Q_ARG(QVariant, QString()),
                                  Q_ARG(QVariant, false));
    }
    return true;
}

void KUdpSocket::followPlayback(const SyncPacket &packet)
{
    QObject *loader = m_application->globalObject()->mediaLoader();
    const QObject *player = m_application->globalObject()->mediaPlayer();
    KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!loader || !player || !builder)
        return;

    SlaveState slave;
    slave.stereoMode = builder->stereoMode();
    slave.playbackState = player->property("playbackState").toInt();
    slave.position = player->property("position").toLongLong();
    slave.duration = player->property("duration").toLongLong();
    slave.seekAllowed = m_syncUnlocked;
    const SlaveActions actions = slaveActions(packet, slave, m_seekTolerance);

    if (actions.stereoMode)
        builder->setStereoMode(*actions.stereoMode);
    if (actions.playbackState)
        invoke(loader, "syncPlaybackState(QVariant)", "syncPlaybackState", *actions.playbackState);
    if (actions.seekTo) {
        m_syncUnlocked = false;
        invoke(loader, "seek(QVariant)", "seek", *actions.seekTo);
        QTimer::singleShot(kSeekPauseMs, this, &KUdpSocket::unlockSync);
    }
}

void KUdpSocket::unlockSync()
{
    m_syncUnlocked = true;
}
