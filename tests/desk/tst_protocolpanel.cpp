#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/SearchField.h"
#include "apps/desk/protocol/LinePage.h"
#include "apps/desk/protocol/LineText.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAbstractItemModelTester>
#include <QDockWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <cmath>

using namespace orvel::desk;
using namespace orvel::test;

/// The lines of a protocol inside the desk.
class TestProtocolPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void markUpIsTakenOff_data();
    void markUpIsTakenOff();
    void linesStandByStageAndKind();
    void treeKeepsTheRules();
    void hiddenKindsAreCounted();
    void wordsAreFoundInAnyCase();
    void linesAboutOneItem();
    void nextErrorGoesRound();
    void warningsAreTheProblemsWhereNoErrorsAre();
    void latestRunIsShown();
    void latestRunStandsFirst();
    void lineSelectsItsItem();
    void lineSelectsAllItsSections();
    void linesAboutAPointStay();
    void lineAboutTheSelectedItemKeepsIt();
    void selectedItemFiltersTheLines();
    void searchKeepsTheLine();
    void f8GoesToTheNextError();
    void f8FindsWhatTheSearchHides();
    void lineOfADeletedItemSelectsNothing();
    void f8WaitsForTheLines();
    void activatedLineOpensThePageThere();
    void pageIsMadeOnceForAllLines();
    void hiddenPanelReadsNothing();

private:
    /// A window whose network was imported and pre-processed, with what the panel shows in place.
    void openWindow(const QString& action);
    void waitForLines() const;
    QStringList shownTexts() const;
    LONGID pointId(const QString& name) const;
    void goToMisclosure() const;
    QStringList selectedNames() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

ProtocolLines makeLines()
{
    ProtocolLines lines;
    lines.lines = {{COVMessage::Message, 1, QStringLiteral("first"), {5}},
                   {COVMessage::Error, 1, QStringLiteral("Second"), {6}},
                   {COVMessage::Warning, 2, QStringLiteral("third"), {5, 6}},
                   {COVMessage::Error, 2, QStringLiteral("fourth"), {7}},
                   {COVMessage::Error, 2, QStringLiteral("fifth"), {5}},
                   {COVMessage::Message, 0, QStringLiteral("sixth"), {0}}};
    lines.stageCaption = {{1, QStringLiteral("One")}, {2, QStringLiteral("Two")}};
    return lines;
}

/// The tree's texts, two blanks deeper in each branch.
void listTexts(const QAbstractItemModel& model, const QModelIndex& parent, const QString& indent,
               QStringList& texts)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        texts.append(indent + index.data().toString());
        listTexts(model, index, indent + QStringLiteral("  "), texts);
    }
}

QStringList listTexts(const QAbstractItemModel& model)
{
    QStringList texts;
    listTexts(model, {}, QString(), texts);
    return texts;
}

QStringList listTexts(const ProtocolLines& lines, const ProtocolFilter& filter)
{
    ProtocolTreeModel model;
    model.setLines(std::make_shared<const ProtocolLines>(lines), ProtocolTree::make(lines, filter));
    return listTexts(model);
}

} // namespace

void TestProtocolPanel::cleanup()
{
    window.reset();
    desk.reset();
}

void TestProtocolPanel::markUpIsTakenOff_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("plain") << QStringLiteral("H = 100,1 м") << QStringLiteral("H = 100,1 м");
    QTest::newRow("link") << QStringLiteral("Пункт <a href=\"orvel://locate-item?id=5\">Рп 1</a>: H")
                          << QStringLiteral("Пункт Рп 1: H");
    QTest::newRow("line break") << QStringLiteral("a<br>b<br/>c<BR />d") << QStringLiteral("a b c d");
    QTest::newRow("bold is no break") << QStringLiteral("a<b>b</b>") << QStringLiteral("ab");
    QTest::newRow("references") << QStringLiteral("&lt;b&gt; &amp;&quot;&apos;&#39;&#x41;&nbsp;")
                                << QStringLiteral("<b> &\"''A\u00A0");
    QTest::newRow("no references") << QStringLiteral("a & b; &; &unknown; &#; &#x; &#1114112;")
                                   << QStringLiteral("a & b; &; &unknown; &#; &#x; &#1114112;");
    QTest::newRow("beyond the first plane")
        << QStringLiteral("&#128512;") << QString::fromUtf8("\xF0\x9F\x98\x80");
    QTest::newRow("no tag") << QStringLiteral("a < b") << QStringLiteral("a < b");
}

