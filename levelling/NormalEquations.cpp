#include "levelling/NormalEquations.h"

#include <algorithm>
#include <cmath>

namespace levelling {

namespace {

// Each step of refinement gives some digits back that very different weights have cost.
constexpr int kRefinements = 2;

Eigen::MatrixXd inverseCovariance(const ObservedHeights& observed)
{
    const auto size = static_cast<Eigen::Index>(observed.points.size());
    const Eigen::Map<const Eigen::MatrixXd> covariance(observed.covariance.data(), size, size);
    return covariance.llt().solve(Eigen::MatrixXd::Identity(size, size));
}

} // namespace

NormalEquations::NormalEquations(const SectionGraph& sectionGraph,
                                 const std::vector<std::optional<double>>& approximateHeights)
    : graph(sectionGraph)
    , heights(approximateHeights)
    , unknownOfPoint(sectionGraph.getNetwork().points.size(), -1)
{
    const Network& network = graph.getNetwork();
    for (std::size_t point = 0; point < heights.size(); ++point) {
        if (heights[point] && (network.points[point].observed || !graph.isHeld(static_cast<int>(point))))
            unknownOfPoint[point] = unknownCount++;
    }
    matrix.resize(unknownCount, unknownCount);
    rightSide.setZero(unknownCount);

    Triplets elements;
    elements.reserve(3 * network.sections.size());
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        if (contains(static_cast<int>(index)))
            addSection(network.sections[index], elements);
    }
    for (const ObservedHeights& observed : network.observedHeights)
        addObservedHeights(observed, elements);
    matrix.setFromTriplets(elements.begin(), elements.end());
}

bool NormalEquations::contains(int section) const
{
    const Section& asked = graph.getNetwork().sections[static_cast<std::size_t>(section)];
    return heights[static_cast<std::size_t>(asked.from)].has_value();
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
    for (int step = 0; step < kRefinements; ++step)
        refine();
    return true;
}

void NormalEquations::refine()
{
    const Network& network = graph.getNetwork();
    Eigen::VectorXd rest = Eigen::VectorXd::Zero(unknownCount);
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const Section& section = network.sections[index];
        if (!contains(static_cast<int>(index)))
            continue;
        const double weighted = -getResidual(section) / (section.sigma * section.sigma);
        if (const int from = getUnknown(section.from); from >= 0)
            rest[from] -= weighted;
        if (const int to = getUnknown(section.to); to >= 0)
            rest[to] += weighted;
    }
    for (std::size_t group = 0; group < observedWeights.size(); ++group) {
        const std::vector<int>& points = network.observedHeights[group].points;
        for (std::size_t row = 0; row < points.size(); ++row) {
            for (std::size_t column = 0; column < points.size(); ++column)
                rest[getUnknown(points[row])] -= observedWeights[group](static_cast<Eigen::Index>(row),
                                                                        static_cast<Eigen::Index>(column)) *
                                                 getCorrection(points[column]);
        }
    }
    corrections += cholesky.solve(rest);
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

double NormalEquations::getResidual(const Section& section) const
{
    return getCorrection(section.to) - getCorrection(section.from) - getTerm(section);
}

std::vector<double> NormalEquations::getObservedPvv() const
{
    std::vector<double> sums;
    for (std::size_t group = 0; group < observedWeights.size(); ++group) {
        const std::vector<int>& points = graph.getNetwork().observedHeights[group].points;
        Eigen::VectorXd residuals(static_cast<Eigen::Index>(points.size()));
        for (std::size_t row = 0; row < points.size(); ++row)
            residuals[static_cast<Eigen::Index>(row)] = getCorrection(points[row]);
        sums.push_back(residuals.dot(observedWeights[group] * residuals));
    }
    return sums;
}

std::vector<double> NormalEquations::applyInverse(const std::vector<double>& vector) const
{
    Eigen::VectorXd given = Eigen::VectorXd::Zero(unknownCount);
    for (std::size_t point = 0; point < vector.size(); ++point) {
        if (const int unknown = unknownOfPoint[point]; unknown >= 0)
            given[unknown] = vector[point];
    }
    const Eigen::VectorXd solved = cholesky.solve(given);
    std::vector<double> result(vector.size(), 0.0);
    for (std::size_t point = 0; point < vector.size(); ++point) {
        if (const int unknown = unknownOfPoint[point]; unknown >= 0)
            result[point] = solved[unknown];
    }
    return result;
}

double NormalEquations::getVariance(int point) const
{
    return getCovariance(point, point);
}

double NormalEquations::getCovariance(int point, int other) const
{
    const int row = getUnknown(point);
    const int column = getUnknown(other);
    return row < 0 || column < 0 ? 0.0 : inverse->at(row, column);
}

double NormalEquations::getDifferenceVariance(const Section& section) const
{
    return getVariance(section.from) + getVariance(section.to) -
           2.0 * getCovariance(section.from, section.to);
}

void NormalEquations::addSection(const Section& section, Triplets& elements)
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

void NormalEquations::addObservedHeights(const ObservedHeights& observed, Triplets& elements)
{
    observedWeights.push_back(inverseCovariance(observed));
    const Eigen::MatrixXd& weights = observedWeights.back();
    for (std::size_t row = 0; row < observed.points.size(); ++row) {
        for (std::size_t column = 0; column < observed.points.size(); ++column) {
            const int from = getUnknown(observed.points[row]);
            const int to = getUnknown(observed.points[column]);
            if (from >= to)
                elements.emplace_back(
                    from, to, weights(static_cast<Eigen::Index>(row), static_cast<Eigen::Index>(column)));
        }
    }
}

} // namespace levelling
