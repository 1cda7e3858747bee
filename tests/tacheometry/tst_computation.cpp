#include "tacheometry/Angles.h"
#include "tacheometry/Computation.h"
#include "tacheometry/PolarReduction.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>

using namespace tacheometry;

/// Coordinates of all points that a field book determines, and what its measurements say of each other.
class TestComputation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointIsDeterminedByOrientationDistanceAndRise();
    void orientationIsTheMeanOverGivenPoints();
    void directionThatContradictsTheOthersIsExcluded();
    void orientationOfTheInstrumentHoldsAndIsChecked();
    void orientationFromTheInstrumentsOwnCoordinates();
    void twoFacesAreOneMeasurement();
    void secondFaceAloneIsTurned();
    void offsetsMoveThePoint();
    void scaleStretchesCoordinatesOnly();
    void stationMayBeAPointOfAnEarlierSetup();
    void setupsWaitForLaterOnes();
    void furtherMeasurementsAreChecks();
    void givenHeightStandsAndIsChecked();
    void heightsNeedStationAndInstrumentHeights();
    void horizontalDistanceIsTakenAsItIs();
    void whatGivesNoPointIsNamed();
    void setupsThatCannotBeComputedAreNamed();
    void longDistancesAreNamed();
    void instrumentsOwnCoordinatesAreCompared();
    void chainAgainstItsOrderIsLinear();
    void stopLeavesNothing();
};

namespace {

constexpr double kDegree = angles::kPi / 180.0;

Sight makeSight(const char* point, double direction, double zenith, double distance)
{
    Sight sight;
    sight.point = QString::fromUtf8(point);
    sight.direction = direction * kDegree;
    sight.zenith = zenith * kDegree;
    sight.slopeDistance = distance;
    return sight;
}

Sight makeDirection(const char* point, double direction)
{
    Sight sight;
    sight.point = QString::fromUtf8(point);
    sight.direction = direction * kDegree;
    return sight;
}

Setup makeSetup(const char* station, const std::vector<Sight>& sights)
{
    Setup setup;
    setup.station = QString::fromUtf8(station);
    setup.instrumentHeight = 1.5;
    setup.sights = sights;
    return setup;
}

QHash<QString, Position> makeGiven()
{
    return {{QStringLiteral("S"), {100.0, 200.0, 50.0}},
            {QStringLiteral("N"), {200.0, 200.0, std::nullopt}},
            {QStringLiteral("E"), {100.0, 300.0, 52.0}}};
}

Computation computeOne(const Setup& setup)
{
    return compute(FieldBook{{setup}}, makeGiven());
}

bool isNear(const std::optional<double>& value, double expected, double tolerance = 1e-6)
{
    const bool result = value && std::abs(*value - expected) <= tolerance;
    if (!result)
        qWarning("%.7f, expected %.7f", value.value_or(std::nan("")), expected);
    return result;
}

} // namespace

void TestComputation::pointIsDeterminedByOrientationDistanceAndRise()
{
    Sight target = makeSight("P", 130.0, 80.0, 200.0);
    target.targetHeight = 1.3;
    const Computation computation = computeOne(makeSetup("S", {makeDirection("N", 10.0), target}));
    QCOMPARE(computation.points.size(), std::size_t(1));
    const ComputedPoint& point = computation.points[0];
    QCOMPARE(point.name, QStringLiteral("P"));
    // Azimuth 120°; 200 m at a zenith angle of 80° are 196.9616 m flat and 34.7296 m up, less 1.0 mm and more
    // 2.6 mm for the curved Earth.
    QVERIFY(isNear(point.distance, 196.96055, 1e-5));
    QVERIFY(isNear(point.position.x, 100.0 - 196.96055 * 0.5, 1e-5));
    QVERIFY(isNear(point.position.y, 200.0 + 196.96055 * std::sqrt(0.75), 1e-5));
    QVERIFY(isNear(point.position.height, 50.0 + 1.5 + 34.72964 + 0.00265 - 1.3, 2e-5));
    QCOMPARE(computation.setups[0].source, OrientationSource::GivenPoints);
    QVERIFY(isNear(computation.setups[0].orientation, 350.0 * kDegree, 1e-12));
    QVERIFY(!computation.setups[0].orientationSigma);
    QVERIFY(computation.unused.empty());
}

