#pragma once

#include <QPointF>

#include <functional>
#include <optional>
#include <vector>

namespace orvel::desk::picture {

/// Two points that a section joins.
struct Edge
{
    int from = 0;
    int to = 0;

    bool operator==(const Edge& other) const { return from == other.from && to == other.to; }
    bool operator<(const Edge& other) const { return from != other.from ? from < other.from : to < other.to; }
};

/// Draws a connected graph so that its points lie apart and its edges are about one unit long. The same graph
/// gives the same drawing.
///
/// @param isStopped  asked now and then, in the thread that draws
/// @return by point; nothing when it was stopped
std::optional<std::vector<QPointF>> drawGraph(int pointCount, const std::vector<Edge>& edges,
                                              const std::function<bool()>& isStopped);

} // namespace orvel::desk::picture
