#include "apps/desk/document/Document.h"
#include "apps/desk/document/NetworkChange.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterBar.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/SearchField.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUndoStack>

#include <algorithm>

using namespace orvel::desk;
using namespace orvel::test;

namespace {

levelling::Point makePoint(const QString& name)
{
    levelling::Point point;
    point.id = name;
    return point;
}

/// Two points and a section with all that a file can tell.
levelling::Network makeNetwork(const QString& name)
{
    levelling::Network network;
    network.sources = QStringList{QStringLiteral("first.gkf"), QStringLiteral("=second.csv")};
    network.points = {makePoint(name), makePoint(QStringLiteral("B"))};
    network.points[0].line = 3;
    levelling::Section section;
    section.to = 1;
    section.difference = -1.25;
    section.distance = 0.8004;
    section.stations = 12;
    section.sigma = 1.5;
    section.source = 1;
    section.line = 7;
    section.date = QStringLiteral("12.05.2024");
    section.note = QStringLiteral("wind\tfrom the left");
    network.sections = {section};
    return network;
}

QPalette makePalette(const QColor& base, const QColor& text)
{
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    return palette;
}

} // namespace

/// What the item table shows of its rows, which of them, and what it gives out.
class TestTableLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsWhatTheFileTells();
    void showsWhatTheAdjustmentTells();
    void showsTheGravestLine();
    void gravestLineIsNotToldByColourAlone();
    void textsAreReadableOnEveryPalette_data();
    void textsAreReadableOnEveryPalette();
    void residualsSortBySize();
    void firstColumnsAreFew();
    void columnsAreChosenInTheHeader();
    void chosenColumnsAreKept();
    void unknownStateChangesNothing();
    void usualColumnsComeBack();
    void copiesSelectedRowsAsShown();
    void copyIsNoFormula();
    void longCopyLetsOthersHaveTheirTurn();
    void changedOrderEndsTheCopy();
    void choosesKindsOfItems();
    void tellsWhatIsSwitchedOff();
    void numbersHaveTheDecimalsOfTheProject();
    void linkedItemIsShownWhateverIsChosen();
    void escapeClearsTheSearch();
    void contextMenuHasWhatOneCanDo();
    void rowLeadsToItsLinesAndToThePicture();

private:
    void run(const char* action) const;
    QStringList column(int number) const;
    QModelIndex cell(const char* name, int number) const;
    QStringList cells(const char* name, const std::vector<int>& columns) const;
    QStringList titles() const;
    void press(const char* button) const;
    QString count() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

void TestTableLook::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
}

void TestTableLook::cleanup()
{
    window.reset();
    desk.reset();
}

void TestTableLook::run(const char* action) const
{
    QVERIFY(triggerAction(*window, QString::fromUtf8(action)));
    QVERIFY(window->getMonitor().waitForFinished());
}

QStringList TestTableLook::column(int number) const
{
    QStringList texts;
    const QAbstractItemModel* model = window->getTable().model();
    for (int i = 0; i < model->rowCount(); ++i)
        texts.append(model->index(i, number).data().toString());
    return texts;
}

QModelIndex TestTableLook::cell(const char* name, int number) const
{
    const int index = column(itemcolumns::Name).indexOf(QString::fromUtf8(name));
    return window->getTable().model()->index(index, number);
}

QStringList TestTableLook::cells(const char* name, const std::vector<int>& columns) const
{
    QStringList texts;
    for (const int number : columns)
        texts.append(cell(name, number).data().toString());
    return texts;
}

/// Of the columns that are shown.
QStringList TestTableLook::titles() const
{
    QStringList texts;
    for (const int number : window->getTable().getColumns().listShown())
        texts.append(window->getTable().model()->headerData(number, Qt::Horizontal).toString());
    return texts;
}

void TestTableLook::press(const char* button) const
{
    for (auto* each : window->findChild<ItemFilterBar*>()->findChildren<QToolButton*>()) {
        if (each->text() == QString::fromUtf8(button))
            each->click();
    }
}

QString TestTableLook::count() const
{
    return window->findChild<ItemFilterBar*>()->findChild<QLabel*>()->text();
}

