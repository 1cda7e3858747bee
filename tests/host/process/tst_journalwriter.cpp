#include "host/process/JournalWriter.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QtTest>

#include <limits>

namespace {

constexpr std::chrono::milliseconds kNoLimit{std::numeric_limits<int>::max()};
using Kind = LineKind;

void appendNumbers(JournalWriter& writer, int first, int last)
{
    for (int number = first; number <= last; ++number)
        writer.append(Kind::Service, QString::number(number), QString());
}

} // namespace

class TestJournalWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreParagraphsMarkedByKind();
    void kindsAreToldWithoutColours();
    void detailStandsBehindTheText();
    void lineBreaksAreShown();
    void styleSheetReachesTheLines();
    void markupOfALineDoesNotReachTheNext();
    void flushEndsWithItsBudget();
    void newestLinesStay();
    void linesOfSeveralParagraphsCountOnce();
    void floodEmptiesWhatIsOlder();
    void newestLinesEnterFirst();
    void earlierLinesEnterAsTheLaterOnes();
    void clearForgetsEverything();
    void overlongLineIsCutWithAWord();
    void journalAtItsEndFollows();
    void journalScrolledUpStays();
};

void TestJournalWriter::linesAreParagraphsMarkedByKind()
{
    QCOMPARE(JournalWriter::getLineHtml(Kind::Error, QStringLiteral("a"), QString()),
             QStringLiteral("<p class=\"error\"><span class=\"mark\">\u2716</span> a</p>"));
    QCOMPARE(JournalWriter::getLineHtml(Kind::Warning, QStringLiteral("b"), QStringLiteral("c")),
             QStringLiteral("<p class=\"warning\"><span class=\"mark\">\u26A0</span> b"
                            " <span class=\"detail\">c</span></p>"));
    QCOMPARE(JournalWriter::getLineHtml(Kind::Message, QStringLiteral("d"), QString()),
             QStringLiteral("<p class=\"message\"><span class=\"mark\">\u2022</span> d</p>"));
    QCOMPARE(JournalWriter::getLineHtml(Kind::Service, QStringLiteral("e"), QString()),
             QStringLiteral("<p class=\"service\">e</p>"));
}

void TestJournalWriter::kindsAreToldWithoutColours()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    writer.append(Kind::Error, QStringLiteral("one"), QString());
    writer.append(Kind::Warning, QStringLiteral("two"), QString());
    writer.append(Kind::Message, QStringLiteral("three"), QString());
    writer.append(Kind::Service, QStringLiteral("four"), QString());
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(journal.toPlainText(), QStringLiteral("\u2716 one\n\u26A0 two\n\u2022 three\nfour"));
}

void TestJournalWriter::detailStandsBehindTheText()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    writer.append(Kind::Service, QStringLiteral("<b>text</b>"), QStringLiteral("net.gkf:12"));
    writer.flush(kNoLimit);
    QCOMPARE(journal.toPlainText(), QStringLiteral("text net.gkf:12"));
}

void TestJournalWriter::lineBreaksAreShown()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    writer.append(Kind::Service, QStringLiteral("a\nb\r\nc"), QString());
    writer.flush(kNoLimit);
    QCOMPARE(journal.toPlainText(), QStringLiteral("a\nb\nc"));
    QCOMPARE(journal.document()->blockCount(), 1);
}

void TestJournalWriter::styleSheetReachesTheLines()
{
    QTextBrowser journal;
    journal.document()->setDefaultStyleSheet(
        QStringLiteral(".error { margin-left: 7px } .error .mark { color: #010203 }"));
    JournalWriter writer(&journal);
    writer.append(Kind::Service, QStringLiteral("a"), QString());
    writer.append(Kind::Error, QStringLiteral("b"), QString());
    writer.flush(kNoLimit);
    QCOMPARE(journal.document()->firstBlock().blockFormat().leftMargin(), 0.0);
    QCOMPARE(journal.document()->lastBlock().blockFormat().leftMargin(), 7.0);
    const QTextCharFormat mark = journal.document()->lastBlock().begin().fragment().charFormat();
    QCOMPARE(mark.foreground().color(), QColor(1, 2, 3));
}

