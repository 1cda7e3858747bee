#include "tacheometry/Angles.h"
#include "tacheometry/Computation.h"
#include "tests/tacheometry/FieldFiles.h"

#include <QtTest>

#include <cmath>

using namespace tacheometry;
using namespace orvel::test;

/// Published examples with their results, from the words of a file to the points.
class TestWorkedExamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tacheometricBook();
    void totalStationInFeet();
    void azimuthBetweenCoordinates();
};

namespace {

constexpr double kFoot = 0.3048;
constexpr double kMinute = angles::kPi / (180.0 * 60.0);

QByteArray word(const QByteArray& head, int value)
{
    return ' ' + head + (value < 0 ? '-' : '+') + QByteArray::number(std::abs(value)).rightJustified(8, '0');
}

/// A word with an angle of whole degrees, minutes and seconds.
QByteArray angleWord(const QByteArray& index, int degrees, int minutes, int seconds = 0)
{
    return word(index + ".104", degrees * 100000 + minutes * 1000 + seconds * 10);
}

QByteArray block(const QByteArray& point, const QByteArray& words)
{
    return "110001+" + point.rightJustified(8, '0') + words + '\n';
}

Computation computeAll(const FieldBookReading& reading)
{
    QHash<QString, Position> given;
    for (const GivenPoint& point : reading.points)
        given.insert(point.name, point.position);
    return compute(reading.book, given);
}

double heightOf(const Computation& computation, const char* name)
{
    for (const ComputedPoint& point : computation.points) {
        if (point.name == QLatin1String(name))
            return point.position.height.value_or(std::nan(""));
    }
    return std::nan("");
}

double distanceOf(const Computation& computation, const char* name)
{
    for (const ComputedPoint& point : computation.points) {
        if (point.name == QLatin1String(name))
            return point.distance;
    }
    return std::nan("");
}

bool isNear(double value, double expected, double tolerance)
{
    const bool result = std::abs(value - expected) <= tolerance;
    if (!result)
        qWarning("%.5f, expected %.5f", value, expected);
    return result;
}

} // namespace

void TestWorkedExamples::tacheometricBook()
{
    // Two stations with eight points: studopedia.ru, "Журнал тахеометрической съемки", 13_148092. Readings of
    // the vertical circle are angles of slope there, those of the points corrected by the zero M0; the points
    // have no names, and the stations no coordinates: I stands at the origin here, II to the north of it.
    const auto sight = [](const char* name, int degrees, int minutes, int slope, int distance, int target) {
        const int zenith = 90 * 60 - slope;
        return block(name, angleWord("21", degrees, minutes) + angleWord("22", zenith / 60, zenith % 60) +
                               word("32..00", distance * 10) + word("87..10", target * 10));
    };
    const FieldBookReading reading = readGsi(
        block("I", word("84..10", 0) + word("85..10", 0) + word("86..10", 43090) + word("88..10", 1450)) +
        block("II", word("81..10", 0) + word("82..10", 200000) + word("83..10", 37550)) +
        // Circle left -1°26', right +1°24': a slope of -1°25'.
        block("II", angleWord("21", 0, 0) + angleWord("22", 91, 26)) +
        block("II", angleWord("21", 180, 0) + angleWord("22", 268, 36)) + sight("1", 59, 2, -27, 17599, 145) +
        sight("2", 127, 41, -56, 14096, 145) + sight("3", 205, 30, -111, 6393, 145) +
        sight("4", 307, 42, -138, 11781, 250) +
        block("II",
              word("84..10", 0) + word("85..10", 200000) + word("86..10", 37550) + word("88..10", 1420)) +
        block("III", word("81..10", 0) + word("82..10", 400000)) +
        block("III", angleWord("21", 0, 0) + angleWord("22", 89, 37)) +
        block("III", angleWord("21", 180, 0) + angleWord("22", 270, 23)) + sight("5", 44, 0, 19, 8400, 142) +
        sight("6", 192, 32, 53, 7598, 142) + sight("7", 239, 17, 24, 16399, 142) +
        sight("8", 299, 1, 140, 10183, 142));
    QCOMPARE(describe(reading.problems), QStringList());
    const Computation computation = computeAll(reading);
    QCOMPARE(computation.setups.size(), std::size_t(2));
    // M0 of the stations is -1' and 0: that of a zenith angle has the other sign.
    QVERIFY(isNear(computation.setups[0].index / kMinute, 1.0, 1e-6));
    QVERIFY(isNear(computation.setups[1].index / kMinute, 0.0, 1e-6));
    // The book has centimetres, and takes the Earth for a plane: up to 2.1 mm at 176 m.
    constexpr double tolerance = 0.0075;
    QVERIFY(isNear(heightOf(computation, "1"), 41.71, tolerance));
    QVERIFY(isNear(heightOf(computation, "2"), 40.79, tolerance));
    QVERIFY(isNear(heightOf(computation, "3"), 41.03, tolerance));
    QVERIFY(isNear(heightOf(computation, "4"), 37.31, tolerance));
    QVERIFY(isNear(heightOf(computation, "5"), 38.01, tolerance));
    QVERIFY(isNear(heightOf(computation, "6"), 38.72, tolerance));
    QVERIFY(isNear(heightOf(computation, "7"), 38.69, tolerance));
    QVERIFY(isNear(heightOf(computation, "8"), 41.70, tolerance));
}

