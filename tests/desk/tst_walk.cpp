#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/picture/PictureDock.h"
#include "apps/desk/picture/PicturePanel.h"
#include "apps/desk/picture/PictureView.h"
#include "apps/desk/print/PrintDialog.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <functional>

using namespace orvel::desk;
using namespace orvel::test;

namespace {

const QString kFile = QStringLiteral("three-blunders.gkf");
const QString kReason = QStringLiteral("промах");

/// What has the keyboard. A list of suggestions leaves it to the field that it belongs to.
QWidget* getFocus()
{
    if (const QWidget* dialog = QApplication::activeModalWidget())
        return dialog->focusWidget();
    return QApplication::focusWidget();
}

template<typename Button>
Button* findButton(const QWidget& owner, const QString& text)
{
    const auto buttons = owner.findChildren<Button*>();
    const auto place = std::find_if(buttons.begin(), buttons.end(),
                                    [&text](const Button* button) { return button->text() == text; });
    return place == buttons.end() ? nullptr : *place;
}

/// What a hand does at the desk, counted. Letters are those of names and reasons, keys all others.
struct Hand
{
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ++keys;
        QTest::keyClick(getFocus(), key, modifiers);
    }
    /// Alt and the underlined letter of a button.
    void pressAlt(QChar letter)
    {
        ++keys;
        QTest::sendKeyEvent(QTest::Click, getFocus(), static_cast<Qt::Key>(letter.toUpper().unicode()),
                            QString(letter), Qt::AltModifier);
    }
    void type(const QString& text)
    {
        // One by one: a letter of another alphabet has no key that the test library would find.
        for (const QChar letter : text) {
            ++letters;
            QTest::sendKeyEvent(QTest::Click, getFocus(), Qt::Key_unknown, QString(letter), Qt::NoModifier);
        }
    }
    void click(QWidget& widget, const QPoint& place)
    {
        ++clicks;
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place);
    }
    void click(QWidget& widget) { click(widget, widget.rect().center()); }

    int keys = 0;
    int letters = 0;
    int clicks = 0;
};

/// Does something in the next modal dialog once that has the keyboard.
template<typename Dialog>
class Answering : public QObject
{
public:
    explicit Answering(std::function<void()> whatToDo) : act(std::move(whatToDo))
    {
        QTimer::singleShot(0, this, &Answering::look);
    }
    bool hasCome() const { return isDone; }

private:
    void look()
    {
        const auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        const QWidget* focus = QApplication::focusWidget();
        if (!dialog || !dialog->isAncestorOf(focus)) {
            QTimer::singleShot(5, this, &Answering::look);
            return;
        }
        isDone = true;
        act();
    }

    std::function<void()> act;
    bool isDone = false;
};

} // namespace

/// The way of a surveyor from a file of measurements with three gross errors to a report that can be signed,
/// with the keys and the clicks that it takes.
class TestWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void throughLinesPictureAndTable();
    void byKeysAlone();

private:
    void importAndSearch();
    void switchOff(const QString& name, const QString& reason);
    void adjustAndSaveReport(const std::function<void(PrintDialog&)>& pressSave);
    QString getSelected() const;
    QString getReport() const { return desk->path(QStringLiteral("Ведомость превышений и поправок.pdf")); }
    void waitForRun() const;
    void comeBack() const;
    const LevellingSection* find(const QString& name) const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
    Hand hand;
};

void TestWalk::init()
{
    hand = {};
    desk = std::make_unique<DeskFixture>();
    QVERIFY(QFile::copy(testNetworkPath(kFile), desk->path(kFile)));
    recentfiles::add(desk->path(kFile));
    window = desk->makeWindow();
    window->resize(1200, 900);
    comeBack();
}

void TestWalk::cleanup()
{
    QCOMPARE(desk->application.takeWarnings(), QStringList());
    window.reset();
    desk.reset();
}

void TestWalk::waitForRun() const
{
    QTRY_VERIFY(!window->isRunWorking());
    QTRY_VERIFY(!window->getProtocolPanel().isWorking());
    // A run that took its time has shown its progress.
    window->getMonitor().hide();
    comeBack();
}

/// As window managers do when a dialog goes.
void TestWalk::comeBack() const
{
    QApplication::setActiveWindow(window.get());
    QTRY_VERIFY(window->isAncestorOf(QApplication::focusWidget()));
}

const LevellingSection* TestWalk::find(const QString& name) const
{
    for (const LevellingSection* section : window->getDocument().getSections()) {
        if (section->getName() == name)
            return section;
    }
    return nullptr;
}

QString TestWalk::getSelected() const
{
    const LevellingSection* section = window->getDocument().findSection(window->getTable().getCurrentItem());
    return section ? section->getName() : QString();
}

