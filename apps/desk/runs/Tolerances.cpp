#include "apps/desk/runs/Tolerances.h"

#include "apps/desk/Desk.h"

#include <cmath>

namespace orvel::desk {

namespace tolerances {

namespace {

// Differences of whole tenths of a millimetre are not quite such in binary numbers, mm.
constexpr double kRounding = 1e-6;

Tolerance judge(double value, double limit)
{
    Tolerance tolerance;
    tolerance.limit = limit;
    tolerance.ratio = limit > 0.0 ? std::abs(value) / limit : 0.0;
    tolerance.isExceeded = std::abs(value) > limit + kRounding;
    return tolerance;
}

QString describe(const Tolerance& tolerance, const QString& limit)
{
    return tolerance.isExceeded ? Desk::tr("больше допуска %1\u00A0мм").arg(limit)
                                : Desk::tr("допуск %1\u00A0мм").arg(limit);
}

QString describeRule(const ToleranceRule& rule, const SurveyRules& rules)
{
    const QString factor = numbers::shortest(rule.factor);
    const QString sigmas = numbers::shortest(rules.tolerances.sigmaLimit);
    const QString inUse = describeClassInUse(rules);
    return rule.measure == ToleranceMeasure::Length
               ? Desk::tr("±%1\u00A0мм·√L (%2), L — длина, км; без длины — %3 СКО").arg(factor, inUse, sigmas)
               : Desk::tr("±%1\u00A0мм·√n (%2), n — число станций; без числа станций — %3 СКО")
                     .arg(factor, inUse, sigmas);
}

} // namespace

double findLimit(const ToleranceBasis& basis, const ToleranceRule& rule, double sigmaLimit)
{
    const std::optional<double>& extent =
        rule.measure == ToleranceMeasure::Length ? basis.length : basis.stations;
    return extent ? rule.factor * std::sqrt(*extent) : sigmaLimit * basis.sigma;
}

Tolerance judgeLoop(double value, const ToleranceBasis& basis, const SurveyRules& rules)
{
    const ToleranceRule& rule = rules.tolerances.of(rules.levellingClass).loops;
    return judge(value, findLimit(basis, rule, rules.tolerances.sigmaLimit));
}

Tolerance judgeRepeated(double value, const ToleranceBasis& basis, const SurveyRules& rules)
{
    const ToleranceRule& rule = rules.tolerances.of(rules.levellingClass).repeated;
    return judge(value, findLimit(basis, rule, rules.tolerances.sigmaLimit));
}

QString describeFactor(const ToleranceRule& rule)
{
    return (rule.measure == ToleranceMeasure::Length ? Desk::tr("%1\u00A0мм·√L") : Desk::tr("%1\u00A0мм·√n"))
        .arg(numbers::shortest(rule.factor));
}

QString describeLoopRule(const SurveyRules& rules)
{
    return describeRule(rules.tolerances.of(rules.levellingClass).loops, rules);
}

QString describeRules(const ToleranceRules& rules, LevellingClass levellingClass)
{
    const SurveyRules survey(levellingClass, rules);
    const ClassTolerances& limits = rules.of(levellingClass);
    const QString loops = describeRule(limits.loops, survey);
    return limits.loops == limits.repeated
               ? Desk::tr("Допуск невязок ходов и полигонов и расхождений измерений секции: %1").arg(loops)
               : Desk::tr("Допуск невязок ходов и полигонов: %1. Допуск расхождений измерений секции: %2")
                     .arg(loops, describeRule(limits.repeated, survey));
}

QString describeOwnLevel(const ToleranceRules& rules)
{
    return rules.confidence ? Desk::tr("Доверительная вероятность критериев задана в допусках проекта: %1")
                                  .arg(numbers::shortest(*rules.confidence))
                            : QString();
}

std::shared_ptr<const NetworkSnapshot> applyLevel(const std::shared_ptr<const NetworkSnapshot>& snapshot,
                                                  const ToleranceRules& rules)
{
    if (!rules.confidence || *rules.confidence == snapshot->network.parameters.confidence)
        return snapshot;
    auto changed = std::make_shared<NetworkSnapshot>(*snapshot);
    changed->network.parameters.confidence = *rules.confidence;
    return changed;
}

QString describeClassInUse(const SurveyRules& rules)
{
    const QString name = describeClass(rules.levellingClass);
    return rules.tolerances.isOwn(rules.levellingClass) ? Desk::tr("%1, свои допуски").arg(name) : name;
}

QString describeLimit(const Tolerance& tolerance, const NumberFormat& format)
{
    return describe(tolerance, format.sigma(tolerance.limit));
}

QString describeSignedLimit(const Tolerance& tolerance, const NumberFormat& format)
{
    return describe(tolerance, QStringLiteral("±") + format.sigma(tolerance.limit));
}

QString describeLength(const std::optional<double>& length)
{
    return length ? Desk::tr("длина %1\u00A0км").arg(numbers::length(*length)) : Desk::tr("длина не задана");
}

} // namespace tolerances

} // namespace orvel::desk
