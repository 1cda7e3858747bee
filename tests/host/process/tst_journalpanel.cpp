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

/// Lines with a warning, an error behind it, and another error far behind.
void appendProblems(JournalPanel& panel, int count)
{
    appendNumbers(panel, 1, 10);
    panel.append(Kind::Warning, QStringLiteral("warning"), QString());
    appendNumbers(panel, 11, 20);
    panel.append(Kind::Error, QStringLiteral("first error"), QString());
    appendNumbers(panel, 21, count);
    panel.append(Kind::Error, QStringLiteral("second error"), QString());
    appendNumbers(panel, 1, 100);
}

/// The line at the top of what is seen.
QString getTopLine(const JournalPanel& panel)
{
    return panel.getBrowser()->cursorForPosition(QPoint(5, 5)).block().text();
}

bool isAtEnd(const JournalPanel& panel)
{
    const QScrollBar* bar = panel.getBrowser()->verticalScrollBar();
    return bar->maximum() > 0 && bar->value() == bar->maximum();
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
    void endedJournalTurnsToTheGravestLine_data();
    void endedJournalTurnsToTheGravestLine();
    void endedJournalTurnsToTheWorstLine();
    void unseenJournalTurnsWhenItIsSeen();
    void journalWithoutProblemsStaysAtItsEnd();
    void scrolledJournalStaysWhereItIs();
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

void TestJournalPanel::endedJournalTurnsToTheGravestLine_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("short") << 300;
    QTest::newRow("long") << kMany;
}

void TestJournalPanel::endedJournalTurnsToTheGravestLine()
{
    QFETCH(int, count);
    JournalPanel panel;
    panel.resize(300, 200);
    panel.show();
    appendProblems(panel, count);
    panel.showLatest();
    panel.showGravest();
    QTRY_COMPARE(getTopLine(panel), QStringLiteral("\u2716 first error"));
    // The lines behind it come, and it stays at the top.
    QTRY_COMPARE(panel.getBrowser()->document()->lastBlock().text(), QStringLiteral("100"));
    QCOMPARE(getTopLine(panel), QStringLiteral("\u2716 first error"));
    panel.requestAll();
    QTRY_COMPARE(countShown(panel), count + 103);
    QCOMPARE(getTopLine(panel), QStringLiteral("\u2716 first error"));
}

void TestJournalPanel::endedJournalTurnsToTheWorstLine()
{
    for (const char* const worst : {"second error", "warning", "none of them"}) {
        JournalPanel panel;
        panel.resize(300, 200);
        panel.show();
        appendProblems(panel, 300);
        panel.showLatest();
        panel.showGravest(QString::fromUtf8(worst));
        // A line of a lesser kind is not the worst.
        QTRY_COMPARE(getTopLine(panel), QString::fromUtf8(worst) == QLatin1String("second error")
                                            ? QStringLiteral("\u2716 second error")
                                            : QStringLiteral("\u2716 first error"));
    }
}

void TestJournalPanel::unseenJournalTurnsWhenItIsSeen()
{
    JournalPanel panel;
    panel.resize(300, 200);
    appendProblems(panel, 300);
    panel.showLatest();
    panel.showGravest();
    panel.show();
    QTRY_COMPARE(getTopLine(panel), QStringLiteral("\u2716 first error"));
}

void TestJournalPanel::journalWithoutProblemsStaysAtItsEnd()
{
    JournalPanel panel;
    panel.resize(300, 200);
    panel.show();
    appendNumbers(panel, 1, 300);
    panel.showLatest();
    panel.showGravest();
    QTest::qWait(50);
    QVERIFY(isAtEnd(panel));
    QCOMPARE(panel.getBrowser()->document()->lastBlock().text(), QStringLiteral("300"));
}

void TestJournalPanel::scrolledJournalStaysWhereItIs()
{
    JournalPanel panel;
    panel.resize(300, 200);
    panel.show();
    appendProblems(panel, 300);
    panel.showLatest();
    panel.getBrowser()->verticalScrollBar()->setValue(100);
    const QString top = getTopLine(panel);
    panel.showGravest();
    QTest::qWait(50);
    QCOMPARE(getTopLine(panel), top);
}

QTEST_MAIN(TestJournalPanel)
#include "tst_journalpanel.moc"
