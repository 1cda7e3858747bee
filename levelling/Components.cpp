#include "levelling/Components.h"

#include "levelling/DisjointSets.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace levelling {

namespace {

/// Sets discrepancy and length from the sections of the pair.
void summarise(const Network& network, RepeatedSections& repeated)
{
    const double first = network.sections[static_cast<std::size_t>(repeated.forward.front())].difference;
    double smallest = first;
    double largest = first;
    double lengthSum = 0.0;
    bool lengthKnown = true;
    const auto take = [&](int index, double sign) {
        const Section& section = network.sections[static_cast<std::size_t>(index)];
        smallest = std::min(smallest, sign * section.difference);
        largest = std::max(largest, sign * section.difference);
        lengthSum += section.distance.value_or(0.0);
        lengthKnown = lengthKnown && section.distance;
    };
    for (const int section : repeated.forward)
        take(section, 1.0);
    for (const int section : repeated.back)
        take(section, -1.0);

    repeated.discrepancy = (largest - smallest) * 1000.0;
    if (lengthKnown)
        repeated.length = lengthSum / static_cast<double>(repeated.forward.size() + repeated.back.size());
}

} // namespace

int Component::getRedundancy() const
{
    const auto unknowns = static_cast<int>(points.size()) - std::max(fixedPoints, 1);
    return static_cast<int>(sections.size()) - unknowns;
}

std::vector<Component> findComponents(const Network& network)
{
    const auto pointCount = static_cast<int>(network.points.size());
    DisjointSets sets(pointCount);
    for (const Section& section : network.sections)
        sets.unite(section.from, section.to);

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
    }
    for (std::size_t section = 0; section < network.sections.size(); ++section) {
        const auto from = static_cast<std::size_t>(network.sections[section].from);
        components[componentOfPoint[from]].sections.push_back(static_cast<int>(section));
    }
    return components;
}

std::vector<UndeterminedPoint> findUndeterminedPoints(const std::vector<Component>& components)
{
    std::vector<UndeterminedPoint> undetermined;
    for (const Component& component : components) {
        if (component.hasDatum())
            continue;
        const auto reason =
            component.sections.empty() ? UndeterminedReason::NoSections : UndeterminedReason::NoDatum;
        for (const int point : component.points)
            undetermined.push_back(UndeterminedPoint{point, reason});
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
        const QPair<int, int> ends(std::min(section.from, section.to), std::max(section.from, section.to));
        const auto known = pairOfEnds.constFind(ends);
        if (known == pairOfEnds.constEnd()) {
            pairOfEnds.insert(ends, pairs.size());
            pairs.push_back(
                RepeatedSections{section.from, section.to, {static_cast<int>(index)}, {}, 0.0, {}});
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

} // namespace levelling
