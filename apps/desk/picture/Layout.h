#pragma once

#include "apps/desk/picture/GraphDrawing.h"

#include <QPointF>

#include <functional>
#include <optional>
#include <vector>

namespace orvel::desk {

class Document;

namespace picture {

/// What the places of a network's points depend on: no measured value is part of it, so that nothing moves
/// when one is edited or switched off.
struct PlanGraph
{
    /// By point: where it is, if that is known; x runs east and y south, m.
    std::vector<std::optional<QPointF>> known;
    /// The pairs of points that sections join, each as often and in the order as they do.
    std::vector<Edge> edges;

    static PlanGraph of(const Document& document);
    bool operator==(const PlanGraph& other) const { return known == other.known && edges == other.edges; }
};

/// Where the places of points come from.
enum class PlaceSource {
    Coordinates, ///< all are true
    Mixed,       ///< some are true, and the others are drawn between and beside them
    Drawn,       ///< none is true
};

/// Places of all points of a network.
struct Layout
{
    /// By point; x runs to the right and y down.
    std::vector<QPointF> places;
    PlaceSource source = PlaceSource::Coordinates;
    /// By edge of the graph: of several between the same points each has a lane of its own, 0, then 1, -1, 2,
    /// -2 …
    std::vector<int> lanes;
    double spacing = 1.0; ///< between neighbours, as the median of the edges has it
};

/// Finds places for all points. Points with coordinates keep them. A part of the network that has two such
/// points or more is drawn to fit them, one with a single one beside it, and parts without any stand below
/// the others. The same graph gives the same places.
///
/// @param isStopped  asked now and then, in the thread that calls
/// @return nothing when it was stopped
std::optional<Layout> layOut(const PlanGraph& graph, const std::function<bool()>& isStopped);

} // namespace picture

} // namespace orvel::desk
