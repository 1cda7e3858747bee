#include "levelling/SectionGraph.h"

#include "levelling/Components.h"

namespace levelling {

SectionGraph::SectionGraph(const Network& sourceNetwork) : network(&sourceNetwork)
{
    constexpr int none = -1;
    nodeOfPoint.assign(network->points.size(), none);
    for (const Component& component : findComponents(*network)) {
        if (!component.datumPoints.empty())
            nodeOfPoint[static_cast<std::size_t>(component.datumPoints.front())] = kDatum;
    }
    int nodeCount = 1;
    for (std::size_t point = 0; point < nodeOfPoint.size(); ++point) {
        if (network->points[point].isBenchmark())
            nodeOfPoint[point] = kDatum;
        else if (nodeOfPoint[point] == none)
            nodeOfPoint[point] = nodeCount++;
    }

    const auto sectionCount = static_cast<int>(network->sections.size());
    firstLink.assign(static_cast<std::size_t>(nodeCount) + 1, 0);
    for (int section = 0; section < sectionCount; ++section) {
        ++firstLink[static_cast<std::size_t>(getFrom(section)) + 1];
        ++firstLink[static_cast<std::size_t>(getTo(section)) + 1];
    }
    for (std::size_t node = 1; node < firstLink.size(); ++node)
        firstLink[node] += firstLink[node - 1];

    links.resize(firstLink.back());
    std::vector<std::size_t> next(firstLink.begin(), firstLink.end() - 1);
    for (int section = 0; section < sectionCount; ++section) {
        const int from = getFrom(section);
        const int to = getTo(section);
        links[next[static_cast<std::size_t>(from)]++] = Link{section, to};
        links[next[static_cast<std::size_t>(to)]++] = Link{section, from};
    }
}

SectionGraph::Links SectionGraph::getLinks(int node) const
{
    const auto index = static_cast<std::size_t>(node);
    return {links.data() + firstLink[index], links.data() + firstLink[index + 1]};
}

} // namespace levelling
