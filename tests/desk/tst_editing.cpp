#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/edit/CellEdit.h"
#include "apps/desk/edit/NewSectionDialog.h"
#include "apps/desk/edit/OutdatedBar.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/PointTableModel.h"
#include "apps/desk/gui/SectionTableModel.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "tests/desk/DeskFixture.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QUndoStack>

#include <cmath>
#include <functional>

using namespace orvel::desk;
using namespace orvel::test;

namespace {

/// Does something with the next dialog, and knows whether one came.
class InDialog : public QObject
{
public:
    explicit InDialog(const std::function<void(QDialog&)>& whatToDo) : act(whatToDo)
    {
        QTimer::singleShot(0, this, &InDialog::look);
    }

    bool hasCome() const { return isDone; }

private:
    void look()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(5, this, &InDialog::look);
            return;
        }
        isDone = true;
        act(*dialog);
    }

    std::function<void(QDialog&)> act;
    bool isDone = false;
};

/// Answers a question for one text.
std::function<void(QDialog&)> type(const QString& text)
{
    return [text](QDialog& dialog) {
        static_cast<QInputDialog&>(dialog).setTextValue(text);
        dialog.accept();
    };
}

} // namespace

/// The network is changed in the desk's window.
class TestEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void numbersAreReadAsTheyAreTyped_data();
    void numbersAreReadAsTheyAreTyped();
    void valueIsTypedInTheTable();
    void stationsAreTypedInTheTable();
    void badValueIsRefusedWithOneMessage();
    void unchangedValueIsNoEdit();
    void heightOfABenchmarkIsTyped();
    void newHeightOfABenchmarkIsSeenAfterAnAdjustment();
    void rowsAreSwitchedOffWithAReasonAndOn();
    void sectionThatIsOffKeepsItsReason();
    void nextRowTakesThePlaceOfOneThatIsHidden();
    void severalSectionsGetOneSigma();
    void pointIsHeldAtAHeightAndFreed();
    void pointsWithoutHeightsAreNotHeldTogether();
    void measurementIsAddedByTheDialog();
    void measurementsAreDeletedAndComeBack();
    void undoNamesWhatItUndoes();
    void outdatedIsShownAndRunAgain();
    void pageOfAnOutdatedProtocolSaysSo();
    void contextMenuFollowsTheSelection();
    void nothingIsEditedWhileARunWorks();
    void typedValueIsTakenBeforeARun();
    void typedValueIsTakenBeforeTheWindowCloses();
    void typedValueIsTakenBeforeAnotherClass();
    void classFollowsUndo();

private:
    ItemTable& table() const { return window->getTable(); }
    Document& document() const { return window->getDocument(); }
    QModelIndex cell(const QString& name, int column) const;
    LONGID idOf(const QString& name) const;
    void select(const QStringList& names) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    /// The open editor of a cell, with a text that is not entered yet.
    QLineEdit* startTyping(const QModelIndex& index, const QString& text) const;
    void typeInto(const QModelIndex& index, const QString& text) const;
    QAction* findAction(const QString& start) const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

void TestEditing::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    for (QAbstractItemModel* model :
         {static_cast<QAbstractItemModel*>(window->findChild<PointTableModel*>()),
          static_cast<QAbstractItemModel*>(window->findChild<SectionTableModel*>()), table().model()})
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest, model);
}

void TestEditing::cleanup()
{
    window.reset();
    desk.reset();
}

QModelIndex TestEditing::cell(const QString& name, int column) const
{
    for (int row = 0; row < table().model()->rowCount(); ++row) {
        const QModelIndex first = table().model()->index(row, itemcolumns::Name);
        if (first.data().toString() == name)
            return first.siblingAtColumn(column);
    }
    return {};
}

LONGID TestEditing::idOf(const QString& name) const
{
    return cell(name, 0).data(itemcolumns::ItemIdRole).toLongLong();
}

