#pragma once

#include "apps/desk/document/LevellingClass.h"

#include <array>
#include <optional>

class CQtArchive;

namespace orvel::desk {

/// What the limit of a misclosure grows with, by its square root.
enum class ToleranceMeasure { Length = 1, Stations };

/// The limit of a misclosure, mm: the factor times the root of the length in km, or of the count of stations.
struct ToleranceRule
{
    static constexpr double kLeastFactor = 0.01;
    static constexpr double kLargestFactor = 1000.0;

    ToleranceMeasure measure = ToleranceMeasure::Length;
    double factor = 0.0;
};

bool operator==(const ToleranceRule& a, const ToleranceRule& b);
bool operator!=(const ToleranceRule& a, const ToleranceRule& b);

/// The rules of one class.
struct ClassTolerances
{
    ToleranceRule loops;    ///< of lines and loops
    ToleranceRule repeated; ///< of the discrepancy between forward and back, or other repetitions
};

bool operator==(const ClassTolerances& a, const ClassTolerances& b);

/// By what a project judges its measurements, and how many decimals it shows. Made so, the rules are those of
/// getToleranceFactor().
struct ToleranceRules
{
    static constexpr double kLeastSigmaLimit = 1.0;
    static constexpr double kLargestSigmaLimit = 10.0;
    static constexpr double kLeastConfidence = 0.5;
    static constexpr double kLargestConfidence = 0.9999;
    static constexpr int kMostHeightDecimals = 6;
    static constexpr int kMostMillimetreDecimals = 4;

    ToleranceRules();

    /// In the order of kLevellingClasses.
    std::array<ClassTolerances, kLevellingClasses.size()> classes;
    /// Limit of a misclosure whose line has no length, or no count of stations, in standard deviations of it.
    double sigmaLimit = 3.0;
    /// Probability with which statistical tests pass what is free of gross errors; none if the network's own
    /// parameter holds.
    std::optional<double> confidence;
    int heightDecimals = 5;     ///< of heights and height differences in m
    int millimetreDecimals = 2; ///< of misclosures, residuals and standard deviations

    const ClassTolerances& of(LevellingClass levellingClass) const;
    ClassTolerances& of(LevellingClass levellingClass);
    /// Whether the limits of that class differ from the usual ones.
    bool isOwn(LevellingClass levellingClass) const;
    /// Whether all values are in their ranges: a file may hold anything.
    bool isUsable() const;

    /// Saves or loads the rules.
    void serialize(CQtArchive& archive);
};

bool operator==(const ToleranceRules& a, const ToleranceRules& b);
bool operator!=(const ToleranceRules& a, const ToleranceRules& b);

/// What a run judges by.
struct SurveyRules
{
    SurveyRules(LevellingClass givenClass = LevellingClass::IV, const ToleranceRules& rules = {})
        : levellingClass(givenClass)
        , tolerances(rules)
    {}

    LevellingClass levellingClass;
    ToleranceRules tolerances;
};

} // namespace orvel::desk
