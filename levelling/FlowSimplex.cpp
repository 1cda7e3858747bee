#include "levelling/FlowSimplex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace levelling {

namespace {

constexpr qint64 kUnlimited = std::numeric_limits<qint64>::max() / 4;
constexpr std::size_t kSmallestBlock = 32;
constexpr int kPivotsBetweenQuestions = 256;

} // namespace

FlowSimplex::FlowSimplex(int nodeCount, const std::vector<Arc>& givenArcs)
    : nodes(static_cast<std::size_t>(nodeCount) + 1)
    , root(nodeCount)
    , realArcs(givenArcs.size())
{
    // Each arc starts full in its cheaper direction; artificial arcs to the root, dearer than any way through
    // the network, take what does not balance.
    std::vector<qint64> excess(static_cast<std::size_t>(nodeCount), 0);
    qint64 dearest = 1;
    arcs.reserve(givenArcs.size() + nodes.size());
    for (const Arc& given : givenArcs) {
        const qint64 flow = given.cost > 0 ? -given.capacity : given.capacity;
        arcs.push_back(TreeArc{given.from, given.to, -given.capacity, given.capacity, given.cost, flow});
        excess[static_cast<std::size_t>(given.from)] -= flow;
        excess[static_cast<std::size_t>(given.to)] += flow;
        dearest += std::abs(given.cost);
    }
    for (int child = 0; child < nodeCount; ++child)
        hangOnRoot(child, excess[static_cast<std::size_t>(child)], dearest);
}

void FlowSimplex::hangOnRoot(int child, qint64 excess, qint64 cost)
{
    const auto artificial = static_cast<int>(arcs.size());
    if (excess >= 0)
        arcs.push_back(TreeArc{child, root, 0, kUnlimited, cost, excess});
    else
        arcs.push_back(TreeArc{root, child, 0, kUnlimited, cost, -excess});
    attach(child, root, artificial);
    node(child).depth = 1;
    node(child).potential = excess >= 0 ? -cost : cost;
}

bool FlowSimplex::solve(const std::function<bool()>& isStopped)
{
    int pivots = 0;
    for (int entering = findEntering(); entering >= 0; entering = findEntering()) {
        if (++pivots % kPivotsBetweenQuestions == 0 && isStopped && isStopped())
            return false;
        const Pivot pivot = findPivot(entering);
        send(pivot);
        if (pivot.leavingChild >= 0)
            exchange(pivot);
    }
    return true;
}

qint64 FlowSimplex::reducedCost(const TreeArc& tested) const
{
    return tested.cost + getPotential(tested.from) - getPotential(tested.to);
}

qint64 FlowSimplex::violation(const TreeArc& tested) const
{
    const qint64 reduced = reducedCost(tested);
    if (reduced < 0)
        return tested.flow < tested.highest ? -reduced : 0;
    return tested.flow > tested.lowest ? reduced : 0;
}

int FlowSimplex::findEntering()
{
    // The best of a block of arcs is found much faster than the best of all, and serves nearly as well.
    const std::size_t block =
        std::max(kSmallestBlock, static_cast<std::size_t>(std::sqrt(static_cast<double>(realArcs))));
    int best = -1;
    qint64 worstViolation = 0;
    for (std::size_t tested = 1; tested <= realArcs; ++tested) {
        const qint64 violated = violation(arcs[nextArc]);
        if (violated > worstViolation) {
            worstViolation = violated;
            best = static_cast<int>(nextArc);
        }
        nextArc = nextArc + 1 < realArcs ? nextArc + 1 : 0;
        if (best >= 0 && tested % block == 0)
            break;
    }
    return best;
}

