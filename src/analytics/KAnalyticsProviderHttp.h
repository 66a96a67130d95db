#pragma once

// The network side of a provider: posts bodies, a few at a time, and puts those that fail back into
// the store. Owned by KAnalyticsManager, GUI thread; replies come through the event loop.

#include "analytics/KAnalyticsProvider.h"

#include <QElapsedTimer>
#include <QHash>
#include <QNetworkRequest>
#include <QQueue>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

class KAnalyticsProviderHttp : public KAnalyticsProvider
{
    Q_OBJECT

public:
    /// What of a reply is read at most, in bytes.
    static constexpr qint64 kMaxReplyBytes = 64 * 1024;
    static constexpr int kMaxPostsInFlight = 4;

    /// @p network outlives the provider. @p table: name of the table, or array, of the requests
    /// that wait.
    KAnalyticsProviderHttp(QNetworkAccessManager *network, const QUrl &url, const QString &table,
                           QObject *parent = nullptr);
    /// Puts back what was not posted yet; what is in flight is lost.
    ~KAnalyticsProviderHttp() override;

    const QUrl &url() const { return m_url; }

    void init() override;
    void sendPending() override;

signals:
    void noMoreRepliesWaiting();

public slots:
    /// Returns when nothing is under way, at the latest ten seconds after the last batch began.
    void waitBeforeExit() override;

protected slots:
    void finished(QNetworkReply *reply);

protected:
    /// The request for a body, with headers made anew for each try.
    virtual QNetworkRequest request() const = 0;
    /// Whether @p body, of a reply with a status of success, means that the service took it.
    virtual bool checkResponse(const QString &body) const = 0;
    virtual void storeRequest(const QString &body);

    void post(const QByteArray &body);
    void timerEvent(QTimerEvent *event) override;

private:
    QStringList takeStored();
    void postNext();
    bool isIdle() const { return m_inFlight.isEmpty() && m_waiting.isEmpty(); }

    QNetworkAccessManager *const m_network;
    const QUrl m_url;
    const QString m_table;
    QHash<QNetworkReply *, QByteArray> m_inFlight;
    QQueue<QByteArray> m_waiting;
    QElapsedTimer m_sinceBatch;
    int m_exitTimer = 0;
};
