#include "DenseOracle.h"

#include <algorithm>

using namespace levelling;

namespace orvel::test {

namespace {

std::vector<int> findParts(const Network& network)
{
    std::vector<int> part(network.points.size());
    for (std::size_t point = 0; point < part.size(); ++point)
        part[point] = static_cast<int>(point);
    const auto join = [&](int a, int b) {
        const int low = std::min(part[static_cast<std::size_t>(a)], part[static_cast<std::size_t>(b)]);
        const int high = std::max(part[static_cast<std::size_t>(a)], part[static_cast<std::size_t>(b)]);
        std::replace(part.begin(), part.end(), high, low);
    };
    for (const Section& section : network.sections)
        join(section.from, section.to);
    for (const ObservedHeights& observed : network.observedHeights) {
        for (const int point : observed.points)
            join(observed.points.front(), point);
    }
    return part;
}

} // namespace

DenseOracle::DenseOracle(const Network& network) : part(findParts(network))
{
    const auto pointCount = static_cast<Eigen::Index>(network.points.size());
    const auto at = [](int index) { return static_cast<std::size_t>(index); };

    // Which parts have a datum, and of which points' mean height it is where no benchmark is.
    std::vector<bool> hasBenchmark(network.points.size(), false);
    std::vector<bool> hasSection(network.points.size(), false);
    std::vector<std::vector<int>> constrained(network.points.size());
    std::vector<std::vector<int>> given(network.points.size());
    for (const Section& section : network.sections)
        hasSection[at(part[at(section.from)])] = true;
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        if (network.points[point].fixed || network.points[point].observed)
            hasBenchmark[own] = true;
        if (network.points[point].height)
            (network.points[point].constrained ? constrained : given)[own].push_back(static_cast<int>(point));
    }
    isDetermined.resize(network.points.size());
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        isDetermined[point] =
            hasBenchmark[own] || (hasSection[own] && !(constrained[own].empty() && given[own].empty()));
    }

    // Observation equations in mm for all heights, with conditions of zero sigma as borders of the normal
    // matrix.
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        if (isDetermined[at(network.sections[index].from)])
            sections.push_back(static_cast<int>(index));
    }
    const auto sectionCount = static_cast<Eigen::Index>(sections.size());
    Eigen::Index rows = sectionCount;
    for (const ObservedHeights& observed : network.observedHeights)
        rows += static_cast<Eigen::Index>(observed.points.size());
    Matrix design = Matrix::Zero(rows, pointCount);
    Vector measured(rows);
    Matrix weights = Matrix::Zero(rows, rows);
    for (Eigen::Index row = 0; row < sectionCount; ++row) {
        const Section& section = network.sections[at(sections[static_cast<std::size_t>(row)])];
        design(row, section.to) += 1.0;
        design(row, section.from) -= 1.0;
        measured[row] = section.difference * 1000.0L;
        weights(row, row) = 1.0L / (section.sigma * section.sigma);
    }
    Eigen::Index begin = sectionCount;
    for (const ObservedHeights& observed : network.observedHeights) {
        const auto size = static_cast<Eigen::Index>(observed.points.size());
        Matrix covariance(size, size);
        for (Eigen::Index row = 0; row < size; ++row) {
            const int point = observed.points[static_cast<std::size_t>(row)];
            design(begin + row, point) = 1.0;
            measured[begin + row] = *network.points[at(point)].height * 1000.0L;
            for (Eigen::Index column = 0; column < size; ++column)
                covariance(row, column) = observed.covariance[static_cast<std::size_t>(row * size + column)];
        }
        weights.block(begin, begin, size, size) = covariance.inverse();
        begin += size;
    }

    std::vector<Vector> conditions;
    std::vector<double> conditionValues;
    const auto addCondition = [&](const std::vector<int>& points) {
        Vector condition = Vector::Zero(pointCount);
        double value = 0.0;
        for (const int point : points) {
            condition[point] = 1.0;
            value += network.points[at(point)].height.value_or(0.0) * 1000.0;
        }
        conditions.push_back(condition);
        conditionValues.push_back(value);
    };
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        if (network.points[point].fixed || !isDetermined[point])
            addCondition({static_cast<int>(point)});
        else if (own == point && !hasBenchmark[own])
            addCondition(constrained[own].empty() ? given[own] : constrained[own]);
    }
    const auto borders = static_cast<Eigen::Index>(conditions.size());
    Matrix bordered = Matrix::Zero(pointCount + borders, pointCount + borders);
    Vector rightSide(pointCount + borders);
    bordered.topLeftCorner(pointCount, pointCount) = design.transpose() * weights * design;
    rightSide.head(pointCount) = design.transpose() * weights * measured;
    for (Eigen::Index border = 0; border < borders; ++border) {
        const auto index = static_cast<std::size_t>(border);
        bordered.block(pointCount + border, 0, 1, pointCount) = conditions[index].transpose();
        bordered.block(0, pointCount + border, pointCount, 1) = conditions[index];
        rightSide[pointCount + border] = conditionValues[index];
    }
    // Rows and columns of like size, since parts can have very different weights.
    Vector sizes = bordered.diagonal().cwiseSqrt();
    for (Eigen::Index point = 0; point < pointCount; ++point)
        sizes[point] = sizes[point] > 0.0L ? sizes[point] : 1.0L;
    for (Eigen::Index border = pointCount; border < pointCount + borders; ++border)
        sizes[border] =
            bordered.row(border).head(pointCount).transpose().cwiseQuotient(sizes.head(pointCount)).norm();
    const Matrix scaling = sizes.cwiseInverse().asDiagonal();
    const Matrix scaled = scaling * bordered * scaling;
    const Matrix inverse = scaling * scaled.partialPivLu().inverse() * scaling;
    const Matrix pointCofactors = inverse.topLeftCorner(pointCount, pointCount);
    const Vector solution = (inverse * rightSide).head(pointCount);
    for (Eigen::Index point = 0; point < pointCount; ++point) {
        heights.push_back(static_cast<double>(solution[point] / 1000.0L));
        sigmas.push_back(static_cast<double>(std::sqrt(std::max(pointCofactors(point, point), 0.0L))));
    }

    const Vector allResiduals = design * solution - measured;
    const Matrix allCofactors = weights.inverse() - design * pointCofactors * design.transpose();
    residuals = allResiduals.head(sectionCount);
    const Matrix scale =
        weights.topLeftCorner(sectionCount, sectionCount).diagonal().cwiseSqrt().asDiagonal();
    cofactors = scale * allCofactors.topLeftCorner(sectionCount, sectionCount) * scale;

    pvv.assign(network.points.size(), 0.0);
    redundancy.assign(network.points.size(), 0);
    const Vector weighted = weights * allResiduals;
    for (Eigen::Index row = 0; row < rows; ++row) {
        Eigen::Index point = 0;
        design.row(row).cwiseAbs().maxCoeff(&point);
        const std::size_t own = at(part[static_cast<std::size_t>(point)]);
        pvv[own] += static_cast<double>(allResiduals[row] * weighted[row]);
        ++redundancy[own];
    }
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        redundancy[own] -= network.points[point].fixed ? 0 : 1;
        if (own == point && !hasBenchmark[own])
            ++redundancy[own];
    }
}

} // namespace orvel::test
