#pragma once

#include <QString>

#include <optional>

namespace orvel::desk {

/// Class of the levelling, which sets the permitted misclosures.
enum class LevellingClass { I = 1, II, III, IV };

/// Permitted misclosure of a line, mm per square root of its length in km, as the instruction for levelling
/// of the classes I to IV (GKINP (GNTA)-03-010-03) has it.
double getToleranceFactor(LevellingClass levellingClass);

/// "I" to "IV".
QString getClassName(LevellingClass levellingClass);
std::optional<LevellingClass> findLevellingClass(const QString& name);

} // namespace orvel::desk
