#include "desktop/RecentFiles.h"

#include "foundation/KSignalStack.h"
#include "foundation/KVersion.h"

#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QtConcurrent>

namespace {

/// Lists that desktops keep have some hundred kilobytes.
constexpr qint64 kLargestList = 16 * 1024 * 1024;

QDomElement childOf(QDomNode parent, const QString &tag)
{
    QDomElement child = parent.firstChildElement(tag);
    if (child.isNull())
        child = parent.appendChild(parent.ownerDocument().createElement(tag)).toElement();
    return child;
}

QDomElement childWith(QDomNode parent, const QString &tag, const QString &attribute,
                      const QString &value)
{
    for (QDomElement child = parent.firstChildElement(tag); !child.isNull();
         child = child.nextSiblingElement(tag)) {
        if (child.attribute(attribute) == value)
            return child;
    }
    QDomElement child = parent.appendChild(parent.ownerDocument().createElement(tag)).toElement();
    child.setAttribute(attribute, value);
    return child;
}

QDomDocument emptyList()
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement root = document.createElement(QStringLiteral("xbel"));
    root.setAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    document.appendChild(root);
    return document;
}

/// The prefixes that the entries below use.
void declarePrefixes(QDomElement root)
{
    const struct
    {
        const char *name;
        const char *uri;
    } prefixes[] = {{"xmlns:bookmark", "http://www.freedesktop.org/standards/desktop-bookmarks"},
                    {"xmlns:mime", "http://www.freedesktop.org/standards/shared-mime-info"}};
    for (const auto &prefix : prefixes) {
        if (!root.hasAttribute(QLatin1String(prefix.name)))
            root.setAttribute(QLatin1String(prefix.name), QLatin1String(prefix.uri));
    }
}

/// The desktop knows playlists of the player only where the player is installed.
QString typeOf(const QString &path)
{
    if (QFileInfo(path).suffix().toLower() == QLatin1String("orpl"))
        return QStringLiteral("application/x-orbilens-playlist");
    return QMimeDatabase().mimeTypeForFile(path).name();
}

void addToList(const RecentFile &file)
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    const QString path = folder.filePath(QStringLiteral("recently-used.xbel"));
    QFile list(path);
    const bool isNew = !list.exists();
    if (!isNew && (list.size() > kLargestList || !list.open(QIODevice::ReadOnly)))
        return;
    const auto changed = withRecentFile(list.isOpen() ? list.readAll() : QByteArray(), file);
    if (!changed || !folder.mkpath(QStringLiteral(".")))
        return;
    QSaveFile saved(path);
    if (!saved.open(QIODevice::WriteOnly))
        return;
    if (isNew)
        saved.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    saved.write(*changed);
    saved.commit();
}

} // namespace

std::optional<QByteArray> withRecentFile(const QByteArray &existing, const RecentFile &file)
{
    QDomDocument document;
    if (existing.isEmpty())
        document = emptyList();
    else if (!document.setContent(existing))
        return std::nullopt;
    const QDomElement root = document.documentElement();
    if (root.tagName() != QLatin1String("xbel"))
        return std::nullopt;
    declarePrefixes(root);

    const QString now = file.opened.toString(Qt::ISODateWithMs);
    QDomElement bookmark = childWith(root, QStringLiteral("bookmark"), QStringLiteral("href"),
                                     file.url.toString(QUrl::FullyEncoded));
    if (!bookmark.hasAttribute(QStringLiteral("added")))
        bookmark.setAttribute(QStringLiteral("added"), now);
    bookmark.setAttribute(QStringLiteral("modified"), now);
    bookmark.setAttribute(QStringLiteral("visited"), now);

    QDomElement metadata =
        childWith(childOf(bookmark, QStringLiteral("info")), QStringLiteral("metadata"),
                  QStringLiteral("owner"), QStringLiteral("http://freedesktop.org"));
    childOf(metadata, QStringLiteral("mime:mime-type"))
        .setAttribute(QStringLiteral("type"), file.mimeType);
    QDomElement application = childWith(childOf(metadata, QStringLiteral("bookmark:applications")),
                                        QStringLiteral("bookmark:application"),
                                        QStringLiteral("name"), KVersion::productName());
    application.setAttribute(QStringLiteral("exec"), QStringLiteral("'orbilens-player %u'"));
    application.setAttribute(QStringLiteral("modified"), now);
    const int count = application.attribute(QStringLiteral("count")).toInt();
    application.setAttribute(QStringLiteral("count"), count > 0 && count < INT_MAX ? count + 1 : 1);
    return document.toByteArray(2);
}

bool recentFilesAllowed(const QString &configuration)
{
    const struct
    {
        const char *file;
        const char *key;
    } switches[] = {{"gtk-3.0/settings.ini", "Settings/gtk-recent-files-enabled"},
                    {"gtk-4.0/settings.ini", "Settings/gtk-recent-files-enabled"},
                    {"kdeglobals", "RecentDocuments/UseRecent"}};
    for (const auto &entry : switches) {
        const QSettings settings(configuration + QLatin1Char('/') + QLatin1String(entry.file),
                                 QSettings::IniFormat);
        if (!settings.value(QLatin1String(entry.key), true).toBool())
            return false;
    }
    return true;
}

RecentFiles::RecentFiles()
{
    m_writer.setMaxThreadCount(1);
}

RecentFiles::~RecentFiles() = default;

void RecentFiles::remember(const QList<QUrl> &opened)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QtConcurrent::run(&m_writer, [opened, now] {
        const KSignalStack signalStack;
        if (!recentFilesAllowed(
                QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)))
            return;
        for (const QUrl &url : opened) {
            const QString path = url.toLocalFile();
            if (!path.isEmpty() && QFileInfo(path).isFile())
                addToList({url, typeOf(path), now});
        }
    });
}
