#include "apps/desk/runs/SurveyNetwork.h"

#include <QSet>

namespace orvel::desk {

namespace {

levelling::Point makePoint(const QString& name, qint64 line)
{
    levelling::Point point;
    point.id = name;
    point.surveyed = true;
    point.line = line;
    return point;
}

} // namespace

levelling::Network makeSurveyNetwork(const tacheometry::FieldBookReading& reading)
{
    levelling::Network network;
    QSet<QString> known;
    const auto add = [&](const levelling::Point& point) {
        if (known.contains(point.id))
            return;
        known.insert(point.id);
        network.points.push_back(point);
    };
    for (const tacheometry::GivenPoint& given : reading.points) {
        levelling::Point point = makePoint(given.name, given.line);
        point.x = given.position.x;
        point.y = given.position.y;
        point.height = given.position.height;
        add(point);
    }
    for (const tacheometry::Setup& setup : reading.book.setups) {
        add(makePoint(setup.station, setup.line));
        for (const tacheometry::Sight& sight : setup.sights)
            add(makePoint(sight.point, sight.line));
    }
    return network;
}

} // namespace orvel::desk