void TestEditing::select(const QStringList& names) const
{
    table().clearSelection();
    for (const QString& name : names)
        table().selectionModel()->setCurrentIndex(cell(name, 0),
                                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

/// Presses a key in the table. Keys of menus work in the active window only.
void TestEditing::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QApplication::setActiveWindow(window.get());
    table().setFocus();
    QTest::keyClick(&table(), key, modifiers);
}

QLineEdit* TestEditing::startTyping(const QModelIndex& index, const QString& text) const
{
    table().setCurrentIndex(index);
    press(Qt::Key_F2);
    // An earlier editor that is gone from sight may still be about to be deleted.
    QLineEdit* editor = nullptr;
    for (auto* each : table().viewport()->findChildren<QLineEdit*>())
        editor = each->isVisible() ? each : editor;
    if (editor)
        editor->setText(text);
    return editor;
}

/// As by the keyboard: F2, the text, Enter.
void TestEditing::typeInto(const QModelIndex& index, const QString& text) const
{
    QLineEdit* editor = startTyping(index, text);
    QVERIFY(editor);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QAction* TestEditing::findAction(const QString& start) const
{
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->text().remove(QLatin1Char('&')).startsWith(start))
            return action;
    }
    return nullptr;
}

void TestEditing::numbersAreReadAsTheyAreTyped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<double>("number");
    const auto row = [](const char* text, bool isNumber, double number) {
        QTest::newRow(text) << QString::fromUtf8(text) << isNumber << number;
    };
    row("1,25", true, 1.25);
    row("1.25", true, 1.25);
    row(" -0,5 ", true, -0.5);
    row("\u22120,5", true, -0.5);
    row("12", true, 12.0);
    row("12 345,678", true, 12345.678);
    row("12\u2009345,6", true, 12345.6);
    row("12\u202F345,6", true, 12345.6);
    row("1 2", false, 0.0);
    row("1,234 567", false, 0.0);
    row("", false, 0.0);
    row("1,2,3", false, 0.0);
    row("1 м", false, 0.0);
    row("nan", false, 0.0);
    row("inf", false, 0.0);
    row("1e300", false, 0.0);
}

void TestEditing::numbersAreReadAsTheyAreTyped()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(double, number);
    const std::optional<double> read = celledits::parseNumber(text);
    QCOMPARE(read.has_value(), isNumber);
    QCOMPARE(read.value_or(0.0), number);
    if (read)
        QCOMPARE(*celledits::parseNumber(celledits::toText(*read)), *read);
}

void TestEditing::valueIsTypedInTheTable()
{
    const QString name = QStringLiteral("М5 – М3");
    typeInto(cell(name, itemcolumns::Difference), QStringLiteral("0,7512"));
    QCOMPARE(document().findSection(idOf(name))->getSection().difference, 0.7512);
    QCOMPARE(cell(name, itemcolumns::Difference).data().toString(), QStringLiteral("0,75120"));
    typeInto(cell(name, itemcolumns::Sigma), QStringLiteral("2.5"));
    QCOMPARE(*document().findSection(idOf(name))->getSection().stdev, 2.5);
    QCOMPARE(document().getUndoStack().count(), 2);
    QCOMPARE(document().getUndoStack().undoText(), QStringLiteral("СКО М5 – М3"));
    // Enter has entered the value, and shows no page of lines about it.
    QCOMPARE(desk->opened.getUrls().size(), 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(cell(name, itemcolumns::Sigma).data().toString(), QStringLiteral("2,91"));
}

void TestEditing::stationsAreTypedInTheTable()
{
    table().getColumns().choose(itemcolumns::Stations, true);
    const QString name = QStringLiteral("М5 – М3");
    for (const char* text : {"2,5", "0", "-3", "много"}) {
        typeInto(cell(name, itemcolumns::Stations), QString::fromUtf8(text));
        QCOMPARE(window->getMessageBar().getMessage(),
                 QStringLiteral("Станций «%1» — не целое число больше нуля, как 12.")
                     .arg(QString::fromUtf8(text)));
    }
    QCOMPARE(document().getUndoStack().count(), 0);
    typeInto(cell(name, itemcolumns::Stations), QStringLiteral("12"));
    QCOMPARE(cell(name, itemcolumns::Stations).data().toString(), QStringLiteral("12"));
    QCOMPARE(document().getUndoStack().undoText(), QStringLiteral("число станций М5 – М3"));
    const QString path = desk->path(QStringLiteral("stations.orvel"));
    QVERIFY(window->saveFile(path));
    Document reopened(desk->plugins, QString());
    projectfile::load(reopened, path, nullptr);
    const LevellingSection* section = reopened.findSection(idOf(name));
    QCOMPARE(*section->getSection().stations, 12);
    QVERIFY(!section->getOriginal()->stations);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(cell(name, itemcolumns::Stations).data().toString(), QString());
}

void TestEditing::badValueIsRefusedWithOneMessage()
{
    const QString name = QStringLiteral("М5 – М3");
    typeInto(cell(name, itemcolumns::Difference), QStringLiteral("пол-метра"));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Превышение «пол-метра» — не число. Введите метры, как −1,2345."));
    typeInto(cell(name, itemcolumns::Sigma), QStringLiteral("0"));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("СКО «0» — не число больше нуля. Введите миллиметры, как 2,5."));
    QCOMPARE(document().getUndoStack().count(), 0);
}

