#pragma once

// Keeps the screen from going dark: by the session's screen saver service, else by the desktop
// portal, else by telling the X server now and then that somebody is there. Owned by
// DesktopSession, GUI thread; never waits for an answer.

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <functional>

class QDBusMessage;

class ScreenKeeper : public QObject
{
    Q_OBJECT

public:
    /// @p wakeScreen is called every half minute where the bus @p bus has no service for it (also
    /// when it is not connected).
    ScreenKeeper(const QDBusConnection &bus, std::function<void()> wakeScreen);
    ~ScreenKeeper() override;

    void keepAwake(bool wanted);

private:
    enum class Way { ScreenSaver, Portal, XServer };

    void ask(Way way);
    void answered(Way way, const QDBusMessage &answer);
    void release();

    QDBusConnection m_bus;
    const std::function<void()> m_wakeScreen;
    QTimer m_waker;
    bool m_wanted = false;
    bool m_asking = false;
    std::function<void()> m_giveBack; // set while a service keeps the screen awake for us
};
