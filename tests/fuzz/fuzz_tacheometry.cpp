// Files of total stations: what is read is a field book as the computation needs it, or one failure and
// nothing else; and what is computed are numbers. Both formats may stand in one input, as in a file that was
// not one.

#include "tacheometry/Angles.h"
#include "tacheometry/Computation.h"
#include "tacheometry/GsiTotalStationReader.h"
#include "tacheometry/M5TotalStationReader.h"
#include "tests/fuzz/Finding.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>

using namespace tacheometry;

namespace {

bool isNumber(const std::optional<double>& number)
{
    return std::isfinite(number.value_or(0.0));
}

bool isAngle(const std::optional<double>& angle)
{
    return !angle || (*angle >= 0.0 && *angle < angles::kFullCircle);
}

void checkPosition(const Position& position)
{
    mustHold(position.x.has_value() == position.y.has_value(), "x and y are there together");
    mustHold(isNumber(position.x) && isNumber(position.y) && isNumber(position.height),
             "coordinates are numbers");
}

void checkSight(const Sight& sight)
{
    mustHold(!sight.point.isEmpty(), "a target has a name");
    mustHold(isAngle(sight.direction) && isAngle(sight.zenith), "readings lie in the circle");
    mustHold(sight.direction || sight.hasDistance(), "a sight has readings");
    mustHold(sight.slopeDistance.value_or(1.0) > 0.0 && sight.horizontalDistance.value_or(1.0) > 0.0,
             "distances are positive");
    mustHold(isNumber(sight.slopeDistance) && isNumber(sight.horizontalDistance), "distances are numbers");
    mustHold(std::isfinite(sight.targetHeight) && std::isfinite(sight.beyond) && std::isfinite(sight.right),
             "heights and offsets are numbers");
    checkPosition(sight.recorded);
}

void checkReading(const FieldBookReading& reading)
{
    if (reading.fatal) {
        mustHold(reading.book.isEmpty() && reading.points.empty() && reading.problems.empty(),
                 "a failure comes alone");
        return;
    }
    for (const Setup& setup : reading.book.setups) {
        mustHold(!setup.station.isEmpty(), "a station has a name");
        mustHold(isNumber(setup.instrumentHeight) && isNumber(setup.orientation), "a set-up has numbers");
        mustHold(setup.scale > 0.0 && std::isfinite(setup.scale), "a scale is positive");
        std::for_each(setup.sights.begin(), setup.sights.end(), checkSight);
    }
    for (const GivenPoint& point : reading.points) {
        mustHold(!point.name.isEmpty(), "a point has a name");
        checkPosition(point.position);
    }
    mustHold(std::is_sorted(reading.problems.begin(), reading.problems.end(),
                            [](const Problem& a, const Problem& b) { return a.line < b.line; }),
             "the problems are in the order of their lines");
}

void computeAll(const FieldBookReading& reading)
{
    QHash<QString, Position> given;
    for (const GivenPoint& point : reading.points)
        given.insert(point.name, point.position);
    const Computation computation = compute(reading.book, given);
    mustHold(computation.setups.size() == reading.book.setups.size(), "each set-up has its result");
    for (const SetupResult& setup : computation.setups)
        mustHold(std::isfinite(setup.orientation) && isNumber(setup.orientationSigma),
                 "orientations are numbers");
    for (const ComputedPoint& point : computation.points) {
        mustHold(point.position.hasPlan(), "a computed point has a place");
        checkPosition(point.position);
    }
    for (const Check& check : computation.checks)
        mustHold(std::isfinite(check.getPlan()) && isNumber(check.dh), "differences are numbers");
    for (const RecordedDifference& difference : computation.recorded)
        mustHold(std::isfinite(difference.getLargest()), "differences are numbers");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const auto read : {&m5totalstation::read, &gsitotalstation::read}) {
        QBuffer buffer(&content);
        buffer.open(QIODevice::ReadOnly);
        const FieldBookReading reading = read(buffer, {});
        checkReading(reading);
        computeAll(reading);
    }
    return 0;
}
