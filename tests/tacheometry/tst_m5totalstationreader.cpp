#include "tacheometry/Angles.h"
#include "tacheometry/M5TotalStationReader.h"
#include "tests/tacheometry/FieldFiles.h"

#include <QBuffer>
#include <QtTest>

#include <cmath>

using namespace tacheometry;
using namespace orvel::test;

/// M5 files of total stations: set-ups, sights, and what cannot be used.
class TestM5TotalStationReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stationIsSetUpAndOriented();
    void stationMayHaveNoCoordinates();
    void directionsBeforeTheOrientationAreTurned();
    void heightsHoldUntilTheyChange();
    void otherInstrumentHeightIsAnotherSetup();
    void targetOffsetsBelongToTheNextSight();
    void instrumentsOwnCoordinatesStandBesideTheSight();
    void pointsAreNamedByTheColumnsOfTheSettings();
    void unitsAreRead_data();
    void unitsAreRead();
    void settingsAreCounted();
    void whatCannotBeUsedIsTold_data();
    void whatCannotBeUsedIsTold();
    void otherCoordinatesOfAPointAreTold();
    void stopLeavesNothing();
    void limitsEndTheReading();
};

namespace {

QByteArray makeStation()
{
    return m5Record("TI", " KN STAT") + m5Point("A", "10", {"Y 100.000 m", "X 200.000 m"}) +
           m5Point("A", "10", {" ", "Hz 10.0000 DMS", "V1 90.0000 DMS"}) +
           m5Record("TI", "", {" ", "Om 35.0000 DMS"}) +
           m5Point("S", "1", {"Y 0.000 m", "X 100.000 m", "Z 50.000 m"}) + m5Record("TI", " POLAR") +
           m5Record("TI", " INPUT", {"th 1.300 m", "ih 1.500 m"});
}

const QList<QByteArray> kSight{"SD 20.000 m", "Hz 45.0000 DMS", "V1 90.0000 DMS"};

double toDegrees(const std::optional<double>& angle)
{
    return angle.value_or(std::nan("")) * 180.0 / angles::kPi;
}

} // namespace

void TestM5TotalStationReader::stationIsSetUpAndOriented()
{
    const FieldBookReading reading = readM5(makeStation() + m5Point("7", "101", kSight));
    QVERIFY(!reading.fatal);
    QCOMPARE(describe(reading.problems), QStringList());
    QCOMPARE(reading.book.setups.size(), std::size_t(1));
    const Setup& setup = reading.book.setups[0];
    QCOMPARE(setup.station, QStringLiteral("1"));
    QCOMPARE(setup.instrumentHeight.value_or(0.0), 1.5);
    QCOMPARE(setup.orientation.value_or(-1.0), 0.0);
    QCOMPARE(setup.line, qint64(5));
    QCOMPARE(setup.sights.size(), std::size_t(2));
    const Sight& sight = setup.sights[1];
    QCOMPARE(sight.point, QStringLiteral("101"));
    QCOMPARE(sight.code, QStringLiteral("7"));
    QCOMPARE(sight.slopeDistance.value_or(0.0), 20.0);
    QCOMPARE(toDegrees(sight.direction), 45.0);
    QCOMPARE(toDegrees(sight.zenith), 90.0);
    QCOMPARE(sight.targetHeight, 1.3);
    QCOMPARE(sight.line, qint64(8));
    QCOMPARE(reading.points.size(), std::size_t(2));
    QCOMPARE(reading.points[0].name, QStringLiteral("10"));
    QVERIFY(!reading.points[0].position.height);
    QCOMPARE(reading.points[1].name, QStringLiteral("1"));
    QCOMPARE(*reading.points[1].position.x, 100.0);
    QCOMPARE(*reading.points[1].position.y, 0.0);
    QCOMPARE(*reading.points[1].position.height, 50.0);
}

void TestM5TotalStationReader::stationMayHaveNoCoordinates()
{
    const FieldBookReading reading =
        readM5(makeStation() + m5Point("7", "101", kSight) + m5Record("TI", " KN STAT") +
               m5Point("S", "9", {}) + m5Point("7", "102", kSight));
    QCOMPARE(describe(reading.problems), QStringList());
    QCOMPARE(reading.book.setups.size(), std::size_t(2));
    QCOMPARE(reading.book.setups[1].station, QStringLiteral("9"));
    QVERIFY(!reading.book.setups[1].orientation);
    QCOMPARE(reading.book.setups[1].sights[0].point, QStringLiteral("102"));
    QCOMPARE(reading.points.size(), std::size_t(2));
}

