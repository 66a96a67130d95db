#pragma once

// The player's manners on the desktop that it runs on: remote controls, a screen that stays awake,
// recent files. Each platform has its own source file. Owned by DesktopLink, GUI thread.

#include "desktop/PlayerControls.h"

#include <QList>

#include <memory>

class DesktopSession
{
public:
    /// Reaches for the services of the desktop, where there are any. @p controls outlives this.
    explicit DesktopSession(PlayerControls *controls);
    ~DesktopSession();
    DesktopSession(const DesktopSession &) = delete;
    DesktopSession &operator=(const DesktopSession &) = delete;

    void update(const PlayerStatus &status);
    /// Where the medium stands, milliseconds.
    void setPosition(qint64 position);
    /// What the user has opened.
    void remember(const QList<QUrl> &opened);

private:
    struct Services;
    const std::unique_ptr<Services> m_services;
};