void TestProtocolPanel::markUpIsTakenOff()
{
    QFETCH(QString, html);
    QFETCH(QString, text);
    QCOMPARE(toPlainText(html), text);
}

void TestProtocolPanel::linesStandByStageAndKind()
{
    QCOMPARE(
        listTexts(makeLines(), {}),
        toList("Вне этапов (1)|  Сообщения (1)|    sixth|One (2)|  Ошибки (1)|    Second|  Сообщения (1)|    "
               "first|Two (3)|  Ошибки (2)|    fourth|    fifth|  Предупреждения (1)|    third"));
    ProtocolLines withoutStages = makeLines();
    withoutStages.stageCaption.clear();
    QCOMPARE(
        listTexts(withoutStages, {}),
        toList(
            "Ошибки (3)|  Second|  fourth|  fifth|Предупреждения (1)|  third|Сообщения (2)|  first|  sixth"));
}

void TestProtocolPanel::treeKeepsTheRules()
{
    ProtocolTreeModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const ProtocolLines lines = makeLines();
    model.setLines(std::make_shared<const ProtocolLines>(lines), ProtocolTree::make(lines, {}));
    for (int place = 0; place < 6; ++place) {
        const QModelIndex index = model.findPlace(place);
        QCOMPARE(model.getPlace(index), place);
        QCOMPARE(index.data().toString(), lines.lines[static_cast<std::size_t>(place)].text);
    }
    QVERIFY(!model.findPlace(6).isValid());
    model.setLines(std::make_shared<const ProtocolLines>(), ProtocolTree());
    QCOMPARE(model.rowCount(), 0);
}

void TestProtocolPanel::hiddenKindsAreCounted()
{
    ProtocolFilter filter;
    filter.hiddenKinds = {COVMessage::Error, COVMessage::Message};
    QCOMPARE(listTexts(makeLines(), filter), toList("Two (1)|  Предупреждения (1)|    third"));
    const ProtocolTree tree = ProtocolTree::make(makeLines(), filter);
    QCOMPARE(tree.counts.at(COVMessage::Error), 3);
    QCOMPARE(tree.counts.at(COVMessage::Message), 2);
}

void TestProtocolPanel::wordsAreFoundInAnyCase()
{
    ProtocolFilter filter;
    filter.words = toList("sec|OND");
    QCOMPARE(listTexts(makeLines(), filter), toList("One (1)|  Ошибки (1)|    Second"));
}

void TestProtocolPanel::linesAboutOneItem()
{
    ProtocolFilter filter;
    filter.item = 6;
    QCOMPARE(listTexts(makeLines(), filter),
             toList("One (1)|  Ошибки (1)|    Second|Two (1)|  Предупреждения (1)|    third"));
}

void TestProtocolPanel::nextErrorGoesRound()
{
    ProtocolTreeModel model;
    const ProtocolLines lines = makeLines();
    model.setLines(std::make_shared<const ProtocolLines>(lines), ProtocolTree::make(lines, {}));
    QStringList forward;
    QModelIndex index;
    for (int i = 0; i < 4; ++i) {
        index = model.findNext(index, COVMessage::Error, true);
        const auto [number, all] = model.countOfKind(index);
        forward.append(QStringLiteral("%1 %2/%3").arg(index.data().toString()).arg(number).arg(all));
    }
    QCOMPARE(forward, toList("Second 1/3|fourth 2/3|fifth 3/3|Second 1/3"));
    QStringList back;
    for (int i = 0; i < 4; ++i) {
        index = model.findNext(index, COVMessage::Error, false);
        back.append(index.data().toString());
    }
    QCOMPARE(back, toList("fifth|fourth|Second|fifth"));
    // From a branch, and from a line of another kind.
    QCOMPARE(model.findNext(model.index(2, 0), COVMessage::Error, true).data().toString(),
             QStringLiteral("fourth"));
    QCOMPARE(model.findNext(model.index(2, 0), COVMessage::Error, false).data().toString(),
             QStringLiteral("Second"));
    QCOMPARE(model.findNext(model.findPlace(0), COVMessage::Error, false).data().toString(),
             QStringLiteral("Second"));
    QVERIFY(!model.findNext({}, COVMessage::Title, true).isValid());
}

