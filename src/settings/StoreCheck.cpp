#include "settings/StoreCheck.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

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

/// The visible ASCII characters of @p text after the INI reader's escapes. The reader also drops
/// quotes, blanks after them, continued lines, unknown escapes and, in UTF-8, byte order marks;
/// leaving all of these out wherever they stand can only join more than the reader joins.
QByteArray visibleText(const QByteArray &text)
{
    QByteArray result;
    const auto append = [&result](ushort unit) {
        if (unit > ' ' && unit <= '~')
            result += char(unit);
    };
    for (int i = 0; i < text.size();) {
        const char c = text.at(i++);
        if (c != '\\' || i == text.size()) {
            if (c != '"')
                append(uchar(c));
            continue;
        }
        const char escape = text.at(i++);
        if (escape == 'x') {
            append(readNumber(text, i, 16, isHexDigit));
        } else if (isOctalDigit(escape)) {
            --i;
            append(readNumber(text, i, 8, isOctalDigit));
        } else if (escape == '"' || escape == '\'' || escape == '?' || escape == '\\') {
            append(uchar(escape));
        }
    }
    return result;
}

} // namespace

bool StoreCheck::isSafe(const QByteArray &text)
{
    // As the library itself writes a colour (type 0x43), a time (type 0x10), and a plain text that
    // happens to begin like a serialised value.
    static const QRegularExpression harmless(QStringLiteral(
        R"re(@(Variant\(\\0\\0\\0\\x43|DateTime\(\\0\\0\\0\\x10)(?![0-9a-fA-F])|(?<!\\)@@(Variant|DateTime)\()re"));
    // With its size, for the conversion would end at a NUL.
    QString known = QString::fromLatin1(text.constData(), text.size());
    known.replace(harmless, QStringLiteral("!"));
    const QByteArray rest = visibleText(known.toLatin1());
    return !rest.contains("@Variant(") && !rest.contains("@DateTime(");
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
