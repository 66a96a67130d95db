#pragma once

// A desktop's screen saver service on a test's bus, which writes down what it is told.

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

namespace test {

class FakeScreenSaver : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit FakeScreenSaver(QDBusConnection bus)
    {
        bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), this,
                           QDBusConnection::ExportScriptableSlots);
        bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver"));
    }

    QStringList said;

public slots:
    Q_SCRIPTABLE uint Inhibit(const QString &program, const QString &)
    {
        said += QStringLiteral("Inhibit ") + program;
        return 41;
    }
    Q_SCRIPTABLE void UnInhibit(uint cookie) { said += QStringLiteral("UnInhibit %1").arg(cookie); }
};

} // namespace test
