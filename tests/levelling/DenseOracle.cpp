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

constexpr std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

/// What fixes the heights of each part.
struct Datum
{
    std::vector<bool> hasBenchmark;       ///< by part
    std::vector<std::vector<int>> meanOf; ///< by part: the points whose mean height is kept without one
    std::vector<bool> isDetermined;       ///< by point
};

Datum findDatum(const Network& network, const std::vector<int>& part)
{
    const std::size_t count = network.points.size();
    std::vector<bool> hasSection(count, false);
    std::vector<std::vector<int>> constrained(count);
    std::vector<std::vector<int>> given(count);
    Datum datum{std::vector<bool>(count), {}, std::vector<bool>(count)};
    for (const Section& section : network.sections)
        hasSection[at(part[at(section.from)])] = true;
    for (std::size_t point = 0; point < count; ++point) {
        const std::size_t own = at(part[point]);
        if (network.points[point].fixed || network.points[point].observed)
            datum.hasBenchmark[own] = true;
        if (network.points[point].height)
            (network.points[point].constrained ? constrained : given)[own].push_back(static_cast<int>(point));
    }
    for (std::size_t own = 0; own < count; ++own)
        datum.meanOf.push_back(constrained[own].empty() ? given[own] : constrained[own]);
    for (std::size_t point = 0; point < count; ++point) {
        const std::size_t own = at(part[point]);
        datum.isDetermined[point] =
            datum.hasBenchmark[own] || (hasSection[own] && !datum.meanOf[own].empty());
    }
    return datum;
}

/// Observation equations in mm for all heights.
struct Observations
{
    DenseOracle::Matrix design;
    DenseOracle::Vector measured;
    DenseOracle::Matrix weights;
};

Observations makeObservations(const Network& network, const std::vector<int>& sections)
{
    Eigen::Index rows = static_cast<Eigen::Index>(sections.size());
    for (const ObservedHeights& observed : network.observedHeights)
        rows += static_cast<Eigen::Index>(observed.points.size());
    Observations all;
    all.design = DenseOracle::Matrix::Zero(rows, static_cast<Eigen::Index>(network.points.size()));
    all.measured.resize(rows);
    all.weights = DenseOracle::Matrix::Zero(rows, rows);
    Eigen::Index begin = 0;
    for (const int index : sections) {
        const Section& section = network.sections[at(index)];
        all.design(begin, section.to) += 1.0;
        all.design(begin, section.from) -= 1.0;
        all.measured[begin] = section.difference * 1000.0L;
        all.weights(begin, begin) = 1.0L / (section.sigma * section.sigma);
        ++begin;
    }
    for (const ObservedHeights& observed : network.observedHeights) {
        const auto size = static_cast<Eigen::Index>(observed.points.size());
        DenseOracle::Matrix covariance(size, size);
        for (Eigen::Index row = 0; row < size; ++row) {
            const int point = observed.points[static_cast<std::size_t>(row)];
            all.design(begin + row, point) = 1.0;
            all.measured[begin + row] = *network.points[at(point)].height * 1000.0L;
            for (Eigen::Index column = 0; column < size; ++column)
                covariance(row, column) = observed.covariance[static_cast<std::size_t>(row * size + column)];
        }
        all.weights.block(begin, begin, size, size) = covariance.inverse();
        begin += size;
    }
    return all;
}

/// Sums of heights, in mm, that are kept without any error.
struct Conditions
{
    std::vector<DenseOracle::Vector> rows;
    std::vector<double> values;
};

Conditions makeConditions(const Network& network, const std::vector<int>& part, const Datum& datum)
{
    Conditions conditions;
    const auto keep = [&](const std::vector<int>& points) {
        DenseOracle::Vector row = DenseOracle::Vector::Zero(static_cast<Eigen::Index>(network.points.size()));
        double value = 0.0;
        for (const int point : points) {
            row[point] = 1.0;
            value += network.points[at(point)].height.value_or(0.0) * 1000.0;
        }
        conditions.rows.push_back(row);
        conditions.values.push_back(value);
    };
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        if (network.points[point].fixed || !datum.isDetermined[point])
            keep({static_cast<int>(point)});
        else if (own == point && !datum.hasBenchmark[own])
            keep(datum.meanOf[own]);
    }
    return conditions;
}

/// The inverse of normal equations with `borders` conditions, which may have parts of very different weights:
/// rows and columns are brought to like size first.
DenseOracle::Matrix invertBordered(const DenseOracle::Matrix& bordered, Eigen::Index borders)
{
    const Eigen::Index pointCount = bordered.rows() - borders;
    DenseOracle::Vector sizes = bordered.diagonal().cwiseSqrt();
    for (Eigen::Index point = 0; point < pointCount; ++point)
        sizes[point] = sizes[point] > 0.0L ? sizes[point] : 1.0L;
    for (Eigen::Index border = pointCount; border < pointCount + borders; ++border)
        sizes[border] =
            bordered.row(border).head(pointCount).transpose().cwiseQuotient(sizes.head(pointCount)).norm();
    const DenseOracle::Matrix scaling = sizes.cwiseInverse().asDiagonal();
    const DenseOracle::Matrix scaled = scaling * bordered * scaling;
    return scaling * scaled.partialPivLu().inverse() * scaling;
}

} // namespace

DenseOracle::DenseOracle(const Network& network) : part(findParts(network))
{
    const Datum datum = findDatum(network, part);
    isDetermined = datum.isDetermined;
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        if (isDetermined[at(network.sections[index].from)])
            sections.push_back(static_cast<int>(index));
    }
    const auto pointCount = static_cast<Eigen::Index>(network.points.size());
    const auto sectionCount = static_cast<Eigen::Index>(sections.size());
    const auto [design, measured, weights] = makeObservations(network, sections);

    // Conditions border the normal matrix.
    const Conditions conditions = makeConditions(network, part, datum);
    const auto borders = static_cast<Eigen::Index>(conditions.rows.size());
    Matrix bordered = Matrix::Zero(pointCount + borders, pointCount + borders);
    Vector rightSide(pointCount + borders);
    bordered.topLeftCorner(pointCount, pointCount) = design.transpose() * weights * design;
    rightSide.head(pointCount) = design.transpose() * weights * measured;
    for (Eigen::Index border = 0; border < borders; ++border) {
        const auto index = static_cast<std::size_t>(border);
        bordered.block(pointCount + border, 0, 1, pointCount) = conditions.rows[index].transpose();
        bordered.block(0, pointCount + border, pointCount, 1) = conditions.rows[index];
        rightSide[pointCount + border] = conditions.values[index];
    }
    const Matrix inverse = invertBordered(bordered, borders);
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
    for (Eigen::Index row = 0; row < design.rows(); ++row) {
        Eigen::Index point = 0;
        design.row(row).cwiseAbs().maxCoeff(&point);
        const std::size_t own = at(part[static_cast<std::size_t>(point)]);
        pvv[own] += static_cast<double>(allResiduals[row] * weighted[row]);
        ++redundancy[own];
    }
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const std::size_t own = at(part[point]);
        redundancy[own] -= network.points[point].fixed ? 0 : 1;
        if (own == point && !datum.hasBenchmark[own])
            ++redundancy[own];
    }
}

} // namespace orvel::test
