#pragma once

#include "levelling/Route.h"

#include <functional>
#include <vector>

namespace levelling {

/// A way between two benchmarks that passes no other one.
struct BenchmarkLine : Route
{
    /// Sum of the differences along the way, less that of the given heights, mm.
    double misclosure = 0.0;
};

struct BenchmarkLines
{
    /// In the order of the benchmarks at their ends.
    std::vector<BenchmarkLine> lines;
    /// False in a large network: only lines between neighbours are there.
    bool areAllPairs = true;
    bool isStopped = false; ///< on request; there are no lines
};

/// Finds the line of least length between each two benchmarks that sections connect without another benchmark
/// on the way; of least variance where a section of the network has no length.
///
/// With more than 30 benchmarks only those between neighbours are looked for: each point belongs to the
/// benchmark from which it is reached first, and a section between points of two benchmarks joins these (K.
/// Mehlhorn, A faster approximation algorithm for the Steiner problem in graphs, Inf. Process. Lett. 27,
/// 1988). So there are never more than sections, and the time grows with the network only.
/// @param network between whose points there is one section at most
/// @param isStopped asked now and then
BenchmarkLines findBenchmarkLines(const Network& network, const std::function<bool()>& isStopped = {});

} // namespace levelling
