#pragma once

#include <QString>

namespace orvel::apps {

/// The version of all that is built here, such as "1.0.0". It stands in the top CMakeLists.txt.
QString getVersion();

} // namespace orvel::apps
