#pragma once

#include "host/host_export.h"

#include <functional>

/// Performs work that may take long, and returns when it is done. To be called in the GUI thread.
///
/// While a window is shown the work goes to another thread, and if it is not done at once, an event loop has
/// the windows painted and the timers served meanwhile; what the user does waits until the work is done. So
/// whoever calls this must bear what a timer can bring. Without a window it is a plain call.
///
/// @param work  touches nothing that the GUI thread may read or change in its event loop
/// @throws whatever the work throws
HOST_EXPORT void performBesideWindow(const std::function<void()>& work);
