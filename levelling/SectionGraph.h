#pragma once

#include "levelling/Network.h"

#include <vector>

namespace levelling {

/// The network as a graph in which all fixed points are one node, the datum: between benchmarks nothing is
/// left to determine, so a line from one to another closes like a loop.
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

    /// The node of the fixed points; it exists even if there are none.
    static constexpr int kDatum = 0;

    /// The network must outlive the graph.
    explicit SectionGraph(const Network& sourceNetwork);

    const Network& getNetwork() const { return *network; }
    /// Count of nodes: the datum, and one per point that is not fixed.
    int getNodeCount() const { return static_cast<int>(firstLink.size()) - 1; }
    int getNode(int point) const { return nodeOfPoint[static_cast<std::size_t>(point)]; }
    /// Node where the section starts or ends.
    int getFrom(int section) const
    {
        return getNode(network->sections[static_cast<std::size_t>(section)].from);
    }
    int getTo(int section) const { return getNode(network->sections[static_cast<std::size_t>(section)].to); }
    /// A section whose two ends are fixed appears twice among the links of the datum.
    Links getLinks(int node) const;

private:
    const Network* network;
    std::vector<int> nodeOfPoint;
    std::vector<std::size_t> firstLink;
    std::vector<Link> links;
};

} // namespace levelling
