#include "analytics/KAnalyticsProviders.h"

#include "analytics/KAnalyticsEvent.h"
#include "foundation/KHttp.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <limits>

Q_LOGGING_CATEGORY(analyticsProviderGa, "kanalyticsproviderga")
Q_LOGGING_CATEGORY(analyticsProviderDse, "kanalyticsproviderdse")

namespace {

QUrl address(const QString &server, const char *path)
{
    QString text = server;
    while (text.endsWith(QLatin1Char('/')))
        text.chop(1);
    return QUrl(text + QLatin1String(path));
}

QString filled(const QString &server, const QString &environment)
{
    return QString(server).replace(QLatin1String("%1"), environment);
}

} // namespace

KAnalyticsProviderGoogleAnalytics::KAnalyticsProviderGoogleAnalytics(QNetworkAccessManager *network,
                                                                     const QString &server,
                                                                     const QString &trackingId,
                                                                     const QString &applicationName,
                                                                     QObject *parent)
    : KAnalyticsProviderHttp(network, address(server, "/collect"), QStringLiteral("providerGA"),
                             parent)
    , m_trackingId(trackingId)
    , m_applicationName(applicationName)
{}

void KAnalyticsProviderGoogleAnalytics::sendEvent(const KAnalyticsRawEvent &raw)
{
    const auto event = raw.toEvent();
    if (event)
        post(EventCoding::formBody(*event, reporter(), m_trackingId, m_applicationName));
    else
        qCWarning(analyticsProviderGa) << "not an event" << raw.jsonText().left(80);
}

QNetworkRequest KAnalyticsProviderGoogleAnalytics::request() const
{
    QNetworkRequest request = KHttp::request(url());
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/x-www-form-urlencoded"));
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      EventCoding::userAgent(m_applicationName, reporter().version));
    return request;
}

bool KAnalyticsProviderGoogleAnalytics::checkResponse(const QString &) const
{
    return true;
}

KAnalyticsProviderDSE::KAnalyticsProviderDSE(QNetworkAccessManager *network, const QString &server,
                                             const Identity &identity, QObject *parent)
    : KAnalyticsProviderHttp(
          network, address(filled(server, identity.urlEnvironment), "/dse-ep/MessageProxy"),
          QStringLiteral("providerDSE"), parent)
    , m_identity(identity)
{}

void KAnalyticsProviderDSE::sendEvent(const KAnalyticsRawEvent &raw)
{
    const auto event = raw.toEvent();
    if (event)
        post(EventCoding::record(*event, reporter()));
    else
        qCWarning(analyticsProviderDse) << "not an event" << raw.jsonText().left(80);
}

QNetworkRequest KAnalyticsProviderDSE::request() const
{
    const int number = QRandomGenerator::global()->bounded(std::numeric_limits<int>::max());
    const QByteArray random = QByteArray::number(number);
    const QByteArray time = EventCoding::utcText(QDateTime::currentDateTimeUtc()).toLatin1();
    QNetworkRequest request = KHttp::request(url());
    request.setRawHeader("uuid_text", reporter().userId.toUtf8());
    request.setRawHeader("user-agent", m_identity.userAgent.toUtf8());
    request.setRawHeader("content-type", "application/json");
    request.setRawHeader("_xovdatacategory_", m_identity.dataCategory.toUtf8());
    request.setRawHeader("_xovenvironment_", m_identity.environment.toUtf8());
    request.setRawHeader("r", random);
    request.setRawHeader("dt", time);
    request.setRawHeader("access_token",
                         EventCoding::accessToken(random, time, m_identity.apiKey.toLatin1()));
    return request;
}

bool KAnalyticsProviderDSE::checkResponse(const QString &body) const
{
    return EventCoding::collectorAccepted(body);
}
