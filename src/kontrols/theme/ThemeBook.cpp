#include "kontrols/theme/ThemeBook.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace theme {

namespace {

/// More than any theme needs; a longer file is refused by the parser.
constexpr qint64 kReadLimit = (1 << 20) + 1;

/// What holds where no theme says anything: a dark interface in the system's own font.
const Section &builtInValues()
{
    static const Section values = [] {
        Section section;
        section.colors = {{ColorRole::Foreground, QColor(Qt::white)},
                          {ColorRole::Background, QColor(0x22, 0x22, 0x22)},
                          {ColorRole::DarkerForeground, QColor(0xa0, 0xa0, 0xa0)},
                          {ColorRole::DarkerBackground, QColor(Qt::black)},
                          {ColorRole::LighterBackground, QColor(0x33, 0x33, 0x33)},
                          {ColorRole::Selection, QColor(0x00, 0xA3, 0xDA)}};
        const struct
        {
            FontRole role;
            qreal pointSize;
            QFont::Weight weight;
        } fonts[] = {{FontRole::Main, 12, QFont::Normal}, {FontRole::Alternate, 12, QFont::Normal},
                     {FontRole::H1, 24, QFont::Bold},     {FontRole::H2, 16, QFont::Medium},
                     {FontRole::H3, 14, QFont::Medium},   {FontRole::H4, 12, QFont::Medium}};
        for (const auto &font : fonts) {
            section.fonts[font.role].pointSize = font.pointSize;
            section.fonts[font.role].weight = font.weight;
        }
        section.radius = 0;
        section.fontFactor = 1;
        return section;
    }();
    return values;
}

/// Names come from scenes; what is no plain word never reaches the file system.
bool isPlainName(const QString &name)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_-]{1,64}\\z"));
    return plain.match(name).hasMatch();
}

QUrl urlOf(const QString &path)
{
    return path.startsWith(QLatin1Char(':')) ? QUrl(QLatin1String("qrc") + path)
                                             : QUrl::fromLocalFile(path);
}

QUrl existingFile(const QStringList &folders, const QString &name)
{
    for (const QString &folder : folders) {
        const QString path = folder + QLatin1Char('/') + name + QLatin1String(".qml");
        if (QFile::exists(path))
            return urlOf(path);
    }
    return {};
}

} // namespace

MergedTheme::MergedTheme(const ThemeFile &merged, const QStringList &styleFolders)
    : m_theme(merged)
    , m_styleFolders(styleFolders)
{}

Section MergedTheme::valuesFor(const QString &control) const
{
    Section section = m_theme.controls.value(control);
    section.complete(m_theme.global);
    // Headings without a family of their own are set in the main one.
    const std::optional<QString> mainFamily = section.fonts[FontRole::Main].family;
    section.complete(builtInValues());
    for (FontChoice &font : section.fonts) {
        if (!font.family)
            font.family = mainFamily;
    }
    if (!m_theme.global.colors.contains(ColorRole::DarkerForeground) &&
        !m_theme.controls.value(control).colors.contains(ColorRole::DarkerForeground)) {
        // Seen against the theme's own background, which may be light.
        QColor muted = section.colors.value(ColorRole::Foreground);
        const QColor behind = section.colors.value(ColorRole::Background);
        muted.setRgb((2 * muted.red() + behind.red()) / 3, (2 * muted.green() + behind.green()) / 3,
                     (2 * muted.blue() + behind.blue()) / 3);
        section.colors.insert(ColorRole::DarkerForeground, muted);
    }
    return section;
}

QUrl MergedTheme::styleFile(const QString &type, const QStringList &classNames) const
{
    if (!isPlainName(type))
        return {};
    for (const QString &className : classNames) {
        if (!isPlainName(className))
            continue;
        QUrl file = existingFile(m_styleFolders, type + QLatin1Char('_') + className);
        if (!file.isEmpty())
            return file;
    }
    return existingFile(m_styleFolders, type);
}

QStringList ThemeBook::readFolder(const QString &folder)
{
    QStringList faults;
    const QDir directory(folder);
    const QStringList names =
        directory.entryList({QStringLiteral("*.thm")}, QDir::Files | QDir::Readable, QDir::Name);
    for (const QString &name : names) {
        QFile file(directory.filePath(name));
        QString reason;
        std::optional<ThemeFile> theme;
        if (file.open(QIODevice::ReadOnly))
            theme = parseThemeFile(file.read(kReadLimit), &reason);
        else
            reason = file.errorString();
        if (theme)
            add(*theme, folder);
        else
            faults.append(QStringLiteral("%1: %2").arg(file.fileName(), reason));
    }
    return faults;
}

void ThemeBook::add(const ThemeFile &theme, const QString &folder)
{
    const QString styles = QDir(folder).filePath(QStringLiteral("styles"));
    m_entries.insert(theme.title, {theme, QDir(styles).exists() ? styles : QString()});
}

std::optional<MergedTheme> ThemeBook::merged(const QString &title) const
{
    auto entry = m_entries.constFind(title);
    if (entry == m_entries.constEnd())
        return std::nullopt;

    ThemeFile theme;
    theme.title = title;
    QStringList styleFolders;
    QSet<QString> met;
    for (; entry != m_entries.constEnd() && !met.contains(entry.key());
         entry = m_entries.constFind(entry->theme.extends)) {
        met.insert(entry.key());
        theme.complete(entry->theme);
        if (!entry->styleFolder.isEmpty() && !styleFolders.contains(entry->styleFolder))
            styleFolders.append(entry->styleFolder);
    }
    return MergedTheme(theme, styleFolders);
}

} // namespace theme
