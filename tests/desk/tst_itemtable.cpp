#include "apps/desk/document/Document.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/PointTableModel.h"
#include "apps/desk/gui/SectionTableModel.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QStatusBar>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// The table of points and sections.
class TestItemTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void modelsKeepTheRules();
    void showsPointsAndSections();
    void showsResultsOfAdjustment();
    void coordinatesAreShownWhereThereAreSome();
    void showsResultsOfTacheometry();
    void sortsNamesAsPeopleCount();
    void sortsNumbersByValue();
    void searchHidesWhatItDoesNotMean();
    void emptyTableSaysWhatToDo();
    void resultsFindTheirPlace();
    void longTableSelectsAsSoonAsItCan();
    void longWorkIsSpokenOf();
    void selectsItemById();
    void clickOpensProtocolOfPoint();
    void clickOpensProtocolOfSection();
    void enterOpensProtocol();
    void clickOnUnmentionedItemDoesNothing();
    void clickDuringRunDoesNothing();
    void namesAreShownAsTheyAre();

private:
    QStringList column(int number) const;
    /// What stands in the columns of values and of protocols.
    QStringList row(const char* name) const;
    QModelIndex cell(const char* name, int number) const;
    void click(const QModelIndex& index) const;
    /// Opens a network whose table is too long to be sorted and searched at once.
    void openLongNetwork();
    void waitForRows() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

void TestItemTable::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
}

void TestItemTable::cleanup()
{
    window.reset();
    desk.reset();
}

QStringList TestItemTable::column(int number) const
{
    QStringList texts;
    const QAbstractItemModel* model = window->getTable().model();
    for (int i = 0; i < model->rowCount(); ++i)
        texts.append(model->index(i, number).data().toString());
    return texts;
}

QModelIndex TestItemTable::cell(const char* name, int number) const
{
    const int index = column(itemcolumns::Name).indexOf(QString::fromUtf8(name));
    return window->getTable().model()->index(index, number);
}

QStringList TestItemTable::row(const char* name) const
{
    using namespace itemcolumns;
    QStringList texts;
    for (const int number : {Name, Type, X, Y, Height, Sigma, Difference, Residual, Lines, Report})
        texts.append(cell(name, number).data().toString());
    return texts;
}

void TestItemTable::click(const QModelIndex& index) const
{
    ItemTable& table = window->getTable();
    table.scrollTo(index);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(index).center());
}

void TestItemTable::modelsKeepTheRules()
{
    Document& document = window->getDocument();
    PointTableModel points(document);
    SectionTableModel sections(document);
    const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
    const QAbstractItemModelTester pointTester(&points, mode);
    const QAbstractItemModelTester sectionTester(&sections, mode);
    const QAbstractItemModelTester tableTester(window->getTable().model(), mode);

    triggerAction(*window, QStringLiteral("Уравнивание"));
    QVERIFY(window->getMonitor().waitForFinished());
    window->getTable().getFilterModel()->setSearchText(QStringLiteral("BM"));
    document.setNetwork(
        levelling::GkfReader::readFile(samplePath(QStringLiteral("one-benchmark.gkf"))).network);
    QCOMPARE(points.rowCount(), 8);
    QCOMPARE(sections.rowCount(), 15);
    window->getTable().getFilterModel()->setSearchText(QString());
    QCOMPARE(window->getTable().model()->rowCount(), 23);
}

void TestItemTable::showsPointsAndSections()
{
    QCOMPARE(column(itemcolumns::Name),
             toList("BMX|BMY|A|B|C|BMX – A|A – BMY|BMY – C|C – BMX|A – B|BMY – B|B – C"));
    QCOMPARE(row("BMX"), toList("BMX|исходный репер|||100,00000||||0|"));
    QCOMPARE(row("A"), toList("A|пункт|||||||0|"));
    QCOMPARE(row("B – C"), toList("B – C|секция||||1,41|1,70000||0|"));
}

