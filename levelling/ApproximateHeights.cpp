#include "levelling/ApproximateHeights.h"

#include <queue>

namespace levelling {

namespace {

/// Carries heights on from all points that have one.
void carryOn(const SectionGraph& graph, const std::vector<bool>& avoided,
             std::vector<std::optional<double>>& heights)
{
    const Network& network = graph.getNetwork();
    std::queue<int> reached({SectionGraph::kDatum});
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point] && !graph.isHeld(static_cast<int>(point)))
            reached.push(graph.getNode(static_cast<int>(point)));
    }
    while (!reached.empty()) {
        for (const SectionGraph::Link& link : graph.getLinks(reached.front())) {
            const auto index = static_cast<std::size_t>(link.section);
            const Section& section = network.sections[index];
            std::optional<double>& from = heights[static_cast<std::size_t>(section.from)];
            std::optional<double>& to = heights[static_cast<std::size_t>(section.to)];
            if ((from && to) || (!avoided.empty() && avoided[index]))
                continue;
            if (from)
                to = *from + section.difference;
            else
                from = *to - section.difference;
            reached.push(link.node);
        }
        reached.pop();
    }
}

} // namespace

std::vector<std::optional<double>> approximateHeights(const SectionGraph& graph,
                                                      const std::vector<bool>& avoided)
{
    const Network& network = graph.getNetwork();
    std::vector<std::optional<double>> heights(network.points.size());
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (graph.isHeld(static_cast<int>(point)))
            heights[point] = network.points[point].height;
    }

    // First without the avoided sections, then what only they lead to.
    carryOn(graph, avoided, heights);
    if (!avoided.empty())
        carryOn(graph, {}, heights);
    return heights;
}

} // namespace levelling
