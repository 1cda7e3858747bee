#pragma once

#include <QString>

#include <array>
#include <optional>

namespace orvel::desk {

/// Class of the levelling, which sets the permitted misclosures.
enum class LevellingClass { I = 1, II, III, IV, Technical };

constexpr std::array kLevellingClasses{LevellingClass::I, LevellingClass::II, LevellingClass::III,
                                       LevellingClass::IV, LevellingClass::Technical};

/// Permitted misclosure of a line, mm per square root of its length in km: of the classes I to IV, and of
/// technical levelling. docs/tests-and-formulas.md tells where the limits come from.
double getToleranceFactor(LevellingClass levellingClass);

/// A priori standard deviation of 1 km of one levelling, mm: half of the tolerance, which is met in 19 cases
/// of 20 then.
double getSigmaPerKilometre(LevellingClass levellingClass);
/// Permitted difference of the two height differences that are observed at one station, mm. The limits are
/// the desk's own; of technical levelling as of class IV.
double getReadingLimit(LevellingClass levellingClass);

/// "I" to "IV", and "technical", as options and files name it.
QString getClassName(LevellingClass levellingClass);
/// As texts name it, translated: "IV класс", "техническое нивелирование".
QString describeClass(LevellingClass levellingClass);
std::optional<LevellingClass> findLevellingClass(const QString& name);

} // namespace orvel::desk