void TestProtocolPanel::openWindow(const QString& action)
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    if (!action.isEmpty()) {
        QVERIFY(triggerAction(*window, action));
        QVERIFY(window->getMonitor().waitForFinished());
    }
    waitForLines();
}

void TestProtocolPanel::waitForLines() const
{
    QVERIFY(QTest::qWaitFor([this] { return !window->getProtocolPanel().isWorking(); }));
    QCoreApplication::processEvents();
}

QStringList TestProtocolPanel::shownTexts() const
{
    return listTexts(*window->getProtocolPanel().getView().model());
}

LONGID TestProtocolPanel::pointId(const QString& name) const
{
    for (const LevellingPoint* point : window->getDocument().getPoints()) {
        if (point->getName() == name)
            return point->getId();
    }
    return 0;
}

void TestProtocolPanel::warningsAreTheProblemsWhereNoErrorsAre()
{
    openWindow({});
    ProtocolPanel& panel = window->getProtocolPanel();
    panel.findChildren<QToolButton*>().constFirst()->click();
    waitForLines();
    panel.goToProblem(true);
    QCOMPARE(panel.getView().currentIndex().parent().data().toString(), QStringLiteral("Предупреждения (1)"));
}

void TestProtocolPanel::latestRunIsShown()
{
    openWindow(QStringLiteral("Предобработка"));
    QCOMPARE(window->getProtocolPanel().getProtocolType(), int(enums::Compile));
    QCOMPARE(shownTexts().constFirst(), QStringLiteral("Ошибки (3)"));
    QStringList buttons;
    for (const QToolButton* button : window->getProtocolPanel().findChildren<QToolButton*>())
        buttons.append(button->text() + QStringLiteral(", ") + button->accessibleName());
    QCOMPARE(buttons.mid(0, 3), toList("3, Ошибки: 3|0, Предупреждения: 0|10, Сообщения: 10"));
}

void TestProtocolPanel::latestRunStandsFirst()
{
    openWindow(QStringLiteral("Предобработка"));
    ProtocolSummary summary = window->getDocument().getSummary();
    summary.types.at(enums::Import).ended = QDateTime::currentDateTime().addSecs(5);
    auto* list = window->findChild<ProtocolList*>();
    list->setSummary(summary);
    QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("Импорт"));
    QCOMPARE(list->topLevelItem(0)->text(4),
             summary.types.at(enums::Import).ended.toString(QStringLiteral("hh:mm:ss")));
    QCOMPARE(list->currentItem()->text(0), QStringLiteral("Предобработка"));
}

void TestProtocolPanel::lineSelectsItsItem()
{
    openWindow(QStringLiteral("Предобработка"));
    QTreeView& view = window->getProtocolPanel().getView();
    view.setFocus();
    window->getProtocolPanel().goToProblem(true);
    const LONGID item = window->getTable().getCurrentItem();
    QVERIFY(item != 0);
    QCOMPARE(window->focusWidget(), static_cast<QWidget*>(&view));
}

/// Goes to the next error about a misclosure.
void TestProtocolPanel::goToMisclosure() const
{
    const QString text = QStringLiteral("; секции: ");
    for (int step = 0; step < 20; ++step) {
        window->getProtocolPanel().goToProblem(true);
        if (window->getProtocolPanel().getView().currentIndex().data().toString().contains(text))
            return;
    }
    QFAIL("There is no misclosure over its limit.");
}

QStringList TestProtocolPanel::selectedNames() const
{
    QStringList names;
    for (const LONGID id : window->getTable().getSelectedItems()) {
        const LevellingSection* section = window->getDocument().findSection(id);
        names.append(section ? section->getName() : QString());
    }
    names.sort();
    return names;
}