void TestEditing::unchangedValueIsNoEdit()
{
    const QModelIndex index = cell(QStringLiteral("М5 – М3"), itemcolumns::Sigma);
    typeInto(index, index.data(Qt::EditRole).toString());
    QCOMPARE(document().getUndoStack().count(), 0);
    QVERIFY(!document().findSection(idOf(QStringLiteral("М5 – М3")))->getSection().stdev);
}

void TestEditing::heightOfABenchmarkIsTyped()
{
    const QString name = QStringLiteral("Рп102");
    QVERIFY((cell(QStringLiteral("М3"), itemcolumns::Height).flags() & Qt::ItemIsEditable) == 0);
    typeInto(cell(name, itemcolumns::Height), QStringLiteral("152"));
    QCOMPARE(*document().findPoint(idOf(name))->getPoint().height, 152.0);
    QCOMPARE(*document().findPoint(idOf(name))->getOriginal()->height, 151.846);
    typeInto(cell(name, itemcolumns::Height), QStringLiteral("выше"));
    QCOMPARE(*document().findPoint(idOf(name))->getPoint().height, 152.0);
    QVERIFY(window->getMessageBar().getMessage().startsWith(QStringLiteral("Отметка «выше» — не число.")));
}

void TestEditing::newHeightOfABenchmarkIsSeenAfterAnAdjustment()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    const QString name = QStringLiteral("Рп102");
    typeInto(cell(name, itemcolumns::Height), QStringLiteral("152"));
    QCOMPARE(cell(name, itemcolumns::Height).data().toString(), QStringLiteral("152,00000"));
    QCOMPARE(*document().getGivenPositions()[name].height, 152.0);
    // So is the height of a point that becomes a benchmark.
    select({QStringLiteral("М3")});
    const InDialog height(type(QStringLiteral("150,25")));
    QVERIFY(triggerAction(*window, QStringLiteral("Сделать исходным репером…")));
    QVERIFY(height.hasCome());
    QCOMPARE(cell(QStringLiteral("М3"), itemcolumns::Height).data().toString(), QStringLiteral("150,25000"));
}

