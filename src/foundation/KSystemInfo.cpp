#include "foundation/KSystemInfo.h"

#include <QCoreApplication>
#include <QRegularExpression>

QString KSystemInfo::BytesToText(quint64 count)
{
    static const char *const units[] = {
        QT_TRANSLATE_NOOP("KSystemInfo", "Bytes"), QT_TRANSLATE_NOOP("KSystemInfo", "KB"),
        QT_TRANSLATE_NOOP("KSystemInfo", "MB"), QT_TRANSLATE_NOOP("KSystemInfo", "GB"),
        QT_TRANSLATE_NOOP("KSystemInfo", "TB")};
    constexpr int last = int(sizeof(units) / sizeof(units[0])) - 1;

    auto value = float(count);
    int unit = 0;
    while (value >= 1024.0F && unit < last) {
        value *= 0.0009765625F;
        ++unit;
    }

    QString number = QStringLiteral("%1").arg(double(value)).left(4);
    static const QRegularExpression separator(QStringLiteral("[\\., ]"));
    if (number.lastIndexOf(separator) == 3)
        number.truncate(3);
    return QStringLiteral("%1 %2").arg(number,
                                       QCoreApplication::translate("KSystemInfo", units[unit]));
}
