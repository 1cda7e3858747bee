#pragma once

#include "tacheometry/FieldBook.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// A point of a plan: it has x and y.
struct PlanPoint
{
    QString name;
    bool isGiven = false; ///< its coordinates are given, not computed
    tacheometry::Position position;
    std::optional<double> sigma; ///< of the adjusted height, mm
};

/// A measured section between two points of a plan.
struct PlanSection
{
    QString name;
    int from = 0; ///< indices of the points
    int to = 0;
    double difference = 0.0;      ///< m
    std::optional<double> length; ///< km
};

/// What of a network has coordinates.
struct Plan
{
    std::vector<PlanPoint> points;
    std::vector<PlanSection> sections;
};

/// A plan as files of other programs.
namespace planexport {

/// GeoJSON (RFC 7946) with a feature on each line: points, and sections as lines. Positions are east, north
/// and height in m of the plan's own system, as the member "coordinateReferenceSystem" says: RFC 7946
/// allows others than WGS 84 by arrangement (section 4).
QByteArray toGeoJson(const Plan& plan);

/// A drawing in ASCII DXF of release 12, which every program reads: points, their names, their heights and
/// sections, each in a layer. Characters beyond ASCII are written as "\U+0416", which drawing programs show
/// as the character.
QByteArray toDxf(const Plan& plan);

} // namespace planexport

} // namespace orvel::desk
