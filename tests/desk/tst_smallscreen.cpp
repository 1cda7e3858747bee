#include "apps/desk/gui/ItemFilterBar.h"
#include "apps/desk/gui/ScreenSize.h"
#include "apps/desk/gui/SearchField.h"
#include "apps/desk/gui/TemplateWizard.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "tests/desk/DeskFixture.h"

#include <QComboBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QScreen>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// Where there is little room.
class TestSmallScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowsFitOnTheScreen();
    void countsStayInView();
    void plotsLeaveTheWindowSmall();
    void searchStaysWideEnough();
    void wizardIsNoWiderThanItsTexts();
};

void TestSmallScreen::windowsFitOnTheScreen()
{
    QWidget window;
    const QSize screen = window.screen()->availableGeometry().size();
    resizeToScreen(window, {300, 200});
    QCOMPARE(window.size(), QSize(300, 200));
    resizeToScreen(window, {screen.width() + 500, 200});
    QVERIFY(window.width() < screen.width());
    resizeToScreen(window, {300, screen.height()});
    QVERIFY(window.height() < screen.height());
    QVERIFY(window.height() > screen.height() - 100);
}

void TestSmallScreen::countsStayInView()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    QVERIFY(triggerAction(*window, QStringLiteral("Анализ исходных данных")));
    QVERIFY(window->getMonitor().waitForFinished());
    auto* list = window->findChild<ProtocolList*>();
    const int name = list->fontMetrics().horizontalAdvance(list->topLevelItem(0)->text(0));
    const int others = list->header()->length() - list->columnWidth(0);
    list->setFixedWidth(others + name * 2 / 3 + 2 * list->frameWidth());
    QCoreApplication::processEvents();
    QVERIFY(list->header()->length() <= list->viewport()->width());
    QVERIFY(list->columnWidth(0) < name);
}

void TestSmallScreen::plotsLeaveTheWindowSmall()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    auto* plots = window->findChild<QDockWidget*>(QStringLiteral("plots"));
    plots->show();
    QCoreApplication::processEvents();
    // 600 pixels where a line has 25.
    const int lines = window->minimumSizeHint().height() / window->fontMetrics().height();
    QVERIFY2(lines < 24, qPrintable(QString::number(lines)));
}

void TestSmallScreen::searchStaysWideEnough()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    auto* bar = window->findChild<ItemFilterBar*>();
    const int letter = bar->fontMetrics().averageCharWidth();
    QVERIFY(bar->minimumSizeHint().width() < 40 * letter);
    bar->setFixedWidth(50 * letter);
    QCoreApplication::processEvents();
    QVERIFY(bar->getSearch().width() >= 14 * letter);
}

void TestSmallScreen::wizardIsNoWiderThanItsTexts()
{
    DeskFixture desk;
    const auto window = desk.makeWindow();
    window->showTemplateWizard({samplePath(QStringLiteral("line.csv"))});
    auto* wizard = window->findChild<TemplateWizard*>();
    wizard->next();
    const QWizardPage* page = wizard->currentPage();
    QCoreApplication::processEvents();
    const int letter = page->fontMetrics().averageCharWidth();
    QVERIFY2(page->minimumSizeHint().width() < 100 * letter,
             qPrintable(QString::number(page->minimumSizeHint().width() / letter)));
    for (const QWidget* field : page->findChildren<QComboBox*>())
        QVERIFY(field->height() > page->fontMetrics().height());
    wizard->reject();
}

QTEST_MAIN(TestSmallScreen)
#include "tst_smallscreen.moc"
