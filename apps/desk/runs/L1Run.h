#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/process/IProcessMonitor.h"

namespace orvel::desk {

/// Isolates gross errors: the minimum of the weighted sum of absolute residuals.
void runL1Analysis(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot);

} // namespace orvel::desk