void TestTableLook::showsWhatTheFileTells()
{
    using namespace itemcolumns;
    window->getDocument().setNetwork(makeNetwork(QStringLiteral("A")));
    const std::vector<int> columns{Length, Stations, Source, SourceLine, Date, Note};
    QCOMPARE(cells("A – B", columns), toList("0,800|12|=second.csv|7|12.05.2024|wind\tfrom the left"));
    QCOMPARE(cells("A", columns), toList("||first.gkf|3||"));
    QCOMPARE(cells("B", columns), toList("||first.gkf|||"));
}

void TestTableLook::showsWhatTheAdjustmentTells()
{
    using namespace itemcolumns;
    const std::vector<int> columns{Length, Residual, NormalisedResidual, Redundancy};
    QCOMPARE(cells("BMY – C", columns), toList("2,000|||"));
    run("Уравнивание");
    QCOMPARE(cells("BMY – C", columns), toList("2,000|\u221252,80|1,61|0,56"));
    QCOMPARE(cells("C", columns), toList("|||"));
}

void TestTableLook::showsTheGravestLine()
{
    using namespace itemcolumns;
    QCOMPARE(cell("A – B", Severity).data().toString(), QString());
    run("Предобработка");
    run("Уравнивание");
    QCOMPARE(cells("BMX – A", {Severity}), toList("ошибка"));
    QCOMPARE(cells("A – B", {Severity}), toList("сообщение"));
    QCOMPARE(cells("BMX", {Severity}), toList("ошибка"));
    window->getTable().sortByColumn(Severity, Qt::AscendingOrder);
    QCOMPARE(column(Severity).constFirst(), QStringLiteral("ошибка"));
}

void TestTableLook::gravestLineIsNotToldByColourAlone()
{
    QVERIFY(!cell("BMX – A", itemcolumns::Difference).data(Qt::BackgroundRole).isValid());
    QCOMPARE(cell("BMX – A", itemcolumns::Name).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("BMX – A"));
    const auto getIcon = [this] {
        return cell("BMX – A", itemcolumns::Name)
            .data(Qt::DecorationRole)
            .value<QIcon>()
            .pixmap(16)
            .toImage();
    };
    const QImage before = getIcon();
    run("Предобработка");
    for (int number = 0; number < itemcolumns::kCount; ++number)
        QVERIFY(cell("BMX – A", number).data(Qt::BackgroundRole).isValid());
    QCOMPARE(cell("BMX – A", itemcolumns::Name).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("BMX – A, ошибка"));
    QVERIFY(getIcon() != before);
}

void TestTableLook::textsAreReadableOnEveryPalette_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<bool>("isTinted");
    QTest::newRow("light") << makePalette(QColor(255, 255, 255), QColor(0, 0, 0)) << true;
    QTest::newRow("light, grey texts") << makePalette(QColor(252, 252, 252), QColor(35, 38, 41)) << true;
    QTest::newRow("dark") << makePalette(QColor(27, 30, 32), QColor(252, 252, 252)) << true;
    QTest::newRow("black") << makePalette(QColor(0, 0, 0), QColor(255, 255, 255)) << true;
    QTest::newRow("hardly readable") << makePalette(QColor(255, 255, 255), QColor(118, 118, 118)) << false;
}

void TestTableLook::textsAreReadableOnEveryPalette()
{
    QFETCH(QPalette, palette);
    QFETCH(bool, isTinted);
    const QColor& base = palette.color(QPalette::Base);
    QVERIFY(itemlook::getContrast(base, palette.color(QPalette::Text)) >= 4.5);
    for (const auto kind : {COVMessage::Error, COVMessage::Warning}) {
        const QColor background = itemlook::getBackground(kind, palette);
        QVERIFY(itemlook::getContrast(background, palette.color(QPalette::Text)) >= 4.5);
        QVERIFY(itemlook::getContrast(background, itemlook::getOffColor(palette)) >= 4.5);
        QCOMPARE(background != base, isTinted);
    }
    QCOMPARE(itemlook::getOffColor(palette) != palette.color(QPalette::Text), isTinted);
    QVERIFY(!itemlook::getBackground(COVMessage::Message, palette).isValid());
    QVERIFY(itemlook::getContrast(base, itemlook::getLinkColor(palette)) >= 4.5);
    QCOMPARE(itemlook::getLinkColor(palette) == palette.color(QPalette::Link), base.lightness() > 128);
    QCOMPARE(itemlook::getContrast(Qt::black, Qt::white), 21.0);
}

