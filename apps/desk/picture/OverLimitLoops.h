#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"

#include <QString>

#include <functional>
#include <vector>

namespace orvel::desk::picture {

/// A loop, or a line between benchmarks, whose misclosure is over the limit.
struct OverLimitLoop
{
    std::vector<LONGID> points; ///< in walking order; of a loop the first is the last, too
    double misclosure = 0.0;    ///< mm
    double limit = 0.0;         ///< mm
    QString text;               ///< the misclosure beside its limit
};

/// Those of the loops that pre-processing names, the one farthest over its limit first.
///
/// @param isStopped  asked now and then; nobody takes what is found then
std::vector<OverLimitLoop> findOverLimitLoops(const NetworkSnapshot& snapshot, const SurveyRules& rules,
                                              const std::function<bool()>& isStopped = {});

} // namespace orvel::desk::picture
