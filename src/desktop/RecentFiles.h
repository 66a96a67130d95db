#pragma once

// The desktop's list of recent files, to which what was opened is added. Owned by DesktopSession;
// remember() is called on the GUI thread, the file is read and written on a thread of its own.

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QThreadPool>
#include <QUrl>

#include <optional>

/// One file that was opened.
struct RecentFile
{
    QUrl url;
    QString mimeType;
    QDateTime opened; ///< UTC
};

/// The document @p existing (empty for none) of the list with @p file added to it, or renewed
/// where it stands in it (Desktop Bookmarks of freedesktop.org, an application of
/// XBEL 1.0). Everything else in it is kept. Nothing when @p existing is no such document.
[[nodiscard]] std::optional<QByteArray> withRecentFile(const QByteArray &existing,
                                                       const RecentFile &file);

/// Whether the settings of the desktops in the folder @p configuration allow such a list.
[[nodiscard]] bool recentFilesAllowed(const QString &configuration);

class RecentFiles
{
public:
    RecentFiles();
    /// Waits for what is still being written.
    ~RecentFiles();
    RecentFiles(const RecentFiles &) = delete;
    RecentFiles &operator=(const RecentFiles &) = delete;

    /// Files of this machine only: an address may hold what nobody should find in a list.
    void remember(const QList<QUrl> &opened);

private:
    QThreadPool m_writer; // of one thread
};
