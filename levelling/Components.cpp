#include "levelling/Components.h"

#include "levelling/DisjointSets.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace levelling {

namespace {

/// Sets discrepancy, length and stations from the sections of the pair.
void summarise(const Network& network, RepeatedSections& repeated)
{
    const double first = network.sections[static_cast<std::size_t>(repeated.forward.front())].difference;
    double smallest = first;
    double largest = first;
    double lengthSum = 0.0;
    bool lengthKnown = true;
    double stationSum = 0.0;
    bool stationsKnown = true;
    std::vector<double> variances;
    const auto take = [&](int index, double sign) {
        const Section& section = network.sections[static_cast<std::size_t>(index)];
        smallest = std::min(smallest, sign * section.difference);
        largest = std::max(largest, sign * section.difference);
        lengthSum += section.distance.value_or(0.0);
        lengthKnown = lengthKnown && section.distance;
        stationSum += section.stations.value_or(0);
        stationsKnown = stationsKnown && section.stations;
        variances.push_back(section.sigma * section.sigma);
    };
    for (const int section : repeated.forward)
        take(section, 1.0);
    for (const int section : repeated.back)
        take(section, -1.0);

    repeated.discrepancy = (largest - smallest) * 1000.0;
    if (lengthKnown)
        repeated.length = lengthSum / static_cast<double>(variances.size());
    if (stationsKnown)
        repeated.stations = stationSum / static_cast<double>(variances.size());
    std::partial_sort(variances.begin(), variances.begin() + 2, variances.end(), std::greater<>());
    repeated.discrepancySigma = std::sqrt(variances[0] + variances[1]);
}

/// The points whose mean height is the datum, if no benchmark is among them.
std::vector<int> findDatumPoints(const Network& network, const Component& component)
{
    std::vector<int> constrained;
    std::vector<int> given;
    for (const int index : component.points) {
        const Point& point = network.points[static_cast<std::size_t>(index)];
        if (!point.height)
            continue;
        given.push_back(index);
        if (point.constrained)
            constrained.push_back(index);
    }
    return constrained.empty() ? given : constrained;
}

QPair<int, int> orderedEnds(const Section& section)
{
    return {std::min(section.from, section.to), std::max(section.from, section.to)};
}

/// The mean of sections between the same two points, as the first of them runs.
Section meanOf(const Network& network, const std::vector<int>& members)
{
    const Section& first = network.sections[static_cast<std::size_t>(members.front())];
    if (members.size() == 1)
        return first;
    Section mean = first;
    double weightSum = 0.0;
    double deviation = 0.0; // from the first, which keeps all digits of a large difference
    double lengthSum = 0.0;
    int stationSum = 0;
    for (const int index : members) {
        const Section& section = network.sections[static_cast<std::size_t>(index)];
        const double weight = 1.0 / (section.sigma * section.sigma);
        const double difference = section.from == mean.from ? section.difference : -section.difference;
        weightSum += weight;
        deviation += weight * (difference - first.difference);
        lengthSum += section.distance.value_or(0.0);
        if (!section.distance)
            mean.distance.reset();
        stationSum += section.stations.value_or(0);
        if (!section.stations)
            mean.stations.reset();
    }
    mean.difference += deviation / weightSum;
    mean.sigma = 1.0 / std::sqrt(weightSum);
    mean.stdev.reset();
    if (mean.distance)
        mean.distance = lengthSum / static_cast<double>(members.size());
    if (mean.stations)
        mean.stations = static_cast<int>(std::lround(stationSum / static_cast<double>(members.size())));
    mean.readingDifference.reset();
    return mean;
}

} // namespace

Datum Component::getDatum() const
{
    if (fixedPoints + observedPoints > 0)
        return Datum::Benchmarks;
    return datumPoints.empty() ? Datum::None : Datum::Free;
}

int Component::getRedundancy() const
{
    return static_cast<int>(sections.size()) + observedPoints - getUnknowns() + getDefect();
}

