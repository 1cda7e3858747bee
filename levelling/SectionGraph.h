#pragma once

#include "levelling/Network.h"

#include <vector>

namespace levelling {

/// The network as a graph in which all benchmarks are one node, the datum: between them nothing is left to
/// determine, so a line from one to another closes like a loop. One point of each free component is there,
/// too, to begin at.
class SectionGraph
{
public:
    /// A section seen from one of its nodes.
    struct Link
    {
        int section;
        int node; ///< the node at its other end
    };

    /// The links of one node, for range-based loops.
    struct Links
    {
        const Link* first;
        const Link* last;
        const Link* begin() const { return first; }
        const Link* end() const { return last; }
    };

    /// The node of the points that are held; it exists even if there are none.
    static constexpr int kDatum = 0;

    /// The network must outlive the graph.
    explicit SectionGraph(const Network& sourceNetwork);

    const Network& getNetwork() const { return *network; }
    /// Whether the point is held at its given height: a benchmark, or where a free component begins.
    bool isHeld(int point) const { return getNode(point) == kDatum; }
    /// Count of nodes: the datum, and one per point that is not held.
    int getNodeCount() const { return static_cast<int>(firstLink.size()) - 1; }
    int getNode(int point) const { return nodeOfPoint[static_cast<std::size_t>(point)]; }
    /// Node where the section starts or ends.
    int getFrom(int section) const
    {
        return getNode(network->sections[static_cast<std::size_t>(section)].from);
    }
    int getTo(int section) const { return getNode(network->sections[static_cast<std::size_t>(section)].to); }
    /// A section whose two ends are held appears twice among the links of the datum.
    Links getLinks(int node) const;

private:
    const Network* network;
    std::vector<int> nodeOfPoint;
    std::vector<std::size_t> firstLink;
    std::vector<Link> links;
};

} // namespace levelling
