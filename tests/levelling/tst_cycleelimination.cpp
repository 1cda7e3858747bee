#include "levelling/CycleElimination.h"

#include <QtTest>

using namespace levelling;

class TestCycleElimination : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sumOfTwoIsDependent();
    void sharedSectionsDoNotMakeDependent();
    void sumOfManyIsDependent();
    void orderOfNumbersDoesNotMatter();
};

void TestCycleElimination::sumOfTwoIsDependent()
{
    CycleElimination elimination(6);
    QVERIFY(elimination.add({0, 1, 2}));
    QVERIFY(elimination.add({2, 3, 4}));
    QVERIFY(!elimination.add({0, 1, 3, 4}));
    QVERIFY(!elimination.add({0, 1, 2}));
}

void TestCycleElimination::sharedSectionsDoNotMakeDependent()
{
    CycleElimination elimination(6);
    QVERIFY(elimination.add({0, 5}));
    QVERIFY(elimination.add({1, 5}));
    QVERIFY(elimination.add({2, 5}));
    QVERIFY(!elimination.add({0, 2}));
    QVERIFY(elimination.add({5}));
}

void TestCycleElimination::sumOfManyIsDependent()
{
    CycleElimination elimination(100);
    for (int i = 0; i < 99; ++i)
        QVERIFY(elimination.add({i, i + 1}));
    QVERIFY(!elimination.add({0, 99}));
    QVERIFY(elimination.add({50}));
    QVERIFY(!elimination.add({99}));
}

void TestCycleElimination::orderOfNumbersDoesNotMatter()
{
    CycleElimination elimination(4);
    QVERIFY(elimination.add({3, 0, 2}));
    QVERIFY(!elimination.add({2, 3, 0}));
}

QTEST_APPLESS_MAIN(TestCycleElimination)
#include "tst_cycleelimination.moc"