std::vector<Component> findComponents(const Network& network)
{
    const auto pointCount = static_cast<int>(network.points.size());
    DisjointSets sets(pointCount);
    for (const Section& section : network.sections)
        sets.unite(section.from, section.to);
    // Heights with covariances between them are adjusted together.
    for (const ObservedHeights& observed : network.observedHeights) {
        for (const int point : observed.points)
            sets.unite(observed.points.front(), point);
    }

    std::vector<Component> components;
    // A set is met at its smallest member first, so the component exists when the others come.
    std::vector<std::size_t> componentOfPoint(network.points.size());
    for (int point = 0; point < pointCount; ++point) {
        const int first = sets.find(point);
        if (first == point)
            components.emplace_back();
        const std::size_t component =
            first == point ? components.size() - 1 : componentOfPoint[static_cast<std::size_t>(first)];
        componentOfPoint[static_cast<std::size_t>(point)] = component;
        components[component].points.push_back(point);
        components[component].fixedPoints += network.points[static_cast<std::size_t>(point)].fixed ? 1 : 0;
        components[component].observedPoints +=
            network.points[static_cast<std::size_t>(point)].observed ? 1 : 0;
    }
    for (std::size_t section = 0; section < network.sections.size(); ++section) {
        const auto from = static_cast<std::size_t>(network.sections[section].from);
        components[componentOfPoint[from]].sections.push_back(static_cast<int>(section));
    }
    for (Component& component : components) {
        if (!component.sections.empty() && component.getDatum() == Datum::None)
            component.datumPoints = findDatumPoints(network, component);
    }
    return components;
}

std::vector<UndeterminedPoint> findUndeterminedPoints(const Network& network,
                                                      const std::vector<Component>& components)
{
    std::vector<UndeterminedPoint> undetermined;
    for (const Component& component : components) {
        if (component.hasDatum())
            continue;
        const auto reason =
            component.sections.empty() ? UndeterminedReason::NoSections : UndeterminedReason::NoDatum;
        for (const int point : component.points) {
            const bool isSurveyed = network.points[static_cast<std::size_t>(point)].surveyed;
            if (reason != UndeterminedReason::NoSections || !isSurveyed)
                undetermined.push_back(UndeterminedPoint{point, reason});
        }
    }
    std::sort(undetermined.begin(), undetermined.end(),
              [](const UndeterminedPoint& a, const UndeterminedPoint& b) { return a.point < b.point; });
    return undetermined;
}

std::vector<RepeatedSections> findRepeatedSections(const Network& network)
{
    std::vector<RepeatedSections> pairs;
    QHash<QPair<int, int>, std::size_t> pairOfEnds;
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const Section& section = network.sections[index];
        const QPair<int, int> ends = orderedEnds(section);
        const auto known = pairOfEnds.constFind(ends);
        if (known == pairOfEnds.constEnd()) {
            pairOfEnds.insert(ends, pairs.size());
            pairs.push_back(
                RepeatedSections{section.from, section.to, {static_cast<int>(index)}, {}, 0.0, {}, {}, 0.0});
        } else {
            RepeatedSections& pair = pairs[*known];
            (section.from == pair.from ? pair.forward : pair.back).push_back(static_cast<int>(index));
        }
    }
    const auto single = [](const RepeatedSections& pair) {
        return pair.forward.size() + pair.back.size() == 1;
    };
    pairs.erase(std::remove_if(pairs.begin(), pairs.end(), single), pairs.end());
    for (RepeatedSections& pair : pairs)
        summarise(network, pair);
    return pairs;
}

MergedNetwork mergeRepeatedSections(const Network& network)
{
    MergedNetwork merged;
    merged.network = network;
    merged.network.sections.clear();
    QHash<QPair<int, int>, std::size_t> placeOfEnds;
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const QPair<int, int> ends = orderedEnds(network.sections[index]);
        const auto known = placeOfEnds.constFind(ends);
        if (known == placeOfEnds.constEnd()) {
            placeOfEnds.insert(ends, merged.members.size());
            merged.members.push_back({static_cast<int>(index)});
        } else {
            merged.members[*known].push_back(static_cast<int>(index));
        }
    }
    for (const std::vector<int>& members : merged.members)
        merged.network.sections.push_back(meanOf(network, members));
    return merged;
}

std::optional<DoubleRunPrecision> findDoubleRunPrecision(const std::vector<RepeatedSections>& repeated)
{
    DoubleRunPrecision precision;
    double sum = 0.0;
    for (const RepeatedSections& pair : repeated) {
        if (pair.forward.size() != 1 || pair.back.size() != 1 || !pair.length)
            continue;
        ++precision.count;
        sum += pair.discrepancy * pair.discrepancy / *pair.length;
    }
    if (precision.count == 0)
        return std::nullopt;
    precision.single = std::sqrt(sum / (2.0 * precision.count));
    precision.mean = precision.single / std::sqrt(2.0);
    return precision;
}

} // namespace levelling
