#include "apps/desk/document/ToleranceRules.h"

#include "apps/desk/document/ArchiveValues.h"

#include <algorithm>

namespace orvel::desk {

namespace {

std::size_t getIndex(LevellingClass levellingClass)
{
    return static_cast<std::size_t>(levellingClass) - static_cast<std::size_t>(kLevellingClasses.front());
}

/// Whether the number lies in the range; what is none does not.
bool isWithin(double number, double least, double largest)
{
    return number >= least && number <= largest;
}

bool isUsable(const ToleranceRule& rule)
{
    const bool isMeasure =
        rule.measure == ToleranceMeasure::Length || rule.measure == ToleranceMeasure::Stations;
    return isMeasure && isWithin(rule.factor, ToleranceRule::kLeastFactor, ToleranceRule::kLargestFactor);
}

void serializeRule(CQtArchive& archive, ToleranceRule& rule)
{
    auto measure = static_cast<qint32>(rule.measure);
    serializeValue(archive, measure);
    rule.measure = static_cast<ToleranceMeasure>(measure);
    serializeValue(archive, rule.factor);
}

} // namespace

bool operator==(const ToleranceRule& a, const ToleranceRule& b)
{
    return a.measure == b.measure && a.factor == b.factor;
}

bool operator!=(const ToleranceRule& a, const ToleranceRule& b)
{
    return !(a == b);
}

bool operator==(const ClassTolerances& a, const ClassTolerances& b)
{
    return a.loops == b.loops && a.repeated == b.repeated;
}

bool operator==(const ToleranceRules& a, const ToleranceRules& b)
{
    return a.classes == b.classes && a.sigmaLimit == b.sigmaLimit && a.confidence == b.confidence &&
           a.heightDecimals == b.heightDecimals && a.millimetreDecimals == b.millimetreDecimals;
}

bool operator!=(const ToleranceRules& a, const ToleranceRules& b)
{
    return !(a == b);
}

ToleranceRules::ToleranceRules()
{
    for (const LevellingClass levellingClass : kLevellingClasses) {
        const ToleranceRule rule{ToleranceMeasure::Length, getToleranceFactor(levellingClass)};
        of(levellingClass) = {rule, rule};
    }
}

const ClassTolerances& ToleranceRules::of(LevellingClass levellingClass) const
{
    return classes[getIndex(levellingClass)];
}

ClassTolerances& ToleranceRules::of(LevellingClass levellingClass)
{
    return classes[getIndex(levellingClass)];
}

bool ToleranceRules::isOwn(LevellingClass levellingClass) const
{
    const ToleranceRules standard;
    return sigmaLimit != standard.sigmaLimit || !(of(levellingClass) == standard.of(levellingClass));
}

bool ToleranceRules::isUsable() const
{
    return std::all_of(classes.begin(), classes.end(),
                       [](const ClassTolerances& tolerances) {
                           return desk::isUsable(tolerances.loops) && desk::isUsable(tolerances.repeated);
                       }) &&
           isWithin(sigmaLimit, kLeastSigmaLimit, kLargestSigmaLimit) &&
           (!confidence || isWithin(*confidence, kLeastConfidence, kLargestConfidence)) &&
           isWithin(heightDecimals, 0, kMostHeightDecimals) &&
           isWithin(millimetreDecimals, 0, kMostMillimetreDecimals);
}

void ToleranceRules::serialize(CQtArchive& archive)
{
    for (ClassTolerances& tolerances : classes) {
        serializeRule(archive, tolerances.loops);
        serializeRule(archive, tolerances.repeated);
    }
    serializeValue(archive, sigmaLimit);
    serializeValue(archive, confidence);
    serializeValue(archive, heightDecimals);
    serializeValue(archive, millimetreDecimals);
}

} // namespace orvel::desk
