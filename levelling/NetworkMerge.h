#pragma once

#include "levelling/Network.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace levelling {

/// What the addition of a network has changed about a point that was there already.
struct PointChange
{
    enum class Kind {
        Height,   ///< another given height
        Held,     ///< it is a fixed point now
        Observed, ///< its height is an observation of its own now
        Released, ///< it is to be determined now
        Place     ///< other coordinates
    };

    int point = 0; ///< index in the network
    Kind kind = Kind::Height;
    /// Heights, if it is that what has changed, m.
    double before = 0.0;
    double after = 0.0;
    qint64 line = 0; ///< of the added network, that says so
};

/// What the addition of a network has brought.
struct NetworkAddition
{
    std::vector<PointChange> changes;
    /// Indices of the added points in the network.
    std::vector<int> places;
    /// Points and sections with indices from these on are new.
    std::size_t firstPoint = 0;
    std::size_t firstSection = 0;
    /// Added points that were there already.
    std::size_t commonPoints = 0;
    /// Added sections with the ends and the difference of one that was there already, by their indices.
    std::vector<std::size_t> repeatedSections;
    /// The network has sections, and keeps its parameters, which differ from those of the added one.
    bool areParametersKept = false;
};

/// Adds a network to another: points of one name are one point, and what the added network declares of it
/// counts; sections are appended. The time is proportional to the points and sections of both.
NetworkAddition addNetwork(Network& network, const Network& added);

} // namespace levelling
