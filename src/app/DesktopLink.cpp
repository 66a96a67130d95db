#include "app/DesktopLink.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "desktop/DesktopSession.h"
#include "settings/KSettings.h"

#include <QFileInfo>
#include <QIcon>

#include <algorithm>
#include <iterator>

namespace {

// The loop modes of the player in the desktop's words, and back.
constexpr PlayerStatus::Loop kLoops[] = {PlayerStatus::Loop::None, PlayerStatus::Loop::List,
                                         PlayerStatus::Loop::Medium};

// Values of Qt Multimedia's MediaPlayer.playbackState.
PlayerStatus::Playback playbackOf(int state)
{
    switch (state) {
    case 1:
        return PlayerStatus::Playback::Playing;
    case 2:
        return PlayerStatus::Playback::Paused;
    default:
        return PlayerStatus::Playback::Stopped;
    }
}

bool isPlayList(const QUrl &url)
{
    return QFileInfo(url.path()).suffix().toLower() == QLatin1String("orpl");
}

} // namespace

DesktopLink::DesktopLink(Application *application)
    : m_application(application)
{
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    connect(&m_refresh, &QTimer::timeout, this, &DesktopLink::refresh);
    connect(m_application->globalObject(), &KGlobalObject::opened, this,
            &DesktopLink::rememberOpened);
    // From the render thread, at the end of the first frame.
    connect(m_application->view(), &QQuickWindow::frameSwapped, this, &DesktopLink::begin,
            Qt::QueuedConnection);
}

DesktopLink::~DesktopLink() = default;

void DesktopLink::begin()
{
    if (m_session)
        return;
    KQQuickView *view = m_application->view();
    const KGlobalObject *global = m_application->globalObject();
    disconnect(view, &QQuickWindow::frameSwapped, this, &DesktopLink::begin);
    m_session = std::make_unique<DesktopSession>(this);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/orbilens-player.svg")));

    const auto refreshSoon = [this] { m_refresh.start(); };
    connect(view, &QWindow::visibilityChanged, this, refreshSoon);
    connect(global, &KGlobalObject::playListChanged, this, refreshSoon);
    connect(global, &KGlobalObject::playListIndexChanged, this, refreshSoon);
    connect(global, &KGlobalObject::loopModeChanged, this, refreshSoon);
    if (loader()) {
        connect(loader(), SIGNAL(volumeChanged()), &m_refresh, SLOT(start()));
        connect(loader(), SIGNAL(mediaPlayerChanged()), this, SLOT(followPlayer()));
        followPlayer();
    }
    rememberOpened(m_openedBefore);
    m_openedBefore.clear();
}

QObject *DesktopLink::loader() const
{
    return m_application->globalObject()->mediaLoader();
}

void DesktopLink::followPlayer()
{
    if (m_player) {
        m_player->disconnect(this);
        m_player->disconnect(&m_refresh);
    }
    m_player = m_application->globalObject()->mediaPlayer();
    if (m_player) {
        connect(m_player, SIGNAL(playbackStateChanged()), &m_refresh, SLOT(start()));
        connect(m_player, SIGNAL(mediaSourceChanged()), &m_refresh, SLOT(start()));
        connect(m_player, SIGNAL(durationChanged()), &m_refresh, SLOT(start()));
        connect(m_player, SIGNAL(positionChanged()), this, SLOT(reportPosition()));
    }
    m_refresh.start();
}

void DesktopLink::refresh()
{
    m_session->update(status());
}

void DesktopLink::reportPosition()
{
    m_session->setPosition(m_player->property("position").toInt());
}

PlayerStatus DesktopLink::status()
{
    const KGlobalObject *global = m_application->globalObject();
    const KQQuickView *view = m_application->view();
    PlayerStatus status;
    status.fullScreen = view->fullScreen();
    status.windowVisible =
        view->visibility() != QWindow::Hidden && view->visibility() != QWindow::Minimized;
    status.canGoNext = status.canGoPrevious = !global->playListIsEmpty();
    status.loop = kLoops[qBound(0, global->loopMode(), 2)];
    if (loader())
        status.volume = loader()->property("volume").toDouble();
    if (m_player) {
        status.medium = m_player->property("mediaSource").toUrl();
        status.playback = playbackOf(m_player->property("playbackState").toInt());
        status.duration = m_player->property("duration").toInt();
    }
    if (status.medium != m_medium) {
        m_medium = status.medium;
        ++m_track;
    }
    status.track = m_track;
    if (!status.hasMedium())
        return status;
    status.title = status.medium.fileName();
    status.film = !global->isImageFile(status.medium);
    const QUrl thumb = global->getThumb(status.medium);
    if (!thumb.isEmpty())
        status.artwork = QUrl::fromLocalFile(thumb.path());
    return status;
}

void DesktopLink::rememberOpened(const QList<QUrl> &opened)
{
    if (!m_session) {
        m_openedBefore += opened;
        return;
    }
    const KGlobalObject *global = m_application->globalObject();
    QList<QUrl> known;
    for (const QUrl &url : opened) {
        if (isPlayList(url) || global->isImageFile(url) ||
            global->isVideoFile(url) != KGlobalObject::NoVideo)
            known.append(url);
    }
    if (!known.isEmpty())
        m_session->remember(known);
}

void DesktopLink::play()
{
    QMetaObject::invokeMethod(loader(), "play");
}

void DesktopLink::pause()
{
    QMetaObject::invokeMethod(loader(), "pause");
}

void DesktopLink::stop()
{
    QMetaObject::invokeMethod(loader(), "stop");
}

void DesktopLink::next()
{
    m_application->globalObject()->playListSetNext();
}

void DesktopLink::previous()
{
    m_application->globalObject()->playListSetPrevious();
}

void DesktopLink::seek(int position)
{
    QMetaObject::invokeMethod(loader(), "seek", Q_ARG(QVariant, position));
}

void DesktopLink::setVolume(double volume)
{
    if (loader())
        QMetaObject::invokeMethod(loader(), "setVolume", Q_ARG(QVariant, volume));
}

void DesktopLink::setLoop(PlayerStatus::Loop loop)
{
    const auto *mode = std::find(std::begin(kLoops), std::end(kLoops), loop);
    m_application->settings()->set(QStringLiteral("instance/general/loopMode"), int(mode - kLoops));
}

void DesktopLink::setFullScreen(bool fullScreen)
{
    m_application->view()->fullScreenMode(fullScreen);
}

void DesktopLink::open(const QUrl &medium)
{
    m_application->globalObject()->openFiles(QList<QUrl>{medium});
}

void DesktopLink::raise()
{
    KQQuickView *view = m_application->view();
    view->setWindowStates(view->windowStates() & ~Qt::WindowMinimized);
    view->raise();
    view->requestActivate();
}

void DesktopLink::quit()
{
    m_application->closeWindow();
}
