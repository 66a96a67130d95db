#include "analytics/KAnalyticsProviderHttp.h"

#include "analytics/KAnalyticsDb.h"
#include "analytics/KAnalyticsFile.h"
#include "foundation/KHttp.h"

#include <QEventLoop>
#include <QLoggingCategory>
#include <QMetaEnum>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimerEvent>

Q_LOGGING_CATEGORY(analyticsProviderHttp, "kanalyticsproviderhttp")

namespace {

constexpr int kExitMilliseconds = 10000;

const char *errorName(QNetworkReply::NetworkError error)
{
    return QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error);
}

} // namespace

KAnalyticsProviderHttp::KAnalyticsProviderHttp(QNetworkAccessManager *network, const QUrl &url,
                                               const QString &table, QObject *parent)
    : KAnalyticsProvider(parent)
    , m_network(network)
    , m_url(url)
    , m_table(table)
{}

KAnalyticsProviderHttp::~KAnalyticsProviderHttp()
{
    for (auto reply = m_inFlight.keyBegin(); reply != m_inFlight.keyEnd(); ++reply)
        (*reply)->disconnect(this);
    for (const QByteArray &body : qAsConst(m_waiting))
        KAnalyticsProviderHttp::storeRequest(QString::fromUtf8(body));
}

void KAnalyticsProviderHttp::init()
{
    if (db())
        db()->createRequestTable(m_table);
}

QStringList KAnalyticsProviderHttp::takeStored()
{
    if (db())
        return db()->takeRequests(m_table);
    QStringList bodies;
    const QJsonArray array = file()->array(m_table);
    for (const QJsonValue &body : array)
        bodies.append(body.toString());
    // What stays in the file would be sent again and again.
    if (bodies.isEmpty() || !file()->setArray(m_table, {}))
        return {};
    return bodies;
}

void KAnalyticsProviderHttp::sendPending()
{
    m_sinceBatch.start();
    const QStringList bodies = takeStored();
    for (const QString &body : bodies)
        post(body.toUtf8());
}

void KAnalyticsProviderHttp::storeRequest(const QString &body)
{
    if (db()) {
        db()->addRequest(m_table, body);
        return;
    }
    QJsonArray array = file()->array(m_table);
    array.append(body);
    while (array.size() > KAnalyticsDb::kMaxPendingRequests)
        array.removeFirst();
    if (!file()->setArray(m_table, array))
        qCDebug(analyticsProviderHttp) << "request lost";
}

void KAnalyticsProviderHttp::post(const QByteArray &body)
{
    if (isIdle())
        m_sinceBatch.start();
    m_waiting.enqueue(body);
    postNext();
}

void KAnalyticsProviderHttp::postNext()
{
    while (!m_waiting.isEmpty() && m_inFlight.size() < kMaxPostsInFlight) {
        const QByteArray body = m_waiting.dequeue();
        QNetworkRequest next = request();
        next.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
        QNetworkReply *reply = m_network->post(next, body);
        KHttp::limitBody(reply, kMaxReplyBytes);
        m_inFlight.insert(reply, body);
        connect(reply, &QNetworkReply::finished, this, [this, reply] { finished(reply); });
        if (reply->error() != QNetworkReply::NoError)
            qCWarning(analyticsProviderHttp)
                << "HTTP error:" << reply->errorString() << errorName(reply->error());
    }
}

void KAnalyticsProviderHttp::finished(QNetworkReply *reply)
{
    // An answer that was cut for its length still says by its status whether the body arrived.
    const bool answered =
        KHttp::hasSuccessStatus(*reply) && (KHttp::succeeded(*reply) || KHttp::wasCut(*reply));
    const QByteArray text = reply->read(kMaxReplyBytes);
    const QByteArray body = m_inFlight.take(reply);
    if (!answered || !checkResponse(QString::fromUtf8(text.constData()))) {
        qCWarning(analyticsProviderHttp) << "RESPONSE ERROR" << int(reply->error())
                                         << errorName(reply->error()) << reply->errorString();
        storeRequest(QString::fromUtf8(body));
    }
    reply->deleteLater();
    postNext();
    if (isIdle())
        emit noMoreRepliesWaiting();
}

void KAnalyticsProviderHttp::waitBeforeExit()
{
    if (isIdle())
        return;
    // Counted from the batch, so that several providers together do not wait several times.
    const qint64 left = kExitMilliseconds - m_sinceBatch.elapsed();
    m_exitTimer = startTimer(int(qMax<qint64>(left, 0)), Qt::CoarseTimer);
    QEventLoop loop;
    connect(this, &KAnalyticsProviderHttp::noMoreRepliesWaiting, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    killTimer(m_exitTimer);
    m_exitTimer = 0;
}

void KAnalyticsProviderHttp::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_exitTimer)
        emit noMoreRepliesWaiting();
}
