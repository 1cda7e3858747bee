#pragma once

#include "host/host_export.h"

#include <QString>

namespace utils {

/// The text with its first character in upper case.
HOST_EXPORT QString toUpperFirst(const QString& text);

} // namespace utils
