#pragma once

// Joins the player to the desktop around it: tells DesktopSession what the scene's players show and
// carries out what the desktop asks for. Owned by Application, GUI thread.

#include "desktop/PlayerControls.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class Application;
class DesktopSession;

class DesktopLink : public QObject, public PlayerControls
{
    Q_OBJECT

public:
    /// The desktop is first spoken to after the first frame, so that a start waits for nobody.
    /// The scene of @p application is loaded by now.
    explicit DesktopLink(Application *application);
    ~DesktopLink() override;

private slots:
    void begin();
    void followPlayer();
    void refresh();
    void reportPosition();
    void rememberOpened(const QList<QUrl> &opened);

private:
    void play() override;
    void pause() override;
    void stop() override;
    void next() override;
    void previous() override;
    void seek(int position) override;
    void setVolume(double volume) override;
    void setLoop(PlayerStatus::Loop loop) override;
    void setFullScreen(bool fullScreen) override;
    void open(const QUrl &medium) override;
    void raise() override;
    void quit() override;

    QObject *loader() const;
    PlayerStatus status();

    Application *const m_application;
    std::unique_ptr<DesktopSession> m_session; // null before the first frame
    QPointer<QObject> m_player;
    QTimer m_refresh; // many properties change with one medium
    QUrl m_medium;
    int m_track = 0;
    QList<QUrl> m_openedBefore;
};
