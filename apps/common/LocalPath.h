#pragma once

#include <QString>

namespace orvel::apps {

/// The path that a file URL of this computer stands for, as file managers hand it over; anything else as it
/// is.
QString toLocalPath(const QString& text);

} // namespace orvel::apps
