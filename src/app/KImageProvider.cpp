#include "app/KImageProvider.h"

#include "KImage/ImageLimits.h"
#include "KImage/ImageLoadGuard.h"
#include "KImage/KImage.h"
#include "foundation/KSignalStack.h"

#include <QUrl>

#include <algorithm>

namespace {

/// One picture on its way; the engine deletes it after finished().
class Response : public QQuickImageResponse
{
public:
    Response(QString path, LoadRequest request, std::shared_ptr<std::atomic<bool>> cancelled)
        : m_path(std::move(path))
        , m_request(request)
        , m_cancelled(std::move(cancelled))
    {
        m_request.cancelled = m_cancelled.get();
    }

    void load()
    {
        const KSignalStack signalStack; // decoders of foreign files recurse
        try {
            const ImageLoadGuard guard("KImageProvider");
            if (!*m_cancelled)
                m_image = KImage::Read(m_path, m_request).takeImage();
        } catch (const KException &error) {
            m_error = error.message;
        }
        emit finished();
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    QString errorString() const override { return m_error; }
    void cancel() override { *m_cancelled = true; }

private:
    QString m_path;
    LoadRequest m_request;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    QImage m_image;
    QString m_error;
};

QString pathOf(const QUrl &url)
{
    if (url.scheme() == QLatin1String("qrc"))
        return QLatin1Char(':') + url.path();
    return url.isLocalFile() ? url.toLocalFile() : QString();
}

/// A side that is not asked for does not limit.
QSize limitOf(const QSize &requested)
{
    if (requested.width() <= 0 && requested.height() <= 0)
        return QSize();
    const auto side = [](int length) { return length > 0 ? length : ImageLimits::kMaxSide; };
    return QSize(side(requested.width()), side(requested.height()));
}

} // namespace

KImageProvider::KImageProvider()
{
    m_pool.setMaxThreadCount(1);
}

KImageProvider::~KImageProvider()
{
    {
        const QMutexLocker lock(&m_mutex);
        for (const std::weak_ptr<Flag> &running : qAsConst(m_running)) {
            if (const std::shared_ptr<Flag> cancelled = running.lock())
                *cancelled = true;
        }
    }
    m_pool.waitForDone();
}

QString KImageProvider::Name()
{
    return QStringLiteral("still");
}

void KImageProvider::setOptions(const ImageOptions &options)
{
    const QMutexLocker lock(&m_mutex);
    m_options = options;
}

QQuickImageResponse *KImageProvider::requestImageResponse(const QString &id,
                                                          const QSize &requestedSize)
{
    const auto cancelled = std::make_shared<Flag>(false);
    LoadRequest request;
    request.limit = limitOf(requestedSize);
    request.format = PixelFormat::Bgra8Premultiplied;
    {
        const QMutexLocker lock(&m_mutex);
        request.raw = m_options.raw;
        m_running.erase(std::remove_if(m_running.begin(), m_running.end(),
                                       [](const auto &flag) { return flag.expired(); }),
                        m_running.end());
        m_running.append(cancelled);
    }
    const QString encoded = id.section(QLatin1Char('?'), 0, 0);
    const QUrl url(QUrl::fromPercentEncoding(encoded.toUtf8()));
    auto *response = new Response(pathOf(url), request, cancelled);
    m_pool.start(QRunnable::create([response] { response->load(); }));
    return response;
}
