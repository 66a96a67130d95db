#pragma once

// The player as a program on the session's bus (MPRIS D-Bus Interface 2.2,
// org.mpris.MediaPlayer2). A child of the object that MprisService registers; GUI thread.

#include "desktop/PlayerControls.h"

#include <QDBusAbstractAdaptor>
#include <QStringList>

class MprisRootAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool CanSetFullscreen READ yes)
    Q_PROPERTY(bool Fullscreen READ fullscreen WRITE setFullscreen)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ supportedUriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ supportedMimeTypes)

public:
    MprisRootAdaptor(PlayerControls *controls, QObject *parent);

    /// The properties that differ between the two, by name.
    QVariantMap update(const PlayerStatus &status);

    /// Schemes that OpenUri takes.
    static QStringList uriSchemes();

    bool yes() const { return true; }
    bool no() const { return false; }
    bool fullscreen() const { return m_fullScreen; }
    void setFullscreen(bool fullScreen) { m_controls->setFullScreen(fullScreen); }
    QString identity() const;
    QString desktopEntry() const { return QStringLiteral("orbilens-player"); }
    QStringList supportedUriSchemes() const { return uriSchemes(); }
    QStringList supportedMimeTypes() const;

public slots:
    void Raise() { m_controls->raise(); }
    void Quit() { m_controls->quit(); }

private:
    PlayerControls *const m_controls;
    bool m_fullScreen = false;
};
