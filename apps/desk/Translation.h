#pragma once

#include <QString>

namespace orvel::desk {

/// Installs the texts of a language, "ru" or "en", or else of the first of these among the system's
/// languages. A system that has none of them gets the English ones. Numbers in Qt's own fields are written
/// accordingly. Needs a QCoreApplication.
void installLanguage(const QString& language);

} // namespace orvel::desk
