#include "app/RemoteStill.h"

#include "KImage/ImageFormats.h"
#include "foundation/KException.h"
#include "foundation/KHttp.h"
#include "foundation/KTemporaryFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <memory>

namespace {

constexpr int kCancelMilliseconds = 50;
constexpr int kMaxRedirects = 8;
constexpr qint64 kBufferBytes = qint64(1) << 20;

/// The loader tells some kinds apart by suffix alone.
QString nameFor(const QUrl &url)
{
    const KTemporaryFolder *folder = KTemporaryFolder::Instance();
    const QDir target(folder ? folder->Path() : QDir::tempPath());
    const QString suffix = QFileInfo(url.path()).suffix().toLower();
    return target.filePath(ImageFormats::isPictureSuffix(suffix)
                               ? QStringLiteral("still-XXXXXX.") + suffix
                               : QStringLiteral("still-XXXXXX"));
}

} // namespace

bool RemoteStill::isRemote(const QUrl &url)
{
    return url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
}

RemoteStill::RemoteStill(const QUrl &url, const std::atomic<bool> &cancelled)
    : m_file(nameFor(url))
{
    if (!m_file.open())
        K_THROW(KException::CannotWrite(m_file.fileTemplate()));

    QNetworkRequest request = KHttp::request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMaxRedirects);
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.get(request));
    reply->setReadBufferSize(kBufferBytes);
    QString fault;
    const auto give = [&](const QString &reason) {
        if (fault.isEmpty())
            fault = reason;
        reply->abort();
    };
    const auto keep = [&] {
        const QByteArray bytes = reply->readAll();
        if (m_file.pos() + bytes.size() > kMaxBytes)
            give(QCoreApplication::translate("RemoteStill", "The picture is too large."));
        else if (m_file.write(bytes) != bytes.size())
            give(KException::CannotWrite(m_file.fileName()));
    };

    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, keep);
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        if (cancelled)
            reply->abort();
    });
    watch.start(kCancelMilliseconds);
    loop.exec();

    if (fault.isEmpty() && !KHttp::succeeded(*reply))
        fault = reply->errorString();
    if (fault.isEmpty())
        keep();
    if (fault.isEmpty() && !m_file.flush())
        fault = KException::CannotWrite(m_file.fileName());
    if (!fault.isEmpty())
        K_THROW(fault);
}
