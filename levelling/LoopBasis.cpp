#include "levelling/LoopBasis.h"

#include "levelling/CycleElimination.h"
#include "levelling/CycleSearch.h"
#include "levelling/DisjointSets.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <utility>

namespace levelling {

namespace {

// What the choice of the basis may cost, in elements of sums of cycles.
constexpr std::size_t kEliminationWork = 100'000'000;
constexpr std::size_t kEliminationWorkPerSection = 5'000;

/// The two sections of a cycle that meet at one of its nodes.
using SectionsAtNode = std::pair<int, int>;

QHash<int, SectionsAtNode> sectionsAtNodes(const SectionGraph& graph, const std::vector<int>& cycle)
{
    QHash<int, SectionsAtNode> sections;
    for (const int section : cycle) {
        for (const int node : {graph.getFrom(section), graph.getTo(section)}) {
            const auto known = sections.find(node);
            if (known == sections.end())
                sections.insert(node, {section, -1});
            else
                known->second = section;
        }
    }
    return sections;
}

/// Walks the cycle from that node, first along that section.
std::vector<RouteSection> walk(const SectionGraph& graph, const std::vector<int>& cycle, int node,
                               int section)
{
    const QHash<int, SectionsAtNode> meeting = sectionsAtNodes(graph, cycle);
    std::vector<RouteSection> way;
    while (way.size() < cycle.size()) {
        const bool forward = graph.getFrom(section) == node;
        way.push_back(RouteSection{section, forward});
        node = forward ? graph.getTo(section) : graph.getFrom(section);
        const SectionsAtNode next = meeting.value(node);
        section = next.first == section ? next.second : next.first;
    }
    return way;
}

void reverse(std::vector<RouteSection>& way)
{
    std::reverse(way.begin(), way.end());
    for (RouteSection& step : way)
        step.forward = !step.forward;
}

/// The way of a loop: from benchmark to benchmark if it passes the datum, otherwise from the point where its
/// lowest section starts.
std::vector<RouteSection> findWay(const SectionGraph& graph, const std::vector<int>& cycle)
{
    const int lowest = *std::min_element(cycle.begin(), cycle.end());
    const auto atDatum = std::find_if(cycle.begin(), cycle.end(), [&](int section) {
        return graph.getFrom(section) == SectionGraph::kDatum || graph.getTo(section) == SectionGraph::kDatum;
    });
    if (atDatum == cycle.end())
        return walk(graph, cycle, graph.getFrom(lowest), lowest);

    std::vector<RouteSection> way = walk(graph, cycle, SectionGraph::kDatum, *atDatum);
    const auto step =
        std::find_if(way.begin(), way.end(), [&](const RouteSection& s) { return s.section == lowest; });
    if (!step->forward)
        reverse(way);
    return way;
}

Loop toLoop(const SectionGraph& graph, const std::vector<int>& cycle)
{
    const Network& network = graph.getNetwork();
    const std::vector<RouteSection> way = findWay(graph, cycle);
    const RouteSection& first = way.front();
    const Section& firstSection = network.sections[static_cast<std::size_t>(first.section)];
    std::vector<int> sections;
    sections.reserve(way.size());
    for (const RouteSection& step : way)
        sections.push_back(step.section);
    const int startIndex = first.forward ? firstSection.from : firstSection.to;
    Loop loop{makeRoute(network, startIndex, sections), 0.0};
    const Point& start = network.points[static_cast<std::size_t>(startIndex)];
    const Point& end = network.points[static_cast<std::size_t>(loop.points.back())];
    const double given = graph.isHeld(startIndex) ? *end.height - *start.height : 0.0;
    loop.misclosure = (loop.sum - given) * 1000.0;
    return loop;
}

std::size_t countIndependentLoops(const SectionGraph& graph)
{
    DisjointSets connected(graph.getNodeCount());
    const auto sectionCount = static_cast<int>(graph.getNetwork().sections.size());
    std::size_t count = 0;
    for (int section = 0; section < sectionCount; ++section)
        count += connected.unite(graph.getFrom(section), graph.getTo(section)) ? 0U : 1U;
    return count;
}

/// Indices of the shortest candidates that are independent. Where that takes too long, as in networks without
/// any neighbourhood, of those that are known to be a basis. None when it was stopped.
std::vector<std::size_t> chooseBasis(const CycleSearch& search,
                                     const std::vector<CycleSearch::Candidate>& candidates,
                                     const SectionGraph& graph, const std::function<bool()>& isStopped)
{
    const std::size_t sectionCount = graph.getNetwork().sections.size();
    const std::size_t workLimit = kEliminationWork + kEliminationWorkPerSection * sectionCount;
    const std::size_t loopCount = countIndependentLoops(graph);
    CycleElimination elimination(static_cast<int>(sectionCount));
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; chosen.size() < loopCount && elimination.getWork() < workLimit; ++i) {
        if (isStopped && isStopped())
            return {};
        std::vector<int> ranks;
        ranks.reserve(candidates[i].sections.size());
        for (const int section : candidates[i].sections)
            ranks.push_back(search.getRank(section));
        if (elimination.add(std::move(ranks)))
            chosen.push_back(i);
    }
    if (chosen.size() == loopCount)
        return chosen;

    chosen.clear();
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (candidates[i].isNeeded)
            chosen.push_back(i);
    }
    return chosen;
}

} // namespace

std::vector<Loop> findLoopBasis(const SectionGraph& graph, const std::function<bool()>& isStopped)
{
    CycleSearch search(graph);
    const std::vector<CycleSearch::Candidate> candidates = search.findCandidates(isStopped);
    if (isStopped && isStopped())
        return {};
    std::vector<Loop> loops;
    for (const std::size_t candidate : chooseBasis(search, candidates, graph, isStopped)) {
        if (isStopped && isStopped())
            return {};
        loops.push_back(toLoop(graph, candidates[candidate].sections));
    }
    return loops;
}

} // namespace levelling
