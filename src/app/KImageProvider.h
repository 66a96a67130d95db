#pragma once

// Gives the scene stills of every kind that the loader takes, as "image://still/<url>?<edition>"
// with the URL percent-encoded and any text as the edition, by which the scene tells pictures of
// one file under changing options apart. The scene's engine owns it; the engine's reader thread
// asks, a thread of its own decodes, one picture at a time; stills of http servers are fetched on
// other threads first.

#include "KImage/ImageOptions.h"

#include <QMutex>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>
#include <QVector>

#include <atomic>
#include <memory>

struct ExpectedStill;

class KImageProvider : public QQuickAsyncImageProvider
{
public:
    KImageProvider();
    /// Stops what is being fetched and decoded and waits for its end.
    ~KImageProvider() override;

    /// Name under which the engine knows it.
    static QString Name();

    /// For pictures asked for from now on; any thread.
    void setOptions(const ImageOptions &options);

    /// Begins to decode a still before the scene asks for it: the one that the program is started
    /// with, while the scene is being loaded. Anything that is no still is left alone.
    void expect(const QString &path);

    /// Decodes at a size that fits into @p requestedSize where both of its sides are positive, or
    /// into the one that is; never larger than the picture is.
    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;

private:
    using Flag = std::atomic<bool>;

    /// With the mutex held.
    std::shared_ptr<Flag> newFlag();

    QMutex m_mutex; ///< of the three below
    ImageOptions m_options;
    QVector<std::weak_ptr<Flag>> m_running;
    std::shared_ptr<ExpectedStill> m_expected; ///< its contents belong to the decoding thread
    QThreadPool m_fetching;
    QThreadPool m_pool; ///< decodes
};
