#include "SyntheticNetwork.h"

#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

using namespace levelling;

namespace orvel::test::networks {

namespace {

constexpr double kSigmaApriori = 3.0;

using Ends = std::pair<int, int>;

/// Pairs of neighbours on a square of that side: first those that keep all points together, then the others
/// mixed.
std::vector<Ends> neighbours(int pointCount, int side, std::mt19937& generator)
{
    std::vector<Ends> needed;
    std::vector<Ends> others;
    for (int point = 0; point < pointCount; ++point) {
        const bool hasRight = point % side + 1 < side && point + 1 < pointCount;
        const bool hasBelow = point + side < pointCount;
        if (hasRight)
            needed.emplace_back(point, point + 1);
        if (hasBelow)
            (point % side == 0 ? needed : others).emplace_back(point, point + side);
        if (hasRight && point + side + 1 < pointCount)
            others.emplace_back(point, point + side + 1);
    }
    std::shuffle(others.begin(), others.end(), generator);
    needed.insert(needed.end(), others.begin(), others.end());
    return needed;
}

} // namespace

Network synthetic(int pointCount, int sectionCount)
{
    std::mt19937 generator(20);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::uniform_real_distribution<double> length(0.6, 1.6);
    const int side = static_cast<int>(std::ceil(std::sqrt(pointCount)));

    Network network;
    network.parameters.sigmaApriori = kSigmaApriori;
    std::vector<double> heights;
    for (int i = 0; i < pointCount; ++i) {
        const int row = i / side;
        const double hills = 40.0 * std::sin(0.05 * (i % side)) * std::cos(0.07 * row);
        heights.push_back(200.0 + hills + noise(generator));
        Point point;
        point.id = QString::number(i + 1);
        point.declared = true;
        point.fixed = i % 1000 == 500 % pointCount;
        if (point.fixed)
            point.height = heights.back();
        network.points.push_back(point);
    }
    std::vector<Ends> ends = neighbours(pointCount, side, generator);
    ends.resize(std::min(ends.size(), static_cast<std::size_t>(sectionCount)));
    for (const Ends& pair : ends) {
        Section section;
        section.from = pair.first;
        section.to = pair.second;
        section.distance = length(generator);
        section.sigma = kSigmaApriori * std::sqrt(*section.distance);
        section.difference = heights[static_cast<std::size_t>(section.to)] -
                             heights[static_cast<std::size_t>(section.from)] +
                             section.sigma / 1000.0 * noise(generator);
        network.sections.push_back(section);
    }
    return network;
}

QByteArray toGkf(const Network& network)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("gama-local"));
    xml.writeStartElement(QStringLiteral("network"));
    xml.writeTextElement(QStringLiteral("description"), network.description);
    xml.writeEmptyElement(QStringLiteral("parameters"));
    xml.writeAttribute(QStringLiteral("sigma-apr"), QString::number(network.parameters.sigmaApriori));
    xml.writeStartElement(QStringLiteral("points-observations"));
    for (const Point& point : network.points) {
        xml.writeEmptyElement(QStringLiteral("point"));
        xml.writeAttribute(QStringLiteral("id"), point.id);
        if (point.height)
            xml.writeAttribute(QStringLiteral("z"), QString::number(*point.height, 'f', 5));
        xml.writeAttribute(point.fixed ? QStringLiteral("fix") : QStringLiteral("adj"), QStringLiteral("z"));
    }
    xml.writeStartElement(QStringLiteral("height-differences"));
    for (const Section& section : network.sections) {
        xml.writeEmptyElement(QStringLiteral("dh"));
        xml.writeAttribute(QStringLiteral("from"), network.points[static_cast<std::size_t>(section.from)].id);
        xml.writeAttribute(QStringLiteral("to"), network.points[static_cast<std::size_t>(section.to)].id);
        xml.writeAttribute(QStringLiteral("val"), QString::number(section.difference, 'f', 5));
        xml.writeAttribute(QStringLiteral("dist"), QString::number(section.distance.value_or(1.0), 'f', 3));
    }
    xml.writeEndDocument();
    return text;
}

} // namespace orvel::test::networks
