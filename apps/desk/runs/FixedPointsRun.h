#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

class WorstLine;

/// Compares the given heights of the benchmarks with the measurements and with each other: which are to be
/// excluded, the misclosures of the lines between them, and what each benchmark's height should be.
///
/// @param worst  gets the line farthest over its limit
/// @return why nothing could be compared, as plain text; empty if it was or if the run was stopped
QString runFixedPoints(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                       const SurveyRules& rules, WorstLine* worst = nullptr);

} // namespace orvel::desk