void TestComputation::orientationIsTheMeanOverGivenPoints()
{
    // 359.99° and 0.01° apart: the mean lies on the other side of zero.
    const Computation computation = computeOne(makeSetup(
        "S", {makeDirection("N", 0.01), makeDirection("E", 89.98), makeSight("P", 0.0, 90.0, 10.0)}));
    const SetupResult& setup = computation.setups[0];
    QCOMPARE(setup.orientationSights.size(), std::size_t(2));
    QVERIFY(isNear(setup.orientation, 0.005 * kDegree, 1e-12));
    QVERIFY(isNear(setup.orientationSights[0].deviation, -0.015 * kDegree, 1e-12));
    QVERIFY(isNear(setup.orientationSights[1].deviation, 0.015 * kDegree, 1e-12));
    QVERIFY(isNear(setup.orientationSights[0].distance, 100.0));
    // Two deviations of 54": the mean of two has 54" for its standard deviation.
    QVERIFY(isNear(setup.orientationSigma, 0.015 * kDegree, 1e-12));
}

void TestComputation::directionThatContradictsTheOthersIsExcluded()
{
    QHash<QString, Position> given = makeGiven();
    given.insert(QStringLiteral("W"), {100.0, 100.0, std::nullopt});
    const FieldBook three{
        {makeSetup("S", {makeDirection("N", 0.0), makeDirection("E", 91.0), makeDirection("W", 270.002)})}};
    const SetupResult setup = compute(three, given).setups[0];
    QVERIFY(!setup.orientationSights[0].isExcluded);
    QVERIFY(setup.orientationSights[1].isExcluded);
    QVERIFY(!setup.orientationSights[2].isExcluded);
    QVERIFY(isNear(setup.orientation, 359.999 * kDegree, 1e-12));
    QVERIFY(isNear(setup.orientationSights[1].deviation, -0.999 * kDegree, 1e-12));
    QVERIFY(isNear(setup.orientationSigma, 0.001 * kDegree, 1e-12));
    // Two cannot tell which of them is wrong.
    const FieldBook two{{makeSetup("S", {makeDirection("N", 0.0), makeDirection("E", 91.0)})}};
    const SetupResult open = compute(two, given).setups[0];
    QVERIFY(!open.orientationSights[0].isExcluded);
    QVERIFY(!open.orientationSights[1].isExcluded);
    QVERIFY(isNear(open.orientation, 359.5 * kDegree, 1e-12));
}

void TestComputation::orientationOfTheInstrumentHoldsAndIsChecked()
{
    Setup setup = makeSetup("S", {makeDirection("N", 0.01), makeSight("P", 90.0, 90.0, 10.0)});
    setup.orientation = 0.0;
    const Computation computation = computeOne(setup);
    QCOMPARE(computation.setups[0].source, OrientationSource::Instrument);
    QCOMPARE(computation.setups[0].orientation, 0.0);
    QVERIFY(isNear(computation.setups[0].findWorst()->deviation, -0.01 * kDegree, 1e-12));
    QVERIFY(isNear(computation.points[0].position.x, 100.0));
    QVERIFY(isNear(computation.points[0].position.y, 210.0));
}

void TestComputation::orientationFromTheInstrumentsOwnCoordinates()
{
    Sight far = makeSight("P", 80.0, 90.0, 100.0);
    far.recorded = {100.0, 300.0, 51.5};
    Sight near = makeSight("Q", 80.0, 90.0, 1.0);
    near.recorded = {100.001, 201.0, 51.5};
    const Computation computation = computeOne(makeSetup("S", {far, near}));
    QCOMPARE(computation.setups[0].source, OrientationSource::RecordedTargets);
    // The far point counts 10,000 times as much.
    QVERIFY(isNear(computation.setups[0].orientation, 10.0 * kDegree, 2e-7));
}

