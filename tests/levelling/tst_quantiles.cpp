#include "levelling/Quantiles.h"

#include <QtTest>

using namespace levelling;

namespace {

QString digits(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

} // namespace

/// The limits of the tests against printed tables.
class TestQuantiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void normal()
    {
        QCOMPARE(digits(quantiles::normalLimit(0.05), 4), QStringLiteral("1.9600"));
        QCOMPARE(digits(quantiles::normalLimit(0.01), 4), QStringLiteral("2.5758"));
        QCOMPARE(digits(quantiles::normalLimit(0.001), 4), QStringLiteral("3.2905"));
        QCOMPARE(digits(quantiles::normalQuantile(0.8), 4), QStringLiteral("0.8416"));
        // With these Baarda's detectable errors are 4.13 sigma / sqrt(r).
        QCOMPARE(digits(quantiles::normalLimit(0.001) + quantiles::normalQuantile(0.8), 2),
                 QStringLiteral("4.13"));
    }

    void shares()
    {
        QCOMPARE(digits(quantiles::shareOfEach(0.05, 1), 6), QStringLiteral("0.050000"));
        QCOMPARE(digits(quantiles::shareOfEach(0.05, 10), 6), QStringLiteral("0.005116"));
        QCOMPARE(digits(quantiles::shareOfEach(0.05, 300), 8), QStringLiteral("0.00017096"));
    }

    void tau_data()
    {
        QTest::addColumn<int>("redundancy");
        QTest::addColumn<double>("error");
        QTest::addColumn<QString>("limit");
        // t of f - 1: 12.7062 (1), 2.7764 (4), 2.2622 (9), 9.9248 (2, 1 %)
        QTest::newRow("2") << 2 << 0.05 << QStringLiteral("1.4099");
        QTest::newRow("5") << 5 << 0.05 << QStringLiteral("1.8143");
        QTest::newRow("10") << 10 << 0.05 << QStringLiteral("1.9039");
        QTest::newRow("3, 1 %") << 3 << 0.01 << QStringLiteral("1.7147");
    }

    void tau()
    {
        QFETCH(int, redundancy);
        QFETCH(double, error);
        QFETCH(QString, limit);
        QCOMPARE(digits(quantiles::tauLimit(redundancy, error), 4), limit);
    }

    void sigmaRatio_data()
    {
        QTest::addColumn<int>("redundancy");
        QTest::addColumn<QString>("lower");
        QTest::addColumn<QString>("upper");
        // Roots of chi-square over f: 0.000982, 5.024 (1); 0.484, 11.143 (4); 3.816, 21.920 (11)
        QTest::newRow("1") << 1 << QStringLiteral("0.031") << QStringLiteral("2.241");
        QTest::newRow("4") << 4 << QStringLiteral("0.348") << QStringLiteral("1.669");
        QTest::newRow("11") << 11 << QStringLiteral("0.589") << QStringLiteral("1.412");
    }

    void sigmaRatio()
    {
        QFETCH(int, redundancy);
        QFETCH(QString, lower);
        QFETCH(QString, upper);
        const quantiles::RatioLimits limits = quantiles::sigmaRatioLimits(redundancy, 0.05);
        QCOMPARE(digits(limits.lower, 3), lower);
        QCOMPARE(digits(limits.upper, 3), upper);
    }
};

QTEST_APPLESS_MAIN(TestQuantiles)
#include "tst_quantiles.moc"
