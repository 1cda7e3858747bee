#pragma once

#include "apps/desk/document/ToleranceRules.h"

#include <QByteArray>
#include <QString>

namespace orvel::desk {

/// Tolerances as a JSON file, for the command line. What the file does not name is as in a new project:
///
/// {"classes": {"IV": {"loops": {"k": 20, "by": "length"}, "repeated": {"k": 5, "by": "stations"}}},
///  "sigmaLimit": 3, "confidence": 0.99, "heightDecimals": 5, "millimetreDecimals": 2}
namespace tolerancefile {

/// @throws exceptions::Error  what is wrong, as a sentence without the file's name
ToleranceRules parse(const QByteArray& json);

/// @throws exceptions::Error  what is wrong with the file
ToleranceRules read(const QString& path);

} // namespace tolerancefile

} // namespace orvel::desk
