#pragma once

#include "levelling/Network.h"

#include <optional>
#include <vector>

namespace levelling {

/// Points that sections connect with each other.
struct Component
{
    /// Indices of the points and the sections, ascending.
    std::vector<int> points;
    std::vector<int> sections;
    int fixedPoints = 0;

    /// A component without a fixed point hangs in the air: no height of it can be determined.
    bool hasDatum() const { return fixedPoints > 0; }
    /// Surplus measurements = count of independent loops: sections - unknown heights, where a component
    /// without datum has one unknown less than points.
    int getRedundancy() const;
};

/// Connected components in the order of their first points. A point without any section is one of its own.
std::vector<Component> findComponents(const Network& network);

enum class UndeterminedReason {
    NoSections, ///< no section leads to the point
    NoDatum,    ///< its component has no fixed point
};

struct UndeterminedPoint
{
    int point = 0; ///< index in Network::points
    UndeterminedReason reason = UndeterminedReason::NoDatum;
};

/// Points whose height cannot be determined, ascending.
std::vector<UndeterminedPoint> findUndeterminedPoints(const std::vector<Component>& components);

/// All sections between one pair of points, measured more than once.
struct RepeatedSections
{
    /// The ends, as the first section has them.
    int from = 0;
    int to = 0;
    /// Indices of the sections measured this way and of those measured back, ascending.
    std::vector<int> forward;
    std::vector<int> back;
    /// Largest height difference less the smallest one, all taken from "from" to "to", mm.
    double discrepancy = 0.0;
    /// Mean length of the sections, km; none if one of them has no length.
    std::optional<double> length;
};

/// Pairs of points with more than one section, in the order of their first sections.
std::vector<RepeatedSections> findRepeatedSections(const Network& network);

} // namespace levelling
