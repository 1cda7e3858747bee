#include "levelling/NetworkMerge.h"

#include "levelling/SectionKey.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace levelling {

namespace {

bool isSame(const Parameters& a, const Parameters& b)
{
    return a.sigmaApriori == b.sigmaApriori && a.sigmaAct == b.sigmaAct &&
           a.toleranceAbsolute == b.toleranceAbsolute && a.confidence == b.confidence;
}

/// Without the points that are not observed any more.
std::vector<ObservedHeights> keepObserved(const std::vector<ObservedHeights>& groups,
                                          const std::vector<bool>& isDropped)
{
    std::vector<ObservedHeights> kept;
    for (const ObservedHeights& group : groups) {
        ObservedHeights rest;
        const std::size_t size = group.points.size();
        for (std::size_t row = 0; row < size; ++row) {
            if (isDropped[static_cast<std::size_t>(group.points[row])])
                continue;
            rest.points.push_back(group.points[row]);
            for (std::size_t column = 0; column < size; ++column) {
                if (!isDropped[static_cast<std::size_t>(group.points[column])])
                    rest.covariance.push_back(group.covariance[row * size + column]);
            }
        }
        if (!rest.points.empty())
            kept.push_back(std::move(rest));
    }
    return kept;
}

class Merger
{
public:
    Merger(Network& targetNetwork, const Network& addedNetwork) : network(targetNetwork), added(addedNetwork)
    {}

    NetworkAddition merge()
    {
        addition.firstPoint = network.points.size();
        addition.firstSection = network.sections.size();
        // The first part is mostly all there is.
        if (addition.firstPoint == 0)
            network.points.reserve(added.points.size());
        if (addition.firstSection == 0)
            network.sections.reserve(added.sections.size());
        places.reserve(added.points.size());
        addSources();
        addParameters();
        addPoints();
        addObservedHeights();
        addSections();
        addition.places = std::move(places);
        return std::move(addition);
    }

private:
    void addSources()
    {
        const bool isEmpty = network.points.empty() && network.sections.empty();
        if (!isEmpty && network.sources.isEmpty())
            network.sources.append(QString());
        firstSource = network.sources.size();
        network.sources += added.sources.isEmpty() ? QStringList(QString()) : added.sources;
        if (!added.description.isEmpty() && !network.description.isEmpty())
            network.description += QLatin1Char('\n');
        network.description += added.description;
    }

    void addParameters()
    {
        if (network.sections.empty())
            network.parameters = added.parameters;
        else
            addition.areParametersKept =
                !added.sections.empty() && !isSame(network.parameters, added.parameters);
    }

    void addPoints()
    {
        if (network.points.empty()) {
            for (const Point& point : added.points)
                addPoint(point);
            return;
        }
        QHash<QString, int> indexOfPoint;
        indexOfPoint.reserve(static_cast<int>(network.points.size() + added.points.size()));
        int index = 0;
        for (const Point& point : network.points)
            indexOfPoint.insert(point.id, index++);
        for (const Point& point : added.points) {
            const auto known = indexOfPoint.constFind(point.id);
            if (known != indexOfPoint.constEnd()) {
                ++addition.commonPoints;
                places.push_back(*known);
                mergePoint(*known, point);
                continue;
            }
            addPoint(point);
            indexOfPoint.insert(point.id, places.back());
        }
    }

    void addPoint(const Point& point)
    {
        places.push_back(static_cast<int>(network.points.size()));
        network.points.push_back(point);
        network.points.back().source += firstSource;
    }

    void mergePoint(int index, const Point& later)
    {
        Point& point = network.points[static_cast<std::size_t>(index)];
        if (later.x) {
            if (point.x && (*point.x != *later.x || point.y != later.y))
                addChange(index, PointChange::Kind::Place, later);
            point.x = later.x;
            point.y = later.y;
        }
        point.surveyed = point.surveyed || later.surveyed;
        if (!later.declared) {
            // A list of coordinates makes nothing of a benchmark, nor of its height.
            if (later.height && !point.isBenchmark())
                mergeHeight(index, point, later);
            return;
        }
        if (later.height)
            mergeHeight(index, point, later);
        if (later.fixed && !point.fixed)
            addRole(index, point, PointChange::Kind::Held, later);
        else if (later.observed && !point.observed)
            addRole(index, point, PointChange::Kind::Observed, later);
        else if (!later.isBenchmark() && point.isBenchmark())
            addRole(index, point, PointChange::Kind::Released, later);
        point.fixed = later.fixed;
        point.observed = later.observed;
        point.constrained = later.constrained;
        point.declared = true;
        point.source = later.source + firstSource;
        point.line = later.line;
    }

    void mergeHeight(int index, Point& point, const Point& later)
    {
        if (point.height && *point.height != *later.height)
            addition.changes.push_back(
                {index, PointChange::Kind::Height, *point.height, *later.height, later.line});
        point.height = later.height;
    }

    /// What nobody has declared yet has no role that could change.
    void addRole(int index, const Point& point, PointChange::Kind kind, const Point& later)
    {
        if (point.declared)
            addChange(index, kind, later);
    }

    void addChange(int index, PointChange::Kind kind, const Point& later)
    {
        addition.changes.push_back({index, kind, 0.0, 0.0, later.line});
    }

    void addObservedHeights()
    {
        std::vector<ObservedHeights> groups = added.observedHeights;
        std::vector<bool> isDropped(network.points.size(), false);
        for (ObservedHeights& group : groups) {
            for (int& point : group.points) {
                point = places[static_cast<std::size_t>(point)];
                isDropped[static_cast<std::size_t>(point)] = true;
            }
        }
        // An earlier group has the points that are observed still, and by it.
        for (std::size_t i = 0; i < network.points.size(); ++i)
            isDropped[i] = isDropped[i] || !network.points[i].observed;
        network.observedHeights = keepObserved(network.observedHeights, isDropped);
        network.observedHeights.insert(network.observedHeights.end(), groups.begin(), groups.end());
    }

    void addSections()
    {
        QSet<SectionKey> known;
        known.reserve(static_cast<int>(network.sections.size()));
        for (const Section& section : network.sections)
            known.insert(makeSectionKey(section));
        for (Section section : added.sections) {
            section.from = places[static_cast<std::size_t>(section.from)];
            section.to = places[static_cast<std::size_t>(section.to)];
            section.source += firstSource;
            if (known.contains(makeSectionKey(section)))
                addition.repeatedSections.push_back(network.sections.size());
            network.sections.push_back(std::move(section));
        }
    }

    Network& network;
    const Network& added;
    NetworkAddition addition;
    int firstSource = 0;
    std::vector<int> places; // of the added points in the network
};

} // namespace

NetworkAddition addNetwork(Network& network, const Network& added)
{
    return Merger(network, added).merge();
}

} // namespace levelling
