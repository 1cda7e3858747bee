#include "levelling/NameIndex.h"

#include <QHash>
#include <QTest>

using namespace levelling;

/// Numbers of names.
class TestNameIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreNumberedAsTheyCome();
    void manyNamesKeepTheirNumbers();
};

void TestNameIndex::namesAreNumberedAsTheyCome()
{
    NameIndex names;
    QCOMPARE(names.getCount(), 0);
    QCOMPARE(names.add(QStringLiteral("B")), 0);
    QCOMPARE(names.add(QStringLiteral("A")), 1);
    QCOMPARE(names.add(QString()), 2);
    QCOMPARE(names.add(QStringLiteral("b")), 3);
    QCOMPARE(names.add(QStringLiteral("A")), 1);
    QCOMPARE(names.add(QStringLiteral("")), 2);
    QCOMPARE(names.add(QStringLiteral("B")), 0);
    QCOMPARE(names.getCount(), 4);
}

void TestNameIndex::manyNamesKeepTheirNumbers()
{
    NameIndex names;
    QHash<QString, int> expected;
    for (int i = 0; i < 200000; ++i) {
        // Every third one comes again.
        const QString name = QStringLiteral("P%1").arg(i % 3 == 0 ? i / 2 : i);
        const auto known = expected.constFind(name);
        const int number = known == expected.constEnd() ? expected.size() : *known;
        if (names.add(name) != number)
            QFAIL(qPrintable(name));
        expected.insert(name, number);
    }
    QCOMPARE(names.getCount(), expected.size());
}

QTEST_APPLESS_MAIN(TestNameIndex)
#include "tst_nameindex.moc"
