#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

class WorstLine;

/// Looks for gross errors: by sequential tests, and by the minimum of the weighted sum of absolute residuals.
///
/// @param worst  gets the line farthest over its limit
/// @return why there is no solution, as plain text; empty if there is one or if the run was stopped
QString runL1Analysis(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                      const SurveyRules& rules = {}, WorstLine* worst = nullptr);

} // namespace orvel::desk
