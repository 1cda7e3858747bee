#pragma once

#include <QtGlobal>

#include <cstddef>
#include <functional>
#include <vector>

namespace levelling {

/// Finds the circulation of least cost in a network of arcs, by the network simplex method.
///
/// All numbers are whole, so nothing is lost by rounding. The tree of basic arcs is kept strongly feasible:
/// from every node some flow more could go to the root. With W. H. Cunningham's choice of the leaving arc (A
/// network simplex method, Math. Programming 11, 1976) no tree comes twice, so the search ends, whatever arc
/// enters.
class FlowSimplex
{
public:
    /// An arc whose flow lies between -capacity and capacity; the capacity is positive.
    struct Arc
    {
        int from;
        int to;
        qint64 capacity;
        qint64 cost; ///< of one unit of flow
    };

    /// The sum of all capacities and that of all costs must stay below 2^60.
    FlowSimplex(int nodeCount, const std::vector<Arc>& givenArcs);

    /// Finds the flow; asks now and then whether to stop, and then ends with false and without a result.
    bool solve(const std::function<bool()>& isStopped = {});

    /// After solve(): what flows from the start of the arc to its end.
    qint64 getFlow(std::size_t arc) const { return arcs[arc].flow; }
    /// After solve(): the potentials that prove the flow to be least. For the arcs with
    /// potential(to) - potential(from) > cost the flow is capacity, for those with < it is -capacity.
    qint64 getPotential(int node) const { return nodes[static_cast<std::size_t>(node)].potential; }

private:
    struct TreeArc
    {
        int from;
        int to;
        qint64 lowest;
        qint64 highest;
        qint64 cost;
        qint64 flow;
    };

    struct Node
    {
        int parent = -1;
        int parentArc = -1;
        int depth = 0;
        qint64 potential = 0;
        int firstChild = -1;
        int nextSibling = -1;
        int previousSibling = -1;
    };

    /// A change of the tree: flow is sent round the cycle that the entering arc closes with it.
    struct Pivot
    {
        int entering;
        int start; ///< node where the flow enters the entering arc
        int end;   ///< node where it leaves it
        int join;  ///< node of the cycle that is nearest to the root
        qint64 amount;
        int leavingChild = -1; ///< lower node of the leaving arc, or -1 if the entering arc itself is full
        bool leavesAtStart = false; ///< the leaving arc lies between join and start
    };

    Node& node(int index) { return nodes[static_cast<std::size_t>(index)]; }
    TreeArc& arc(int index) { return arcs[static_cast<std::size_t>(index)]; }

    void hangOnRoot(int child, qint64 excess, qint64 cost);
    qint64 reducedCost(const TreeArc& tested) const;
    qint64 violation(const TreeArc& tested) const;
    int findEntering();
    Pivot findPivot(int entering);
    int findJoin(int a, int b);
    qint64 residual(int child, bool upwards);
    void send(const Pivot& pivot);
    void addFlow(int child, bool upwards, qint64 amount);
    void exchange(const Pivot& pivot);
    void reroot(int newRoot, int oldRoot);
    void attach(int child, int parent, int parentArc);
    void detach(int child);
    void updateSubtree(int top);

    std::vector<TreeArc> arcs;
    std::vector<Node> nodes;
    std::vector<int> stack;
    int root;
    std::size_t realArcs;
    std::size_t nextArc = 0;
};

} // namespace levelling
