#include "KImage/MetadataText.h"

#include <QRegularExpression>

#include <cmath>
#include <cstdio>

namespace MetadataText {

namespace {

/// No value that holds a number is longer; a hostile one may be.
constexpr int kLongestNumber = 128;

double finite(double value)
{
    return std::isfinite(value) ? value : kUnreadable;
}

/// With a point or a comma as the decimal sign.
double decimal(QString text)
{
    return text.replace(',', '.').toDouble();
}

/// A number of a coordinate: whole, decimal or a quotient.
double quotient(const QString &text)
{
    const int slash = text.indexOf('/');
    return slash < 0 ? decimal(text) : decimal(text.left(slash)) / decimal(text.mid(slash + 1));
}

} // namespace

double number(const QString &text)
{
    static const QRegularExpression kNumber(
        QStringLiteral("-?\\d+(?:[.,]\\d+)?(?:/-?\\d+(?:[.,]\\d+)?)?"));
    const QRegularExpressionMatch match = kNumber.match(text.left(kLongestNumber));
    return match.hasMatch() ? finite(quotient(match.captured())) : kUnreadable;
}

double degrees(const QString &text)
{
    static const QRegularExpression kCoordinate(
        QStringLiteral("(\\d+).\\s+(\\d+(?:[\\.,/]\\d+)?)'\\s+(\\d+(?:[\\.,/]\\d+)?)\""));
    constexpr double kMinutesPerDegree = 60;
    constexpr double kSecondsPerDegree = 3600;
    const QRegularExpressionMatch match = kCoordinate.match(text.left(kLongestNumber));
    if (!match.hasMatch())
        return kUnreadable;
    return finite(match.captured(1).toDouble() + quotient(match.captured(2)) / kMinutesPerDegree +
                  quotient(match.captured(3)) / kSecondsPerDegree);
}

double coordinate(const QString &text, const QString &reference)
{
    const double value = degrees(text);
    if (value == kUnreadable)
        return value;
    return reference == QLatin1String("North") || reference == QLatin1String("East") ? value
                                                                                     : -value;
}

QDateTime date(const QString &text)
{
    static const QRegularExpression kDate(
        QStringLiteral("^\\s*(\\d{1,4}):(\\d{1,2}):(\\d{1,2}) +(\\d{1,2}):(\\d{1,2}):(\\d{1,2})"));
    const QRegularExpressionMatch match = kDate.match(text.left(kLongestNumber));
    const auto field = [&match](int index) { return match.captured(index).toInt(); };
    const QDate date(field(1), field(2), field(3));
    const QTime time(field(4), field(5), field(6));
    return date.isValid() && time.isValid() ? QDateTime(date, time) : QDateTime();
}

double unitInMillimetres(const QString &text)
{
    if (text.contains(QLatin1String("Inch")) || text.contains(QLatin1String("inch")))
        return 25.4;
    if (text.contains(QLatin1String("cm")))
        return 10.0;
    constexpr QChar kMicroSign(0x00B5);
    constexpr QChar kGreekMu(0x03BC);
    if (text.contains(QLatin1String("um")) || text.contains(kMicroSign) || text.contains(kGreekMu))
        return 0.001;
    return kUnreadable;
}

bool twoNumbers(const QString &text, double &first, double &second)
{
    float a = 0;
    float b = 0;
    const QByteArray bytes = text.left(kLongestNumber).toLatin1();
    if (std::sscanf(bytes.constData(), "%f %f", &a, &b) != 2 || !std::isfinite(a) ||
        !std::isfinite(b))
        return false;
    first = double(a);
    second = double(b);
    return true;
}

} // namespace MetadataText
