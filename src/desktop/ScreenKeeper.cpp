#include "desktop/ScreenKeeper.h"

#include "foundation/KVersion.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

namespace {

// Shorter than any delay a desktop offers.
constexpr int kWakeMilliseconds = 30000;
const QString kReason = QStringLiteral("Playing a film");

// Idle Inhibition Service Draft of freedesktop.org.
QDBusMessage screenSaverCall(const char *method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QStringLiteral("/org/freedesktop/ScreenSaver"),
                                          QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QLatin1String(method));
}

// XDG Desktop Portal, org.freedesktop.portal.Inhibit.
QDBusMessage portalInhibit()
{
    constexpr uint kIdle = 8;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    return call << QString() << kIdle << QVariantMap{{QStringLiteral("reason"), kReason}};
}

QDBusMessage portalClose(const QString &handle)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), handle,
                                          QStringLiteral("org.freedesktop.portal.Request"),
                                          QStringLiteral("Close"));
}

} // namespace

ScreenKeeper::ScreenKeeper(const QDBusConnection &bus, std::function<void()> wakeScreen)
    : m_bus(bus)
    , m_wakeScreen(std::move(wakeScreen))
{
    m_waker.setInterval(kWakeMilliseconds);
    connect(&m_waker, &QTimer::timeout, this, [this] { m_wakeScreen(); });
}

ScreenKeeper::~ScreenKeeper()
{
    release();
}

void ScreenKeeper::keepAwake(bool wanted)
{
    if (m_wanted == wanted)
        return;
    m_wanted = wanted;
    // What is being asked for is given back, or kept, when the answer comes.
    if (!wanted)
        release();
    else if (!m_asking)
        ask(m_bus.isConnected() ? Way::ScreenSaver : Way::XServer);
}

void ScreenKeeper::ask(Way way)
{
    if (way == Way::XServer) {
        m_wakeScreen();
        m_waker.start();
        return;
    }
    m_asking = true;
    const QDBusMessage call = way == Way::ScreenSaver
                                  ? screenSaverCall("Inhibit") << KVersion::productName() << kReason
                                  : portalInhibit();
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, way] {
        watcher->deleteLater();
        m_asking = false;
        answered(way, watcher->reply());
    });
}

void ScreenKeeper::answered(Way way, const QDBusMessage &answer)
{
    const QVariant handle = answer.arguments().value(0);
    if (answer.type() != QDBusMessage::ReplyMessage || !handle.isValid()) {
        if (m_wanted)
            ask(way == Way::ScreenSaver ? Way::Portal : Way::XServer);
        return;
    }
    const QDBusMessage giveBack = way == Way::ScreenSaver
                                      ? screenSaverCall("UnInhibit") << handle
                                      : portalClose(handle.value<QDBusObjectPath>().path());
    m_giveBack = [this, giveBack] { m_bus.send(giveBack); };
    if (!m_wanted)
        release();
}

void ScreenKeeper::release()
{
    m_waker.stop();
    if (m_giveBack)
        m_giveBack();
    m_giveBack = nullptr;
}