void TestEditing::rowsAreSwitchedOffWithAReasonAndOn()
{
    const QStringList names{QStringLiteral("М5 – М3"), QStringLiteral("М5 – М3 (2)"), QStringLiteral("М3")};
    select(names);
    const InDialog reason(type(QStringLiteral("  сильный   ветер ")));
    press(Qt::Key_F4);
    QVERIFY(reason.hasCome());
    for (const QString& name : names.mid(0, 2)) {
        QVERIFY(document().findSection(idOf(name))->isOff());
        QCOMPARE(document().findSection(idOf(name))->getOffReason(), QStringLiteral("сильный ветер"));
        QCOMPARE(cell(name, itemcolumns::Type).data().toString(), QStringLiteral("секция, отключена"));
        QVERIFY(cell(name, itemcolumns::Name).data(Qt::FontRole).value<QFont>().strikeOut());
        QCOMPARE(cell(name, itemcolumns::Type).data(Qt::ToolTipRole).toString(),
                 QStringLiteral("Отключена: сильный ветер"));
    }
    QCOMPARE(document().getUndoStack().undoText(), QStringLiteral("отключение секций: 2"));
    // All are off: no question, they are on again.
    press(Qt::Key_F4);
    QVERIFY(!document().findSection(idOf(names[0]))->isOff());
    QCOMPARE(document().getUndoStack().count(), 2);
    select({QStringLiteral("М3")});
    press(Qt::Key_F4);
    QCOMPARE(window->getMessageBar().getMessage(), QStringLiteral("Отключаются измерения: выделите секции."));
}

void TestEditing::sectionThatIsOffKeepsItsReason()
{
    select({QStringLiteral("М5 – М3")});
    {
        const InDialog reason(type(QStringLiteral("сбит штатив")));
        press(Qt::Key_F4);
        QVERIFY(reason.hasCome());
    }
    select({QStringLiteral("М5 – М3"), QStringLiteral("М3 – М1")});
    QString question;
    const InDialog reason([&question](QDialog& dialog) {
        question = static_cast<QInputDialog&>(dialog).labelText();
        QCOMPARE(dialog.findChild<QLabel*>()->textFormat(), Qt::PlainText);
        type(QStringLiteral("ветер"))(dialog);
    });
    press(Qt::Key_F4);
    QCOMPARE(question, QStringLiteral("Отключается М3 – М1. Почему (можно оставить пустым):"));
    QCOMPARE(document().findSection(idOf(QStringLiteral("М5 – М3")))->getOffReason(),
             QStringLiteral("сбит штатив"));
    QCOMPARE(document().findSection(idOf(QStringLiteral("М3 – М1")))->getOffReason(),
             QStringLiteral("ветер"));
}

void TestEditing::nextRowTakesThePlaceOfOneThatIsHidden()
{
    std::vector<LONGID> ids;
    for (const QString& name : {QStringLiteral("М3 – М1"), QStringLiteral("М5 – М3")})
        ids.push_back(idOf(name));
    document().applyChange(QString(), networkchange::switchOff(document(), ids, QString()));
    table().getFilterModel()->setWantedTraits(itemcolumns::OffTrait);
    table().selectItem(ids[0]);
    press(Qt::Key_F4);
    QCOMPARE(table().getCurrentItem(), ids[1]);
    press(Qt::Key_F4);
    QVERIFY(document().getHandChanges().empty());
    QVERIFY(!table().currentIndex().isValid());
}

void TestEditing::severalSectionsGetOneSigma()
{
    select({QStringLiteral("М5 – М3"), QStringLiteral("М3 – М1")});
    {
        const InDialog sigma(type(QStringLiteral("-1")));
        QVERIFY(triggerAction(*window, QStringLiteral("СКО выделенных измерений…")));
    }
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("СКО «-1» — не число больше нуля. Введите миллиметры, как 2,5."));
    const InDialog sigma(type(QStringLiteral("4,5")));
    QVERIFY(triggerAction(*window, QStringLiteral("СКО выделенных измерений…")));
    QCOMPARE(document().findSection(idOf(QStringLiteral("М5 – М3")))->getSection().sigma, 4.5);
    QCOMPARE(document().findSection(idOf(QStringLiteral("М3 – М1")))->getSection().sigma, 4.5);
    QCOMPARE(document().getUndoStack().count(), 1);
}

