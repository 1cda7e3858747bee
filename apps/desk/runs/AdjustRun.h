#pragma once

#include "apps/desk/document/HandChange.h"
#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"
#include "levelling/Adjustment.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

class WorstLine;

/// Adjusts a network by least squares and writes composition, results and residuals, each in a stage of the
/// protocol. Nothing if the run was stopped.
/// @param handChanges  what the network has got by hand, which gets a stage of its own
/// @param worst  gets the line farthest over its limit
std::optional<levelling::Adjustment> runAdjust(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                                               const SurveyRules& rules = {},
                                               const std::vector<HandChange>& handChanges = {},
                                               WorstLine* worst = nullptr);

/// Why an adjustment of that status has no results, as plain text; empty if it has.
QString describeFailure(levelling::AdjustmentStatus status);

} // namespace orvel::desk
