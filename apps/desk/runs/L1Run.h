#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/process/IProcessMonitor.h"

/// Isolates gross errors: the minimum of the weighted sum of absolute residuals.
void runL1Analysis(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot);
