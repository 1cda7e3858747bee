#include "levelling/L1Analysis.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/DisjointSets.h"
#include "levelling/FlowSimplex.h"
#include "levelling/NormalEquations.h"
#include "levelling/SectionGraph.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace levelling {

namespace {

constexpr double kUnitsPerMetre = 1e8;
constexpr double kUnitsPerMillimetre = 1e5;
constexpr double kMillimetresPerMetre = 1e3;
constexpr double kLargestHeight = 1e9;                // m
constexpr double kLargestWeight = 1099511627776.0;    // 2^40
constexpr double kLargestSum = 1152921504606846976.0; // 2^60

qint64 toUnits(double metres)
{
    return std::llround(metres * kUnitsPerMetre);
}

/// The sections that take part, as arcs between the nodes of the graph.
struct FlowProblem
{
    std::vector<FlowSimplex::Arc> arcs;
    /// Index of the section of each arc, and of the arc of each section or -1.
    std::vector<std::size_t> sectionOfArc;
    std::vector<int> arcOfSection;
};

bool isCountable(const std::vector<std::optional<double>>& heights)
{
    return std::all_of(heights.begin(), heights.end(), [](const std::optional<double>& height) {
        return !height || std::abs(*height) < kLargestHeight;
    });
}

bool isCountable(const FlowProblem& problem)
{
    double sum = 0.0;
    for (const FlowSimplex::Arc& arc : problem.arcs)
        sum += std::abs(static_cast<double>(arc.cost));
    return sum < kLargestSum;
}

/// Heights near the ones that are sought: those of least squares. Most sections are then on the side of their
/// measurement where they will end, and the search has far less to do. Where the arithmetic cannot, they are
/// the approximate ones.
std::vector<std::optional<double>> findNearHeights(const SectionGraph& graph,
                                                   const std::vector<std::optional<double>>& approximate)
{
    NormalEquations equations(graph, approximate);
    if (!equations.solve())
        return approximate;
    std::vector<std::optional<double>> heights = approximate;
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point])
            *heights[point] += equations.getCorrection(static_cast<int>(point)) / kMillimetresPerMetre;
    }
    return isCountable(heights) ? heights : approximate;
}

/// Heights must be countable.
FlowProblem buildProblem(const SectionGraph& graph, const std::vector<std::optional<double>>& heights)
{
    const std::vector<Section>& sections = graph.getNetwork().sections;
    FlowProblem problem;
    problem.arcOfSection.assign(sections.size(), -1);
    double smallestSigma = std::numeric_limits<double>::max();
    for (std::size_t index = 0; index < sections.size(); ++index) {
        if (!heights[static_cast<std::size_t>(sections[index].from)])
            continue;
        problem.arcOfSection[index] = static_cast<int>(problem.sectionOfArc.size());
        problem.sectionOfArc.push_back(index);
        smallestSigma = std::min(smallestSigma, sections[index].sigma);
    }
    const double largestWeight =
        std::min(kLargestWeight, kLargestSum / static_cast<double>(problem.sectionOfArc.size() + 1));
    for (const std::size_t index : problem.sectionOfArc) {
        const Section& section = sections[index];
        const qint64 from = toUnits(*heights[static_cast<std::size_t>(section.from)]);
        const qint64 to = toUnits(*heights[static_cast<std::size_t>(section.to)]);
        const qint64 weight = std::llround(largestWeight * (smallestSigma / section.sigma));
        problem.arcs.push_back(FlowSimplex::Arc{graph.getNode(section.from), graph.getNode(section.to),
                                                std::max<qint64>(weight, 1),
                                                toUnits(section.difference) - (to - from)});
    }
    return problem;
}

/// Groups of nodes, and who belongs to each.
class Groups
{
public:
    explicit Groups(int nodeCount) : sets(nodeCount), members(static_cast<std::size_t>(nodeCount))
    {
        for (int node = 0; node < nodeCount; ++node)
            members[static_cast<std::size_t>(node)].push_back(node);
    }

    bool isTogether(int a, int b) { return sets.find(a) == sets.find(b); }
    /// Whether the node stands for its group.
    bool isFirst(int node) { return sets.find(node) == node; }
    const std::vector<int>& getMembers(int node)
    {
        return members[static_cast<std::size_t>(sets.find(node))];
    }