void TestWalk::importAndSearch()
{
    const Answering<QFileDialog> file([this] {
        hand.type(kFile);
        hand.press(Qt::Key_Return);
    });
    hand.press(Qt::Key_I, Qt::ControlModifier);
    QVERIFY(file.hasCome());
    waitForRun();
    QCOMPARE(window->getDocument().getSections().size(), std::size_t(40));
    hand.press(Qt::Key_F7);
    waitForRun();
    QCOMPARE(window->getDocument().getSummary().types.at(enums::L1Analysis).errors, 3);
}

void TestWalk::switchOff(const QString& name, const QString& reason)
{
    QCOMPARE(getSelected(), name);
    const Answering<QInputDialog> question([this, reason] {
        hand.type(reason);
        hand.press(Qt::Key_Return);
    });
    hand.press(Qt::Key_F4);
    QVERIFY(question.hasCome());
    comeBack();
    QVERIFY(find(name)->isOff());
    QCOMPARE(find(name)->getOffReason(), reason);
}

void TestWalk::adjustAndSaveReport(const std::function<void(PrintDialog&)>& pressSave)
{
    hand.press(Qt::Key_F6);
    waitForRun();
    QCOMPARE(window->getDocument().getSummary().types.at(enums::Adjust).errors, 0);

    hand.press(Qt::Key_P, Qt::ControlModifier);
    auto* dialog = window->findChild<PrintDialog*>();
    QVERIFY(dialog);
    QTRY_COMPARE(QApplication::focusWidget(), &dialog->getList());
    for (int i = 0; i < 3; ++i)
        hand.press(Qt::Key_Down);
    QCOMPARE(dialog->getList().currentItem()->text(), QStringLiteral("Ведомость превышений и поправок"));
    // The name is there already.
    const Answering<QFileDialog> file([this] { hand.press(Qt::Key_Return); });
    pressSave(*dialog);
    // A button that is pressed by its letter shows that first.
    QTRY_VERIFY(file.hasCome());
    QTRY_COMPARE(window->getMessageBar().getMessage(), QStringLiteral("Записано: %1").arg(getReport()));
    QVERIFY(readFile(getReport()).startsWith("%PDF-"));
}

void TestWalk::throughLinesPictureAndTable()
{
    importAndSearch();

    // The lines lead to the gravest.
    hand.press(Qt::Key_F8);
    switchOff(QStringLiteral("М44 – М45"), kReason);

    // The picture marks it.
    hand.press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    picture::PicturePanel& panel = window->getPictureDock().getPanel();
    QVERIFY(panel.isVisible());
    QTRY_VERIFY(!panel.isWorking());
    const LONGID marked = find(QStringLiteral("М32 – М33"))->getId();
    const auto& sections = panel.getView().getPicture().sections;
    const auto isBad = [](const picture::PictureSection& section) {
        return section.severity == picture::Severity::Error && !section.isOff;
    };
    QCOMPARE(std::count_if(sections.begin(), sections.end(), isBad), 2);
    QVERIFY(isBad(*std::find_if(sections.begin(), sections.end(),
                                [marked](const auto& section) { return section.id == marked; })));
    hand.click(panel.getView(), panel.getView().findPlaceOf(marked)->toPoint());
    switchOff(QStringLiteral("М32 – М33"), kReason);

    // The table shows those over their limits, the largest first.
    hand.click(*findButton<QToolButton>(*window, QStringLiteral("Сверх допуска")));
    ItemTable& table = window->getTable();
    QTRY_COMPARE(table.model()->rowCount(), 3);
    int row = 0;
    while (table.model()->index(row, itemcolumns::Name).data().toString() != QStringLiteral("М13 – М23"))
        QVERIFY(++row < 3);
    hand.click(*table.viewport(), table.visualRect(table.model()->index(row, itemcolumns::Name)).center());
    switchOff(QStringLiteral("М13 – М23"), kReason);

    adjustAndSaveReport([this](PrintDialog& dialog) {
        hand.click(*findButton<QPushButton>(dialog, QStringLiteral("&Сохранить в файл…")));
    });
    QCOMPARE(hand.keys, 17);
    QCOMPARE(hand.letters, kFile.size() + 3 * kReason.size());
    QCOMPARE(hand.clicks, 4);
}

void TestWalk::byKeysAlone()
{
    importAndSearch();
    for (const char* name : {"М44 – М45", "М32 – М33", "М13 – М23"}) {
        hand.press(Qt::Key_F8);
        switchOff(QString::fromUtf8(name), QString());
    }
    adjustAndSaveReport([this](PrintDialog& /*dialog*/) { hand.pressAlt(QChar(0x0441)); });
    QCOMPARE(hand.keys, 19);
    QCOMPARE(hand.letters, kFile.size());
    QCOMPARE(hand.clicks, 0);
}

QTEST_MAIN(TestWalk)
#include "tst_walk.moc"
