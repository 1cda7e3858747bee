#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

/// Shows the network as lines between benchmarks and nodes, each with its misclosure where it has one, and
/// the heights that each node gets from its lines.
///
/// @return why there are no lines, as plain text; empty if there are or if the run was stopped
QString runChains(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const SurveyRules& rules);

} // namespace orvel::desk