void TestM5TotalStationReader::directionsBeforeTheOrientationAreTurned()
{
    const FieldBookReading reading = readM5(makeStation() + m5Point("7", "101", kSight));
    const Sight& backsight = reading.book.setups[0].sights[0];
    QCOMPARE(backsight.point, QStringLiteral("10"));
    QVERIFY(std::abs(toDegrees(backsight.direction) - 45.0) < 1e-12);
    QVERIFY(!backsight.hasDistance());
}

void TestM5TotalStationReader::heightsHoldUntilTheyChange()
{
    const FieldBookReading reading = readM5(
        makeStation() + m5Point("7", "101", kSight) + m5Record("TI", " INPUT", {"th 0.100 m"}) +
        m5Point("7", "102", kSight) + m5Record("TI", " DR", {"th 0.000 m", "PC 0.000 m", "A 0.035 m"}) +
        m5Point("7", "103", kSight));
    const std::vector<Sight>& sights = reading.book.setups[0].sights;
    QCOMPARE(sights.size(), std::size_t(4));
    QCOMPARE(sights[1].targetHeight, 1.3);
    QCOMPARE(sights[2].targetHeight, 0.1);
    QCOMPARE(sights[3].targetHeight, 0.0);
}

void TestM5TotalStationReader::otherInstrumentHeightIsAnotherSetup()
{
    const FieldBookReading reading =
        readM5(makeStation() + m5Point("7", "101", kSight) + m5Record("TI", " INPUT", {"ih 1.620 m"}) +
               m5Point("7", "102", kSight) + m5Point("7", "103", kSight));
    QCOMPARE(reading.book.setups.size(), std::size_t(2));
    const Setup& second = reading.book.setups[1];
    QCOMPARE(second.station, QStringLiteral("1"));
    QCOMPARE(second.instrumentHeight.value_or(0.0), 1.62);
    QCOMPARE(second.orientation.value_or(-1.0), 0.0);
    QCOMPARE(second.sights.size(), std::size_t(2));
    QCOMPARE(second.line, qint64(10));
}

void TestM5TotalStationReader::targetOffsetsBelongToTheNextSight()
{
    const FieldBookReading reading =
        readM5(makeStation() + m5Point("7", "101", {"Tv 0.050 m"}) + m5Point("7", "101", kSight) +
               m5Point("7", "102", {"Tr 0.300 m"}) + m5Point("7", "102", kSight) +
               m5Point("7", "103", {"Tl 0.150 m"}) + m5Point("7", "103", kSight) +
               m5Point("7", "104", {"Tl 0.150 m"}) + m5Point("7", "105", kSight));
    const std::vector<Sight>& sights = reading.book.setups[0].sights;
    QCOMPARE(sights[1].beyond, 0.05);
    QCOMPARE(sights[1].right, 0.0);
    QCOMPARE(sights[2].right, -0.3);
    QCOMPARE(sights[3].right, 0.15);
    QCOMPARE(sights[4].right, 0.0);
    QCOMPARE(describe(reading.problems),
             QStringList{describeProblem(14, ProblemKind::OffsetWithoutSight, "104")});
}

void TestM5TotalStationReader::instrumentsOwnCoordinatesStandBesideTheSight()
{
    const QList<QByteArray> own{"Y 14.142 m", "X 114.142 m", "Z 50.200 m"};
    const FieldBookReading reading =
        readM5(makeStation() + m5Point("7", "101", kSight) + m5Point("7", "101", own) +
               m5Point("S", "103", kSight) + m5Point("S", "103", own) + m5Point("7", "102", own));
    // A code "S" behind a measurement is what the surveyor calls the point, and no station.
    QCOMPARE(reading.book.setups.size(), std::size_t(1));
    QCOMPARE(reading.book.setups[0].sights[2].recorded.x.value_or(0.0), 114.142);
    const Sight& sight = reading.book.setups[0].sights[1];
    QCOMPARE(sight.recorded.x.value_or(0.0), 114.142);
    QCOMPARE(sight.recorded.y.value_or(0.0), 14.142);
    QCOMPARE(sight.recorded.height.value_or(0.0), 50.2);
    // Without a measurement they are a point of their own.
    QCOMPARE(reading.points.size(), std::size_t(3));
    QCOMPARE(reading.points[2].name, QStringLiteral("102"));
}

