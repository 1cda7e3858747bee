#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

class WorstLine;

/// Shows the network as lines between benchmarks and nodes, each with its misclosure where it has one, and
/// the heights that each node gets from its lines.
///
/// @param worst  gets the line farthest over its limit
/// @return why there are no lines, as plain text; empty if there are or if the run was stopped
QString runChains(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const SurveyRules& rules,
                  WorstLine* worst = nullptr);

} // namespace orvel::desk
