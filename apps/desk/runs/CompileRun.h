#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"

namespace orvel::desk {

class WorstLine;

/// Checks a network before its adjustment: datum and connectivity of every component, repeated measurements,
/// and the misclosures of a minimal loop basis, each beside its limit.
/// @param worst  gets the line farthest over its limit
void runCompile(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const SurveyRules& rules,
                WorstLine* worst = nullptr);

} // namespace orvel::desk
