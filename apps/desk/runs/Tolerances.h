#pragma once

#include "apps/desk/document/LevellingClass.h"

#include <QString>

#include <optional>

namespace orvel::desk {

/// How a misclosure or a discrepancy stands to its limit.
struct Tolerance
{
    double limit = 0.0; ///< mm
    double ratio = 0.0; ///< of its size to the limit
    bool isExceeded = false;
};

namespace tolerances {

/// The limit is k * sqrt(length) with the class's k; without a length three standard deviations.
/// @param value   mm
/// @param length  km
/// @param sigma   standard deviation of the value, mm
Tolerance judge(double value, const std::optional<double>& length, double sigma,
                LevellingClass levellingClass);

/// What the limit is of, for the head of a protocol: "±20 мм·√L (IV класс), L — длина, км; без длины — 3
/// СКО".
QString describeRule(LevellingClass levellingClass);

/// "допуск 28,28 мм", or "больше допуска 28,28 мм" where it is exceeded.
QString describeLimit(const Tolerance& tolerance);
/// The same with "±", for what has a sign.
QString describeSignedLimit(const Tolerance& tolerance);

/// "длина 2,000 км", or that there is none.
QString describeLength(const std::optional<double>& length);

} // namespace tolerances

} // namespace orvel::desk