void TestProtocolPanel::lineSelectsAllItsSections()
{
    openWindow(QStringLiteral("Уравнивание"));
    Document& document = window->getDocument();
    document.setLevellingClass(LevellingClass::I);
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    window->getMonitor().waitForFinished();
    waitForLines();
    QTreeView& view = window->getProtocolPanel().getView();
    const auto listNamed = [&view] {
        QStringList names = view.currentIndex()
                                .data()
                                .toString()
                                .section(QStringLiteral("; секции: "), 1)
                                .split(QStringLiteral(", "));
        names.sort();
        return names;
    };
    goToMisclosure();
    QVERIFY(listNamed().size() > 1);
    QCOMPARE(selectedNames(), listNamed());
    // The worst of them is the current one.
    const auto size = [&document](LONGID id) {
        return std::abs(document.findSection(id)->getResult()->normalisedResidual.value_or(0.0));
    };
    for (const LONGID id : window->getTable().getSelectedItems())
        QVERIFY(size(id) <= size(window->getTable().getCurrentItem()));
    // A click does the same.
    const QModelIndex line = view.currentIndex();
    goToMisclosure();
    QVERIFY(view.currentIndex() != line);
    QCOMPARE(selectedNames(), listNamed());
    view.scrollTo(line);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(line).center());
    QCOMPARE(view.currentIndex(), line);
    QCOMPARE(selectedNames(), listNamed());
}

void TestProtocolPanel::linesAboutAPointStay()
{
    openWindow(QStringLiteral("Предобработка"));
    ProtocolPanel& panel = window->getProtocolPanel();
    ItemTable& table = window->getTable();
    table.selectItem(pointId(QStringLiteral("М3")));
    panel.showAboutCurrent();
    waitForLines();
    const QStringList shown = shownTexts();
    panel.goToProblem(true);
    QCOMPARE(table.getCurrentItem(), pointId(QStringLiteral("М3")));
    QVERIFY(table.getSelectedItems().size() > 1);
    QVERIFY(window->getDocument().findSection(table.getSelectedItems().front()));
    waitForLines();
    QCOMPARE(shownTexts(), shown);
}

void TestProtocolPanel::lineAboutTheSelectedItemKeepsIt()
{
    openWindow(QStringLiteral("Предобработка"));
    ProtocolPanel& panel = window->getProtocolPanel();
    goToMisclosure();
    ItemTable& table = window->getTable();
    const std::vector<LONGID> selected = table.getSelectedItems();
    const LONGID other = selected.back();
    QVERIFY(other != table.getCurrentItem());
    table.selectItem(other);
    const QModelIndex line = panel.getView().currentIndex();
    panel.getView().setCurrentIndex({});
    panel.getView().setCurrentIndex(line);
    QCOMPARE(table.getCurrentItem(), other);
    QCOMPARE(table.getSelectedItems(), selected);
}

void TestProtocolPanel::selectedItemFiltersTheLines()
{
    openWindow(QStringLiteral("Предобработка"));
    ProtocolPanel& panel = window->getProtocolPanel();
    panel.goToProblem(true);
    const QStringList all = shownTexts();
    panel.findChildren<QToolButton*>().at(3)->click();
    waitForLines();
    const int lines =
        window->getDocument().getSummary().linesOfItem.value(window->getTable().getCurrentItem());
    QVERIFY(lines > 0);
    QVERIFY(shownTexts().size() < all.size());
}

void TestProtocolPanel::searchKeepsTheLine()
{
    openWindow(QStringLiteral("Предобработка"));
    ProtocolPanel& panel = window->getProtocolPanel();
    panel.goToProblem(true);
    const QString line = panel.getView().currentIndex().data().toString();
    const LONGID item = window->getTable().getCurrentItem();
    panel.getSearch().setText(line.left(12));
    waitForLines();
    QCOMPARE(panel.getView().currentIndex().data().toString(), line);
    panel.getSearch().setText(QStringLiteral("нет таких слов"));
    waitForLines();
    QCOMPARE(shownTexts(), QStringList());
    QCOMPARE(window->getTable().getCurrentItem(), item);
}

void TestProtocolPanel::f8GoesToTheNextError()
{
    openWindow(QStringLiteral("Предобработка"));
    QTreeView& view = window->getProtocolPanel().getView();
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    const QString first = view.currentIndex().data().toString();
    QCOMPARE(view.currentIndex().parent().data().toString(), QStringLiteral("Ошибки (3)"));
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    QVERIFY(view.currentIndex().data().toString() != first);
    QVERIFY(triggerAction(*window, QStringLiteral("Предыдущая ошибка")));
    QCOMPARE(view.currentIndex().data().toString(), first);
}