    void join(int a, int b)
    {
        const auto first = static_cast<std::size_t>(sets.find(a));
        const auto second = static_cast<std::size_t>(sets.find(b));
        if (!sets.unite(a, b))
            return;
        const std::size_t kept = static_cast<std::size_t>(sets.find(a));
        std::vector<int>& from = members[kept == first ? second : first];
        std::vector<int>& to = members[kept];
        if (to.size() < from.size())
            to.swap(from);
        to.insert(to.end(), from.begin(), from.end());
        from = {};
    }

private:
    DisjointSets sets;
    std::vector<std::vector<int>> members; // by the node that stands for the group
};

/// The optimal heights and flows, in units.
class Solution
{
public:
    Solution(const SectionGraph& sectionGraph, const FlowProblem& flowProblem)
        : graph(sectionGraph)
        , problem(flowProblem)
        , simplex(sectionGraph.getNodeCount(), flowProblem.arcs)
    {}

    bool solve(const std::function<bool()>& isStopped)
    {
        if (!simplex.solve(isStopped))
            return false;
        for (int node = 0; node < graph.getNodeCount(); ++node)
            corrections.push_back(simplex.getPotential(node) - simplex.getPotential(SectionGraph::kDatum));
        settle();
        return true;
    }

    /// Correction of the near height of a node.
    qint64 getCorrection(int node) const { return corrections[static_cast<std::size_t>(node)]; }

    /// Adjusted less observed difference.
    qint64 getResidual(std::size_t arc) const
    {
        const FlowSimplex::Arc& solved = problem.arcs[arc];
        return getCorrection(solved.to) - getCorrection(solved.from) - solved.cost;
    }

    /// For each node whether the solution holds it against a move up, or down: the sum of the scaled
    /// residuals would grow. Moving a node takes along all nodes over sections without residual, unless their
    /// flow is full in the direction that the move favours; what takes the datum along cannot move.
    std::vector<bool> findHeld(bool upwards) const
    {
        std::vector<bool> held(static_cast<std::size_t>(graph.getNodeCount()), false);
        std::vector<int> stack{SectionGraph::kDatum};
        held[SectionGraph::kDatum] = true;
        while (!stack.empty()) {
            const int node = stack.back();
            stack.pop_back();
            for (const SectionGraph::Link& link : graph.getLinks(node)) {
                if (!held[static_cast<std::size_t>(link.node)] && holds(node, link, upwards)) {
                    held[static_cast<std::size_t>(link.node)] = true;
                    stack.push_back(link.node);
                }
            }
        }
        return held;
    }

private:
    /// Whether the other end of the link cannot move as long as the node stays.
    bool holds(int node, const SectionGraph::Link& link, bool upwards) const
    {
        const int index = problem.arcOfSection[static_cast<std::size_t>(link.section)];
        if (index < 0 || getResidual(static_cast<std::size_t>(index)) != 0)
            return false;
        const FlowSimplex::Arc& arc = problem.arcs[static_cast<std::size_t>(index)];
        // Weights are rounded to whole numbers, so a flow that short of full counts as full.
        const qint64 slack = std::min(static_cast<qint64>(problem.arcs.size()), arc.capacity / 4);
        const qint64 flow = simplex.getFlow(static_cast<std::size_t>(index));
        const bool forward = arc.from == node;
        return forward == upwards ? flow < arc.capacity - slack : flow > -arc.capacity + slack;
    }

    /// Moves every group of nodes that no section without residual ties to the datum, until one does. Such a
    /// group can move as far as the nearest section allows, and the sum stays the least.
    void settle()
    {
        Groups groups(graph.getNodeCount());
        for (std::size_t arc = 0; arc < problem.arcs.size(); ++arc) {
            if (getResidual(arc) == 0)
                groups.join(problem.arcs[arc].from, problem.arcs[arc].to);
        }
        // Each pass joins every loose group to another one.
        while (settleOnce(groups)) {
        }
    }

    bool settleOnce(Groups& groups)
    {
        bool hasMoved = false;
        for (int node = 0; node < graph.getNodeCount(); ++node) {
            if (!groups.isFirst(node) || groups.isTogether(node, SectionGraph::kDatum))
                continue;
            const int arc = findNearestArc(groups, node);
            if (arc < 0)
                continue; // no section takes part there
            const FlowSimplex::Arc& nearest = problem.arcs[static_cast<std::size_t>(arc)];
            const qint64 residual = getResidual(static_cast<std::size_t>(arc));
            const qint64 move = groups.isTogether(nearest.to, node) ? -residual : residual;
            for (const int member : groups.getMembers(node))
                corrections[static_cast<std::size_t>(member)] += move;
            groups.join(nearest.from, nearest.to);
            hasMoved = true;
        }
        return hasMoved;
    }

