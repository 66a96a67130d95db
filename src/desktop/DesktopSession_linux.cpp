// The desktops of freedesktop.org: services on the session's bus, and the X server where that has
// none.

#include "desktop/DesktopSession.h"

#include "desktop/MprisService.h"
#include "desktop/RecentFiles.h"
#include "desktop/ScreenKeeper.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <xcb/xcb.h>

namespace {

/// Whether a session's bus is there already; Qt would start one otherwise.
bool hasSessionBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QLatin1String("/bus"));
}

QDBusConnection sessionBus()
{
    // A name that nobody has connected: a connection that is none.
    return hasSessionBus() ? QDBusConnection::sessionBus()
                           : QDBusConnection(QStringLiteral("orbilens-no-session"));
}

void wakeXScreen()
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    auto *connection = static_cast<xcb_connection_t *>(
        native ? native->nativeResourceForIntegration("connection") : nullptr);
    if (!connection || QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    xcb_force_screen_saver(connection, XCB_SCREEN_SAVER_RESET);
    xcb_flush(connection);
}

} // namespace

struct DesktopSession::Services
{
    Services(const QDBusConnection &bus, PlayerControls *controls)
        : mpris(bus.isConnected() ? std::make_unique<MprisService>(bus, controls) : nullptr)
        , screen(bus, wakeXScreen)
    {}

    const std::unique_ptr<MprisService> mpris; // null without a bus
    ScreenKeeper screen;
    RecentFiles recentFiles;
};

DesktopSession::DesktopSession(PlayerControls *controls)
    : m_services(std::make_unique<Services>(sessionBus(), controls))
{}

DesktopSession::~DesktopSession() = default;

void DesktopSession::update(const PlayerStatus &status)
{
    if (m_services->mpris)
        m_services->mpris->update(status);
    m_services->screen.keepAwake(status.keepsScreenAwake());
}

void DesktopSession::setPosition(qint64 position)
{
    if (m_services->mpris)
        m_services->mpris->setPosition(position);
}

void DesktopSession::remember(const QList<QUrl> &opened)
{
    m_services->recentFiles.remember(opened);
}
