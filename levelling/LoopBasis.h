#pragma once

#include "levelling/Route.h"
#include "levelling/SectionGraph.h"

#include <functional>
#include <vector>

namespace levelling {

/// A closed way through sections, or one from a benchmark to a benchmark. Its lowest section is walked as it
/// was measured.
struct Loop : Route
{
    /// Sum of the differences along the way, less what the heights of the benchmarks at its ends give, mm.
    double misclosure = 0.0;
};

/// A basis of independent loops, so many as there are surplus measurements, in the order of their length in
/// sections: short loops of the network that together contain every misclosure.
///
/// @param isStopped  asked now and then
/// @return none when it was stopped
std::vector<Loop> findLoopBasis(const SectionGraph& graph, const std::function<bool()>& isStopped = {});

} // namespace levelling
