#pragma once

#include "levelling/Route.h"

#include <functional>
#include <optional>
#include <vector>

namespace levelling {

/// What a line runs between.
enum class ChainKind {
    BetweenBenchmarks, ///< two of them: the line is checked
    Closed,            ///< from a benchmark or a node back to it: checked
    BenchmarkToNode,
    BetweenNodes,
    Hanging,  ///< one end is a new point that nothing else leads to: nothing checks it
    Isolated, ///< both ends are such points: there is no height at all
    Ring,     ///< closed without a benchmark or a node
};

/// A line of the network as a surveyor draws it: sections joined at new points where only two of them meet.
struct Chain : Route
{
    ChainKind kind = ChainKind::BetweenNodes;
    /// Of lines between benchmarks and of closed ones: sum of the differences less that of the given heights,
    /// mm.
    std::optional<double> misclosure;

    bool isClosed() const { return points.front() == points.back(); }
};

/// What a line gives for the height of the node at one of its ends.
struct NodeHeight
{
    int chain = 0;
    int from = 0; ///< the point at the other end
    /// Height of that point (given, or adjusted) and the line's sum, m.
    double height = 0.0;
    /// The same less the adjusted height of the node, mm.
    double deviation = 0.0;
};

/// A point where more than two sections meet.
struct Node
{
    int point = 0;
    /// Adjusted height, m; the given one of a benchmark. None in a part without benchmark.
    std::optional<double> height;
    /// From every line that ends here and whose other end is another point with a height.
    std::vector<NodeHeight> heights;
};

struct Chains
{
    enum class Status {
        Ok,
        Stopped, ///< on request; there are no results
    };

    Status status = Status::Ok;
    /// By their first points, benchmarks first.
    std::vector<Chain> chains;
    /// In the order of the points.
    std::vector<Node> nodes;
    /// Points that no section leads to, ascending.
    std::vector<int> isolated;
    /// False if the heights of nodes could not be adjusted: weights too different for the arithmetic.
    bool hasHeights = true;
};

/// Traces the lines of a network: from each benchmark and each node along new points at which two sections
/// meet, to the next benchmark, node or end; then the rings that are left. Every section is in one line.
///
/// Between two points there is one section at most: forward and backward levelling is one, its mean. Nodes
/// are new points with sections to three or more others. Their heights are those of the adjustment of the
/// whole network.
/// @param network between whose points there is one section at most
/// @param isStopped asked now and then
Chains traceChains(const Network& network, const std::function<bool()>& isStopped = {});

} // namespace levelling