void TestComputation::twoFacesAreOneMeasurement()
{
    // Collimation 20", index error -10", the distance of the second face 4 mm longer.
    const double second = 1.0 / 3600.0;
    const Computation computation = computeOne(makeSetup(
        "S", {makeDirection("N", 0.0), makeSight("P", 90.0 - 20.0 * second, 80.0 - 10.0 * second, 100.0),
              makeSight("P", 270.0 + 20.0 * second, 280.0 - 10.0 * second, 100.004)}));
    const SetupResult& setup = computation.setups[0];
    QCOMPARE(setup.pairs.size(), std::size_t(1));
    QCOMPARE(setup.pairs[0].first, 1);
    QCOMPARE(setup.pairs[0].second, 2);
    QVERIFY(isNear(setup.pairs[0].collimation, 20.0 * second * kDegree, 1e-12));
    QVERIFY(isNear(setup.pairs[0].index, -10.0 * second * kDegree, 1e-12));
    QVERIFY(isNear(setup.pairs[0].distanceDifference, 0.004));
    QVERIFY(isNear(setup.collimation, 20.0 * second * kDegree, 1e-12));
    QVERIFY(isNear(setup.index, -10.0 * second * kDegree, 1e-12));
    QCOMPARE(computation.points.size(), std::size_t(1));
    QVERIFY(computation.checks.empty());
    const polar::Reduced reduced = polar::reduceSlope(100.002, 80.0 * kDegree);
    QVERIFY(isNear(computation.points[0].position.y, 200.0 + reduced.horizontal, 1e-9));
    QVERIFY(isNear(computation.points[0].position.x, 100.0, 1e-9));
    QVERIFY(isNear(computation.points[0].position.height, 51.5 + reduced.rise, 1e-9));
}

void TestComputation::secondFaceAloneIsTurned()
{
    const Computation computation =
        computeOne(makeSetup("S", {makeDirection("N", 0.0), makeSight("P", 270.0, 280.0, 100.0)}));
    const polar::Reduced reduced = polar::reduceSlope(100.0, 80.0 * kDegree);
    QVERIFY(isNear(computation.points[0].position.y, 200.0 + reduced.horizontal, 1e-9));
    QVERIFY(isNear(computation.points[0].position.height, 51.5 + reduced.rise, 1e-9));
    QVERIFY(computation.setups[0].pairs.empty());
}

void TestComputation::offsetsMoveThePoint()
{
    Sight target = makeSight("P", 90.0, 90.0, 10.0);
    target.beyond = 0.25;
    target.right = 0.1;
    const Computation computation = computeOne(makeSetup("S", {makeDirection("N", 0.0), target}));
    QVERIFY(isNear(computation.points[0].position.y, 210.25));
    // To the right of a line to the east is south.
    QVERIFY(isNear(computation.points[0].position.x, 99.9));
}

void TestComputation::scaleStretchesCoordinatesOnly()
{
    Setup setup = makeSetup("S", {makeDirection("N", 0.0), makeSight("P", 90.0, 80.0, 100.0)});
    setup.scale = 1.001;
    const Computation computation = computeOne(setup);
    const polar::Reduced reduced = polar::reduceSlope(100.0, 80.0 * kDegree);
    QVERIFY(isNear(computation.points[0].position.y, 200.0 + 1.001 * reduced.horizontal, 1e-9));
    QVERIFY(isNear(computation.points[0].position.height, 51.5 + reduced.rise, 1e-9));
}

void TestComputation::stationMayBeAPointOfAnEarlierSetup()
{
    const FieldBook book{{makeSetup("S", {makeDirection("N", 0.0), makeSight("T", 90.0, 90.0, 100.0)}),
                          makeSetup("T", {makeDirection("S", 0.0), makeSight("P", 270.0, 90.0, 50.0)})}};
    const Computation computation = compute(
        book, {{QStringLiteral("S"), {0.0, 0.0, 10.0}}, {QStringLiteral("N"), {500.0, 0.0, std::nullopt}}});
    const SetupResult& second = computation.setups[1];
    QCOMPARE(second.failure, SetupFailure::None);
    QVERIFY(second.isStationComputed);
    QVERIFY(!computation.setups[0].isStationComputed);
    // From T looking west to S, 270° to the right is south.
    QVERIFY(isNear(computation.points[1].position.x, -50.0, 1e-5));
    QVERIFY(isNear(computation.points[1].position.y, 100.0, 1e-5));
    QVERIFY(isNear(computation.points[1].position.height, 13.0, 2e-3));
}

void TestComputation::setupsWaitForLaterOnes()
{
    const FieldBook book{{makeSetup("T", {makeDirection("U", 0.0), makeSight("P", 90.0, 90.0, 50.0)}),
                          makeSetup("S", {makeDirection("N", 0.0), makeSight("T", 90.0, 90.0, 100.0),
                                          makeSight("U", 45.0, 90.0, 100.0)})}};
    const Computation computation = compute(book, makeGiven());
    QCOMPARE(computation.setups[0].failure, SetupFailure::None);
    QCOMPARE(computation.setups[0].source, OrientationSource::ComputedPoints);
    QCOMPARE(computation.points.size(), std::size_t(3));
    QCOMPARE(computation.points[2].name, QStringLiteral("P"));
}

