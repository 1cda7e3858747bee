#pragma once

#include "levelling/Network.h"

#include <vector>

namespace levelling {

/// Holds each part of the network that has no height at its first point, with the height zero, so that its
/// heights are relative to it.
///
/// @param isConcerned  by index of the section; a part without such a section is left as it is
/// @return the points that are held, ascending by their parts
std::vector<int> holdPartsWithoutDatum(Network& network, const std::vector<bool>& isConcerned);

} // namespace levelling
