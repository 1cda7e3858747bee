#include "levelling/SectionSeries.h"

#include <algorithm>
#include <map>
#include <random>
#include <utility>

namespace levelling {

namespace {

/// A set of edges, by the sum of their numbers.
struct Sum
{
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    void add(const Sum& other)
    {
        high ^= other.high;
        low ^= other.low;
    }
    bool isEmpty() const { return high == 0 && low == 0; }
    bool operator<(const Sum& other) const { return std::pair(high, low) < std::pair(other.high, other.low); }
};

struct Edge
{
    int from;
    int to;
};

/// Sections and observed heights between the points and the datum, which is node 0.
std::vector<Edge> collectEdges(const Network& network)
{
    const auto node = [&](int point) {
        return network.points[static_cast<std::size_t>(point)].fixed ? 0 : point + 1;
    };
    std::vector<Edge> edges;
    edges.reserve(network.sections.size());
    for (const Section& section : network.sections)
        edges.push_back({node(section.from), node(section.to)});
    for (const ObservedHeights& observed : network.observedHeights) {
        for (const int point : observed.points)
            edges.push_back({0, node(point)});
    }
    return edges;
}

/// Walks a graph breadth-first and gives each edge its sum.
class EdgeSums
{
public:
    EdgeSums(const std::vector<Edge>& graphEdges, std::size_t nodeCount)
        : edges(graphEdges)
        , linksOfNode(nodeCount)
        , edgeToParent(nodeCount, kUnreached)
        , sumOfNode(nodeCount)
        , sums(graphEdges.size())
    {
        for (std::size_t edge = 0; edge < edges.size(); ++edge) {
            linksOfNode[static_cast<std::size_t>(edges[edge].from)].push_back(static_cast<int>(edge));
            linksOfNode[static_cast<std::size_t>(edges[edge].to)].push_back(static_cast<int>(edge));
        }
    }

    std::vector<Sum> find()
    {
        for (std::size_t node = 0; node < linksOfNode.size(); ++node) {
            if (edgeToParent[node] == kUnreached)
                reachFrom(static_cast<int>(node));
        }
        markOutsideTree();
        // From the leaves to the root, each node hands on what leads over the edge to its parent.
        for (auto node = order.rbegin(); node != order.rend(); ++node) {
            const int edge = edgeToParent[static_cast<std::size_t>(*node)];
            if (edge == kRoot)
                continue;
            const Sum sum = sumOfNode[static_cast<std::size_t>(*node)];
            sums[static_cast<std::size_t>(edge)] = sum;
            sumOfNode[static_cast<std::size_t>(otherEnd(edge, *node))].add(sum);
        }
        return sums;
    }

private:
    static constexpr int kUnreached = -2;
    static constexpr int kRoot = -1;

    int otherEnd(int edge, int node) const
    {
        const Edge& ends = edges[static_cast<std::size_t>(edge)];
        return ends.from == node ? ends.to : ends.from;
    }

    void reachFrom(int root)
    {
        edgeToParent[static_cast<std::size_t>(root)] = kRoot;
        std::size_t next = order.size();
        order.push_back(root);
        for (; next < order.size(); ++next) {
            const int node = order[next];
            for (const int edge : linksOfNode[static_cast<std::size_t>(node)]) {
                int& parent = edgeToParent[static_cast<std::size_t>(otherEnd(edge, node))];
                if (parent != kUnreached)
                    continue;
                parent = edge;
                order.push_back(otherEnd(edge, node));
            }
        }
    }

    void markOutsideTree()
    {
        std::vector<bool> isInTree(edges.size(), false);
        for (const int edge : edgeToParent) {
            if (edge >= 0)
                isInTree[static_cast<std::size_t>(edge)] = true;
        }
        std::mt19937_64 generator; // always the same numbers
        for (std::size_t edge = 0; edge < edges.size(); ++edge) {
            if (isInTree[edge])
                continue;
            sums[edge] = Sum{generator(), generator()};
            sumOfNode[static_cast<std::size_t>(edges[edge].from)].add(sums[edge]);
            sumOfNode[static_cast<std::size_t>(edges[edge].to)].add(sums[edge]);
        }
    }

    const std::vector<Edge>& edges;
    std::vector<std::vector<int>> linksOfNode;
    std::vector<int> edgeToParent;
    std::vector<int> order;
    std::vector<Sum> sumOfNode;
    std::vector<Sum> sums;
};

} // namespace

int SectionSeries::countTests(const Network& network, const std::vector<Component>& components) const
{
    std::vector<bool> isTested(static_cast<std::size_t>(count), false);
    for (const Component& component : components) {
        for (const int section : component.sections) {
            const int series = seriesOfSection[static_cast<std::size_t>(section)];
            if (component.hasDatum() && series >= 0)
                isTested[static_cast<std::size_t>(series)] = true;
        }
    }
    std::ptrdiff_t tests = std::count(isTested.begin(), isTested.end(), true);
    for (const ObservedHeights& observed : network.observedHeights)
        tests += static_cast<std::ptrdiff_t>(observed.points.size());
    return static_cast<int>(tests);
}

SectionSeries findSectionSeries(const Network& network)
{
    const std::vector<Edge> edges = collectEdges(network);
    const std::vector<Sum> sums = EdgeSums(edges, network.points.size() + 1).find();
    SectionSeries series;
    std::map<Sum, int> numberOfSum;
    for (std::size_t section = 0; section < network.sections.size(); ++section) {
        if (sums[section].isEmpty()) {
            series.seriesOfSection.push_back(-1);
            continue;
        }
        const auto number = numberOfSum.emplace(sums[section], series.count).first;
        series.count = std::max(series.count, number->second + 1);
        series.seriesOfSection.push_back(number->second);
    }
    return series;
}

} // namespace levelling
