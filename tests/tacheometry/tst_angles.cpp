#include "tacheometry/Angles.h"

#include <QtTest>

#include <cmath>

using namespace tacheometry;

/// Angles as instruments write them.
class TestAngles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersBecomeAngles_data();
    void numbersBecomeAngles();
    void sixtyMinutesAreNoAngle();
    void anglesAreBroughtIntoTheCircle();
};

Q_DECLARE_METATYPE(tacheometry::angles::Unit)

namespace {

double toDegrees(double angle)
{
    return angle * 180.0 / angles::kPi;
}

} // namespace

void TestAngles::numbersBecomeAngles_data()
{
    using angles::Unit;
    QTest::addColumn<double>("number");
    QTest::addColumn<Unit>("unit");
    QTest::addColumn<double>("degrees");
    QTest::newRow("gon") << 250.12345 << Unit::Gon << 225.111105;
    QTest::newRow("degrees") << 225.5 << Unit::Degrees << 225.5;
    QTest::newRow("mil") << 1600.0 << Unit::Mil << 90.0;
    QTest::newRow("sexagesimal") << 301.1402 << Unit::Sexagesimal << 301.0 + 14.0 / 60.0 + 2.0 / 3600.0;
    // 0.58 has no exact binary form.
    QTest::newRow("many minutes") << 307.58 << Unit::Sexagesimal << 307.0 + 58.0 / 60.0;
    QTest::newRow("last second") << 89.5959 << Unit::Sexagesimal << 90.0 - 1.0 / 3600.0;
    QTest::newRow("tenths of seconds") << 12.34567 << Unit::Sexagesimal << 12.0 + 34.0 / 60.0 + 56.7 / 3600.0;
    QTest::newRow("negative") << -1.3 << Unit::Sexagesimal << -1.5;
}

void TestAngles::numbersBecomeAngles()
{
    QFETCH(double, number);
    QFETCH(angles::Unit, unit);
    QFETCH(double, degrees);
    const auto angle = angles::fromNumber(number, unit);
    QVERIFY(angle);
    QVERIFY(std::abs(toDegrees(*angle) - degrees) < 1e-12);
}

void TestAngles::sixtyMinutesAreNoAngle()
{
    QVERIFY(!angles::fromNumber(12.60, angles::Unit::Sexagesimal));
    QVERIFY(!angles::fromNumber(12.0060, angles::Unit::Sexagesimal));
    QVERIFY(!angles::fromNumber(-12.7500, angles::Unit::Sexagesimal));
}

void TestAngles::anglesAreBroughtIntoTheCircle()
{
    QCOMPARE(angles::normalise(-angles::kPi / 2.0), 1.5 * angles::kPi);
    QCOMPARE(angles::normalise(angles::kFullCircle), 0.0);
    QCOMPARE(angles::normalise(-1e-20), 0.0);
    QCOMPARE(angles::normaliseDifference(1.75 * angles::kPi), -0.25 * angles::kPi);
    QCOMPARE(angles::normaliseDifference(-1.75 * angles::kPi), 0.25 * angles::kPi);
}

QTEST_APPLESS_MAIN(TestAngles)
#include "tst_angles.moc"
