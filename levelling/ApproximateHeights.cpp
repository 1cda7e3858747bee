#include "levelling/ApproximateHeights.h"

#include <queue>

namespace levelling {

std::vector<std::optional<double>> approximateHeights(const SectionGraph& graph)
{
    const Network& network = graph.getNetwork();
    std::vector<std::optional<double>> heights(network.points.size());
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (network.points[point].fixed)
            heights[point] = network.points[point].height;
    }

    std::queue<int> reached({SectionGraph::kDatum});
    while (!reached.empty()) {
        for (const SectionGraph::Link& link : graph.getLinks(reached.front())) {
            const Section& section = network.sections[static_cast<std::size_t>(link.section)];
            std::optional<double>& from = heights[static_cast<std::size_t>(section.from)];
            std::optional<double>& to = heights[static_cast<std::size_t>(section.to)];
            if (from && to)
                continue;
            if (from)
                to = *from + section.difference;
            else
                from = *to - section.difference;
            reached.push(link.node);
        }
        reached.pop();
    }
    return heights;
}

} // namespace levelling