void TestJournalWriter::markupOfALineDoesNotReachTheNext()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    writer.append(Kind::Service, QStringLiteral("<a href=\"x:1\"><b>never closed"), QString());
    writer.append(Kind::Service, QStringLiteral("plain"), QString());
    writer.flush(kNoLimit);
    const QTextCharFormat format = journal.document()->lastBlock().begin().fragment().charFormat();
    QVERIFY(!format.isAnchor());
    QVERIFY(format.fontWeight() != QFont::Bold);
}

void TestJournalWriter::flushEndsWithItsBudget()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, 2);
    QVERIFY(!writer.flush(std::chrono::milliseconds(0)));
    QCOMPARE(journal.toPlainText(), QStringLiteral("1"));
    QVERIFY(writer.flush(std::chrono::milliseconds(0)));
    QCOMPARE(journal.toPlainText(), QStringLiteral("1\n2"));
}

void TestJournalWriter::newestLinesStay()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, JournalWriter::kLineLimit);
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(writer.getOmittedCount(), 0);
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kLineLimit);
    appendNumbers(writer, JournalWriter::kLineLimit + 1, JournalWriter::kLineLimit + 5);
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(writer.getOmittedCount(), 5);
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kLineLimit);
    QCOMPARE(journal.document()->firstBlock().text(), QStringLiteral("6"));
    QCOMPARE(journal.document()->lastBlock().text(), QString::number(JournalWriter::kLineLimit + 5));
}

void TestJournalWriter::linesOfSeveralParagraphsCountOnce()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    writer.append(Kind::Service, QStringLiteral("<p>x</p><table><tr><td>y</td></tr></table>z"), QString());
    writer.append(Kind::Service, QStringLiteral("<ul><li>u</li><li>v</li></ul>"), QString());
    appendNumbers(writer, 1, JournalWriter::kLineLimit - 1);
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(writer.getOmittedCount(), 1);
    QVERIFY(!journal.toPlainText().contains(QLatin1Char('y')));
    QVERIFY(journal.toPlainText().contains(QStringLiteral("u\nv\n1\n2\n")));
    appendNumbers(writer, JournalWriter::kLineLimit, JournalWriter::kLineLimit);
    QVERIFY(writer.flush(kNoLimit));
    QVERIFY(journal.toPlainText().startsWith(QStringLiteral("1\n2\n")));
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kLineLimit);
}

void TestJournalWriter::floodEmptiesWhatIsOlder()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, 10);
    writer.flush(kNoLimit);
    appendNumbers(writer, 11, 10 + JournalWriter::kLineLimit);
    QVERIFY(!journal.toPlainText().isEmpty());
    appendNumbers(writer, 11 + JournalWriter::kLineLimit, 110 + JournalWriter::kLineLimit);
    QCOMPARE(journal.toPlainText(), QString());
    QCOMPARE(writer.getOmittedCount(), 110);
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(writer.getOmittedCount(), 110);
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kLineLimit);
    QCOMPARE(journal.document()->firstBlock().text(), QStringLiteral("111"));
}

void TestJournalWriter::newestLinesEnterFirst()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, 1000);
    QVERIFY(writer.flush(kNoLimit, JournalWriter::Extent::Newest));
    QVERIFY(!writer.isComplete());
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kNewestCount);
    QCOMPARE(journal.document()->lastBlock().text(), QStringLiteral("1000"));
    appendNumbers(writer, 1001, 1002);
    QVERIFY(writer.flush(kNoLimit, JournalWriter::Extent::Newest));
    QCOMPARE(journal.document()->blockCount(), JournalWriter::kNewestCount + 2);
    QVERIFY(writer.flush(kNoLimit));
    QVERIFY(writer.isComplete());
    QCOMPARE(journal.document()->blockCount(), 1002);
    QCOMPARE(journal.document()->firstBlock().text(), QStringLiteral("1"));
    QCOMPARE(journal.document()->lastBlock().text(), QStringLiteral("1002"));
}

