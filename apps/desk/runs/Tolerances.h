#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QString>

#include <memory>
#include <optional>

namespace orvel::desk {

/// What the limit of a misclosure or a discrepancy comes from.
struct ToleranceBasis
{
    std::optional<double> length;   ///< km
    std::optional<double> stations; ///< their count
    double sigma = 0.0;             ///< standard deviation of the value, mm
};

/// How a misclosure or a discrepancy stands to its limit.
struct Tolerance
{
    double limit = 0.0; ///< mm
    double ratio = 0.0; ///< of its size to the limit
    bool isExceeded = false;
};

namespace tolerances {

/// The limit, mm: the rule's factor times the root of the length, or of the stations, as it asks; without
/// these so many standard deviations as the rules say.
double findLimit(const ToleranceBasis& basis, const ToleranceRule& rule, double sigmaLimit);

/// Judges the misclosure of a line or a loop, mm.
Tolerance judgeLoop(double value, const ToleranceBasis& basis, const SurveyRules& rules);
/// Judges the discrepancy of repeated sections, mm.
Tolerance judgeRepeated(double value, const ToleranceBasis& basis, const SurveyRules& rules);

/// "20 мм·√L", or "5 мм·√n".
QString describeFactor(const ToleranceRule& rule);
/// What the limit of lines and loops is of, for the head of a protocol: "±20 мм·√L (IV класс), L — длина, км;
/// без длины — 3 СКО". It says so if the project has limits of its own.
QString describeLoopRule(const SurveyRules& rules);
/// All limits of a class, for the head of a protocol or a report.
QString describeRules(const ToleranceRules& rules, LevellingClass levellingClass);
/// The level of the tests, if the project has one of its own; else empty.
QString describeOwnLevel(const ToleranceRules& rules);
/// The network with the level of the tests that the rules ask for.
std::shared_ptr<const NetworkSnapshot> applyLevel(const std::shared_ptr<const NetworkSnapshot>& snapshot,
                                                  const ToleranceRules& rules);
/// The class, and whether the project has limits of its own, in few words.
QString describeClassInUse(const SurveyRules& rules);

/// "допуск 28,28 мм", or "больше допуска 28,28 мм" where it is exceeded.
QString describeLimit(const Tolerance& tolerance, const NumberFormat& format);
/// The same with "±", for what has a sign.
QString describeSignedLimit(const Tolerance& tolerance, const NumberFormat& format);

/// "длина 2,000 км", or that there is none.
QString describeLength(const std::optional<double>& length);

} // namespace tolerances

} // namespace orvel::desk
