#include "tacheometry/Angles.h"
#include "tacheometry/PolarReduction.h"

#include <QtTest>

#include <cmath>

using namespace tacheometry;

/// Slope distances and zenith angles become horizontal distances and rises.
class TestPolarReduction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void levelSightRisesByCurvatureAndRefraction();
    void agreesWithGeometryOnTheSphere_data();
    void agreesWithGeometryOnTheSphere();
    void reducedDistanceGivesTheSameRise();
};

namespace {

struct Place
{
    double horizontal;
    double rise;
};

/// The same without series: the ray leaves with the measured zenith angle, bends with the radius R/k, and
/// ends where its arc is as long as the distance; the target lies in the plane through the Earth's centre.
Place traceRay(double slope, double zenith)
{
    const double curvature = polar::kRefraction / polar::kEarthRadius;
    constexpr int steps = 20000;
    const double step = slope / steps;
    double along = 0.0;
    double up = 0.0;
    double elevation = angles::kPi / 2.0 - zenith;
    for (int i = 0; i < steps; ++i) {
        // The bend follows gravity: what is horizontal counts.
        const double middle = elevation - curvature * step * std::sin(zenith) / 2.0;
        along += step * std::cos(middle);
        up += step * std::sin(middle);
        elevation -= curvature * step * std::sin(zenith);
    }
    // The difference of two large numbers, as the quotient that keeps its digits.
    const double radius = polar::kEarthRadius;
    const double rise =
        (up * (2.0 * radius + up) + along * along) / (std::hypot(along, radius + up) + radius);
    return {radius * std::atan2(along, radius + up), rise};
}

} // namespace

void TestPolarReduction::levelSightRisesByCurvatureAndRefraction()
{
    // Curvature alone is 0.0785 m at 1 km (textbooks have C = 0.0785 d², d in km); refraction takes 13 % of
    // it.
    const polar::Reduced reduced = polar::reduceSlope(1000.0, angles::kPi / 2.0);
    QVERIFY(std::abs(reduced.rise - 0.87 * 0.0785) < 5e-5);
    QVERIFY(std::abs(reduced.horizontal - 1000.0) < 1e-9);
}

void TestPolarReduction::agreesWithGeometryOnTheSphere_data()
{
    QTest::addColumn<double>("slope");
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("tolerance");
    QTest::newRow("near") << 24.622 << 89.23 << 1e-7;
    QTest::newRow("near and steep") << 15.487 << 126.36 << 1e-7;
    QTest::newRow("far") << 1000.0 << 88.0 << 1e-5;
    QTest::newRow("far and up") << 1000.0 << 70.0 << 3e-5;
    QTest::newRow("far and down") << 2000.0 << 105.0 << 2e-4;
}

void TestPolarReduction::agreesWithGeometryOnTheSphere()
{
    QFETCH(double, slope);
    QFETCH(double, degrees);
    QFETCH(double, tolerance);
    const double zenith = degrees * angles::kPi / 180.0;
    const polar::Reduced reduced = polar::reduceSlope(slope, zenith);
    const Place place = traceRay(slope, zenith);
    QVERIFY2(std::abs(reduced.horizontal - place.horizontal) < tolerance,
             qPrintable(QString::number(reduced.horizontal - place.horizontal)));
    QVERIFY2(std::abs(reduced.rise - place.rise) < tolerance,
             qPrintable(QString::number(reduced.rise - place.rise)));
}

void TestPolarReduction::reducedDistanceGivesTheSameRise()
{
    const double zenith = 85.0 * angles::kPi / 180.0;
    const polar::Reduced reduced = polar::reduceSlope(300.0, zenith);
    QVERIFY(std::abs(polar::riseAt(reduced.horizontal, zenith) - reduced.rise) < 2e-4);
}

QTEST_APPLESS_MAIN(TestPolarReduction)
#include "tst_polarreduction.moc"