void TestEditing::pointIsHeldAtAHeightAndFreed()
{
    const LONGID id = idOf(QStringLiteral("М3"));
    select({QStringLiteral("М3")});
    int questions = 0;
    const InDialog height([&](QDialog& dialog) {
        ++questions;
        type(QStringLiteral("сто"))(dialog);
        // Asked again.
        QTimer::singleShot(0, &dialog, [&dialog, &questions] {
            ++questions;
            type(QStringLiteral("150,25"))(dialog);
        });
    });
    QVERIFY(triggerAction(*window, QStringLiteral("Сделать исходным репером…")));
    QCOMPARE(questions, 2);
    QVERIFY(document().findPoint(id)->getPoint().fixed);
    QCOMPARE(*document().findPoint(id)->getPoint().height, 150.25);
    QCOMPARE(cell(QStringLiteral("М3"), itemcolumns::Type).data().toString(),
             QStringLiteral("исходный репер"));
    QVERIFY(triggerAction(*window, QStringLiteral("Освободить репер")));
    QVERIFY(!document().findPoint(id)->getPoint().fixed);
    QCOMPARE(document().getUndoStack().undoText(), QStringLiteral("освобождение М3"));
    QVERIFY(triggerAction(*window, QStringLiteral("Освободить репер")));
    QVERIFY(window->getMessageBar().getMessage().startsWith(QStringLiteral("Освобождаются исходные реперы")));
}

void TestEditing::pointsWithoutHeightsAreNotHeldTogether()
{
    select({QStringLiteral("М3"), QStringLiteral("М5")});
    QVERIFY(triggerAction(*window, QStringLiteral("Сделать исходным репером…")));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral(
                 "Исходному реперу нужна отметка, а у пункта М3 её нет. Сделайте его репером отдельно."));
    QCOMPARE(document().getUndoStack().count(), 0);
}

void TestEditing::measurementIsAddedByTheDialog()
{
    select({QStringLiteral("М5"), QStringLiteral("М3")});
    QStringList problems;
    const InDialog dialog([&](QDialog& shown) {
        const auto field = [&shown](const char* name) {
            return shown.findChild<QLineEdit*>(QLatin1String(name));
        };
        const auto tryIt = [&] {
            shown.accept();
            problems.append(shown.findChild<QLabel*>(QStringLiteral("problem"))->text());
        };
        QTest::keyClicks(field("difference"), QStringLiteral("x"));
        tryIt();
        field("difference")->setText(QStringLiteral("-0,5"));
        tryIt();
        field("stations")->setText(QStringLiteral("2,5"));
        tryIt();
        field("stations")->setText(QStringLiteral("8"));
        field("to")->setText(field("from")->text());
        tryIt();
        const auto* news = shown.findChild<QLabel*>(QStringLiteral("news"));
        QCOMPARE(news->text(), QString());
        field("to")->setText(QStringLiteral("Новый"));
        QCOMPARE(news->text(), QStringLiteral("Таких пунктов в сети ещё нет, они добавляются: Новый"));
        tryIt();
    });
    press(Qt::Key_Insert);
    QVERIFY(dialog.hasCome());
    QCOMPARE(problems,
             toList("Введите превышение в метрах, как −1,2345.|Без веса измерение не уравнять: введите "
                    "длину, число станций или СКО.|Станций — целое число больше нуля.|Измерение ведёт от "
                    "одного пункта к другому.|"));
    const LevellingSection& added = *document().getSections().back();
    QCOMPARE(added.getName(), QStringLiteral("М3 – Новый"));
    QCOMPARE(added.getSection().difference, -0.5);
    QCOMPARE(*added.getSection().stations, 8);
    QCOMPARE(added.getSection().sigma, 3.0 * std::sqrt(0.8));
    QCOMPARE(table().getCurrentItem(), added.getId());
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!cell(QStringLiteral("Новый"), 0).isValid());
    press(Qt::Key_Y, Qt::ControlModifier);
    QVERIFY(cell(QStringLiteral("М3 – Новый"), 0).isValid());
}

void TestEditing::measurementsAreDeletedAndComeBack()
{
    const int rows = table().model()->rowCount();
    const int row = cell(QStringLiteral("М5 – М3 (2)"), 0).row();
    select({QStringLiteral("М5 – М3"), QStringLiteral("М5 – М3 (2)")});
    press(Qt::Key_Delete);
    QCOMPARE(table().model()->rowCount(), rows - 2);
    QVERIFY(!cell(QStringLiteral("М5 – М3"), 0).isValid());
    QCOMPARE(table().currentIndex().row(), row);
    QCOMPARE(document().getUndoStack().undoText(), QStringLiteral("удаление секций: 2"));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(table().model()->rowCount(), rows);
    QVERIFY(cell(QStringLiteral("М5 – М3 (2)"), 0).isValid());
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(table().model()->rowCount(), rows - 2);
}

