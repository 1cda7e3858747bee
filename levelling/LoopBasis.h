#pragma once

#include "levelling/SectionGraph.h"

#include <optional>
#include <vector>

namespace levelling {

/// A section within a loop.
struct LoopSection
{
    int section = 0;
    bool forward = true; ///< walked as it was measured
};

/// A closed way through sections, or one from a benchmark to a benchmark.
struct Loop
{
    /// In walking order. The lowest index among them is walked as it was measured.
    std::vector<LoopSection> sections;
    /// Indices of the points passed, one more than sections: the last is the first one, or another benchmark.
    std::vector<int> points;
    /// Sum of the differences along the way, less what the heights of the benchmarks at its ends give, mm.
    double misclosure = 0.0;
    /// A priori standard deviation of the misclosure, mm.
    double sigma = 0.0;
    /// Length of the way, km; none if a section has no length.
    std::optional<double> length;

    /// Tolerance factor * sqrt(length), mm, for a factor in mm per sqrt(km); none without a length.
    std::optional<double> getTolerance(double factor) const;
};

/// A basis of independent loops, so many as there are surplus measurements, in the order of their length in
/// sections: short loops of the network that together contain every misclosure.
std::vector<Loop> findLoopBasis(const SectionGraph& graph);

} // namespace levelling
