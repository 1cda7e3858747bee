#pragma once

#include "levelling/Network.h"

#include <optional>
#include <vector>

namespace levelling {

/// A section of a way.
struct RouteSection
{
    int section = 0;
    bool forward = true; ///< walked as it was measured
};

/// A way through sections, one after the other.
struct Route
{
    /// In walking order.
    std::vector<RouteSection> sections;
    /// Indices of the points passed, one more than sections.
    std::vector<int> points;
    /// Sum of the height differences along the way, m.
    double sum = 0.0;
    /// A priori standard deviation of the sum, mm.
    double sigma = 0.0;
    /// Length of the way, km; none if a section has no length.
    std::optional<double> length;
    /// Count of set-ups; none if a section has no count. Of repeated measurements their mean, rounded.
    std::optional<int> stations;
};

/// Walks from a point along sections, of which each begins where the one before ends.
Route makeRoute(const Network& network, int start, const std::vector<int>& sections);

} // namespace levelling
