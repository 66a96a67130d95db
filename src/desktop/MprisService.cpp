#include "desktop/MprisService.h"

#include "desktop/MprisPlayerAdaptor.h"
#include "desktop/MprisRootAdaptor.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace {

const QString kPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kName = QStringLiteral("org.mpris.MediaPlayer2.orbilens_player");

QDBusMessage callOfTheBus(const QString &method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

} // namespace

MprisService::MprisService(const QDBusConnection &bus, PlayerControls *controls)
    : m_bus(bus)
    , m_root(new MprisRootAdaptor(controls, this))
    , m_player(new MprisPlayerAdaptor(controls, this))
{
    m_time.start();
    if (m_bus.registerObject(kPath, this, QDBusConnection::ExportAdaptors))
        requestName(kName, true);
}

MprisService::~MprisService()
{
    // Also one that the bus has not given yet.
    m_bus.send(callOfTheBus(QStringLiteral("ReleaseName")) << m_name);
    m_bus.unregisterObject(kPath);
}

void MprisService::requestName(const QString &name, bool first)
{
    m_name = name;
    constexpr uint kDoNotQueue = 4;
    constexpr uint kExists = 3;
    const QDBusMessage request = callOfTheBus(QStringLiteral("RequestName")) << name << kDoNotQueue;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, first] {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        // Another player of ours runs already.
        if (!reply.isError() && reply.value() == kExists && first)
            requestName(
                QStringLiteral("%1.instance%2").arg(kName).arg(QCoreApplication::applicationPid()),
                false);
    });
}

void MprisService::update(const PlayerStatus &status)
{
    announce("org.mpris.MediaPlayer2", m_root->update(status));
    announce("org.mpris.MediaPlayer2.Player", m_player->update(status, m_time.elapsed()));
}

void MprisService::setPosition(qint64 position)
{
    m_player->setPosition(position, m_time.elapsed());
}

void MprisService::announce(const char *interface, const QVariantMap &changed)
{
    if (changed.isEmpty())
        return;
    QDBusMessage signal =
        QDBusMessage::createSignal(kPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    m_bus.send(signal << QLatin1String(interface) << changed << QStringList());
}
