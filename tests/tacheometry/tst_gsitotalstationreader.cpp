#include "tacheometry/Angles.h"
#include "tests/tacheometry/FieldFiles.h"

#include <QtTest>

#include <cmath>

using namespace tacheometry;
using namespace orvel::test;

/// GSI files of total stations: set-ups, sights, coordinates, and what cannot be used.
class TestGsiTotalStationReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coordinatesAreRead();
    void stationBlockSetsTheInstrumentUp();
    void stationBesideTheMeasurementIsOneSetup();
    void stationIsCalledByThePointThatHasItsCoordinates();
    void stationWithoutANameGetsOne();
    void otherInstrumentHeightIsAnotherSetup();
    void targetHeightHoldsUntilItChanges();
    void instrumentsOwnCoordinatesStandBesideTheSight();
    void unitsAreRead_data();
    void unitsAreRead();
    void settingsAreCounted();
    void distanceZeroWasNotMeasured();
    void whatCannotBeUsedIsTold_data();
    void whatCannotBeUsedIsTold();
};

namespace {

// GSI-8: a station with its coordinates and the height of the instrument, and a measurement.
const QByteArray kStation =
    "110001+00000001 84..10+00001000 85..10+00002000 86..10+00050000 88..10+00001500\n";
const QByteArray kSight = "110002+00000101 21.102+05000000 22.102+10000000 31..00+00020000 87..10+00001300\n";

double toDegrees(const std::optional<double>& angle)
{
    return angle.value_or(std::nan("")) * 180.0 / angles::kPi;
}

} // namespace

void TestGsiTotalStationReader::coordinatesAreRead()
{
    const FieldBookReading reading = readGsi(
        "*110001+0000000000000101 81..10+0000000000119197 82..10+0000000000118827 83..10+0000000000120014 \n"
        "*110002+00000000000A-102 81..10-0000000000119192 82..16+0000000001238345 \n");
    QCOMPARE(describe(reading.problems), QStringList());
    QVERIFY(reading.book.isEmpty());
    QCOMPARE(reading.points.size(), std::size_t(2));
    QCOMPARE(reading.points[0].name, QStringLiteral("101"));
    QCOMPARE(reading.points[0].position.y.value_or(0.0), 119.197);
    QCOMPARE(reading.points[0].position.x.value_or(0.0), 118.827);
    QCOMPARE(reading.points[0].position.height.value_or(0.0), 120.014);
    QCOMPARE(reading.points[1].name, QStringLiteral("A-102"));
    QCOMPARE(reading.points[1].position.y.value_or(0.0), -119.192);
    QCOMPARE(reading.points[1].position.x.value_or(0.0), 123.8345);
    QVERIFY(!reading.points[1].position.height);
    QCOMPARE(reading.points[1].line, qint64(2));
}

void TestGsiTotalStationReader::stationBlockSetsTheInstrumentUp()
{
    const FieldBookReading reading = readGsi(kStation + kSight);
    QCOMPARE(describe(reading.problems), QStringList());
    QCOMPARE(reading.book.setups.size(), std::size_t(1));
    const Setup& setup = reading.book.setups[0];
    QCOMPARE(setup.station, QStringLiteral("1"));
    QCOMPARE(setup.instrumentHeight.value_or(0.0), 1.5);
    QVERIFY(!setup.orientation);
    QCOMPARE(setup.sights.size(), std::size_t(1));
    const Sight& sight = setup.sights[0];
    QCOMPARE(sight.point, QStringLiteral("101"));
    QCOMPARE(toDegrees(sight.direction), 45.0);
    QCOMPARE(toDegrees(sight.zenith), 90.0);
    QCOMPARE(sight.slopeDistance.value_or(0.0), 20.0);
    QCOMPARE(sight.targetHeight, 1.3);
    QCOMPARE(sight.line, qint64(2));
    QCOMPARE(reading.points.size(), std::size_t(1));
    QCOMPARE(reading.points[0].position.x.value_or(0.0), 2.0);
    QCOMPARE(reading.points[0].position.y.value_or(0.0), 1.0);
    QCOMPARE(reading.points[0].position.height.value_or(0.0), 50.0);
}

void TestGsiTotalStationReader::stationBesideTheMeasurementIsOneSetup()
{
    const QByteArray station =
        " 16....+0000STA1 84..10+00001000 85..10+00002000 86..10+00050000 88..10+00001500\n";
    const FieldBookReading reading = readGsi("110001+00000101 21.102+05000000 31..00+00020000" + station +
                                             "110002+00000102 21.102+05000000 31..00+00020000" + station);
    QCOMPARE(describe(reading.problems), QStringList());
    QCOMPARE(reading.book.setups.size(), std::size_t(1));
    QCOMPARE(reading.book.setups[0].station, QStringLiteral("STA1"));
    QCOMPARE(reading.book.setups[0].sights.size(), std::size_t(2));
    QCOMPARE(reading.points.size(), std::size_t(1));
}

