#pragma once

#include "levelling/SectionGraph.h"

#include <optional>
#include <vector>

namespace levelling {

/// Heights of all points in m, carried from the fixed points over as few sections as possible. Points that
/// no fixed point can reach have none.
std::vector<std::optional<double>> approximateHeights(const SectionGraph& graph);

} // namespace levelling
