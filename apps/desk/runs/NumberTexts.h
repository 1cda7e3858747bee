#pragma once

#include <QString>

namespace orvel::desk {

/// Numbers without "-0": as protocols, tables and reports show them in the language that is installed, in
/// Russian with a decimal comma and a minus sign, in English with a point and a hyphen.
namespace numbers {

/// For files that programs read: a point and a hyphen in every language.
QString plain(double value, int decimals);

QString fixed(double value, int decimals);
/// With "+" before what is not negative.
QString withSign(double value, int decimals);
/// So many significant digits, without an exponent.
QString significant(double value, int digits);
/// As few digits as the number has, up to six.
QString shortest(double value);

/// All digits that tell the number from others, without an exponent; with a hyphen in every language, as it
/// is typed.
QString exact(double value);

/// Height or height difference, m.
QString height(double metres);
/// Coordinate, m.
QString coordinate(double metres);
/// Direction or orientation, rad, in degrees, minutes and seconds.
QString direction(double radians);
/// Small angle, rad, in seconds with its sign.
QString arcSeconds(double radians);
/// Angle beside its limit, and the limit, rad, in minutes; the first with its sign.
QString arcMinutes(double radians);
QString arcLimit(double radians);
/// Length of a line, km.
QString length(double kilometres);
/// Residual or misclosure, mm, with its sign.
QString misclosure(double millimetres);
/// Standard deviation or limit, mm.
QString sigma(double millimetres);
/// Standard deviation of unit weight, mm.
QString unitWeight(double millimetres);

} // namespace numbers

struct ToleranceRules;

/// How a project shows heights and millimetres: with so many decimals as its rules ask.
struct NumberFormat
{
    NumberFormat() = default;
    explicit NumberFormat(const ToleranceRules& rules);

    /// Height or height difference, m.
    QString height(double metres) const;
    /// The same with its sign.
    QString rise(double metres) const;
    /// Residual or misclosure, mm, with its sign.
    QString misclosure(double millimetres) const;
    /// Standard deviation, limit or amount, mm.
    QString sigma(double millimetres) const;

    int heightDecimals = 5;
    int millimetreDecimals = 2;
};

} // namespace orvel::desk