void TestComputation::furtherMeasurementsAreChecks()
{
    const Computation computation =
        computeOne(makeSetup("S", {makeDirection("N", 0.0), makeSight("P", 90.0, 90.0, 10.0),
                                   makeSight("Q", 90.0, 90.0, 10.0), makeSight("P", 90.0, 90.0, 10.03)}));
    QCOMPARE(computation.points.size(), std::size_t(2));
    QCOMPARE(computation.checks.size(), std::size_t(1));
    const Check& check = computation.checks[0];
    QCOMPARE(check.name, QStringLiteral("P"));
    QCOMPARE(check.sight.sight, 3);
    QCOMPARE(check.origin.sight, 1);
    QVERIFY(!check.isGiven);
    QVERIFY(isNear(check.dy, 0.03));
    QVERIFY(isNear(check.dx, 0.0));
    QVERIFY(isNear(check.getPlan(), 0.03));
    QVERIFY(isNear(check.dh, 0.0));
    QVERIFY(isNear(computation.points[0].position.y, 210.0));
}

void TestComputation::givenHeightStandsAndIsChecked()
{
    QHash<QString, Position> given = makeGiven();
    given.insert(QStringLiteral("BM"), {std::nullopt, std::nullopt, 51.4});
    const FieldBook book{
        {makeSetup("S", {makeSight("N", 0.0, 90.0, 100.02), makeSight("E", 90.0, 90.0, 100.0),
                         makeSight("BM", 45.0, 90.0, 10.0)})}};
    const Computation computation = compute(book, given);
    QCOMPARE(computation.checks.size(), std::size_t(3));
    QVERIFY(computation.checks[0].isGiven);
    QVERIFY(isNear(computation.checks[0].dx, 0.02, 1e-5));
    QVERIFY(!computation.checks[0].dh);
    QVERIFY(isNear(computation.checks[1].dh, -0.5, 1e-3));
    QVERIFY(isNear(computation.checks[2].dh, 0.1, 1e-4));
    QCOMPARE(computation.checks[2].getPlan(), 0.0);
    // N gets its height, BM its place.
    QCOMPARE(computation.points.size(), std::size_t(2));
    QVERIFY(isNear(computation.points[0].position.x, 200.0));
    QVERIFY(isNear(computation.points[0].position.height, 51.5, 1e-3));
    QVERIFY(isNear(computation.points[1].position.height, 51.4));
    QVERIFY(computation.points[1].position.hasPlan());
}

void TestComputation::heightsNeedStationAndInstrumentHeights()
{
    Setup setup = makeSetup("S", {makeDirection("N", 0.0), makeSight("P", 90.0, 90.0, 10.0)});
    setup.instrumentHeight.reset();
    const Computation computation = computeOne(setup);
    QVERIFY(computation.points[0].position.hasPlan());
    QVERIFY(!computation.points[0].position.height);
}

void TestComputation::horizontalDistanceIsTakenAsItIs()
{
    Sight flat = makeSight("P", 90.0, 45.0, 1.0);
    flat.slopeDistance.reset();
    flat.horizontalDistance = 100.0;
    Sight withoutZenith = flat;
    withoutZenith.point = QStringLiteral("Q");
    withoutZenith.zenith.reset();
    Sight up = flat;
    up.point = QStringLiteral("R");
    up.zenith = 0.0;
    const Computation computation =
        computeOne(makeSetup("S", {makeDirection("N", 0.0), flat, withoutZenith, up}));
    QVERIFY(isNear(computation.points[0].position.y, 300.0));
    QVERIFY(isNear(computation.points[0].position.height, 151.50068, 1e-5));
    QVERIFY(isNear(computation.points[1].position.y, 300.0));
    QVERIFY(!computation.points[1].position.height);
    QVERIFY(!computation.points[2].position.height);
}

void TestComputation::whatGivesNoPointIsNamed()
{
    Sight noZenith = makeSight("P", 10.0, 90.0, 10.0);
    noZenith.zenith.reset();
    Sight noDirection = makeSight("Q", 10.0, 90.0, 10.0);
    noDirection.direction.reset();
    const Computation computation = computeOne(
        makeSetup("S", {makeDirection("N", 0.0), noZenith, noDirection, makeDirection("R", 20.0)}));
    QVERIFY(computation.points.empty());
    QCOMPARE(computation.unused.size(), std::size_t(3));
    QCOMPARE(computation.unused[0].failure, SightFailure::NoZenith);
    QCOMPARE(computation.unused[0].sight.sight, 1);
    QCOMPARE(computation.unused[1].failure, SightFailure::NoDirection);
    QCOMPARE(computation.unused[2].failure, SightFailure::NoDistance);
}