void TestGsiTotalStationReader::stationIsCalledByThePointThatHasItsCoordinates()
{
    const FieldBookReading reading =
        readGsi("110001+0000GPS7 81..10+00001000 82..10+00002000 83..10+00050000\n"
                "110002+00000101 21.102+05000000 31..00+00020000 84..10+00001000 85..10+00002000\n");
    QCOMPARE(reading.book.setups.size(), std::size_t(1));
    QCOMPARE(reading.book.setups[0].station, QStringLiteral("GPS7"));
}

void TestGsiTotalStationReader::stationWithoutANameGetsOne()
{
    const FieldBookReading reading =
        readGsi("110001+00000101 21.102+05000000 31..00+00020000 84..10+00001000 85..10+00002000\n"
                "110002+00000102 21.102+05000000 31..00+00020000 84..10+00001000 85..10+00002000\n"
                "110003+00000103 21.102+05000000 31..00+00020000 84..10+00009000 85..10+00002000\n"
                "110004+00000104 21.102+05000000 31..00+00020000 84..10+00001000 85..10+00002000\n");
    QCOMPARE(reading.book.setups.size(), std::size_t(3));
    QCOMPARE(reading.book.setups[0].station, QStringLiteral("S1"));
    QCOMPARE(reading.book.setups[0].sights.size(), std::size_t(2));
    QCOMPARE(reading.book.setups[1].station, QStringLiteral("S2"));
    QCOMPARE(reading.book.setups[2].station, QStringLiteral("S1"));
}

void TestGsiTotalStationReader::otherInstrumentHeightIsAnotherSetup()
{
    const FieldBookReading reading =
        readGsi(kStation + kSight + "110003+00000102 21.102+05000000 31..00+00020000 88..10+00001600\n");
    QCOMPARE(reading.book.setups.size(), std::size_t(2));
    QCOMPARE(reading.book.setups[1].station, QStringLiteral("1"));
    QCOMPARE(reading.book.setups[1].instrumentHeight.value_or(0.0), 1.6);
}

void TestGsiTotalStationReader::targetHeightHoldsUntilItChanges()
{
    const FieldBookReading reading =
        readGsi(kStation + kSight +
                "110003+00000102 21.102+05000000 31..00+00020000\n"
                "110004+00000103 21.102+05000000 31..00+00020000 87..10+00000000\n");
    const std::vector<Sight>& sights = reading.book.setups[0].sights;
    QCOMPARE(sights[1].targetHeight, 1.3);
    QCOMPARE(sights[2].targetHeight, 0.0);
}

void TestGsiTotalStationReader::instrumentsOwnCoordinatesStandBesideTheSight()
{
    const FieldBookReading reading = readGsi(
        kStation + "110003+00000102 21.102+05000000 31..00+00020000 81..00+00015142 82..00+00016142\n");
    const Sight& sight = reading.book.setups[0].sights[0];
    QCOMPARE(sight.recorded.y.value_or(0.0), 15.142);
    QCOMPARE(sight.recorded.x.value_or(0.0), 16.142);
    QCOMPARE(reading.points.size(), std::size_t(1));
}

void TestGsiTotalStationReader::unitsAreRead_data()
{
    QTest::addColumn<QByteArray>("direction");
    QTest::addColumn<QByteArray>("distance");
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("metres");
    QTest::newRow("gon, mm") << QByteArray("21.102+05012345") << QByteArray("31..00+00020001") << 45.111105
                             << 20.001;
    QTest::newRow("degrees, 0.1 mm") << QByteArray("21.103+04550000") << QByteArray("31..06+00200015") << 45.5
                                     << 20.0015;
    QTest::newRow("sexagesimal, ft") << QByteArray("21.104+04530000") << QByteArray("31..01+00100000") << 45.5
                                     << 30.48;
    QTest::newRow("mil, 0.01 mm") << QByteArray("21.105+08000000") << QByteArray("31..08+02000012") << 45.0
                                  << 20.00012;
    QTest::newRow("negative direction")
        << QByteArray("21.102-05000000") << QByteArray("31..07+01000000") << 315.0 << 30.48;
}

void TestGsiTotalStationReader::unitsAreRead()
{
    QFETCH(QByteArray, direction);
    QFETCH(QByteArray, distance);
    QFETCH(double, degrees);
    QFETCH(double, metres);
    const FieldBookReading reading =
        readGsi(kStation + "110002+00000101 " + direction + ' ' + distance + '\n');
    QCOMPARE(describe(reading.problems), QStringList());
    const Sight& sight = reading.book.setups[0].sights[0];
    QVERIFY(std::abs(toDegrees(sight.direction) - degrees) < 1e-9);
    QVERIFY(std::abs(*sight.slopeDistance - metres) < 1e-12);
}