void TestItemTable::showsResultsOfAdjustment()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(row("A"), toList("A|пункт|||105,15040|32,76|||2|"));
    QCOMPARE(row("BMY – C"), toList("BMY – C|секция||||1,41|\u22121,25000|\u221252,80|2|"));
    QVERIFY(!cell("A", itemcolumns::Report).data(Qt::DecorationRole).isNull());
    QCOMPARE(cell("A", itemcolumns::Report).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("есть протокол"));
}

void TestItemTable::coordinatesAreShownWhereThereAreSome()
{
    ItemTable& table = window->getTable();
    QVERIFY(table.isColumnHidden(itemcolumns::X));
    QVERIFY(table.isColumnHidden(itemcolumns::Y));
    levelling::Network network;
    levelling::Point point;
    point.id = QStringLiteral("P1");
    point.x = 118.827;
    point.y = -119.1974;
    point.height = 120.014;
    network.points.push_back(point);
    point = levelling::Point();
    point.id = QStringLiteral("P2");
    network.points.push_back(point);
    window->getDocument().setNetwork(network);
    QVERIFY(!table.isColumnHidden(itemcolumns::X));
    QVERIFY(!table.isColumnHidden(itemcolumns::Y));
    QCOMPARE(row("P1"), toList("P1|пункт|118,827|\u2212119,197|120,01400||||0|"));
    QCOMPARE(row("P2"), toList("P2|пункт|||||||0|"));
    window->getDocument().getPoints()[1]->setPolarResult({1.0, 2.0, std::nullopt});
    QCOMPARE(row("P2").mid(0, 5), toList("P2|пункт|1,000|2,000|"));
}

