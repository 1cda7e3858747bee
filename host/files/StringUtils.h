#pragma once

#include "host/host_export.h"

#include <QString>

namespace utils {

/// The text with its first character in upper case.
HOST_EXPORT QString toUpperFirst(const QString& text);

/// The text as one line that a terminal shows: control characters as escapes, like "\n" and "\x1b".
HOST_EXPORT QString escapeControls(const QString& text);

/// What the system or Qt says of a failed file operation, in the language of the texts: Qt's are English in
/// any language, and the system's may be in a third one. What is not known stays as it is.
/// @param systemText  QFileDevice::errorString() or qt_error_string()
HOST_EXPORT QString describeReason(const QString& systemText);

} // namespace utils
