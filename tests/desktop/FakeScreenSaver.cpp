#include "desktop/FakeScreenSaver.h"

namespace test {

FakeScreenSaver::FakeScreenSaver(QDBusConnection bus)
{
    bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), this,
                       QDBusConnection::ExportScriptableSlots);
    bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver"));
}

uint FakeScreenSaver::Inhibit(const QString &program, const QString &)
{
    said += QStringLiteral("Inhibit ") + program;
    return 41;
}

void FakeScreenSaver::UnInhibit(uint cookie)
{
    said += QStringLiteral("UnInhibit %1").arg(cookie);
}

} // namespace test
