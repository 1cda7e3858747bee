#include "formats/RecFile.h"

#include <QTest>

using namespace formats;

/// Records without columns.
class TestRecFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readingsAreRecords();
    void textsAreRecords();
    void whatHasNoAddressIsNone();
    void filesOfLevelsAreKnown();
};

void TestRecFile::readingsAreRecords()
{
    const auto record =
        RecFile::parse("     67     5090    0            101 Rb        2.384 HD        23.21");
    QVERIFY(record);
    QCOMPARE(record->type, QStringLiteral("KD1"));
    QCOMPARE(record->information, QStringLiteral("    5090 0 101"));
    QCOMPARE(record->values[0].type, QStringLiteral("Rb"));
    QCOMPARE(record->values[0].text, QStringLiteral("2.384"));
    QCOMPARE(record->values[0].unit, QString());
    QCOMPARE(record->values[1].type, QStringLiteral("HD"));
    QCOMPARE(record->values[1].text, QStringLiteral("23.21"));
    QCOMPARE(record->values[2].type, QString());
    const auto inverted = RecFile::parse("68 Z1 101 Rf -1.126 HD 28.01 Z 175.26");
    QCOMPARE(inverted->information.left(8), QStringLiteral("      Z1"));
    QCOMPARE(inverted->values[0].text, QStringLiteral("-1.126"));
    QCOMPARE(inverted->values[2].type, QStringLiteral("Z"));
}

void TestRecFile::textsAreRecords()
{
    const auto record = RecFile::parse("     65 Start-Line       BFFB    101\r");
    QVERIFY(record);
    QCOMPARE(record->type, QStringLiteral("TO"));
    QCOMPARE(record->information, QStringLiteral("Start-Line BFFB 101        "));
}

void TestRecFile::whatHasNoAddressIsNone()
{
    QVERIFY(!RecFile::parse("Start-Line BFFB 101"));
    QVERIFY(!RecFile::parse("1.5 2.5 3.5"));
    QVERIFY(!RecFile::parse("   65   "));
    QVERIFY(!RecFile::parse("   65 A" + QByteArray(300, ' ') + "B"));
}

void TestRecFile::filesOfLevelsAreKnown()
{
    QVERIFY(RecFile::isLevelFile("  1 Job 7\n  2 Start-Line BF 1\n"));
    QVERIFY(RecFile::isLevelFile("  1 A 0 1 Lr 1.2 E 20.0\n"));
    QVERIFY(!RecFile::isLevelFile("  1 A 12.5 13.5\n  2 B 12.0 1.5\n"));
}

QTEST_APPLESS_MAIN(TestRecFile)
#include "tst_recfile.moc"
