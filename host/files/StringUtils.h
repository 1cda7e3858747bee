#pragma once

#include "host/host_export.h"

#include <QString>

namespace utils {

/// The text with its first character in upper case.
HOST_EXPORT QString toUpperFirst(const QString& text);

/// The text as one line that a terminal shows: control characters as escapes, like "\n" and "\x1b".
HOST_EXPORT QString escapeControls(const QString& text);

} // namespace utils
