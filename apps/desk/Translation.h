#pragma once

#include <QString>

namespace orvel::desk {

/// Installs the texts of a language: "ru", "en", or else the system's. The texts of the program itself
/// are Russian; a system in any other language gets the English ones. Needs a QCoreApplication.
void installLanguage(const QString& language);

} // namespace orvel::desk
