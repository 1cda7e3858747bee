#include "host/process/JournalPanel.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QtTest>

namespace {

using Kind = LineKind;

constexpr int kMany = 5000;

void appendNumbers(JournalPanel& panel, int first, int last)
{
    for (int number = first; number <= last; ++number)
        panel.append(Kind::Service, QString::number(number), QString());
}

int countShown(const JournalPanel& panel)
{
    const QTextDocument* document = panel.getBrowser()->document();
    return document->isEmpty() ? 0 : document->blockCount();
}

} // namespace

class TestJournalPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unseenJournalLaysOutNothing();
    void unseenJournalFillsWhenAskedFor();
    void smallJournalIsLaidOutAtTheEnd();
    void shownJournalBeginsWithItsEnd();
    void journalFillsWhenSomebodyTurnsToIt_data();
    void journalFillsWhenSomebodyTurnsToIt();
    void floodIsShownNowAndThen();
    void listenerMayAskForAllLines();
    void pageHasAllLines();
};

void TestJournalPanel::unseenJournalLaysOutNothing()
{
    JournalPanel panel;
    appendNumbers(panel, 1, kMany);
    panel.showNews(false);
    panel.showLatest();
    QTest::qWait(50);
    QCOMPARE(countShown(panel), 0);
}

void TestJournalPanel::unseenJournalFillsWhenAskedFor()
{
    JournalPanel panel;
    appendNumbers(panel, 1, kMany);
    panel.requestAll();
    QTRY_COMPARE(countShown(panel), kMany);
    QCOMPARE(panel.getBrowser()->document()->firstBlock().text(), QStringLiteral("1"));
    QCOMPARE(panel.getBrowser()->document()->lastBlock().text(), QString::number(kMany));
}

void TestJournalPanel::smallJournalIsLaidOutAtTheEnd()
{
    JournalPanel panel;
    appendNumbers(panel, 1, 500);
    panel.showLatest();
    QCOMPARE(countShown(panel), 500);
}

void TestJournalPanel::shownJournalBeginsWithItsEnd()
{
    JournalPanel panel;
    appendNumbers(panel, 1, kMany);
    panel.resize(300, 200);
    panel.show();
    QTRY_COMPARE(countShown(panel), JournalWriter::kNewestCount);
    const QTextBrowser& browser = *panel.getBrowser();
    QCOMPARE(browser.document()->lastBlock().text(), QString::number(kMany));
    QCOMPARE(browser.verticalScrollBar()->value(), browser.verticalScrollBar()->maximum());
    QTest::qWait(50);
    QCOMPARE(countShown(panel), JournalWriter::kNewestCount);
}

void TestJournalPanel::journalFillsWhenSomebodyTurnsToIt_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("mouse") << 0;
    QTest::newRow("wheel or slider") << 1;
    QTest::newRow("keyboard") << 2;
}

void TestJournalPanel::journalFillsWhenSomebodyTurnsToIt()
{
    QFETCH(int, way);
    JournalPanel panel;
    appendNumbers(panel, 1, kMany);
    panel.resize(300, 200);
    panel.show();
    QTRY_COMPARE(countShown(panel), JournalWriter::kNewestCount);
    if (way == 0) {
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(&panel, &enter);
    } else if (way == 1) {
        panel.getBrowser()->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
    } else {
        QTest::keyClick(panel.getBrowser(), Qt::Key_Up);
    }
    QTRY_COMPARE(countShown(panel), kMany);
}

void TestJournalPanel::floodIsShownNowAndThen()
{
    JournalPanel panel;
    panel.show();
    panel.clear();
    QCoreApplication::processEvents();
    appendNumbers(panel, 1, 1000);
    panel.showNews(true);
    QCOMPARE(countShown(panel), 0);
    QTest::qSleep(101);
    panel.showNews(true);
    // A slow machine needs more than one turn for so many.
    QTRY_COMPARE(countShown(panel), JournalWriter::kNewestCount);
}

void TestJournalPanel::listenerMayAskForAllLines()
{
    JournalPanel panel;
    connect(panel.getBrowser(), &QTextBrowser::textChanged, &panel, &JournalPanel::requestAll);
    appendNumbers(panel, 1, kMany);
    panel.show();
    QTRY_COMPARE(countShown(panel), kMany);
}

void TestJournalPanel::pageHasAllLines()
{
    JournalPanel panel;
    appendNumbers(panel, 1, kMany);
    const QByteArray page = panel.makePage();
    QVERIFY(page.contains(">1<"));
    QVERIFY(page.contains(QByteArray::number(kMany)));
}

QTEST_MAIN(TestJournalPanel)
#include "tst_journalpanel.moc"
