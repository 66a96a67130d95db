#include "kontrols/thememanager/ThemeManager.h"

#include "kontrols/thememanager/ThemeFontFiles.h"

#include <QDir>
#include <QQmlEngine>

namespace {

QString pathOf(const QString &folder)
{
    if (folder.startsWith(QLatin1String("qrc:")))
        return folder.mid(3);
    const QUrl url(folder);
    return url.isLocalFile() ? url.toLocalFile() : folder;
}

} // namespace

QVariant CurrentTheme::getStyle(const QString &type, const QVariant &classNames) const
{
    const QUrl file = m_theme.styleFile(type, classNames.toStringList());
    return file.isEmpty() ? QVariant::fromValue(nullptr) : QVariant(file);
}

ThemeManager::ThemeManager(QObject *parent)
    : QObject(parent)
    , m_current(new CurrentTheme(theme::MergedTheme()))
{
    QQmlEngine::setObjectOwnership(m_current.get(), QQmlEngine::CppOwnership);
}

ThemeManager::~ThemeManager() = default;

void ThemeManager::loadThemes(const QString &folder, const QString &title)
{
    const QString path = pathOf(folder);
    const QStringList faults = m_book.readFolder(path);
    for (const QString &fault : faults)
        qWarning("Theme left out: %s", qUtf8Printable(fault));
    registerThemeFonts(QDir(path).filePath(QStringLiteral("fonts")));

    std::optional<theme::MergedTheme> merged = m_book.merged(title);
    if (!merged) {
        qWarning("There is no theme \"%s\" in %s", qUtf8Printable(title), qUtf8Printable(path));
        return;
    }
    m_current.reset(new CurrentTheme(std::move(*merged)));
    QQmlEngine::setObjectOwnership(m_current.get(), QQmlEngine::CppOwnership);
    emit currentChanged();
}
