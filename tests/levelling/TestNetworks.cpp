#include "TestNetworks.h"

#include "levelling/GkfReader.h"

#include <QStringList>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>

using namespace levelling;

namespace orvel::test::networks {

Network sample(const QString& fileName)
{
    const GkfResult result = GkfReader::readFile(QStringLiteral(ORVEL_SAMPLES_DIR "/") + fileName);
    if (result.fatal || !result.problems.empty())
        QTest::qFail("the sample has problems", __FILE__, __LINE__);
    return result.network;
}

Builder& Builder::fixed(const QString& id, double height)
{
    Point& point = network.points[static_cast<std::size_t>(index(id))];
    point.fixed = true;
    point.height = height;
    return *this;
}

Builder& Builder::unknown(const QString& id)
{
    index(id);
    return *this;
}

Builder& Builder::section(const QString& from, const QString& to, double difference, double distance)
{
    Section section;
    section.from = index(from);
    section.to = index(to);
    section.difference = difference;
    section.distance = distance;
    section.sigma = std::sqrt(distance);
    network.sections.push_back(section);
    return *this;
}

int Builder::index(const QString& id)
{
    const int known = pointIndex(network, id);
    if (known >= 0)
        return known;
    Point point;
    point.id = id;
    point.declared = true;
    network.points.push_back(point);
    return static_cast<int>(network.points.size()) - 1;
}

int pointIndex(const Network& network, const QString& id)
{
    const auto found = std::find_if(network.points.begin(), network.points.end(),
                                    [&](const Point& point) { return point.id == id; });
    return found == network.points.end() ? -1 : static_cast<int>(found - network.points.begin());
}

QString ids(const Network& network, const std::vector<int>& points)
{
    QStringList names;
    for (const int point : points)
        names.append(network.points[static_cast<std::size_t>(point)].id);
    return names.join(QLatin1Char('-'));
}

Network random(unsigned seed, int pointCount, int sectionCount, int fixedCount)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> height(100.0, 200.0);
    std::uniform_real_distribution<double> length(0.2, 5.0);
    std::normal_distribution<double> noise(0.0, 0.003);
    std::uniform_int_distribution<int> point(0, pointCount - 1);

    Network network;
    std::vector<double> heights;
    for (int i = 0; i < pointCount; ++i) {
        heights.push_back(height(generator));
        Point added;
        added.id = QString::number(i);
        added.declared = true;
        added.fixed = i < fixedCount;
        if (added.fixed)
            added.height = heights.back();
        network.points.push_back(added);
    }
    while (static_cast<int>(network.sections.size()) < sectionCount) {
        Section section;
        section.from = point(generator);
        section.to = point(generator);
        if (section.from == section.to)
            continue;
        section.distance = length(generator);
        section.sigma = 3.0 * std::sqrt(*section.distance);
        section.difference = heights[static_cast<std::size_t>(section.to)] -
                             heights[static_cast<std::size_t>(section.from)] + noise(generator);
        network.sections.push_back(section);
    }
    return network;
}

Network grid(int side)
{
    Network network;
    const auto connect = [&network](int from, int to) {
        Section section;
        section.from = from;
        section.to = to;
        section.distance = 1.0;
        section.sigma = 1.0;
        network.sections.push_back(section);
    };
    network.points.resize(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int point = 0; point < side * side; ++point) {
        if (point % side + 1 < side)
            connect(point, point + 1);
        if (point + side < side * side)
            connect(point, point + side);
    }
    return network;
}

Network triangulation(int side, int fixedCount)
{
    Network network = grid(side);
    for (int point = 0; point < side * (side - 1); ++point) {
        if (point % side + 1 == side)
            continue;
        Section diagonal = network.sections.front();
        diagonal.from = point;
        diagonal.to = point + side + 1;
        network.sections.push_back(diagonal);
    }
    for (int point = 0; point < fixedCount; ++point) {
        network.points[static_cast<std::size_t>(point)].fixed = true;
        network.points[static_cast<std::size_t>(point)].height = 0.0;
    }
    return network;
}

} // namespace orvel::test::networks
