// A platform whose desktop the player does not talk to.

#include "desktop/DesktopSession.h"

struct DesktopSession::Services
{
};

DesktopSession::DesktopSession(PlayerControls *) {}

DesktopSession::~DesktopSession() = default;

void DesktopSession::update(const PlayerStatus &) {}

void DesktopSession::setPosition(qint64) {}

void DesktopSession::remember(const QList<QUrl> &) {}