void TestEditing::undoNamesWhatItUndoes()
{
    QVERIFY(!findAction(QStringLiteral("Отменить"))->isEnabled());
    typeInto(cell(QStringLiteral("М5 – М3"), itemcolumns::Difference), QStringLiteral("1"));
    QCOMPARE(findAction(QStringLiteral("Отменить"))->text().remove(QLatin1Char('&')),
             QStringLiteral("Отменить: превышение М5 – М3"));
    findAction(QStringLiteral("Отменить"))->trigger();
    QCOMPARE(findAction(QStringLiteral("Вернуть"))->text().remove(QLatin1Char('&')),
             QStringLiteral("Вернуть: превышение М5 – М3"));
    QVERIFY(!findAction(QStringLiteral("Отменить"))->isEnabled());
    QVERIFY(findAction(QStringLiteral("Вернуть"))->isEnabled());
}

void TestEditing::outdatedIsShownAndRunAgain()
{
    for (const char* run : {"Предобработка", "Уравнивание"}) {
        QVERIFY(triggerAction(*window, QString::fromUtf8(run)));
        window->getMonitor().waitForFinished();
    }
    auto* bar = window->findChild<OutdatedBar*>();
    const auto* list = window->findChild<ProtocolList*>();
    QVERIFY(!bar->isVisible());
    QVERIFY(!isActionEnabled(*window, QStringLiteral("Выполнить устаревшие снова")));
    typeInto(cell(QStringLiteral("М5 – М3"), itemcolumns::Difference), QStringLiteral("0,7512"));
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->findChildren<QLabel*>().constFirst()->text(),
             QStringLiteral("Устарело, сеть или класс с тех пор изменены: Предобработка, Уравнивание"));
    const auto shown = [&] {
        QStringList texts;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            texts.append(list->topLevelItem(i)->text(0));
        texts.sort();
        return texts;
    };
    QCOMPARE(shown(), toList("Импорт|Предобработка (устарело)|Уравнивание (устарело)"));
    QVERIFY(isActionEnabled(*window, QStringLiteral("Уравнивание (устарело)")));
    const QModelIndex height = cell(QStringLiteral("М3"), itemcolumns::Height);
    QVERIFY(height.data(Qt::FontRole).value<QFont>().italic());
    QCOMPARE(height.data(Qt::ToolTipRole).toString(),
             QStringLiteral("Результат устарел: сеть изменена после уравнивания"));

    press(Qt::Key_R, Qt::ControlModifier);
    QTRY_VERIFY(document().getOutdatedTypes().empty() && !window->isRunWorking());
    QVERIFY(!bar->isVisible());
    QCOMPARE(shown(), toList("Импорт|Предобработка|Уравнивание"));
    QVERIFY(!cell(QStringLiteral("М3"), itemcolumns::Height).data(Qt::FontRole).isValid());
}

void TestEditing::pageOfAnOutdatedProtocolSaysSo()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    window->getMonitor().waitForFinished();
    const QString leads = QStringLiteral(".html#outdated\">");
    const auto open = [this] {
        window->getPages().showProtocol(enums::Compile);
        QFile page(desk->opened.getUrls().constLast().toLocalFile());
        return page.open(QIODevice::ReadOnly) ? QString::fromUtf8(page.readAll()) : QString();
    };
    QVERIFY(!open().contains(leads));
    document().setLevellingClass(LevellingClass::I);
    QVERIFY(open().contains(leads));
    document().getUndoStack().undo();
    QVERIFY(!open().contains(leads));
}

