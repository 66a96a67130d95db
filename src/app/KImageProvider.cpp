#include "app/KImageProvider.h"

#include "KImage/ImageFormats.h"
#include "KImage/ImageLimits.h"
#include "KImage/ImageLoadGuard.h"
#include "KImage/ImageLoader.h"
#include "KImage/KImage.h"
#include "app/RemoteStill.h"
#include "foundation/KSignalStack.h"

#include <QDateTime>
#include <QFileInfo>
#include <QQuickWindow>
#include <QUrl>

#include <algorithm>
#include <limits>
#include <tuple>

namespace {

// Any driver takes textures of this size, so that the expected picture need not wait for the limit.
constexpr int kCertainSide = 8192;
// So that one slow server does not keep another's picture waiting.
constexpr int kFetchThreads = 3;

bool fits(const QSize &size, const QSize &limit)
{
    return limit.isEmpty() || (size.width() <= limit.width() && size.height() <= limit.height());
}

} // namespace

/// A picture decoded before it was asked for, at its full size, on the thread that decodes one
/// thing at a time: a request of the scene comes after it.
struct ExpectedStill
{
    QString path;
    LoadRequest request;
    std::shared_ptr<std::atomic<bool>> cancelled; ///< what the request points to
    QDateTime modified;
    QImage image; ///< null when there was nothing to decode

    void load()
    {
        const QString suffix = QFileInfo(path).suffix().toLower();
        if (*request.cancelled || !ImageFormats::isPictureSuffix(suffix))
            return;
        const KSignalStack signalStack;
        try {
            const ImageLoadGuard guard("KImageProvider");
            modified = QFileInfo(path).lastModified();
            ImageInfo info;
            if (ImageLoader::describe(path, info) == ImageError::None &&
                fits(info.size, {kCertainSide, kCertainSide}))
                image = KImage::Read(path, request).takeImage();
        } catch (const KException &) {
            // The scene's own request will say what is wrong.
        }
    }

    bool answers(const QString &other, const LoadRequest &asked) const
    {
        return !image.isNull() && other == path && asked.raw == request.raw &&
               fits(image.size(), asked.limit) && QFileInfo(path).lastModified() == modified;
    }
};

namespace {

/// The picture, or a null image and why there is none.
std::pair<QImage, QString> read(const QString &path, const LoadRequest &request)
{
    const KSignalStack signalStack; // decoders of foreign files recurse
    try {
        const ImageLoadGuard guard("KImageProvider");
        if (!request.cancelled || !*request.cancelled)
            return {KImage::Read(path, request).takeImage(), QString()};
    } catch (const KException &error) {
        return {QImage(), error.message};
    }
    return {};
}

/// Gives a still to the graphics card and keeps no copy of it in memory: a panorama is large. The
/// same file is read again where a scene graph is made anew.
class StillTexture : public QQuickTextureFactory
{
public:
    StillTexture(QImage image, QString path, std::shared_ptr<RemoteStill> fetched,
                 LoadRequest request)
        : m_image(std::move(image))
        , m_size(m_image.size())
        , m_path(std::move(path))
        , m_fetched(std::move(fetched))
        , m_request(request)
    {
        m_request.cancelled = nullptr;
    }

    QSGTexture *createTexture(QQuickWindow *window) const override
    {
        const QImage picture = image();
        m_image = QImage();
        return picture.isNull() ? nullptr : window->createTextureFromImage(picture);
    }
    QSize textureSize() const override { return m_size; }
    int textureByteCount() const override
    {
        constexpr qint64 kBytesPerPixel = 4;
        return int(std::min<qint64>(kBytesPerPixel * m_size.width() * m_size.height(),
                                    std::numeric_limits<int>::max()));
    }
    QImage image() const override
    {
        return m_image.isNull() ? read(m_path, m_request).first : m_image;
    }

private:
    mutable QImage m_image; // the interface takes it for constant
    const QSize m_size;
    const QString m_path;
    const std::shared_ptr<RemoteStill> m_fetched; // the file of m_path, where it is one of ours
    LoadRequest m_request;
};

/// One picture on its way; the engine deletes it after finished().
class Response : public QQuickImageResponse
{
public:
    Response(QString path, LoadRequest request, std::shared_ptr<std::atomic<bool>> cancelled,
             std::shared_ptr<ExpectedStill> expected)
        : m_path(std::move(path))
        , m_request(request)
        , m_cancelled(std::move(cancelled))
        , m_expected(std::move(expected))
    {
        m_request.cancelled = m_cancelled.get();
    }

