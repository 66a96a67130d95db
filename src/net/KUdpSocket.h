#pragma once

// Keeps several players in step: a master sends camera and playback at a fixed rate, each slave
// applies the newest packet it hears. Owned by Application; the scene sees the enums only. All of
// it runs on the GUI thread.

#include "net/SlaveRules.h"

#include <QHostAddress>
#include <QObject>
#include <QScopedPointer>
#include <QTimer>
#include <QUdpSocket>

class Application;

class KUdpSocket : public QObject
{
    Q_OBJECT

public:
    enum UrlMode { Absolute = 0, Movies = 1, Desktop = 2, Off = 3 };
    Q_ENUM(UrlMode)

    enum PacketFormat { JSON = 0, QtBinary = 1 };
    Q_ENUM(PacketFormat)

    enum OrientationMode { AbsoluteOrientation = 0, OffsetOrientation = 1, OffOrientation = 2 };
    Q_ENUM(OrientationMode)

    /// @p udpOption is the command line's word and wins over the setting. The settings under
    /// "application/communication/" are read here and never again.
    KUdpSocket(const QString &udpOption, Application *application);
    ~KUdpSocket() override;

    /// "master", "slave" or "off".
    QString role() const { return syncRoleName(m_role); }

public slots:
    /// Sends one packet; a master's timer calls it.
    void writeData();
    /// Takes everything that has arrived and applies the newest packet among it.
    void readData();
    /// Ends the pause that follows a seek.
    void unlockSync();

private:
    void startMaster();
    void startSlave();
    SyncPacket currentPacket() const;
    void apply(const SyncPacket &packet);
    void applyOrientation(const SyncPacket &packet);
    /// Whether there is a medium to compare with.
    [[nodiscard]] bool followMedium(const QUrl &url);
    void followPlayback(const SyncPacket &packet);
    QVariant setting(const char *key) const;

    // Events may still be on their way to both when this object dies.
    QScopedPointer<QUdpSocket, QScopedPointerDeleteLater> m_socket;
    QScopedPointer<QTimer, QScopedPointerDeleteLater> m_timer;
    QHostAddress m_destination;
    qint64 m_port = 0;
    QString m_packetId;
    SyncRole m_role = SyncRole::Off;
    int m_seekTolerance = kSeekTolerance;
    int m_rate = 0; // milliseconds
    int m_urlMode = Absolute;
    int m_orientationMode = AbsoluteOrientation;
    int m_packetFormat = JSON;
    bool m_syncUnlocked = true;
    QUrl m_requestedUrl; // last handed to the loader
    Application *m_application;
};
