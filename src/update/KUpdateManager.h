#pragma once

// Asks the download server, at most once a week or when the user asks, whether there is a newer
// version, and fetches its change log. Owned by the main window and lives on the GUI thread, where
// all replies arrive; the thread it also is prepares the network off the start-up path. It reports
// success only: a failed check is silent, and the next start tries again.

#include "update/UpdateDecision.h"

#include <QMutex>
#include <QNetworkAccessManager>
#include <QThread>

#include <memory>

class KSettingsManager;
class QNetworkReply;

class KUpdateManager : public QThread
{
    Q_OBJECT

public:
    /// What of an answer is read at most, in bytes.
    static constexpr qint64 kMaxVersionBytes = 64 * 1024;
    static constexpr qint64 kMaxChangeLogBytes = 1024 * 1024;

    /// Without a @p serverUrl that may be asked nothing is ever sent. @p store outlives this
    /// object and keeps the time of the last check.
    KUpdateManager(const QString &serverUrl, KSettingsManager *store, QObject *parent = nullptr);
    ~KUpdateManager() override;

    /// There is a server to ask.
    bool isEnabled() const;

    /// The check at the start of the program: sends something when the last check is more than a
    /// week old. @p userData goes out once, with the next request.
    void Start(const QString &productId, const QString &currentVersion, const QString &userData);

    /// The user's own check, after Start(). One that is under way becomes the user's.
    void CheckForNewVersion();

    /// The last check was the user's, who expects an answer.
    bool isManualCheck() const;

    /// The results of the last check, empty before one found something. Any thread.
    QString newVersion() const;
    QDate newVersionDate() const;
    QString newChangeLog() const;
    QString urlWebsite() const;
    QString urlHistory() const;
    QString urlInstaller() const;

signals:
    void NewVersionAvailable();
    /// The server answered and has nothing newer; after a scheduled check nobody needs to know.
    void AlreadyLatestVersion();
    /// The user data went out and is not to be sent again.
    void ClearUserData();
    void UrlResolved();

protected:
    void run() override;

private slots:
    void OnNetReplyFinished(QNetworkReply *reply);
    void OnUrlResolved();

private:
    struct Results
    {
        QString version;
        QDate date;
        QString changeLog;
        QString urlWebsite;
        QString urlHistory;
        QString urlInstaller;
    };

    void begin();
    void requestVersion(const QString &channel);
    void requestChangeLog(const QString &channel);
    void readVersion(QNetworkReply *reply, const QString &channel);
    void decide();
    Results results() const;

    const QString m_serverUrl;
    KSettingsManager *const m_store;
    QString m_productId;
    QString m_currentVersionText;
    ProductVersion m_currentVersion;
    QString m_userData;
    QHash<QString, ChannelVersion> m_channels;
    int m_pendingReplies = 0;
    bool m_manualCheck = false;
    /// From begin() to the last reply.
    bool m_checking = false;
    std::unique_ptr<QNetworkAccessManager> m_network;

    mutable QMutex m_mutex;
    /// What the server's answers amounted to; changed under the mutex.
    Results m_results;
    Results m_pendingResults;
};
