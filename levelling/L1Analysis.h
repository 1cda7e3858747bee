#pragma once

#include "levelling/Components.h"
#include "levelling/Network.h"

#include <functional>
#include <optional>
#include <vector>

namespace levelling {

/// A section in the L1 analysis.
struct L1Section
{
    /// v = adjusted - observed, mm; exactly 0 for the sections that the solution keeps.
    double residual = 0.0;
    /// |v| / sigma.
    double scaledResidual = 0.0;
};

enum class L1Status {
    Ok,
    NothingToAdjust, ///< no section leads from a held point to another one
    TooLarge, ///< the misclosures are too large to be counted in units of 0.00001 mm; there are no results
    Stopped,  ///< stopped on request; there are no results
};

/// Heights with the least sum of |v| / sigma, v in mm, in all components that have a datum.
struct L1Analysis
{
    L1Status status = L1Status::Ok;
    /// Heights in m by index of the point; none if it cannot be determined.
    std::vector<std::optional<double>> heights;
    /// By index of the section; none for those that could not take part.
    std::vector<std::optional<L1Section>> sections;
    std::vector<UndeterminedPoint> undetermined;
    /// The least sum of |v| / sigma.
    double objective = 0.0;
    /// Indices of the points that could have another height with the same sum; the solution is unique if
    /// there are none.
    std::vector<int> ambiguous;

    bool isUnique() const { return ambiguous.empty(); }
};

/// Finds the least sum of |v| / sigma with weights 1 / sigma.
///
/// Its dual is a circulation of least cost: the flow of a section lies between -1/sigma and 1/sigma, its cost
/// is the measured difference, and the potentials are the heights. Differences count in units of 0.00001 mm
/// and weights in 2^-40 of the largest one, so the solution is exact for the differences as they stand in a
/// file and the search ends with a proof of the minimum (see FlowSimplex). Benchmarks are held, observed
/// ones, too. In a large network it takes a while; isStopped is asked now and then.
L1Analysis analyseL1(const Network& network, const std::function<bool()>& isStopped = {});

} // namespace levelling
