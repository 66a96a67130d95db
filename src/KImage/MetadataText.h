#pragma once

// Numbers out of the texts of EXIF values. Free functions, any thread.

#include <QDateTime>
#include <QString>

namespace MetadataText {

/// What stands for a number that could not be read.
constexpr double kUnreadable = -9999.0;

/// The first number of @p text: "1/250" is 0.004, "2,8" and "2.8 mm" are 2.8, "200" is 200.
double number(const QString &text);

/// Degrees from `48° 51' 29.6"`.
double degrees(const QString &text);

/// The same with the sign of its reference: "North" and "East" are positive, others negative.
double coordinate(const QString &text, const QString &reference);

/// Of "year:month:day hour:minute:second"; invalid for another text.
QDateTime date(const QString &text);

/// Millimetres of the focal plane resolution's unit, by the words "inch", "cm" and "um" (or the
/// micro sign) in its text; unreadable without one of them.
double unitInMillimetres(const QString &text);

/// Both numbers of "a b"; false when there are not two.
[[nodiscard]] bool twoNumbers(const QString &text, double &first, double &second);

} // namespace MetadataText
