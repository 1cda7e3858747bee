#include "levelling/L1Analysis.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/FlowSimplex.h"
#include "levelling/SectionGraph.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace levelling {

namespace {

constexpr double s_unitsPerMetre = 1e8;
constexpr double s_unitsPerMillimetre = 1e5;
constexpr double s_largestHeight = 1e9;                // m
constexpr double s_largestWeight = 1099511627776.0;    // 2^40
constexpr double s_largestSum = 1152921504606846976.0; // 2^60

qint64 toUnits(double metres)
{
    return std::llround(metres * s_unitsPerMetre);
}

/// The sections that take part, as arcs between the nodes of the graph.
struct FlowProblem
{
    std::vector<FlowSimplex::Arc> arcs;
    /// Index of the section of each arc, and of the arc of each section or -1.
    std::vector<size_t> sectionOfArc;
    std::vector<int> arcOfSection;
};

bool isCountable(const std::vector<std::optional<double>>& heights)
{
    return std::all_of(heights.begin(), heights.end(), [](const std::optional<double>& height) {
        return !height || std::abs(*height) < s_largestHeight;
    });
}

bool isCountable(const FlowProblem& problem)
{
    double sum = 0.0;
    for (const FlowSimplex::Arc& arc : problem.arcs)
        sum += std::abs(static_cast<double>(arc.cost));
    return sum < s_largestSum;
}

/// Heights must be countable.
FlowProblem buildProblem(const SectionGraph& graph, const std::vector<std::optional<double>>& heights)
{
    const std::vector<Section>& sections = graph.getNetwork().sections;
    FlowProblem problem;
    problem.arcOfSection.assign(sections.size(), -1);
    double smallestSigma = std::numeric_limits<double>::max();
    for (size_t index = 0; index < sections.size(); ++index) {
        if (!heights[static_cast<size_t>(sections[index].from)])
            continue;
        problem.arcOfSection[index] = static_cast<int>(problem.sectionOfArc.size());
        problem.sectionOfArc.push_back(index);
        smallestSigma = std::min(smallestSigma, sections[index].sigma);
    }
    const double largestWeight =
        std::min(s_largestWeight, s_largestSum / static_cast<double>(problem.sectionOfArc.size() + 1));
    for (const size_t index : problem.sectionOfArc) {
        const Section& section = sections[index];
        const qint64 from = toUnits(*heights[static_cast<size_t>(section.from)]);
        const qint64 to = toUnits(*heights[static_cast<size_t>(section.to)]);
        const qint64 weight = std::llround(largestWeight * (smallestSigma / section.sigma));
        problem.arcs.push_back(FlowSimplex::Arc{graph.getNode(section.from), graph.getNode(section.to),
                                                std::max<qint64>(weight, 1),
                                                toUnits(section.difference) - (to - from)});
    }
    return problem;
}

/// The optimal heights and flows, in units.
class Solution
{
public:
    Solution(const SectionGraph& sectionGraph, const FlowProblem& flowProblem)
        : graph(sectionGraph)
        , problem(flowProblem)
        , simplex(sectionGraph.getNodeCount(), flowProblem.arcs)
    {}

    bool solve(const std::function<bool()>& isStopped) { return simplex.solve(isStopped); }

    /// Correction of the approximate height of a node.
    qint64 getCorrection(int node) const
    {
        return simplex.getPotential(node) - simplex.getPotential(SectionGraph::datum);
    }

    /// Adjusted less observed difference.
    qint64 getResidual(size_t arc) const
    {
        const FlowSimplex::Arc& solved = problem.arcs[arc];
        return getCorrection(solved.to) - getCorrection(solved.from) - solved.cost;
    }

    /// For each node whether the solution holds it against a move up, or down: the sum of the scaled
    /// residuals would grow. Moving a node takes along all nodes over sections without residual, unless their
    /// flow is full in the direction that the move favours; what takes the datum along cannot move.
    std::vector<bool> findHeld(bool upwards) const
    {
        std::vector<bool> held(static_cast<size_t>(graph.getNodeCount()), false);
        std::vector<int> stack{SectionGraph::datum};
        held[SectionGraph::datum] = true;
        while (!stack.empty()) {
            const int node = stack.back();
            stack.pop_back();
            for (const SectionGraph::Link& link : graph.getLinks(node)) {
                if (!held[static_cast<size_t>(link.node)] && holds(node, link, upwards)) {
                    held[static_cast<size_t>(link.node)] = true;
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
        const int index = problem.arcOfSection[static_cast<size_t>(link.section)];
        if (index < 0 || getResidual(static_cast<size_t>(index)) != 0)
            return false;
        const FlowSimplex::Arc& arc = problem.arcs[static_cast<size_t>(index)];
        // Weights are rounded to whole numbers, so a flow that short of full counts as full.
        const qint64 slack = std::min(static_cast<qint64>(problem.arcs.size()), arc.capacity / 4);
        const qint64 flow = simplex.getFlow(static_cast<size_t>(index));
        const bool forward = arc.from == node;
        return forward == upwards ? flow < arc.capacity - slack : flow > -arc.capacity + slack;
    }

    const SectionGraph& graph;
    const FlowProblem& problem;
    FlowSimplex simplex;
};

std::vector<int> findAmbiguous(const SectionGraph& graph, const Solution& solution,
                               const std::vector<std::optional<double>>& heights)
{
    const std::vector<bool> heldUp = solution.findHeld(true);
    const std::vector<bool> heldDown = solution.findHeld(false);
    std::vector<int> ambiguous;
    for (size_t point = 0; point < heights.size(); ++point) {
        const auto node = static_cast<size_t>(graph.getNode(static_cast<int>(point)));
        if (heights[point] && !(heldUp[node] && heldDown[node]))
            ambiguous.push_back(static_cast<int>(point));
    }
    return ambiguous;
}

bool hasUnknown(const Network& network, const std::vector<std::optional<double>>& heights)
{
    for (size_t point = 0; point < heights.size(); ++point) {
        if (heights[point] && !network.points[point].fixed)
            return true;
    }
    return false;
}

} // namespace

L1Analysis analyseL1(const Network& network, double grossLimit, const std::function<bool()>& isStopped)
{
    L1Analysis result;
    result.heights.resize(network.points.size());
    result.sections.resize(network.sections.size());
    result.undetermined = findUndeterminedPoints(findComponents(network));

    const SectionGraph graph(network);
    const std::vector<std::optional<double>> heights = approximateHeights(graph);
    if (!hasUnknown(network, heights)) {
        result.status = L1Status::NothingToAdjust;
        return result;
    }
    if (!isCountable(heights)) {
        result.status = L1Status::TooLarge;
        return result;
    }
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
    for (size_t point = 0; point < heights.size(); ++point) {
        if (heights[point]) {
            const qint64 correction = solution.getCorrection(graph.getNode(static_cast<int>(point)));
            result.heights[point] =
                static_cast<double>(toUnits(*heights[point]) + correction) / s_unitsPerMetre;
        }
    }
    for (size_t arc = 0; arc < problem.arcs.size(); ++arc) {
        const size_t index = problem.sectionOfArc[arc];
        const double residual = static_cast<double>(solution.getResidual(arc)) / s_unitsPerMillimetre;
        const double scaled = std::abs(residual) / network.sections[index].sigma;
        result.sections[index] = L1Section{residual, scaled, scaled > grossLimit};
        result.objective += scaled;
    }
    result.ambiguous = findAmbiguous(graph, solution, heights);
    return result;
}

} // namespace levelling
