#include "apps/desk/runs/Tolerances.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"

#include <cmath>

namespace orvel::desk {

namespace tolerances {

namespace {

// Limit of a misclosure whose line has no length, in standard deviations of it.
constexpr double kSigmaLimit = 3.0;
// Differences of whole tenths of a millimetre are not quite such in binary numbers, mm.
constexpr double kRounding = 1e-6;

QString describe(const Tolerance& tolerance, const QString& limit)
{
    return tolerance.isExceeded ? Desk::tr("больше допуска %1\u00A0мм").arg(limit)
                                : Desk::tr("допуск %1\u00A0мм").arg(limit);
}

} // namespace

Tolerance judge(double value, const std::optional<double>& length, double sigma,
                LevellingClass levellingClass)
{
    Tolerance tolerance;
    tolerance.limit = length ? getToleranceFactor(levellingClass) * std::sqrt(*length) : kSigmaLimit * sigma;
    tolerance.ratio = tolerance.limit > 0.0 ? std::abs(value) / tolerance.limit : 0.0;
    tolerance.isExceeded = std::abs(value) > tolerance.limit + kRounding;
    return tolerance;
}

QString describeRule(LevellingClass levellingClass)
{
    return Desk::tr("±%1\u00A0мм·√L (%2), L — длина, км; без длины — %3 СКО")
        .arg(numbers::fixed(getToleranceFactor(levellingClass), 0), describeClass(levellingClass),
             numbers::fixed(kSigmaLimit, 0));
}

QString describeLimit(const Tolerance& tolerance)
{
    return describe(tolerance, numbers::fixed(tolerance.limit, 2));
}

QString describeSignedLimit(const Tolerance& tolerance)
{
    return describe(tolerance, QStringLiteral("±") + numbers::fixed(tolerance.limit, 2));
}

QString describeLength(const std::optional<double>& length)
{
    return length ? Desk::tr("длина %1\u00A0км").arg(numbers::length(*length)) : Desk::tr("длина не задана");
}

} // namespace tolerances

} // namespace orvel::desk