void TestWorkedExamples::totalStationInFeet()
{
    // J. Mahun, Open Access Surveying Library, Elevations, C-4, problem 1: slope distances, vertical angles
    // 4°24'10", -6°00'25" and -2°58'30", instrument 5.41 ft over Q and reflector 5.64 ft over the points.
    // Which way is north is not told there.
    const QByteArray reflector = word("87..11", 5640);
    const FieldBookReading reading = readGsi(
        block("Q", word("84..11", 0) + word("85..11", 0) + word("86..11", 745390) + word("88..11", 5410)) +
        block("NORTH", word("81..11", 0) + word("82..11", 500000)) + block("NORTH", angleWord("21", 0, 0)) +
        block("101",
              angleWord("21", 0, 0) + angleWord("22", 85, 35, 50) + word("31..01", 145250) + reflector) +
        block("102", angleWord("21", 39, 56, 15) + angleWord("22", 96, 0, 25) + word("31..01", 89320)) +
        block("103", angleWord("21", 79, 5, 45) + angleWord("22", 92, 58, 30) + word("31..01", 118950)));
    QCOMPARE(describe(reading.problems), QStringList());
    const Computation computation = computeAll(reading);
    constexpr double tolerance = 0.0055; // half a hundredth, and a little for the curved Earth
    QVERIFY(isNear(distanceOf(computation, "101") / kFoot, 144.82, tolerance));
    QVERIFY(isNear(distanceOf(computation, "102") / kFoot, 88.83, tolerance));
    QVERIFY(isNear(distanceOf(computation, "103") / kFoot, 118.79, tolerance));
    QVERIFY(isNear(heightOf(computation, "101") / kFoot, 756.31, tolerance));
    QVERIFY(isNear(heightOf(computation, "102") / kFoot, 735.81, tolerance));
    QVERIFY(isNear(heightOf(computation, "103") / kFoot, 738.99, tolerance));
}

void TestWorkedExamples::azimuthBetweenCoordinates()
{
    // Inverse computation of a lecture (National Technical University of Oil and Gas, Ivano-Frankivsk, 6589,
    // page 20): Δx 778.42, Δy 3701.68 give the azimuth 78°07'28" and the length 3782.64.
    Sight sight;
    sight.point = QStringLiteral("2");
    sight.direction = 0.0;
    Setup setup;
    setup.station = QStringLiteral("1");
    setup.sights = {sight};
    const Computation computation =
        compute(FieldBook{{setup}},
                {{QStringLiteral("1"), {0.0, 0.0, {}}}, {QStringLiteral("2"), {778.42, 3701.68, {}}}});
    const SetupResult& result = computation.setups[0];
    QVERIFY(isNear(result.orientation / kMinute * 60.0, (78.0 * 60.0 + 7.0) * 60.0 + 28.0, 0.5));
    QCOMPARE(result.orientationSights.size(), std::size_t(1));
    QVERIFY(isNear(result.orientationSights[0].distance, 3782.64, 0.005));
}

QTEST_APPLESS_MAIN(TestWorkedExamples)
#include "tst_workedexamples.moc"