void TestGsiTotalStationReader::settingsAreCounted()
{
    const QByteArray sight = "110002+00000101 21.102+05000000 31..00+00020000 ";
    const FieldBookReading reading =
        readGsi(kStation + sight + "51....+0220+002\n" + sight + "51....+0220+002\n" + sight +
                "58..16+00000344 59..16+00120000\n" + sight + "51....-0005-034\n");
    QCOMPARE(describe(reading.problems), QStringList());
    QCOMPARE(reading.settings.size(), std::size_t(3));
    QCOMPARE(reading.settings[0].ppm, 220.0);
    QCOMPARE(reading.settings[0].prismConstant, 2.0);
    QCOMPARE(reading.settings[0].sights, std::size_t(2));
    QCOMPARE(reading.settings[1].ppm, 12.0);
    QCOMPARE(reading.settings[1].prismConstant, 34.4);
    QCOMPARE(reading.settings[2].ppm, -5.0);
    QCOMPARE(reading.settings[2].prismConstant, -34.0);
}

void TestGsiTotalStationReader::distanceZeroWasNotMeasured()
{
    const FieldBookReading reading =
        readGsi(kStation + "110002+00000101 21.102+05000000 22.102+10000000 31..00+00000000\n");
    QCOMPARE(describe(reading.problems), QStringList());
    QVERIFY(!reading.book.setups[0].sights[0].hasDistance());
}

void TestGsiTotalStationReader::whatCannotBeUsedIsTold_data()
{
    using Kind = ProblemKind;
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* name, const QByteArray& more, Kind kind, const char* arguments = "") {
        QTest::newRow(name) << kStation + kSight + more << describeProblem(3, kind, arguments);
    };
    row("prose", "Survey of the dam\n", Kind::LineUnreadable);
    row("a word that is none", "110003+00000102 21.102+05000000 31..00+00020000 abc\n", Kind::WordsUnreadable,
        "abc");
    row("no point", "21.102+05000000 31..00+00020000\n", Kind::PointWithoutName);
    row("blank point", "110003+         21.102+05000000 31..00+00020000\n", Kind::PointWithoutName);
    row("no number", "110003+00000102 21.102+0500?000 31..00+00020000\n", Kind::ValueUnusable,
        "21|.102+0500?000");
    row("sixty minutes", "110003+00000102 21.104+04560000 31..00+00020000\n", Kind::ValueUnusable,
        "21|.104+04560000");
    row("angle in metres", "110003+00000102 21.100+05000000 31..00+00020000\n", Kind::ValueUnusable,
        "21|.100+05000000");
    row("length in gon", "110003+00000102 21.102+05000000 31..02+00020000\n", Kind::ValueUnusable,
        "31|..02+00020000");
    row("negative distance", "110003+00000102 21.102+05000000 31..00-00020000\n", Kind::ValueUnusable,
        "31|..00-00020000");
    row("unknown word", "110003+00000102 21.102+05000000 31..00+00020000 61....+00000001\n",
        Kind::ValueUnknown, "61");
    row("ppm of letters", "110003+00000102 21.102+05000000 31..00+00020000 51....+0abc+002\n",
        Kind::ValueUnusable, "51|....+0abc+002");
    row("zenith angle alone", "110003+00000102 22.102+10000000\n", Kind::SightWithoutReadings, "102");
    row("east without north", "110003+00000102 81..10+00001000\n", Kind::CoordinatesHalf, "102");
    QTest::newRow("before any station")
        << kSight + kStation + kSight << describeProblem(1, Kind::SightWithoutStation, "101");
    QTest::newRow("code block") << QByteArray("410001+00000004 42....+00000012\n") + kStation + kSight
                                << describeProblem(1, Kind::ValueUnknown, "41");
    QTest::newRow("nothing") << QByteArray("110001+00000101\n") << describeProblem(0, Kind::NothingUsable);
}

void TestGsiTotalStationReader::whatCannotBeUsedIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    const FieldBookReading reading = readGsi(text);
    QVERIFY(!reading.fatal);
    const QStringList problems = describe(reading.problems);
    QVERIFY2(problems.contains(problem), qPrintable(problems.join(QStringLiteral("; "))));
    QVERIFY2(problems.size() <= 2, qPrintable(problems.join(QStringLiteral("; "))));
}

QTEST_APPLESS_MAIN(TestGsiTotalStationReader)
#include "tst_gsitotalstationreader.moc"
