#pragma once

#include "levelling/Network.h"

#include <optional>
#include <vector>

namespace levelling {

/// What the heights of a component refer to.
enum class Datum {
    None,       ///< nothing: they cannot be determined
    Benchmarks, ///< given heights, held or observed
    Free,       ///< the mean of given heights, which stays as it is (minimum trace)
};

/// Points that sections connect with each other.
struct Component
{
    /// Indices of the points and the sections, ascending.
    std::vector<int> points;
    std::vector<int> sections;
    int fixedPoints = 0;
    int observedPoints = 0;
    /// Points whose mean height is the datum of a free component: those that are constrained, without such
    /// all that have a height. Empty in other components.
    std::vector<int> datumPoints;

    Datum getDatum() const;
    bool hasDatum() const { return getDatum() != Datum::None; }
    /// Count of the heights that are sought.
    int getUnknowns() const { return static_cast<int>(points.size()) - fixedPoints; }
    /// How many of them the measurements leave open: 1 where no benchmark is.
    int getDefect() const { return getDatum() == Datum::Benchmarks ? 0 : 1; }
    /// Redundant measurements: observed differences and heights, less what is sought and not left open.
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

/// Points whose height cannot be determined, ascending. Surveyed points that no section leads to are not
/// among them.
/// @param components  of the network
std::vector<UndeterminedPoint> findUndeterminedPoints(const Network& network,
                                                      const std::vector<Component>& components);

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
    /// Mean count of their set-ups; none if one of them has no count.
    std::optional<double> stations;
    /// A priori standard deviation of the difference between the two sections with the largest ones, mm.
    double discrepancySigma = 0.0;
};

/// Pairs of points with more than one section, in the order of their first sections.
std::vector<RepeatedSections> findRepeatedSections(const Network& network);

/// A network in which all sections between one pair of points are one: their mean with weights 1 / sigma².
struct MergedNetwork
{
    Network network;
    /// By index of the merged section the sections that it is made of, ascending.
    std::vector<std::vector<int>> members;
};

MergedNetwork mergeRepeatedSections(const Network& network);

/// Standard deviation of 1 km that the differences between forward and backward levelling show, mm.
struct DoubleRunPrecision
{
    int count = 0;       ///< of the sections that were levelled once there and once back
    double single = 0.0; ///< of a single levelling: sqrt(sum(d² / L) / 2n)
    double mean = 0.0;   ///< of the mean of both: half of sqrt(sum(d² / L) / n)
};

/// None if no section with a length was levelled once there and once back.
std::optional<DoubleRunPrecision> findDoubleRunPrecision(const std::vector<RepeatedSections>& repeated);

} // namespace levelling
