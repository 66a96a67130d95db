#pragma once

// The player on the session's bus for media keys, panels and remote controls: owns the bus name,
// the object there and its two interfaces. Owned by DesktopSession, GUI thread.

#include "desktop/PlayerControls.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QObject>

class MprisPlayerAdaptor;
class MprisRootAdaptor;

class MprisService : public QObject
{
    Q_OBJECT

public:
    /// Without waiting for the bus. @p controls outlives this object.
    MprisService(const QDBusConnection &bus, PlayerControls *controls);
    ~MprisService() override;

    /// Announces what changed.
    void update(const PlayerStatus &status);
    /// @p position in milliseconds.
    void setPosition(qint64 position);

private:
    void requestName(const QString &name, bool first);
    void announce(const char *interface, const QVariantMap &changed);

    QDBusConnection m_bus;
    QString m_name; // asked for last
    QElapsedTimer m_time;
    MprisRootAdaptor *const m_root;
    MprisPlayerAdaptor *const m_player;
};