void TestEditing::contextMenuFollowsTheSelection()
{
    const auto listOffered = [this] {
        QStringList texts;
        for (const QAction* action : table().actions()) {
            if (!action->isSeparator() && action->isEnabled())
                texts.append(action->text().remove(QLatin1Char('&')));
        }
        return texts.join(QLatin1Char('|'));
    };
    select({QStringLiteral("М5 – М3")});
    QCOMPARE(
        listOffered(),
        QStringLiteral("О выделенном пункте или секции|Изменить значение|Отключить или включить измерения|"
                       "СКО выделенных измерений…|Сделать исходным репером…|Освободить репер|"
                       "Удалить измерения|В строках протокола|На схеме|Копировать строки|Столбцы"));
    table().clearSelection();
    QCOMPARE(listOffered(), QStringLiteral("О выделенном пункте или секции|Изменить значение|"
                                           "В строках протокола|На схеме|Копировать строки|Столбцы"));
    table().selectAll();
    QVERIFY(isActionEnabled(*window, QStringLiteral("Удалить измерения")));
}

void TestEditing::nothingIsEditedWhileARunWorks()
{
    typeInto(cell(QStringLiteral("М5 – М3"), itemcolumns::Difference), QStringLiteral("0,7512"));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(document().areEditsRefused());
    QVERIFY((cell(QStringLiteral("М5 – М3"), itemcolumns::Difference).flags() & Qt::ItemIsEditable) == 0);
    QVERIFY(!table().model()->setData(cell(QStringLiteral("М5 – М3"), itemcolumns::Difference),
                                      QStringLiteral("1")));
    QVERIFY(!findAction(QStringLiteral("Отменить"))->isEnabled());
    QVERIFY(!isActionEnabled(*window, QStringLiteral("Удалить измерения")));
    window->getMonitor().waitForFinished();
    QVERIFY(!document().areEditsRefused());
    QVERIFY(findAction(QStringLiteral("Отменить"))->isEnabled());
}

void TestEditing::typedValueIsTakenBeforeARun()
{
    const QString name = QStringLiteral("М5 – М3");
    QLineEdit* editor = startTyping(cell(name, itemcolumns::Difference), QStringLiteral("0,7512"));
    QVERIFY(editor);
    QTest::keyClick(editor, Qt::Key_F6);
    QVERIFY(window->isRunWorking());
    QCOMPARE(cell(name, itemcolumns::Difference).data().toString(), QStringLiteral("0,75120"));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(!document().areResultsOutdated());
    QVERIFY(document().hasResults());
}

void TestEditing::typedValueIsTakenBeforeTheWindowCloses()
{
    document().setModified(false);
    const QString name = QStringLiteral("М5 – М3");
    QVERIFY(startTyping(cell(name, itemcolumns::Difference), QStringLiteral("0,7512")));
    const Answer answer(QStringLiteral("Отмена"));
    QVERIFY(!window->close());
    QVERIFY(!answer.getQuestion().isEmpty());
    QCOMPARE(cell(name, itemcolumns::Difference).data().toString(), QStringLiteral("0,75120"));
}

void TestEditing::typedValueIsTakenBeforeAnotherClass()
{
    const QString name = QStringLiteral("М5 – М3");
    QVERIFY(startTyping(cell(name, itemcolumns::Difference), QStringLiteral("0,7512")));
    QVERIFY(triggerAction(*window, QStringLiteral("II класс: 5\u00A0мм·√L")));
    QCOMPARE(cell(name, itemcolumns::Difference).data().toString(), QStringLiteral("0,75120"));
    QCOMPARE(document().getUndoStack().count(), 2);
}

void TestEditing::classFollowsUndo()
{
    const QString second = QStringLiteral("II класс: 5\u00A0мм·√L");
    const QString fourth = QStringLiteral("IV класс: 20\u00A0мм·√L");
    QVERIFY(triggerAction(*window, second));
    QCOMPARE(document().getLevellingClass(), LevellingClass::II);
    document().getUndoStack().undo();
    QVERIFY(findAction(fourth)->isChecked());
    QVERIFY(!findAction(second)->isChecked());
}

QTEST_MAIN(TestEditing)
#include "tst_editing.moc"