void TestTableLook::residualsSortBySize()
{
    run("Уравнивание");
    QHeaderView* header = window->getTable().horizontalHeader();
    const auto click = [header](int number) {
        const QPoint place(header->sectionViewportPosition(number) + header->sectionSize(number) / 2,
                           header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
    };
    window->resize(1600, 700);
    click(itemcolumns::Residual);
    // The largest stands first at the first click.
    QCOMPARE(header->sortIndicatorOrder(), Qt::DescendingOrder);
    QStringList residuals = column(itemcolumns::Residual).mid(0, 7);
    QCOMPARE(residuals, toList("\u221267,20|\u221252,80|+50,40|+18,80|\u221210,80|+9,60|+8,00"));
    click(itemcolumns::Residual);
    std::reverse(residuals.begin(), residuals.end());
    QCOMPARE(column(itemcolumns::Residual).mid(0, 7), residuals);
    click(itemcolumns::Name);
    QCOMPARE(header->sortIndicatorOrder(), Qt::AscendingOrder);
}

void TestTableLook::firstColumnsAreFew()
{
    QCOMPARE(titles().join(QLatin1Char(';')),
             QStringLiteral("Имя;Вид;Важность;Высота, м;СКО, мм;Превышение, м;Длина, км;Поправка, мм;|v|/σ;"
                            "Протокол"));
}

void TestTableLook::columnsAreChosenInTheHeader()
{
    ItemTable& table = window->getTable();
    QHeaderView* header = table.horizontalHeader();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), header->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(header->viewport(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QCOMPARE(menu, table.getColumns().getMenu());
    menu->actions().at(itemcolumns::Date)->trigger();
    menu->actions().at(itemcolumns::Height)->trigger();
    menu->close();
    QVERIFY(!table.isColumnHidden(itemcolumns::Date));
    QVERIFY(table.isColumnHidden(itemcolumns::Height));
    // A row without a name tells nothing.
    QVERIFY(!menu->actions().at(itemcolumns::Name)->isEnabled());
    table.getColumns().choose(itemcolumns::Name, false);
    QVERIFY(!table.isColumnHidden(itemcolumns::Name));
}

void TestTableLook::chosenColumnsAreKept()
{
    TableColumns& columns = window->getTable().getColumns();
    columns.choose(itemcolumns::Stations, true);
    columns.choose(itemcolumns::X, false);
    columns.choose(itemcolumns::Sigma, false);
    window->getTable().horizontalHeader()->moveSection(0, 2);
    const QStringList chosen = titles();
    window->getDocument().setModified(false);
    QVERIFY(window->close());
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    QCOMPARE(titles(), chosen);
    QVERIFY(!window->getTable().getColumns().isChosen(itemcolumns::X));
    QVERIFY(window->getTable().getColumns().isChosen(itemcolumns::Y));
}

void TestTableLook::unknownStateChangesNothing()
{
    const QStringList before = titles();
    for (const QByteArray& state : {QByteArray(), QByteArray("nonsense"), QByteArray(200, '\xff')}) {
        window->getTable().getColumns().restore(state);
        QCOMPARE(titles(), before);
    }
}

void TestTableLook::usualColumnsComeBack()
{
    const QStringList before = titles();
    TableColumns& columns = window->getTable().getColumns();
    columns.choose(itemcolumns::Stations, true);
    window->getTable().horizontalHeader()->moveSection(0, 2);
    window->getTable().sortByColumn(itemcolumns::Name, Qt::DescendingOrder);
    QVERIFY(titles() != before);
    QVERIFY(triggerAction(*window, QStringLiteral("Обычные столбцы")));
    QCOMPARE(titles(), before);
    QCOMPARE(column(itemcolumns::Name).constFirst(), QStringLiteral("BMX"));
}

void TestTableLook::copiesSelectedRowsAsShown()
{
    ItemTable& table = window->getTable();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    table.clearSelection();
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));

    const QSignalSpy copied(&table, &ItemTable::copied);
    table.selectRow(11);
    table.selectionModel()->select(table.model()->index(0, 0),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QCOMPARE(table.getSelectedItems(),
             (std::vector<LONGID>{window->getDocument().getPoints()[0]->getId(),
                                  window->getDocument().getSections()[6]->getId()}));
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("Имя\tВид\tВажность\tВысота, м\tСКО, мм\tПревышение, м\tДлина, км\t"
                            "Поправка, мм\t|v|/σ\n"
                            "BMX\tисходный репер\t\t100,00000\t\t\t\t\t\n"
                            "B – C\tсекция\t\t\t1,41\t1,70000\t2,000\t\t\n"));
    QCOMPARE(copied.count(), 1);
    QCOMPARE(copied.constFirst().constFirst().toInt(), 2);
}