void TestM5TotalStationReader::pointsAreNamedByTheColumnsOfTheSettings()
{
    const QByteArray settings = m5Record("TI", "", {"20 22 ", "21 13 ", "22 1 "});
    const FieldBookReading reading =
        readM5(settings + m5Record("PI1", " N 17 east  TREE", {"Y 1.000 m", "X 2.000 m", "Z 3.000 m"}) +
               m5Record("PI1", "            ROCK", {"Y 4.000 m", "X 5.000 m", "Z 6.000 m"}));
    QCOMPARE(reading.points.size(), std::size_t(2));
    QCOMPARE(reading.points[0].name, QStringLiteral("N 17 east"));
    QCOMPARE(reading.points[0].code, QStringLiteral("TREE"));
    // A point without a number is called by what there is.
    QCOMPARE(reading.points[1].name, QStringLiteral("ROCK"));
}

void TestM5TotalStationReader::unitsAreRead_data()
{
    QTest::addColumn<QByteArray>("direction");
    QTest::addColumn<QByteArray>("distance");
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("metres");
    QTest::newRow("DMS, m") << QByteArray("Hz 45.3000 DMS") << QByteArray("SD 20.000 m") << 45.5 << 20.0;
    QTest::newRow("gon, ft") << QByteArray("Hz 50.0000 gon") << QByteArray("SD 100.00 ft") << 45.0 << 30.48;
    QTest::newRow("DEG") << QByteArray("Hz 45.2500 DEG") << QByteArray("SD 1.000 m") << 45.25 << 1.0;
    QTest::newRow("mil") << QByteArray("Hz 800.00 mil") << QByteArray("SD 1.000 m") << 45.0 << 1.0;
}

void TestM5TotalStationReader::unitsAreRead()
{
    QFETCH(QByteArray, direction);
    QFETCH(QByteArray, distance);
    QFETCH(double, degrees);
    QFETCH(double, metres);
    const FieldBookReading reading =
        readM5(makeStation() + m5Point("7", "101", {distance, direction, "V1 90.0000 DMS"}));
    QCOMPARE(describe(reading.problems), QStringList());
    const Sight& sight = reading.book.setups[0].sights[1];
    QVERIFY(std::abs(toDegrees(sight.direction) - degrees) < 1e-12);
    QVERIFY(std::abs(*sight.slopeDistance - metres) < 1e-12);
}

void TestM5TotalStationReader::settingsAreCounted()
{
    const FieldBookReading reading =
        readM5(m5Record("TI", "", {"T_ 18 C", "P 750 mmHg", "PC -0.018 m"}) + makeStation() +
               m5Point("7", "101", kSight) + m5Point("7", "102", kSight) +
               m5Record("TI", " DR", {"th 0.000 m", "PC 0.000 m"}) + m5Point("7", "103", kSight));
    QCOMPARE(reading.settings.size(), std::size_t(2));
    QCOMPARE(reading.settings[0].prismConstant, -18.0);
    QCOMPARE(reading.settings[0].sights, std::size_t(2));
    QCOMPARE(reading.settings[1].prismConstant, 0.0);
    QCOMPARE(reading.settings[1].sights, std::size_t(1));
}

