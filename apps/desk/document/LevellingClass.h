#pragma once

#include <QString>

#include <optional>

namespace orvel::desk {

/// Class of the levelling, which sets the permitted misclosures.
enum class LevellingClass { I = 1, II, III, IV, Technical };

/// Permitted misclosure of a line, mm per square root of its length in km, as the instruction for levelling
/// of the classes I to IV (GKINP (GNTA)-03-010-03) has it; of technical levelling 50 mm.
double getToleranceFactor(LevellingClass levellingClass);

/// A priori standard deviation of 1 km of one levelling, mm: half of the tolerance, which is met in 19 cases
/// of 20 then.
double getSigmaPerKilometre(LevellingClass levellingClass);
/// Permitted difference of the two height differences that are observed at one station, mm, by the same
/// instruction; of technical levelling as of class IV.
double getReadingLimit(LevellingClass levellingClass);

/// "I" to "IV", and "technical", as options and files name it.
QString getClassName(LevellingClass levellingClass);
/// As texts name it, translated: "IV класс", "техническое нивелирование".
QString describeClass(LevellingClass levellingClass);
std::optional<LevellingClass> findLevellingClass(const QString& name);

} // namespace orvel::desk
