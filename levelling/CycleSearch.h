#pragma once

#include "levelling/DisjointSets.h"
#include "levelling/SectionGraph.h"

#include <functional>
#include <vector>

namespace levelling {

/// Finds short cycles of a network, among them a full basis.
///
/// The nodes are put in the order of a breadth-first walk, the datum last, and each node searches the cycles
/// in which it is the last one: a breadth-first search among the nodes before it gives shortest ways, and a
/// section between two ways that leave the node by different sections closes a cycle (the candidates of
/// J. D. Horton, A polynomial-time algorithm to find the shortest cycle basis of a graph, SIAM J. Comput. 16,
/// 1987). A search goes on at least until every pair of the node's sections that can be joined is joined:
/// these cycles alone are a basis. Beyond that it goes on for a number of nodes, so that in a small network
/// the candidates contain a minimum basis and in a large one all short cycles.
class CycleSearch
{
public:
    struct Candidate
    {
        std::vector<int> sections;
        double length = 0.0; ///< km, to choose among cycles of equally many sections
        /// One of those that are a basis already, by the way they were found.
        bool isNeeded = false;
    };

    explicit CycleSearch(const SectionGraph& searchedGraph);

    /// All candidates, shortest first.
    ///
    /// @param isStopped  asked before each node
    /// @return none when it was stopped
    std::vector<Candidate> findCandidates(const std::function<bool()>& isStopped = {});
    /// Position of the section in an order in which sections near each other are close; eliminating in this
    /// order keeps sums of cycles short.
    int getRank(int section) const { return rankOfSection[static_cast<std::size_t>(section)]; }

private:
    /// The shortest way from the root to a node found so far.
    struct Visit
    {
        int root = -1;
        int parentNode = -1;
        int parentSection = -1;
        int branch = -1;     ///< which section of the root the way begins with
        int sections = 0;    ///< their count
        double length = 0.0; ///< km, to choose among ways of equally many sections
        bool done = false;   ///< the way is final and has been carried on

        bool isShorterThan(const Visit& other) const
        {
            return sections != other.sections ? sections < other.sections : length < other.length;
        }
    };

    bool isBefore(int node, int root) const;
    void orderNodes();
    void appendBreadthFirst(int start);
    void rankSections();
    /// Links to nodes before the root, the shortest first.
    std::vector<SectionGraph::Link> linksToEarlier(int root) const;
    void searchFrom(int root, std::size_t extraNodes);
    /// Adds the sections between two fixed points, each a cycle by itself.
    void addDatumLines();
    /// Starts a branch along every link that leads to a node of its own; returns their count.
    std::size_t startBranches(int root);
    /// Carries the way to a node on along a section that leads to a node not done yet.
    void carryOn(const Visit& way, int node, const SectionGraph::Link& link);
    double getLength(int section) const;
    /// Adds the cycle of the section and the ways from its two ends back to the root.
    void addCandidate(int root, int section, int nodeA, int nodeB, bool isNeeded);

    const SectionGraph& graph;
    std::vector<int> order;
    std::vector<int> positionOfNode;
    std::vector<int> rankOfSection;
    std::vector<Visit> visits;
    std::vector<int> queue;
    std::vector<Candidate> candidates;
};

} // namespace levelling
