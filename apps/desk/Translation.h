#pragma once

#include <QString>

namespace orvel::desk {

/// Installs the texts of a language: "ru", "en", or empty for the system's. The texts of the program itself
/// are Russian; languages other than English get these. Needs a QCoreApplication.
void installLanguage(const QString& language);

} // namespace orvel::desk