FlowSimplex::Pivot FlowSimplex::findPivot(int entering)
{
    const TreeArc& entered = arc(entering);
    const bool increases = reducedCost(entered) < 0;
    Pivot pivot{};
    pivot.entering = entering;
    pivot.start = increases ? entered.from : entered.to;
    pivot.end = increases ? entered.to : entered.from;
    pivot.join = findJoin(pivot.start, pivot.end);
    pivot.amount = entered.highest - entered.lowest;
    pivot.leavingChild = -1;

    // Of the arcs that limit the amount the last one leaves, seen from the join in the direction of the flow.
    for (int child = pivot.start; child != pivot.join; child = node(child).parent) {
        const qint64 rest = residual(child, false);
        if (rest < pivot.amount) {
            pivot.amount = rest;
            pivot.leavingChild = child;
            pivot.leavesAtStart = true;
        }
    }
    for (int child = pivot.end; child != pivot.join; child = node(child).parent) {
        const qint64 rest = residual(child, true);
        if (rest <= pivot.amount) {
            pivot.amount = rest;
            pivot.leavingChild = child;
            pivot.leavesAtStart = false;
        }
    }
    return pivot;
}

int FlowSimplex::findJoin(int a, int b)
{
    while (a != b) {
        if (node(a).depth >= node(b).depth)
            a = node(a).parent;
        else
            b = node(b).parent;
    }
    return a;
}

qint64 FlowSimplex::residual(int child, bool upwards)
{
    const TreeArc& link = arc(node(child).parentArc);
    const bool increases = (link.from == child) == upwards;
    return increases ? link.highest - link.flow : link.flow - link.lowest;
}

void FlowSimplex::addFlow(int child, bool upwards, qint64 amount)
{
    TreeArc& link = arc(node(child).parentArc);
    link.flow += (link.from == child) == upwards ? amount : -amount;
}

void FlowSimplex::send(const Pivot& pivot)
{
    TreeArc& entered = arc(pivot.entering);
    entered.flow += pivot.start == entered.from ? pivot.amount : -pivot.amount;
    for (int child = pivot.start; child != pivot.join; child = node(child).parent)
        addFlow(child, false, pivot.amount);
    for (int child = pivot.end; child != pivot.join; child = node(child).parent)
        addFlow(child, true, pivot.amount);
}

void FlowSimplex::exchange(const Pivot& pivot)
{
    const int inside = pivot.leavesAtStart ? pivot.start : pivot.end;
    const int outside = pivot.leavesAtStart ? pivot.end : pivot.start;
    reroot(inside, pivot.leavingChild);
    attach(inside, outside, pivot.entering);
    updateSubtree(inside);
}

void FlowSimplex::reroot(int newRoot, int oldRoot)
{
    int child = newRoot;
    int parent = node(child).parent;
    int link = node(child).parentArc;
    detach(child);
    while (child != oldRoot) {
        const int nextParent = node(parent).parent;
        const int nextLink = node(parent).parentArc;
        detach(parent);
        attach(parent, child, link);
        child = parent;
        parent = nextParent;
        link = nextLink;
    }
}

void FlowSimplex::attach(int child, int parent, int parentArc)
{
    Node& attached = node(child);
    attached.parent = parent;
    attached.parentArc = parentArc;
    attached.previousSibling = -1;
    attached.nextSibling = node(parent).firstChild;
    if (attached.nextSibling >= 0)
        node(attached.nextSibling).previousSibling = child;
    node(parent).firstChild = child;
}

void FlowSimplex::detach(int child)
{
    const Node& detached = node(child);
    if (detached.previousSibling >= 0)
        node(detached.previousSibling).nextSibling = detached.nextSibling;
    else
        node(detached.parent).firstChild = detached.nextSibling;
    if (detached.nextSibling >= 0)
        node(detached.nextSibling).previousSibling = detached.previousSibling;
}

void FlowSimplex::updateSubtree(int top)
{
    const TreeArc& link = arc(node(top).parentArc);
    const qint64 reduced = reducedCost(link);
    const qint64 shift = link.to == top ? reduced : -reduced;
    stack.assign(1, top);
    while (!stack.empty()) {
        const int current = stack.back();
        stack.pop_back();
        node(current).depth = node(node(current).parent).depth + 1;
        node(current).potential += shift;
        for (int child = node(current).firstChild; child >= 0; child = node(child).nextSibling)
            stack.push_back(child);
    }
}

} // namespace levelling