void TestTableLook::copyIsNoFormula()
{
    window->getDocument().setNetwork(makeNetwork(QStringLiteral("=1+1")));
    ItemTable& table = window->getTable();
    table.getColumns().choose(itemcolumns::Note, true);
    table.getColumns().choose(itemcolumns::Source, true);
    for (const int number :
         {itemcolumns::Type, itemcolumns::Severity, itemcolumns::Height, itemcolumns::Sigma,
          itemcolumns::Residual, itemcolumns::NormalisedResidual, itemcolumns::Length})
        table.getColumns().choose(number, false);
    table.selectAll();
    table.copySelected();
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("Имя\tПревышение, м\tФайл\tПримечание\n"
                                                               "'=1+1\t\tfirst.gkf\t\n"
                                                               "B\t\tfirst.gkf\t\n"
                                                               "'=1+1 – B\t-1,25000\t'=second.csv\t"
                                                               "wind from the left\n"));
}

void TestTableLook::longCopyLetsOthersHaveTheirTurn()
{
    levelling::Network network;
    for (int i = 0; i < 50000; ++i)
        network.points.push_back(makePoint(QStringLiteral("P%1").arg(i)));
    window->getDocument().setNetwork(network);
    ItemTable& table = window->getTable();
    const QSignalSpy copied(&table, &ItemTable::copied);
    table.selectAll();
    table.copySelected();
    QCOMPARE(copied.count(), 0);
    QTRY_COMPARE(copied.count(), 1);
    QCOMPARE(copied.constFirst().constFirst().toInt(), 50000);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 50002);
    QCOMPARE(lines[50000], QStringLiteral("P49999\tпункт\t\t\t\t\t\t\t"));
}

void TestTableLook::changedOrderEndsTheCopy()
{
    levelling::Network network;
    for (int i = 0; i < 50000; ++i)
        network.points.push_back(makePoint(QStringLiteral("P%1").arg(i)));
    window->getDocument().setNetwork(network);
    ItemTable& table = window->getTable();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    const QSignalSpy copied(&table, &ItemTable::copied);
    table.selectAll();
    table.copySelected();
    window->getDocument().setNetwork(makeNetwork(QStringLiteral("A")));
    QTest::qWait(200);
    QCOMPARE(copied.count(), 0);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
}

void TestTableLook::choosesKindsOfItems()
{
    QCOMPARE(count(), QStringLiteral("12 из 12"));
    press("Пункты");
    QCOMPARE(column(itemcolumns::Name), toList("BMX|BMY|A|B|C"));
    QCOMPARE(count(), QStringLiteral("5 из 12"));
    press("Секции");
    QCOMPARE(count(), QStringLiteral("7 из 12"));
    press("Сверх допуска");
    QCOMPARE(count(), QStringLiteral("0 из 12"));
    run("Предобработка");
    QStringList wrong;
    for (const LevellingSection* section : window->getDocument().getSections()) {
        if (window->getDocument().getSummary().findWorst(section->getId()) == COVMessage::Error)
            wrong.append(section->getName());
    }
    QVERIFY(!wrong.isEmpty());
    QCOMPARE(column(itemcolumns::Name), wrong);
    press("Всё");
    QCOMPARE(count(), QStringLiteral("12 из 12"));
}

