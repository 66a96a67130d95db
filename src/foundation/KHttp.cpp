#include "foundation/KHttp.h"

#include <QHostAddress>
#include <QNetworkReply>
#include <QVariant>

namespace {

constexpr int kSilenceMilliseconds = 30000;
const char kCutProperty[] = "orbilensBodyCut";

bool isThisMachine(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

bool KHttp::isAllowed(const QUrl &url)
{
    if (!url.isValid() || url.host().isEmpty())
        return false;
    return url.scheme() == QLatin1String("https") ||
           (url.scheme() == QLatin1String("http") && isThisMachine(url.host()));
}

QNetworkRequest KHttp::request(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(kSilenceMilliseconds);
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

void KHttp::limitBody(QNetworkReply *reply, qint64 maxBytes)
{
    reply->setReadBufferSize(maxBytes + 1);
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, maxBytes] {
        if (reply->bytesAvailable() <= maxBytes || wasCut(*reply))
            return;
        reply->setProperty(kCutProperty, true);
        reply->abort();
    });
}

bool KHttp::wasCut(const QNetworkReply &reply)
{
    return reply.property(kCutProperty).toBool();
}

bool KHttp::succeeded(const QNetworkReply &reply)
{
    return reply.error() == QNetworkReply::NoError && hasSuccessStatus(reply);
}

bool KHttp::hasSuccessStatus(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status >= 200 && status < 300;
}
