#include "host/process/JournalWriter.h"

#include <QCoreApplication>
#include <QLocale>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>

namespace {

struct KindMarkup
{
    QLatin1String cssClass;
    QString mark; // tells the kind to those who see no colours
};

KindMarkup getMarkup(JournalWriter::Kind kind)
{
    switch (kind) {
    case JournalWriter::Kind::Error:
        return {QLatin1String("error"), QStringLiteral("\u2716")};
    case JournalWriter::Kind::Warning:
        return {QLatin1String("warning"), QStringLiteral("\u26A0")};
    case JournalWriter::Kind::Message:
        return {QLatin1String("message"), QStringLiteral("\u2022")};
    case JournalWriter::Kind::Service:
        break;
    }
    return {QLatin1String("service"), QString()};
}

// Markup cannot be cut in the middle, so the beginning of an overlong line is shown as the characters it has.
QString getShortened(const QString& text)
{
    if (text.size() <= JournalWriter::kLengthLimit)
        return text;
    constexpr int shownLength = 500;
    const QString note =
        QCoreApplication::translate("Host", "строка из %1 знаков показана не целиком, целиком — в протоколе")
            .arg(QLocale().toString(text.size()));
    return text.left(shownLength).toHtmlEscaped() + QStringLiteral("… <i>(%1)</i>").arg(note);
}

QString getLineBreaksShown(QString html)
{
    return html.replace(QLatin1String("\r\n"), QLatin1String("<br/>"))
        .replace(QLatin1Char('\n'), QLatin1String("<br/>"));
}

} // namespace

JournalWriter::JournalWriter(QTextBrowser* journalBrowser) : journal(journalBrowser)
{
    journal->setUndoRedoEnabled(false);
    const QScrollBar* scrollBar = journal->verticalScrollBar();
    connect(scrollBar, &QScrollBar::valueChanged, this,
            [this, scrollBar](int value) { isAtEnd = value == scrollBar->maximum(); });
    connect(scrollBar, &QScrollBar::rangeChanged, this, &JournalWriter::followIfAtEnd);
}

JournalWriter::~JournalWriter() = default;

void JournalWriter::clear()
{
    waiting.clear();
    shownBlockCounts.clear();
    omittedCount = 0;
    journal->clear();
}

void JournalWriter::append(Kind kind, const QString& text, const QString& detail)
{
    waiting.push_back({kind, getShortened(text), getShortened(detail)});
    if (waiting.size() <= kLineLimit)
        return;
    waiting.pop_front();
    ++omittedCount;
    omittedCount += static_cast<qint64>(shownBlockCounts.size());
    // All that is shown is older than the line just left out.
    if (!shownBlockCounts.empty()) {
        shownBlockCounts.clear();
        journal->clear();
    }
}

bool JournalWriter::flush(std::chrono::milliseconds budget)
{
    if (waiting.empty())
        return true;

    const QTextCursor topLine = journal->cursorForPosition(QPoint(0, 0));
    const int topLineY = journal->cursorRect(topLine).y();

    insertLines(std::chrono::steady_clock::now() + budget);
    trimDocument();

    if (!isAtEnd) { // what the user reads stays where it is
        QScrollBar* scrollBar = journal->verticalScrollBar();
        scrollBar->setValue(scrollBar->value() + journal->cursorRect(topLine).y() - topLineY);
    }
    return waiting.empty();
}

QString JournalWriter::getLineHtml(Kind kind, const QString& text, const QString& detail)
{
    const KindMarkup markup = getMarkup(kind);
    QString html = QStringLiteral("<p class=\"") + markup.cssClass + QStringLiteral("\">");
    if (!markup.mark.isEmpty())
        html += QStringLiteral("<span class=\"mark\">") + markup.mark + QStringLiteral("</span> ");
    html += getLineBreaksShown(text);
    if (!detail.isEmpty())
        html += QStringLiteral(" <span class=\"detail\">") + getLineBreaksShown(detail) +
                QStringLiteral("</span>");
    return html + QStringLiteral("</p>");
}

// The range changes when lines come and when the journal changes its size.
void JournalWriter::followIfAtEnd()
{
    if (isAtEnd)
        journal->verticalScrollBar()->setValue(journal->verticalScrollBar()->maximum());
}

void JournalWriter::insertLines(std::chrono::steady_clock::time_point deadline)
{
    QTextCursor cursor(journal->document());
    cursor.beginEditBlock();
    do {
        const Line line = std::move(waiting.front());
        waiting.pop_front();
        insertLine(cursor, line);
    } while (!waiting.empty() && std::chrono::steady_clock::now() < deadline);
    cursor.endEditBlock();
}

void JournalWriter::insertLine(QTextCursor& cursor, const Line& line)
{
    const QString html = getLineHtml(line.kind, line.text, line.detail);
    const QTextDocument* document = journal->document();
    cursor.movePosition(QTextCursor::End);
    if (shownBlockCounts.empty()) {
        cursor.insertHtml(html);
        shownBlockCounts.push_back(document->blockCount());
        return;
    }
    // The first paragraph of inserted HTML takes on the format of the paragraph that it goes into. So a
    // character goes ahead into the line before, and is taken out again.
    const int blockCountBefore = document->blockCount();
    const int endOfLineBefore = cursor.position();
    cursor.insertHtml(QLatin1Char('.') + html);
    cursor.setPosition(endOfLineBefore);
    cursor.deleteChar();
    shownBlockCounts.push_back(document->blockCount() - blockCountBefore);
}

void JournalWriter::trimDocument()
{
    int surplus = 0;
    while (shownBlockCounts.size() > kLineLimit) {
        surplus += shownBlockCounts.front();
        shownBlockCounts.pop_front();
        ++omittedCount;
    }
    if (surplus == 0)
        return;
    // A passing limit takes away the oldest blocks; a lasting one would count blocks, where we count lines.
    QTextDocument* document = journal->document();
    document->setMaximumBlockCount(document->blockCount() - surplus);
    document->setMaximumBlockCount(0);
}