void TestItemTable::showsResultsOfTacheometry()
{
    window = desk->makeWindow(samplePath(QStringLiteral("tacheometry.m5")));
    QCOMPARE(row("101"), toList("101|пункт|||||||0|"));
    QVERIFY(triggerAction(*window, QStringLiteral("Тахеометрия")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(!window->getTable().isColumnHidden(itemcolumns::X));
    QCOMPARE(row("101"), toList("101|пункт|992,911|2014,169|150,60376||||2|"));
    QCOMPARE(row("2"), toList("2|пункт|1085,320|2042,170|152,41000||||10|"));
    QCOMPARE(row("130"), toList("130|пункт|||||||1|"));
    QVERIFY(!cell("101", itemcolumns::Report).data(Qt::DecorationRole).isNull());
    window->getTable().sortByColumn(itemcolumns::X, Qt::DescendingOrder);
    QTRY_COMPARE(column(itemcolumns::Name).mid(0, 2), toList("120|2"));
}

void TestItemTable::sortsNamesAsPeopleCount()
{
    window = desk->makeWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    window->getTable().getFilterModel()->setSearchText(QStringLiteral("пункт"));
    window->getTable().sortByColumn(itemcolumns::Name, Qt::AscendingOrder);
    QCOMPARE(column(itemcolumns::Name), toList("1|11|17|32|34|38|43"));
}

void TestItemTable::sortsNumbersByValue()
{
    window->getTable().sortByColumn(itemcolumns::Difference, Qt::AscendingOrder);
    QCOMPARE(column(itemcolumns::Difference),
             toList("\u22126,13000|\u22123,00000|\u22121,25000|\u22120,68000|1,70000|2,34000|5,10000|||||"));
    window->getTable().sortByColumn(itemcolumns::Difference, Qt::DescendingOrder);
    QCOMPARE(column(itemcolumns::Difference),
             toList("5,10000|2,34000|1,70000|\u22120,68000|\u22121,25000|\u22123,00000|\u22126,13000|||||"));
}

void TestItemTable::searchHidesWhatItDoesNotMean()
{
    ItemFilterModel& filter = *window->getTable().getFilterModel();
    filter.setSearchText(QStringLiteral("bmx секц"));
    QCOMPARE(column(itemcolumns::Name), toList("BMX – A|C – BMX"));
    filter.setSearchText(QStringLiteral("nothing"));
    QCOMPARE(column(itemcolumns::Name), QStringList());
    filter.setSearchText(QStringLiteral("  "));
    QCOMPARE(column(itemcolumns::Name).size(), 12);
}

void TestItemTable::emptyTableSaysWhatToDo()
{
    ItemTable& table = window->getTable();
    const auto showsText = [&table] {
        const QImage image = table.viewport()->grab().toImage();
        const QImage plain = [&image] {
            QImage background(image.size(), image.format());
            background.fill(image.pixelColor(0, 0));
            return background;
        }();
        return image != plain;
    };
    QVERIFY(showsText()); // its rows
    table.getFilterModel()->setSearchText(QStringLiteral("nothing"));
    QVERIFY(showsText());
    table.setEmptyText(QString());
    QVERIFY(!showsText());
}

// The points' results have come with the sections'.
void TestItemTable::resultsFindTheirPlace()
{
    ItemTable& table = window->getTable();
    table.sortByColumn(itemcolumns::Height, Qt::DescendingOrder);
    QCOMPARE(column(itemcolumns::Name).mid(0, 5), toList("BMY|BMX|A|B|C"));
    levelling::Adjustment adjustment;
    adjustment.status = levelling::AdjustmentStatus::Ok;
    adjustment.points.resize(5);
    adjustment.points[3] = levelling::AdjustedPoint{0, 500, 1};
    adjustment.points[4] = levelling::AdjustedPoint{0, 600, 1};
    adjustment.sections.resize(7);
    window->getDocument().setAdjustment(adjustment);
    QCOMPARE(column(itemcolumns::Name).mid(0, 5), toList("C|B|BMY|BMX|A"));
}

void TestItemTable::openLongNetwork()
{
    levelling::Network network;
    for (int i = 0; i < 21000; ++i) {
        levelling::Point point;
        point.id = QStringLiteral("P%1").arg(i);
        network.points.push_back(point);
    }
    window->getDocument().setNetwork(network);
}

void TestItemTable::waitForRows() const
{
    while (window->getTable().getFilterModel()->isWorking())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void TestItemTable::longTableSelectsAsSoonAsItCan()
{
    openLongNetwork();
    ItemTable& table = window->getTable();
    const LONGID fifth = window->getDocument().getPoints()[5]->getId();
    const auto isInSight = [&table] {
        return table.viewport()->rect().contains(table.visualRect(table.currentIndex()));
    };
    // At once, and again where the order puts it.
    table.sortByColumn(itemcolumns::Name, Qt::DescendingOrder);
    QVERIFY(table.selectItem(fifth));
    QCOMPARE(table.currentIndex().row(), 5);
    waitForRows();
    QCOMPARE(table.currentIndex().row(), 21000 - 1 - 5);
    QVERIFY(isInSight());

    table.getFilterModel()->setSearchText(QStringLiteral("77"));
    QVERIFY(!table.selectItem(fifth));
    waitForRows();
    QCOMPARE(column(itemcolumns::Name).constLast(), QStringLiteral("P77"));
    QVERIFY(!table.selectItem(fifth));
    // One that the search hid stands there when it is over.
    table.getFilterModel()->setSearchText(QString());
    QVERIFY(table.selectItem(fifth));
    waitForRows();
    QCOMPARE(table.getCurrentItem(), fifth);
    QVERIFY(isInSight());

    // Whoever chooses another row meanwhile keeps it.
    table.sortByColumn(itemcolumns::Name, Qt::AscendingOrder);
    QVERIFY(table.selectItem(fifth));
    table.setCurrentIndex(table.model()->index(7, itemcolumns::Name));
    const LONGID chosen = table.getCurrentItem();
    waitForRows();
    QCOMPARE(table.getCurrentItem(), chosen);
}

void TestItemTable::longWorkIsSpokenOf()
{
    openLongNetwork();
    const auto getStatus = [this] { return window->statusBar()->findChild<QLabel*>()->text(); };
    const QString counts = QStringLiteral("Пунктов: 21000, секций: 0, показано: %1");
    QCOMPARE(getStatus(), counts.arg(21000));
    ItemFilterModel& filter = *window->getTable().getFilterModel();
    Q_EMIT filter.workingChanged(true);
    QCOMPARE(getStatus(), counts.arg(21000));
    QTRY_COMPARE(getStatus(), QStringLiteral("Строки таблицы отбираются и сортируются…"));
    Q_EMIT filter.workingChanged(false);
    QCOMPARE(getStatus(), counts.arg(21000));
    filter.setSearchText(QStringLiteral("P7777"));
    waitForRows();
    QCOMPARE(getStatus(), counts.arg(1));
    QCOMPARE(column(itemcolumns::Name), toList("P7777"));
}

void TestItemTable::selectsItemById()
{
    const LONGID id = window->getDocument().getSections()[2]->getId();
    QVERIFY(window->getTable().selectItem(id));
    QCOMPARE(window->getTable().currentIndex().data().toString(), QStringLiteral("BMY – C"));
    QCOMPARE(window->getTable().getCurrentItem(), id);
    QVERIFY(!window->getTable().selectItem(4711));
    QCOMPARE(window->getTable().getCurrentItem(), id);
}

void TestItemTable::clickOpensProtocolOfPoint()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    window->getTable().sortByColumn(itemcolumns::Name, Qt::DescendingOrder);
    click(cell("A", itemcolumns::Report));
    QCOMPARE(desk->opened.getPaths().size(), 1);
    const QString page = QString::fromUtf8(readFile(desk->opened.getPaths().constFirst()));
    QVERIFY(page.contains(QStringLiteral("H = 105,15040\u00A0м")));
    QVERIFY(!page.contains(QStringLiteral("H = 104,48920\u00A0м")));
}

void TestItemTable::clickOpensProtocolOfSection()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    click(cell("BMY – C", itemcolumns::Report));
    QCOMPARE(desk->opened.getPaths().size(), 1);
    const QString page = QString::fromUtf8(readFile(desk->opened.getPaths().constFirst()));
    QVERIFY(page.contains(QStringLiteral("v = \u221252,80\u00A0мм")));
    QVERIFY(!page.contains(QStringLiteral("v = \u221267,20\u00A0мм")));
}

void TestItemTable::enterOpensProtocol()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    window->getTable().setCurrentIndex(cell("C", itemcolumns::Name));
    QTest::keyClick(&window->getTable(), Qt::Key_Return);
    QCOMPARE(desk->opened.getPaths().size(), 1);
}

void TestItemTable::clickOnUnmentionedItemDoesNothing()
{
    click(cell("A", itemcolumns::Report));
    click(cell("BMY – C", itemcolumns::Report));
    QCOMPARE(desk->opened.getPaths(), QStringList());
}

void TestItemTable::clickDuringRunDoesNothing()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    QVERIFY(window->isRunWorking());
    click(cell("A", itemcolumns::Report));
    QCOMPARE(desk->opened.getPaths(), QStringList());
    QVERIFY(window->getMonitor().waitForFinished());
    click(cell("A", itemcolumns::Report));
    QCOMPARE(desk->opened.getPaths().size(), 1);
}

void TestItemTable::namesAreShownAsTheyAre()
{
    window = desk->makeWindow(testNetworkPath(QStringLiteral("small.gkf")));
    const QModelIndex index = cell("<img src=x>id=7", itemcolumns::Name);
    QCOMPARE(index.data().toString(), QStringLiteral("<img src=x>id=7"));
    QCOMPARE(index.data(Qt::ToolTipRole).toString(), QStringLiteral("&lt;img src=x&gt;id=7"));
}

QTEST_MAIN(TestItemTable)
#include "tst_itemtable.moc"
