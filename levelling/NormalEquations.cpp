#include "levelling/NormalEquations.h"

#include <algorithm>
#include <cmath>

namespace levelling {

NormalEquations::NormalEquations(const SectionGraph& sectionGraph,
                                 const std::vector<std::optional<double>>& approximateHeights)
    : graph(sectionGraph)
    , heights(approximateHeights)
    , unknownOfNode(static_cast<std::size_t>(sectionGraph.getNodeCount()), -1)
{
    const Network& network = graph.getNetwork();
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point] && !network.points[point].fixed)
            unknownOfNode[static_cast<std::size_t>(graph.getNode(static_cast<int>(point)))] = unknownCount++;
    }
    matrix.resize(unknownCount, unknownCount);
    rightSide.setZero(unknownCount);

    std::vector<Eigen::Triplet<double>> elements;
    elements.reserve(3 * network.sections.size());
    for (const Section& section : network.sections) {
        if (heights[static_cast<std::size_t>(section.from)])
            addSection(section, elements);
    }
    matrix.setFromTriplets(elements.begin(), elements.end());
}

double NormalEquations::getTerm(const Section& section) const
{
    const double from = *heights[static_cast<std::size_t>(section.from)];
    const double to = *heights[static_cast<std::size_t>(section.to)];
    return (section.difference - (to - from)) * 1000.0;
}

bool NormalEquations::solve()
{
    cholesky.compute(matrix);
    const auto positive = [](double d) { return d > 0.0 && std::isfinite(d); };
    const Eigen::VectorXd d = cholesky.vectorD();
    if (cholesky.info() != Eigen::Success || !std::all_of(d.data(), d.data() + d.size(), positive))
        return false;
    corrections = cholesky.solve(rightSide);
    return true;
}

void NormalEquations::invert()
{
    inverse.emplace(cholesky);
}

double NormalEquations::getCorrection(int point) const
{
    const int unknown = getUnknown(point);
    return unknown < 0 ? 0.0 : corrections[unknown];
}

double NormalEquations::getVariance(int point) const
{
    const int unknown = getUnknown(point);
    return unknown < 0 ? 0.0 : inverse->at(unknown, unknown);
}

double NormalEquations::getDifferenceVariance(const Section& section) const
{
    const int from = getUnknown(section.from);
    const int to = getUnknown(section.to);
    const double covariance = from < 0 || to < 0 ? 0.0 : inverse->at(from, to);
    return getVariance(section.from) + getVariance(section.to) - 2.0 * covariance;
}

void NormalEquations::addSection(const Section& section, std::vector<Eigen::Triplet<double>>& elements)
{
    const double weight = 1.0 / (section.sigma * section.sigma);
    const double weightedTerm = weight * getTerm(section);
    const int from = getUnknown(section.from);
    const int to = getUnknown(section.to);
    if (from >= 0) {
        elements.emplace_back(from, from, weight);
        rightSide[from] -= weightedTerm;
    }
    if (to >= 0) {
        elements.emplace_back(to, to, weight);
        rightSide[to] += weightedTerm;
    }
    if (from >= 0 && to >= 0)
        elements.emplace_back(std::max(from, to), std::min(from, to), -weight);
}

} // namespace levelling