void TestProtocolPanel::f8FindsWhatTheSearchHides()
{
    openWindow(QStringLiteral("L1-анализ"));
    const QString found = QStringLiteral("М2 – М5");
    ItemTable& table = window->getTable();
    auto* search = window->findChild<SearchField*>();
    search->setText(QStringLiteral("М7"));
    QTRY_COMPARE(table.model()->rowCount(), 3);
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    QTRY_COMPARE(table.currentIndex().siblingAtColumn(itemcolumns::Name).data().toString(), found);
    QCOMPARE(search->text(), QString());
}

void TestProtocolPanel::lineOfADeletedItemSelectsNothing()
{
    openWindow(QStringLiteral("L1-анализ"));
    ItemTable& table = window->getTable();
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    const LONGID id = table.getCurrentItem();
    QVERIFY(triggerAction(*window, QStringLiteral("Удалить измерения")));
    QVERIFY(table.getCurrentItem() != 0);
    QVERIFY(table.getCurrentItem() != id);
    waitForLines();
    window->getProtocolPanel().getView().setCurrentIndex({});
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    QCOMPARE(table.getCurrentItem(), 0);
    QVERIFY(!isActionEnabled(*window, QStringLiteral("Удалить измерения")));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Этого пункта или этой секции в проекте больше нет."));
}

void TestProtocolPanel::f8WaitsForTheLines()
{
    openWindow(QStringLiteral("Предобработка"));
    auto* dock = window->findChild<QDockWidget*>(QStringLiteral("protocols"));
    dock->hide();
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(shownTexts(), QStringList());
    QVERIFY(triggerAction(*window, QStringLiteral("Следующая ошибка")));
    QVERIFY(dock->isVisible());
    waitForLines();
    QCOMPARE(window->getProtocolPanel().getView().currentIndex().parent().data().toString(),
             QStringLiteral("Ошибки (3)"));
}

void TestProtocolPanel::activatedLineOpensThePageThere()
{
    openWindow(QStringLiteral("Предобработка"));
    QTreeView& view = window->getProtocolPanel().getView();
    window->getProtocolPanel().goToProblem(true);
    const QString text = view.currentIndex().data().toString();
    Q_EMIT view.activated(view.currentIndex());
    const QString path = desk->opened.getPaths().constLast();
    const QByteArray name = "lines_" + QByteArray::number(enums::Compile);
    QCOMPARE(QFileInfo(path).fileName(), QString::fromLatin1(name + "_line.html"));
    QCOMPARE(readFile(path), "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n"
                             "<meta http-equiv=\"refresh\" content=\"0; url=" +
                                 name + ".html#find=" + QUrl::toPercentEncoding(text) + "\">\n");
    QVERIFY(
        readFile(QFileInfo(path).dir().filePath(QString::fromLatin1(name + ".html"))).contains("errorblock"));
}

void TestProtocolPanel::pageIsMadeOnceForAllLines()
{
    openWindow(QStringLiteral("Предобработка"));
    QTreeView& view = window->getProtocolPanel().getView();
    window->getProtocolPanel().goToProblem(true);
    Q_EMIT view.activated(view.currentIndex());
    const QString page = QFileInfo(desk->opened.getPaths().constLast())
                             .dir()
                             .filePath(QStringLiteral("lines_%1.html").arg(int(enums::Compile)));
    writeFile(page, "mark");
    window->getProtocolPanel().goToProblem(true);
    Q_EMIT view.activated(view.currentIndex());
    QCOMPARE(readFile(page), QByteArray("mark"));
    // After another run its lines are others.
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    QVERIFY(window->getMonitor().waitForFinished());
    waitForLines();
    window->getProtocolPanel().goToProblem(true);
    Q_EMIT view.activated(view.currentIndex());
    QVERIFY(readFile(page).contains("errorblock"));
}

void TestProtocolPanel::hiddenPanelReadsNothing()
{
    openWindow({});
    ProtocolPanel& panel = window->getProtocolPanel();
    const QSignalSpy shown(&panel, &ProtocolPanel::shown);
    panel.hide();
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCoreApplication::processEvents();
    QCOMPARE(shown.count(), 0);
    panel.show();
    waitForLines();
    QCOMPARE(shownTexts().constFirst(), QStringLiteral("Ошибки (3)"));
}

QTEST_MAIN(TestProtocolPanel)
#include "tst_protocolpanel.moc"