    /// Whether load() has something to decode now; finished otherwise, and perhaps deleted.
    bool fetch(const QUrl &url)
    {
        try {
            m_fetched = std::make_shared<RemoteStill>(url, *m_cancelled);
            m_path = m_fetched->path();
            return true;
        } catch (const KException &error) {
            m_error = error.message;
            finish();
            return false;
        }
    }

    void load()
    {
        if (m_expected && m_expected->answers(m_path, m_request))
            m_image = std::move(m_expected->image);
        else
            std::tie(m_image, m_error) = read(m_path, m_request);
        m_expected.reset();
        finish();
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return m_image.isNull() ? nullptr : new StillTexture(m_image, m_path, m_fetched, m_request);
    }
    QString errorString() const override { return m_error; }
    void cancel() override { *m_cancelled = true; }

private:
    /// The signal comes on the thread that asked, when it has had time to connect to it.
    void finish()
    {
        QMetaObject::invokeMethod(this, &QQuickImageResponse::finished, Qt::QueuedConnection);
    }

    QString m_path;
    LoadRequest m_request;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    std::shared_ptr<ExpectedStill> m_expected;
    std::shared_ptr<RemoteStill> m_fetched;
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
    m_fetching.setMaxThreadCount(kFetchThreads);
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
    m_fetching.waitForDone(); // what it fetched goes on to the other
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

std::shared_ptr<KImageProvider::Flag> KImageProvider::newFlag()
{
    m_running.erase(std::remove_if(m_running.begin(), m_running.end(),
                                   [](const auto &flag) { return flag.expired(); }),
                    m_running.end());
    auto flag = std::make_shared<Flag>(false);
    m_running.append(flag);
    return flag;
}

void KImageProvider::expect(const QString &path)
{
    const auto expected = std::make_shared<ExpectedStill>();
    expected->path = path;
    expected->request.format = PixelFormat::Bgra8Premultiplied;
    {
        const QMutexLocker lock(&m_mutex);
        expected->request.raw = m_options.raw;
        expected->cancelled = newFlag();
        expected->request.cancelled = expected->cancelled.get();
        m_expected = expected;
    }
    m_pool.start(QRunnable::create([expected] { expected->load(); }));
}

QQuickImageResponse *KImageProvider::requestImageResponse(const QString &id,
                                                          const QSize &requestedSize)
{
    LoadRequest request;
    request.limit = limitOf(requestedSize);
    request.format = PixelFormat::Bgra8Premultiplied;
    std::shared_ptr<Flag> cancelled;
    std::shared_ptr<ExpectedStill> expected;
    {
        const QMutexLocker lock(&m_mutex);
        request.raw = m_options.raw;
        cancelled = newFlag();
        expected.swap(m_expected); // of use to the first request only
    }
    const QString encoded = id.section(QLatin1Char('?'), 0, 0);
    const QUrl url(QUrl::fromPercentEncoding(encoded.toUtf8()));
    auto *response = new Response(pathOf(url), request, cancelled, std::move(expected));
    const auto decode = [this, response] {
        m_pool.start(QRunnable::create([response] { response->load(); }));
    };
    if (RemoteStill::isRemote(url)) {
        m_fetching.start(QRunnable::create([response, url, decode] {
            if (response->fetch(url))
                decode();
        }));
    } else {
        decode();
    }
    return response;
}
