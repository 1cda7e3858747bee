#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/NameColumnDelegate.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// Long names in the table.
class TestNameColumn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreCutByTheirParts_data();
    void namesAreCutByTheirParts();
    void columnGrowsIntoFreeRoom();
    void columnLeavesTheOthersTheirRoom();

private:
    /// A window of that width with a network of long names.
    std::unique_ptr<DeskWindow> openLongNames(DeskFixture& desk, int width);
};

namespace {

const QString kLong = QStringLiteral("Репер грунтовый 1245-А");

} // namespace

void TestNameColumn::namesAreCutByTheirParts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("characters");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("there is room") << "A – B" << 20 << "^A – B$";
    QTest::newRow("point") << kLong << 12 << "^Реп.*….*5-А$";
    QTest::newRow("section") << kLong + QStringLiteral(" – ") + kLong << 24 << "^Р.*….*А – Р.*….*А$";
    QTest::newRow("one end is short") << QStringLiteral("M1 – ") + kLong << 20 << "^M1 – Репер.*….*45-А$";
    QTest::newRow("the other is short") << kLong + QStringLiteral(" – M1") << 20 << "^Репер.*….*45-А – M1$";
    QTest::newRow("measured again") << kLong + QStringLiteral(" – M1 (2)") << 24
                                    << "^Реп.*….*5-А – M1 \\(2\\)$";
}

void TestNameColumn::namesAreCutByTheirParts()
{
    QFETCH(QString, name);
    QFETCH(int, characters);
    QFETCH(QString, pattern);
    const QFontMetrics metrics{QFont()};
    const int width = characters * metrics.averageCharWidth();
    const QString elided = elideName(name, metrics, width);
    QVERIFY2(QRegularExpression(pattern).match(elided).hasMatch(), qUtf8Printable(elided));
    QVERIFY(metrics.horizontalAdvance(elided) <= width || elided == name);
}

std::unique_ptr<DeskWindow> TestNameColumn::openLongNames(DeskFixture& desk, int width)
{
    auto window = desk.makeWindow();
    window->resize(width, 600);
    QCoreApplication::processEvents();
    QByteArray network = readFile(samplePath(QStringLiteral("two-benchmarks.gkf")));
    network.replace("\"BMX\"", QStringLiteral("\"%1\"").arg(kLong).toUtf8());
    network.replace("\"A\"", QStringLiteral("\"%1\"").arg(kLong + QLatin1Char('2')).toUtf8());
    const QString path = desk.path(QStringLiteral("long.gkf"));
    writeFile(path, network);
    window->importFile(path);
    window->getMonitor().waitForFinished();
    return window;
}

void TestNameColumn::columnGrowsIntoFreeRoom()
{
    DeskFixture desk;
    const auto window = openLongNames(desk, 1900);
    const ItemTable& table = window->getTable();
    const QString longest = kLong + QStringLiteral(" – ") + kLong + QLatin1Char('2');
    QVERIFY(table.columnWidth(itemcolumns::Name) > table.fontMetrics().horizontalAdvance(longest));
    QVERIFY(table.horizontalHeader()->length() <= table.viewport()->width());
}

void TestNameColumn::columnLeavesTheOthersTheirRoom()
{
    DeskFixture desk;
    const int before = desk.makeWindow()->getTable().columnWidth(itemcolumns::Name);
    const auto window = openLongNames(desk, 400);
    QCOMPARE(window->getTable().columnWidth(itemcolumns::Name), before);
}

QTEST_MAIN(TestNameColumn)
#include "tst_namecolumn.moc"