void TestComputation::setupsThatCannotBeComputedAreNamed()
{
    const FieldBook book{{makeSetup("X", {makeSight("P", 0.0, 90.0, 10.0)}),
                          makeSetup("S", {makeSight("Q", 0.0, 90.0, 10.0)}),
                          // The direction to the station itself gives no orientation.
                          makeSetup("E", {makeSight("E", 0.0, 90.0, 10.0)})}};
    const Computation computation = compute(book, makeGiven());
    QCOMPARE(computation.setups[0].failure, SetupFailure::NoCoordinates);
    QCOMPARE(computation.setups[1].failure, SetupFailure::NoOrientation);
    QCOMPARE(computation.setups[2].failure, SetupFailure::NoOrientation);
    QVERIFY(computation.points.empty());
}

void TestComputation::longDistancesAreNamed()
{
    Limits limits;
    limits.distance = 100.0;
    const FieldBook book{{makeSetup("S", {makeDirection("N", 0.0), makeSight("P", 90.0, 90.0, 100.0),
                                          makeSight("Q", 90.0, 90.0, 100.1)})}};
    const Computation computation = compute(book, makeGiven(), limits);
    QCOMPARE(computation.longDistances.size(), std::size_t(1));
    QCOMPARE(computation.longDistances[0].sight.sight, 2);
    QVERIFY(isNear(computation.longDistances[0].distance, 100.1));
}

void TestComputation::instrumentsOwnCoordinatesAreCompared()
{
    Sight target = makeSight("P", 90.0, 90.0, 10.0);
    target.recorded = {99.999, 210.002, 51.503};
    const Computation computation = computeOne(makeSetup("S", {makeDirection("N", 0.0), target}));
    QCOMPARE(computation.recorded.size(), std::size_t(1));
    QVERIFY(isNear(computation.recorded[0].dx, 0.001));
    QVERIFY(isNear(computation.recorded[0].dy, -0.002));
    QVERIFY(isNear(computation.recorded[0].dh, -0.003, 1e-5));
    QVERIFY(isNear(computation.recorded[0].getLargest(), 0.003, 1e-5));
}

void TestComputation::chainAgainstItsOrderIsLinear()
{
    // Each set-up stands on the point that the one behind it in the book measures.
    const auto measure = [](int count) {
        FieldBook book;
        for (int i = count; i > 0; --i) {
            const QByteArray own = QByteArray::number(i);
            const QByteArray before = QByteArray::number(i - 1);
            const QByteArray next = QByteArray::number(i + 1);
            book.setups.push_back(makeSetup(own.constData(), {makeDirection(before.constData(), 180.0),
                                                              makeSight(next.constData(), 0.0, 90.0, 10.0)}));
        }
        const QHash<QString, Position> given{{QStringLiteral("0"), {0.0, 0.0, 0.0}},
                                             {QStringLiteral("1"), {10.0, 0.0, 0.0}}};
        QElapsedTimer timer;
        timer.start();
        const Computation computation = compute(book, given);
        const qint64 elapsed = timer.nsecsElapsed();
        if (computation.points.size() != static_cast<std::size_t>(count))
            qFatal("all points are determined");
        return elapsed;
    };
    measure(1000);
    const qint64 small = measure(10000);
    const qint64 large = measure(100000);
    // Quadratic time would be a hundred times as much.
    QVERIFY2(large < 40 * small, qPrintable(QStringLiteral("%1 ns, %2 ns").arg(small).arg(large)));
}

void TestComputation::stopLeavesNothing()
{
    std::vector<Sight> sights{makeDirection("N", 0.0)};
    for (int i = 0; i < 20000; ++i)
        sights.push_back(makeSight(QByteArray::number(i).constData(), 90.0, 90.0, 10.0));
    int questions = 0;
    const Computation computation = compute(FieldBook{{makeSetup("S", sights)}}, makeGiven(), Limits(),
                                            [&questions] { return ++questions == 3; });
    QVERIFY(computation.isStopped);
    QCOMPARE(questions, 3);
    QVERIFY(computation.points.empty());
    QVERIFY(computation.setups.empty());
}

QTEST_APPLESS_MAIN(TestComputation)
#include "tst_computation.moc"
