#pragma once

// A still of an http server as a file of ours, so that the loader and its limits hold for it as for
// any other; made on a thread of KImageProvider, and deleted with the texture of its picture.

#include <QTemporaryFile>
#include <QUrl>

#include <atomic>

class RemoteStill
{
public:
    /// Whether @p url is one of such a server.
    static bool isRemote(const QUrl &url);

    /// Fetches @p url, blocking until all of it is there: half a minute of silence or a @p
    /// cancelled turned true ends it. Follows redirects that do not leave https. Throws a
    /// KException with the reason otherwise, and for more than kMaxBytes.
    RemoteStill(const QUrl &url, const std::atomic<bool> &cancelled);

    /// The file, which lives as long as this object and has the suffix of the address.
    QString path() const { return m_file.fileName(); }

    static constexpr qint64 kMaxBytes = qint64(512) << 20;

private:
    QTemporaryFile m_file;
};
