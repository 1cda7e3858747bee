#pragma once

#include "host/host_export.h"

/// Whether there is a QApplication on a platform that somebody can look at. Without one ("offscreen",
/// "minimal", or no QApplication at all) nobody could answer a message box.
HOST_EXPORT bool hasDisplay();