    /// The arc with the least residual from a group to others, or -1.
    int findNearestArc(Groups& groups, int group) const
    {
        int nearest = -1;
        for (const int member : groups.getMembers(group)) {
            for (const SectionGraph::Link& link : graph.getLinks(member)) {
                const int arc = problem.arcOfSection[static_cast<std::size_t>(link.section)];
                if (arc < 0 || groups.isTogether(link.node, group))
                    continue;
                if (nearest < 0 || std::abs(getResidual(static_cast<std::size_t>(arc))) <
                                       std::abs(getResidual(static_cast<std::size_t>(nearest))))
                    nearest = arc;
            }
        }
        return nearest;
    }

    const SectionGraph& graph;
    const FlowProblem& problem;
    FlowSimplex simplex;
    std::vector<qint64> corrections; // of the near heights, by node
};

std::vector<int> findAmbiguous(const SectionGraph& graph, const Solution& solution,
                               const std::vector<std::optional<double>>& heights)
{
    const std::vector<bool> heldUp = solution.findHeld(true);
    const std::vector<bool> heldDown = solution.findHeld(false);
    std::vector<int> ambiguous;
    for (std::size_t point = 0; point < heights.size(); ++point) {
        const auto node = static_cast<std::size_t>(graph.getNode(static_cast<int>(point)));
        if (heights[point] && !(heldUp[node] && heldDown[node]))
            ambiguous.push_back(static_cast<int>(point));
    }
    return ambiguous;
}

bool hasUnknown(const SectionGraph& graph, const std::vector<std::optional<double>>& heights)
{
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point] && !graph.isHeld(static_cast<int>(point)))
            return true;
    }
    return false;
}

/// Moves the heights of a free component so that the mean of its datum points is the given one.
void moveToDatum(const Network& network, const Component& component,
                 std::vector<std::optional<double>>& heights)
{
    double sum = 0.0;
    for (const int point : component.datumPoints) {
        const auto index = static_cast<std::size_t>(point);
        sum += *network.points[index].height - *heights[index];
    }
    if (component.datumPoints.empty())
        return;
    for (const int point : component.points)
        *heights[static_cast<std::size_t>(point)] += sum / static_cast<double>(component.datumPoints.size());
}

} // namespace

L1Analysis analyseL1(const Network& network, const std::function<bool()>& isStopped)
{
    const std::vector<Component> components = findComponents(network);
    L1Analysis result;
    result.heights.resize(network.points.size());
    result.sections.resize(network.sections.size());
    result.undetermined = findUndeterminedPoints(network, components);

    const SectionGraph graph(network);
    const std::vector<std::optional<double>> approximate = approximateHeights(graph);
    if (!hasUnknown(graph, approximate)) {
        result.status = L1Status::NothingToAdjust;
        return result;
    }
    if (!isCountable(approximate)) {
        result.status = L1Status::TooLarge;
        return result;
    }
    const std::vector<std::optional<double>> heights = findNearHeights(graph, approximate);
    const FlowProblem problem = buildProblem(graph, heights);
    if (!isCountable(problem)) {
        result.status = L1Status::TooLarge;
        return result;
    }

    Solution solution(graph, problem);
    if (!solution.solve(isStopped)) {
        result.status = L1Status::Stopped;
        return result;
    }
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point]) {
            const qint64 correction = solution.getCorrection(graph.getNode(static_cast<int>(point)));
            result.heights[point] =
                static_cast<double>(toUnits(*heights[point]) + correction) / kUnitsPerMetre;
        }
    }
    for (const Component& component : components)
        moveToDatum(network, component, result.heights);
    for (std::size_t arc = 0; arc < problem.arcs.size(); ++arc) {
        const std::size_t index = problem.sectionOfArc[arc];
        const double residual = static_cast<double>(solution.getResidual(arc)) / kUnitsPerMillimetre;
        const double scaled = std::abs(residual) / network.sections[index].sigma;
        result.sections[index] = L1Section{residual, scaled};
        result.objective += scaled;
    }
    result.ambiguous = findAmbiguous(graph, solution, heights);
    return result;
}

} // namespace levelling
