#pragma once

// A session bus of its own for one test: a message bus daemon, ended by its process with the
// object.

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace test {

class SessionBus
{
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;

    /// For DBUS_SESSION_BUS_ADDRESS of another program.
    QString address() const { return m_address; }

    /// A new connection to the bus, as another program would have it.
    QDBusConnection connection(const QString &name);

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace test