void TestTableLook::tellsWhatIsSwitchedOff()
{
    Document& document = window->getDocument();
    const LONGID id = document.getSections()[2]->getId();
    QVERIFY(!cell("BMY – C", itemcolumns::Name).data(Qt::ForegroundRole).isValid());
    press("Отключённые");
    QCOMPARE(count(), QStringLiteral("0 из 12"));
    QVERIFY(document.applyChange(QStringLiteral("off"),
                                 networkchange::switchOff(document, {id}, QStringLiteral("a < b"))));
    QCOMPARE(count(), QStringLiteral("1 из 12"));
    QCOMPARE(cells("BMY – C", {itemcolumns::Type}), toList("секция, отключена"));
    QCOMPARE(cell("BMY – C", itemcolumns::Type).data(Qt::ToolTipRole).toString(),
             QStringLiteral("Отключена: a &lt; b"));
    QVERIFY(cell("BMY – C", itemcolumns::Name).data(Qt::ForegroundRole).isValid());
    document.getUndoStack().undo();
    QCOMPARE(count(), QStringLiteral("0 из 12"));
}

void TestTableLook::numbersHaveTheDecimalsOfTheProject()
{
    using namespace itemcolumns;
    run("Уравнивание");
    const std::vector<int> columns{Height, Sigma, Difference, Residual};
    QCOMPARE(cells("BMY – C", columns), toList("|1,41|\u22121,25000|\u221252,80"));
    ToleranceRules rules = window->getDocument().getToleranceRules();
    rules.heightDecimals = 3;
    rules.millimetreDecimals = 1;
    const QSignalSpy changed(window->getTable().model(), &QAbstractItemModel::dataChanged);
    window->getDocument().setToleranceRules(rules);
    QVERIFY(changed.count() >= 2);
    QCOMPARE(cells("BMY – C", columns), toList("|1,4|\u22121,250|\u221252,8"));
}

void TestTableLook::linkedItemIsShownWhateverIsChosen()
{
    press("Секции");
    window->locateItem(window->getDocument().getPoints()[4]->getId());
    QCOMPARE(window->getTable().currentIndex().data().toString(), QStringLiteral("C"));
    QCOMPARE(count(), QStringLiteral("12 из 12"));
}

void TestTableLook::escapeClearsTheSearch()
{
    SearchField& search = window->findChild<ItemFilterBar*>()->getSearch();
    QTest::keyClicks(&search, QStringLiteral("BMX"));
    QCOMPARE(count(), QStringLiteral("3 из 12"));
    QTest::keyClick(&search, Qt::Key_Escape);
    QCOMPARE(search.text(), QString());
    QCOMPARE(count(), QStringLiteral("12 из 12"));

    QTest::keyClicks(&search, QStringLiteral("BMX"));
    QTest::keyClick(&window->getTable(), Qt::Key_Escape);
    QCOMPARE(count(), QStringLiteral("12 из 12"));
}

void TestTableLook::contextMenuHasWhatOneCanDo()
{
    ItemTable& table = window->getTable();
    QStringList texts;
    QTimer::singleShot(0, [&texts] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (const QAction* action : menu->actions())
            texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), table.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(table.viewport(), &event);
    for (const char* text : {"О &выделенном пункте или секции", "В &строках протокола", "На с&хеме", "-",
                             "&Копировать строки", "&Столбцы"})
        QVERIFY2(texts.contains(QString::fromUtf8(text)), text);
}

void TestTableLook::rowLeadsToItsLinesAndToThePicture()
{
    run("Предобработка");
    ItemTable& table = window->getTable();
    const LONGID id = window->getDocument().getSections()[0]->getId();
    QVERIFY(table.selectItem(id));
    QVERIFY(triggerAction(*window, QStringLiteral("В строках протокола")));
    const ProtocolPanel& panel = window->getProtocolPanel();
    QTRY_VERIFY(!panel.isWorking());
    const auto buttons = panel.findChildren<QToolButton*>();
    QVERIFY(buttons.at(3)->isChecked());
    // The errors about it, of three.
    QCOMPARE(buttons.at(0)->text(), QStringLiteral("1"));

    const auto* picture = window->findChild<QDockWidget*>(QStringLiteral("picture"));
    QVERIFY(!picture->isVisible());
    QVERIFY(triggerAction(*window, QStringLiteral("На схеме")));
    QVERIFY(picture->isVisible());
}

QTEST_MAIN(TestTableLook)
#include "tst_tablelook.moc"
