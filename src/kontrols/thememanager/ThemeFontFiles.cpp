#include "kontrols/thememanager/ThemeFontFiles.h"

#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QSet>

namespace {

/// A substitute serves only where the named family is not installed.
void nameSubstitutes()
{
    QFont::insertSubstitution(QStringLiteral("PF DinText Pro"), QStringLiteral("Barlow"));
    QFont::insertSubstitution(QStringLiteral("Proxima Nova"), QStringLiteral("Figtree"));
}

} // namespace

void registerThemeFonts(const QString &folder)
{
    // The database keeps application fonts until the end, and counts a second registration apart.
    static QSet<QString> registered;
    if (registered.isEmpty())
        nameSubstitutes();
    const QDir directory(folder);
    const QStringList names = directory.entryList(
        {QStringLiteral("*.ttf"), QStringLiteral("*.otf")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        const QString path = directory.absoluteFilePath(name);
        if (registered.contains(path))
            continue;
        registered.insert(path);
        if (QFontDatabase::addApplicationFont(path) < 0)
            qWarning("The font %s cannot be used", qUtf8Printable(path));
    }
}