// The document is the same whether lines enter it from the first to the last or the newest first.
void TestJournalWriter::earlierLinesEnterAsTheLaterOnes()
{
    const auto appendLines = [](JournalWriter& writer) {
        writer.append(Kind::Error, QStringLiteral("<b>one</b>"), QStringLiteral("net.gkf:3"));
        writer.append(Kind::Service, QString(), QString());
        writer.append(Kind::Service, QStringLiteral("<a href=\"x:1\"><b>never closed"), QString());
        writer.append(Kind::Service, QStringLiteral("<p>x</p><table><tr><td>y</td></tr></table>z"),
                      QString());
        writer.append(Kind::Warning, QStringLiteral("<ul><li>u</li><li>v</li></ul>"), QString());
        writer.append(Kind::Message, QStringLiteral("a\nb <a href=\"x:2\">c</a>"), QString());
        writer.append(Kind::Service, QStringLiteral("<table><tr><td>y</td></tr></table>"), QString());
        writer.append(Kind::Service, QStringLiteral("<h1>title</h1>"), QString());
        appendNumbers(writer, 1, JournalWriter::kNewestCount);
    };
    const QString style = QStringLiteral(".error { margin-left: 7px } .error .mark { color: #010203 }");
    QTextBrowser inOrder;
    inOrder.document()->setDefaultStyleSheet(style);
    JournalWriter writerInOrder(&inOrder);
    appendLines(writerInOrder);
    QVERIFY(writerInOrder.flush(kNoLimit));
    QTextBrowser newestFirst;
    newestFirst.document()->setDefaultStyleSheet(style);
    JournalWriter writer(&newestFirst);
    appendLines(writer);
    QVERIFY(writer.flush(kNoLimit, JournalWriter::Extent::Newest));
    QVERIFY(!newestFirst.toPlainText().contains(QStringLiteral("title")));
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(newestFirst.toPlainText(), inOrder.toPlainText());
    QCOMPARE(newestFirst.toHtml().split(QLatin1Char('\n')), inOrder.toHtml().split(QLatin1Char('\n')));
}

void TestJournalWriter::clearForgetsEverything()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, 2);
    writer.flush(std::chrono::milliseconds(0));
    writer.clear();
    QVERIFY(writer.flush(kNoLimit));
    QCOMPARE(journal.toPlainText(), QString());
    appendNumbers(writer, 3, 4);
    writer.flush(kNoLimit);
    QCOMPARE(journal.toPlainText(), QStringLiteral("3\n4"));
}

void TestJournalWriter::overlongLineIsCutWithAWord()
{
    QTextBrowser journal;
    JournalWriter writer(&journal);
    const QString limit(JournalWriter::kLengthLimit, QLatin1Char('x'));
    writer.append(Kind::Service, limit, QString());
    writer.flush(kNoLimit);
    QCOMPARE(journal.toPlainText(), limit);
    writer.clear();
    writer.append(Kind::Service, QStringLiteral("<b>") + limit, QString());
    writer.flush(kNoLimit);
    QCOMPARE(
        journal.toPlainText(),
        QStringLiteral("<b>") + limit.left(497) +
            QStringLiteral(
                "… (строка из %1 знаков сокращена; полностью — в протоколе, если обработка не остановлена)")
                .arg(QLocale().toString(limit.size() + 3)));
}

void TestJournalWriter::journalAtItsEndFollows()
{
    QTextBrowser journal;
    journal.resize(300, 200);
    journal.show();
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, 100);
    writer.flush(kNoLimit);
    QVERIFY(journal.verticalScrollBar()->maximum() > 0);
    QCOMPARE(journal.verticalScrollBar()->value(), journal.verticalScrollBar()->maximum());
    journal.resize(300, 100);
    QCOMPARE(journal.verticalScrollBar()->value(), journal.verticalScrollBar()->maximum());
    appendNumbers(writer, 101, 110);
    writer.flush(kNoLimit);
    QCOMPARE(journal.verticalScrollBar()->value(), journal.verticalScrollBar()->maximum());
}

void TestJournalWriter::journalScrolledUpStays()
{
    QTextBrowser journal;
    journal.resize(300, 200);
    journal.show();
    JournalWriter writer(&journal);
    appendNumbers(writer, 1, JournalWriter::kLineLimit);
    writer.flush(kNoLimit);
    journal.verticalScrollBar()->setValue(journal.verticalScrollBar()->maximum() / 2);
    const QString topLine = journal.cursorForPosition(QPoint(0, 0)).block().text();
    appendNumbers(writer, 1, 100);
    writer.flush(kNoLimit);
    QCOMPARE(writer.getOmittedCount(), 100);
    QCOMPARE(journal.cursorForPosition(QPoint(0, 0)).block().text(), topLine);
}

QTEST_MAIN(TestJournalWriter)
#include "tst_journalwriter.moc"
