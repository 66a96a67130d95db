#include "desktop/SessionBus.h"
#include "support/Files.h"

namespace test {

namespace {

constexpr int kPatienceMs = 20000;

} // namespace

SessionBus::SessionBus()
{
    // The system's own description of a session bus would start the desktop's services.
    const QString description =
        writeFile(m_folder.filePath(QStringLiteral("bus.conf")), R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=)" + m_folder.path().toUtf8() + R"(</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>)");
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--config-file=") + description});
    QByteArray address;
    while (!address.contains('\n') && m_daemon.waitForReadyRead(kPatienceMs))
        address += m_daemon.readAllStandardOutput();
    m_address = QString::fromLatin1(address.trimmed());
}

SessionBus::~SessionBus()
{
    for (const QString &name : qAsConst(m_connections))
        QDBusConnection::disconnectFromBus(name);
    m_daemon.terminate();
    if (!m_daemon.waitForFinished(kPatienceMs))
        m_daemon.kill();
}

QDBusConnection SessionBus::connection(const QString &name)
{
    m_connections.append(name);
    return QDBusConnection::connectToBus(m_address, name);
}

} // namespace test
