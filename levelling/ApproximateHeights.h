#pragma once

#include "levelling/SectionGraph.h"

#include <optional>
#include <vector>

namespace levelling {

/// Heights of all points in m, carried from the held points over as few sections as possible. Points that no
/// held point can reach have none.
/// @param avoided by index of the section, or empty: what carries heights only where nothing else does
std::vector<std::optional<double>> approximateHeights(const SectionGraph& graph,
                                                      const std::vector<bool>& avoided = {});

} // namespace levelling
