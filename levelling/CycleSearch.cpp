#include "levelling/CycleSearch.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace levelling {

namespace {

// Nodes that all searches together may look at beyond what the basis needs, and what each may at least.
constexpr std::size_t kExtraNodes = 2'000'000;
constexpr std::size_t kExtraNodesPerRoot = 32;

} // namespace

CycleSearch::CycleSearch(const SectionGraph& searchedGraph)
    : graph(searchedGraph)
    , visits(static_cast<std::size_t>(searchedGraph.getNodeCount()))
{
    orderNodes();
    rankSections();
}

std::vector<CycleSearch::Candidate> CycleSearch::findCandidates(const std::function<bool()>& isStopped)
{
    std::vector<int> roots;
    std::copy_if(order.begin(), order.end(), std::back_inserter(roots),
                 [this](int node) { return linksToEarlier(node).size() > 1; });
    const std::size_t extraNodes =
        std::max(kExtraNodesPerRoot, kExtraNodes / std::max<std::size_t>(roots.size(), 1));
    for (const int root : roots) {
        if (isStopped && isStopped())
            return {};
        searchFrom(root, extraNodes);
    }
    addDatumLines();

    std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return a.sections.size() != b.sections.size() ? a.sections.size() < b.sections.size()
                                                      : a.length < b.length;
    });
    return std::move(candidates);
}

void CycleSearch::addDatumLines()
{
    constexpr int datum = SectionGraph::kDatum;
    const auto sectionCount = static_cast<int>(graph.getNetwork().sections.size());
    for (int section = 0; section < sectionCount; ++section) {
        if (graph.getFrom(section) == datum && graph.getTo(section) == datum)
            addCandidate(datum, section, datum, datum, true);
    }
}

bool CycleSearch::isBefore(int node, int root) const
{
    return positionOfNode[static_cast<std::size_t>(node)] < positionOfNode[static_cast<std::size_t>(root)];
}

void CycleSearch::orderNodes()
{
    const int nodeCount = graph.getNodeCount();
    positionOfNode.assign(static_cast<std::size_t>(nodeCount), -1);
    positionOfNode[SectionGraph::kDatum] = nodeCount - 1;
    order.reserve(static_cast<std::size_t>(nodeCount));
    for (int node = 0; node < nodeCount; ++node)
        appendBreadthFirst(node);
    order.push_back(SectionGraph::kDatum);
}

void CycleSearch::appendBreadthFirst(int start)
{
    const auto appendIfNew = [this](int node) {
        int& position = positionOfNode[static_cast<std::size_t>(node)];
        if (position < 0) {
            position = static_cast<int>(order.size());
            order.push_back(node);
        }
    };
    const std::size_t first = order.size();
    appendIfNew(start);
    for (std::size_t next = first; next < order.size(); ++next) {
        for (const SectionGraph::Link& link : graph.getLinks(order[next]))
            appendIfNew(link.node);
    }
}

void CycleSearch::rankSections()
{
    rankOfSection.assign(graph.getNetwork().sections.size(), -1);
    int rank = 0;
    for (const int node : order) {
        for (const SectionGraph::Link& link : graph.getLinks(node)) {
            int& rankOfLink = rankOfSection[static_cast<std::size_t>(link.section)];
            if (!isBefore(node, link.node) && rankOfLink < 0)
                rankOfLink = rank++;
        }
    }
}

std::vector<SectionGraph::Link> CycleSearch::linksToEarlier(int root) const
{
    std::vector<SectionGraph::Link> links;
    for (const SectionGraph::Link& link : graph.getLinks(root)) {
        if (isBefore(link.node, root))
            links.push_back(link);
    }
    std::stable_sort(links.begin(), links.end(),
                     [this](const SectionGraph::Link& a, const SectionGraph::Link& b) {
                         return getLength(a.section) < getLength(b.section);
                     });
    return links;
}

std::size_t CycleSearch::startBranches(int root)
{
    queue.clear();
    Visit start;
    start.root = root;
    for (const SectionGraph::Link& link : linksToEarlier(root)) {
        if (visits[static_cast<std::size_t>(link.node)].root == root) {
            addCandidate(root, link.section, link.node, root, true);
        } else {
            start.branch = static_cast<int>(queue.size());
            carryOn(start, root, link);
        }
    }
    return queue.size();
}

void CycleSearch::searchFrom(int root, std::size_t extraNodes)
{
    std::size_t branchesLeft = startBranches(root);
    DisjointSets branches(static_cast<int>(branchesLeft));
    for (std::size_t next = 0; next < queue.size() && (branchesLeft > 1 || next < extraNodes); ++next) {
        const int node = queue[next];
        Visit& here = visits[static_cast<std::size_t>(node)];
        here.done = true;
        for (const SectionGraph::Link& link : graph.getLinks(node)) {
            if (!isBefore(link.node, root) || link.section == here.parentSection)
                continue;
            const Visit& there = visits[static_cast<std::size_t>(link.node)];
            if (there.root != root || !there.done) {
                carryOn(here, node, link);
            } else if (there.branch != here.branch) {
                const bool joins = branches.unite(here.branch, there.branch);
                branchesLeft -= joins ? 1 : 0;
                if (joins || next < extraNodes)
                    addCandidate(root, link.section, node, link.node, joins);
            }
        }
    }
}

void CycleSearch::carryOn(const Visit& way, int node, const SectionGraph::Link& link)
{
    Visit carried = way;
    carried.parentNode = node;
    carried.parentSection = link.section;
    carried.sections += 1;
    carried.length += getLength(link.section);
    carried.done = false;

    Visit& known = visits[static_cast<std::size_t>(link.node)];
    const bool isNew = known.root != way.root;
    if (isNew)
        queue.push_back(link.node);
    if (isNew || carried.isShorterThan(known))
        known = carried;
}

double CycleSearch::getLength(int section) const
{
    return graph.getNetwork().sections[static_cast<std::size_t>(section)].distance.value_or(0.0);
}

void CycleSearch::addCandidate(int root, int section, int nodeA, int nodeB, bool isNeeded)
{
    Candidate candidate;
    candidate.isNeeded = isNeeded;
    const auto append = [&](int passed) {
        candidate.sections.push_back(passed);
        candidate.length += getLength(passed);
    };
    append(section);
    for (int node : {nodeA, nodeB}) {
        while (node != root) {
            const Visit& way = visits[static_cast<std::size_t>(node)];
            append(way.parentSection);
            node = way.parentNode;
        }
    }
    candidates.push_back(std::move(candidate));
}

} // namespace levelling
