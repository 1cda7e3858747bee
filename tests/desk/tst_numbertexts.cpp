#include "apps/desk/Translation.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace orvel::desk;

/// Numbers as they stand in protocols, tables and files.
class TestNumberTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixed_data();
    void fixed();
    void significant_data();
    void significant();
    void signOfResiduals();
    void angles();
    void unitWeight();
    void localeOfTheSystemChangesNothing();
    void filesHavePoints();
    void fieldsHaveCommas();
    void english();
};

void TestNumberTexts::fixed_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << 105.1504 << "105,150";
    QTest::newRow("negative") << -1.0006 << "\u22121,001";
    QTest::newRow("zero") << 0.0 << "0,000";
    QTest::newRow("negative zero") << -0.0 << "0,000";
    QTest::newRow("rounded to zero") << -0.0004 << "0,000";
    QTest::newRow("infinite") << -std::numeric_limits<double>::infinity() << "\u2212inf";
}

void TestNumberTexts::fixed()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(numbers::fixed(value, 3), text);
}

void TestNumberTexts::significant_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("tens") << 30.95157 << "30,952";
    QTest::newRow("units") << 2.051861 << "2,0519";
    QTest::newRow("tenths") << 0.683951 << "0,68395";
    QTest::newRow("thousandths") << 0.00123456 << "0,0012346";
    QTest::newRow("large") << 1234567.8 << "1234568";
    QTest::newRow("negative") << -30.95157 << "\u221230,952";
    QTest::newRow("zero") << 0.0 << "0,0000";
}

void TestNumberTexts::significant()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(numbers::significant(value, 5), text);
}

void TestNumberTexts::signOfResiduals()
{
    QCOMPARE(numbers::misclosure(50.4), QStringLiteral("+50,40"));
    QCOMPARE(numbers::misclosure(-8.6), QStringLiteral("\u22128,60"));
    QCOMPARE(numbers::misclosure(-0.001), QStringLiteral("+0,00"));
}

void TestNumberTexts::angles()
{
    constexpr double second = 3.14159265358979323846 / 180.0 / 3600.0;
    QCOMPARE(numbers::direction(0.0), QStringLiteral("0°00′00″"));
    QCOMPARE(numbers::direction((77 * 3600 + 5 * 60 + 9.4) * second), QStringLiteral("77°05′09″"));
    QCOMPARE(numbers::direction((360 * 3600 - 0.3) * second), QStringLiteral("0°00′00″"));
    QCOMPARE(numbers::arcSeconds(14.4 * second), QStringLiteral("+14″"));
    QCOMPARE(numbers::arcSeconds(-14.6 * second), QStringLiteral("\u221215″"));
    QCOMPARE(numbers::arcMinutes(-360.0 * second), QStringLiteral("\u22126,0′"));
    QCOMPARE(numbers::arcLimit(90.0 * second), QStringLiteral("1,5′"));
    QCOMPARE(numbers::arcLimit(-90.0 * second), QStringLiteral("1,5′"));
}

void TestNumberTexts::unitWeight()
{
    QCOMPARE(numbers::unitWeight(1.0), QStringLiteral("1,000"));
    QCOMPARE(numbers::unitWeight(30.95157), QStringLiteral("30,952"));
    QCOMPARE(numbers::unitWeight(0.00123456), QStringLiteral("0,00123"));
}

void TestNumberTexts::localeOfTheSystemChangesNothing()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    QCOMPARE(numbers::height(12345.678), QStringLiteral("12345,67800"));
    QCOMPARE(numbers::length(1.5), QStringLiteral("1,500"));
    QLocale::setDefault(before);
}

void TestNumberTexts::fieldsHaveCommas()
{
    installLanguage(QStringLiteral("ru"));
    QCOMPARE(QLocale().decimalPoint(), QLatin1Char(','));
}

void TestNumberTexts::english()
{
    installLanguage(QStringLiteral("en"));
    QCOMPARE(numbers::misclosure(-8.6), QStringLiteral("-8.60"));
    QCOMPARE(numbers::shortest(0.95), QStringLiteral("0.95"));
    QCOMPARE(QLocale().decimalPoint(), QLatin1Char('.'));
}

void TestNumberTexts::filesHavePoints()
{
    QCOMPARE(numbers::plain(-8.6, 2), QStringLiteral("-8.60"));
}

QTEST_GUILESS_MAIN(TestNumberTexts)
#include "tst_numbertexts.moc"