void TestM5TotalStationReader::whatCannotBeUsedIsTold_data()
{
    using Kind = ProblemKind;
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const QByteArray good = makeStation() + m5Point("7", "101", kSight);
    const auto row = [&](const char* name, const QByteArray& more, Kind kind, const char* arguments = "") {
        QTest::newRow(name) << good + more << describeProblem(9, kind, arguments);
    };
    row("prose", "Survey of the dam\r\n", Kind::LineUnreadable);
    row("other record", m5Record("KD1", "1"), Kind::RecordUnknown, "KD1");
    row("no name", m5Record("PI1", "", kSight), Kind::PointWithoutName);
    row("no number", m5Point("7", "102", {"SD abc m", "Hz 45.0000 DMS"}), Kind::ValueUnusable, "SD|abc m");
    row("sixty minutes", m5Point("7", "102", {"SD 1.000 m", "Hz 45.6000 DMS"}), Kind::ValueUnusable,
        "Hz|45.6000 DMS");
    row("unknown unit", m5Point("7", "102", {"SD 1.000 yd", "Hz 45.0000 DMS"}), Kind::ValueUnusable,
        "SD|1.000 yd");
    row("negative distance", m5Point("7", "102", {"SD -1.000 m", "Hz 45.0000 DMS"}), Kind::ValueUnusable,
        "SD|-1.000 m");
    row("unknown value", m5Point("7", "102", {"SD 1.000 m", "Hz 45.0000 DMS", "V3 5.0 %"}),
        Kind::ValueUnknown, "V3");
    row("unknown setting", m5Record("TI", "", {"zz 1.0 m"}), Kind::ValueUnknown, "zz");
    row("zenith angle alone", m5Point("7", "102", {"V1 90.0000 DMS"}), Kind::SightWithoutReadings, "102");
    row("x without y", m5Point("7", "102", {"X 1.000 m", "Z 1.000 m"}), Kind::CoordinatesHalf, "102");
    row("scale of nothing", m5Record("TI", "", {"m 0.000000 "}), Kind::ValueUnusable, "m|0.000000");
    QByteArray marked = m5Point("7", "102", kSight);
    marked[118] = 'e';
    row("marked", marked, Kind::RecordMarked, "102");
    QTest::newRow("before any station")
        << m5Point("7", "102", kSight) + good << describeProblem(1, Kind::SightWithoutStation, "102");
    QTest::newRow("oriented without a station") << m5Record("TI", " KN STAT") + m5Point("A", "10", kSight)
                                                << describeProblem(2, Kind::SightWithoutStation, "10");
    QTest::newRow("set up nowhere") << good + m5Record("TI", " KN STAT") + m5Point("7", "102", kSight)
                                    << describeProblem(10, Kind::SightWithoutStation, "102");
    QTest::newRow("nothing") << m5Record("TI", " KN STAT") << describeProblem(0, Kind::NothingUsable);
}

void TestM5TotalStationReader::whatCannotBeUsedIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    const FieldBookReading reading = readM5(text);
    QVERIFY(!reading.fatal);
    const QStringList problems = describe(reading.problems);
    QVERIFY2(problems.contains(problem), qPrintable(problems.join(QStringLiteral("; "))));
    QVERIFY(problems.size() <= 2);
}

void TestM5TotalStationReader::otherCoordinatesOfAPointAreTold()
{
    const FieldBookReading reading = readM5(m5Point("", "5", {"Y 1.000 m", "X 2.000 m", "Z 3.000 m"}) +
                                            m5Point("", "5", {"Y 1.000 m", "X 2.000 m"}) +
                                            m5Point("", "5", {"Y 1.000 m", "X 2.250 m", "Z 3.000 m"}));
    QCOMPARE(describe(reading.problems),
             QStringList{describeProblem(3, ProblemKind::CoordinatesChanged, "5|2|0.250")});
    QCOMPARE(reading.points.size(), std::size_t(1));
    QCOMPARE(*reading.points[0].position.x, 2.25);
    QCOMPARE(*reading.points[0].position.height, 3.0);
}

void TestM5TotalStationReader::stopLeavesNothing()
{
    QByteArray text = makeStation();
    for (int i = 0; i < 1000; ++i)
        text += m5Point("7", QByteArray::number(i), kSight);
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    int questions = 0;
    const FieldBookReading reading = m5totalstation::read(buffer, [&questions] { return ++questions == 3; });
    QVERIFY(reading.isStopped);
    QVERIFY(reading.book.isEmpty());
    QVERIFY(reading.points.empty());
}

void TestM5TotalStationReader::limitsEndTheReading()
{
    const FieldBookReading reading = readM5(makeStation() + QByteArray(1 << 17, 'x'));
    QVERIFY(reading.fatal);
    QCOMPARE(describe({*reading.fatal}), QStringList{describeProblem(8, ProblemKind::LineTooLong, "65536")});
    QVERIFY(reading.book.isEmpty());
    QVERIFY(reading.problems.empty());

    const FieldBookReading prose = readM5(makeStation() + QByteArray("x\n").repeated(1000001));
    QVERIFY(prose.fatal);
    QCOMPARE(describe({*prose.fatal}),
             QStringList{describeProblem(1000008, ProblemKind::TooManyProblems, "1000000")});
    QVERIFY(prose.book.isEmpty());
}

QTEST_APPLESS_MAIN(TestM5TotalStationReader)
#include "tst_m5totalstationreader.moc"
