#include "settings/StoreCheck.h"

#include <QFile>
#include <QFileInfo>

namespace {

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isOctalDigit(char c)
{
    return c >= '0' && c <= '7';
}

/// Reads the digits of a numeric escape from @p position on; longer ones wrap as a 16-bit unit.
template <typename IsDigit>
ushort readNumber(const QByteArray &text, int &position, int base, IsDigit isDigit)
{
    ushort value = 0;
    for (; position < text.size() && isDigit(text.at(position)); ++position)
        value = ushort(value * base + text.mid(position, 1).toInt(nullptr, base));
    return value;
}

/// @p text as the INI reader sees it: escapes resolved, quotes and continued lines joined.
QString unescaped(const QByteArray &text)
{
    const QByteArray letters("abfnrtv");
    const char *const meanings = "\a\b\f\n\r\t\v";
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size();) {
        const char c = text.at(i++);
        if (c == '"')
            continue;
        if (c != '\\' || i == text.size()) {
            result += QLatin1Char(c);
            continue;
        }
        const char escape = text.at(i++);
        const int letter = letters.indexOf(escape);
        if (letter >= 0) {
            result += QLatin1Char(meanings[letter]);
        } else if (escape == 'x') {
            result += QChar(readNumber(text, i, 16, isHexDigit));
        } else if (isOctalDigit(escape)) {
            --i;
            result += QChar(readNumber(text, i, 8, isOctalDigit));
        } else if (escape == '\r' || escape == '\n') {
            const char pair = escape == '\r' ? '\n' : '\r';
            if (i < text.size() && text.at(i) == pair)
                ++i;
        } else {
            result += QLatin1Char(escape);
        }
    }
    return result;
}

} // namespace

bool StoreCheck::isSafe(const QByteArray &text)
{
    const QLatin1String marker("@Variant(");
    const QString colour = QString::fromLatin1("\0\0\0\x43", 4);
    const QString plain = unescaped(text);
    for (int at = plain.indexOf(marker); at >= 0; at = plain.indexOf(marker, at + 1)) {
        // "@@" opens a plain text that happens to begin with the sign.
        const bool plainText = at > 0 && plain.at(at - 1) == QLatin1Char('@');
        if (!plainText && plain.mid(at + marker.size(), colour.size()) != colour)
            return false;
    }
    return true;
}

void StoreCheck::setAsideUnsafeFiles(QSettings::Scope scope, const QString &organization,
                                     const QString &application)
{
    // The folder of the stores is known to QSettings alone, and opening the real store would
    // already decode it; a store that nobody has tells the folder as well.
    const QString nobody = QStringLiteral("no organization of this name");
    const QString probe = QSettings(scope, nobody, nobody).fileName();
    const int folderSize = probe.lastIndexOf(nobody + QLatin1Char('/'));
    if (folderSize < 0)
        return;
    const QString extension = probe.mid(folderSize + 2 * nobody.size() + 1);
    const QString base = probe.left(folderSize) + organization;
    for (const QString &name : {base + QLatin1Char('/') + application, base}) {
        QFile file(name + extension);
        if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
            continue;
        const bool safe = isSafe(file.readAll());
        file.close();
        if (safe)
            continue;
        const QString aside = file.fileName() + QLatin1String(".damaged");
        QFile::remove(aside);
        file.rename(aside);
    }
}
