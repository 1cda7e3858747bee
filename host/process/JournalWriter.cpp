#include "host/process/JournalWriter.h"

#include <QCoreApplication>
#include <QLocale>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <numeric>

namespace {

struct KindMarkup
{
    QLatin1String cssClass;
    QString mark; // tells the kind to those who see no colours
};

KindMarkup getMarkup(LineKind kind)
{
    switch (kind) {
    case LineKind::Error:
        return {QLatin1String("error"), QStringLiteral("\u2716")};
    case LineKind::Warning:
        return {QLatin1String("warning"), QStringLiteral("\u26A0")};
    case LineKind::Message:
        return {QLatin1String("message"), QStringLiteral("\u2022")};
    case LineKind::Service:
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
        QCoreApplication::translate(
            "Host", "строка из %1 знаков сокращена; полностью — в протоколе, если обработка не остановлена")
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
    lines.clear();
    omittedCount = 0;
    emptyDocument();
}

void JournalWriter::append(LineKind kind, const QString& text, const QString& detail)
{
    lines.push_back({kind, getShortened(text), getShortened(detail)});
    if (lines.size() <= kLineLimit)
        return;
    lines.pop_front();
    ++omittedCount;
    if (getShownEnd() < omittedCount)
        emptyDocument(); // all that is shown is older than the line just left out
}

bool JournalWriter::flush(std::chrono::milliseconds budget, Extent extent)
{
    const bool isAllWanted = extent == Extent::All;
    if (getShownEnd() == getEnd() && (!isAllWanted || isComplete()))
        return true;
    if (flushing)
        return false; // somebody who listens to the document looks at the journal
    const QScopedValueRollback<bool> guard(flushing, true);

    const TimePoint deadline = std::chrono::steady_clock::now() + budget;
    const bool isFollowed = isAtEnd;
    const QTextCursor topLine = isFollowed ? QTextCursor() : journal->cursorForPosition(QPoint(0, 0));
    const int topLineY = isFollowed ? 0 : journal->cursorRect(topLine).y();

    if (isFollowed && !isAllWanted)
        skipToNewest();
    trimDocument();
    insertNewLines(deadline);
    if (isAllWanted && getShownEnd() == getEnd())
        insertEarlierLines(deadline);

    if (!isFollowed) { // what the user reads stays where it is
        QScrollBar* scrollBar = journal->verticalScrollBar();
        scrollBar->setValue(scrollBar->value() + journal->cursorRect(topLine).y() - topLineY);
    }
    return getShownEnd() == getEnd() && (!isAllWanted || isComplete());
}

bool JournalWriter::turnToGravest(std::chrono::milliseconds budget, const QString& worst)
{
    const std::optional<qint64> number = findGravest(worst);
    if (!number || flushing)
        return false;
    const QScopedValueRollback<bool> guard(flushing, true);
    trimDocument();
    if (*number < shownBegin || *number >= getShownEnd()) {
        emptyDocument();
        shownBegin = *number;
        isAtEnd = false;
        insertNewLines(std::chrono::steady_clock::now() + budget);
    }
    scrollTo(*number);
    return true;
}

/// The worst one that is kept of the gravest kind, or the first.
std::optional<qint64> JournalWriter::findGravest(const QString& worst) const
{
    const QString worstText = getShortened(worst);
    for (const LineKind kind : {LineKind::Error, LineKind::Warning}) {
        const auto isKind = [kind](const Line& line) { return line.kind == kind; };
        const auto first = std::find_if(lines.begin(), lines.end(), isKind);
        if (first == lines.end())
            continue;
        const auto found = std::find_if(
            first, lines.end(), [&](const Line& line) { return isKind(line) && line.text == worstText; });
        return omittedCount + ((found == lines.end() ? first : found) - lines.begin());
    }
    return std::nullopt;
}

/// Brings a line of the document to the top, as far as there are lines below it.
void JournalWriter::scrollTo(qint64 number)
{
    const auto end = blockCounts.begin() + (number - shownBegin);
    const int block = std::accumulate(blockCounts.begin(), end, 0);
    const QTextCursor line(journal->document()->findBlockByNumber(block));
    QScrollBar* scrollBar = journal->verticalScrollBar();
    scrollBar->setValue(scrollBar->value() + journal->cursorRect(line).y());
    isAtEnd = scrollBar->value() == scrollBar->maximum();
}

bool JournalWriter::isComplete() const
{
    return shownBegin == omittedCount && getShownEnd() == getEnd();
}

QString JournalWriter::getLineHtml(LineKind kind, const QString& text, const QString& detail)
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

void JournalWriter::emptyDocument()
{
    shownBegin = omittedCount;
    if (blockCounts.empty())
        return;
    blockCounts.clear();
    journal->clear();
}

/// Leaves out, for now, what would scroll through faster than anybody reads.
void JournalWriter::skipToNewest()
{
    if (getEnd() - getShownEnd() <= kNewestCount)
        return;
    emptyDocument();
    shownBegin = getEnd() - kNewestCount;
}

void JournalWriter::insertNewLines(TimePoint deadline)
{
    QTextCursor cursor(journal->document());
    cursor.beginEditBlock();
    bool isInTime = true;
    while (isInTime && getShownEnd() < getEnd()) {
        insertLast(cursor, getLine(getShownEnd()));
        isInTime = std::chrono::steady_clock::now() < deadline;
    }
    cursor.endEditBlock();
}

void JournalWriter::insertEarlierLines(TimePoint deadline)
{
    QTextCursor cursor(journal->document());
    cursor.beginEditBlock();
    while (shownBegin > omittedCount && std::chrono::steady_clock::now() < deadline)
        insertFirst(cursor, getLine(shownBegin - 1));
    cursor.endEditBlock();
}

void JournalWriter::insertLast(QTextCursor& cursor, const Line& line)
{
    const QString html = getLineHtml(line.kind, line.text, line.detail);
    const QTextDocument* document = journal->document();
    cursor.movePosition(QTextCursor::End);
    if (blockCounts.empty()) {
        cursor.insertHtml(html);
        blockCounts.push_back(document->blockCount());
        return;
    }
    // The first paragraph of inserted HTML takes on the format of the paragraph that it goes into. So a
    // character goes ahead into the line before, and is taken out again.
    const int blockCountBefore = document->blockCount();
    const int endOfLineBefore = cursor.position();
    cursor.insertHtml(QLatin1Char('.') + html);
    cursor.setPosition(endOfLineBefore);
    cursor.deleteChar();
    blockCounts.push_back(document->blockCount() - blockCountBefore);
}

void JournalWriter::insertFirst(QTextCursor& cursor, const Line& line)
{
    const QTextDocument* document = journal->document();
    const int blockCountBefore = document->blockCount();
    cursor.setPosition(0);
    cursor.insertBlock(cursor.blockFormat(), cursor.blockCharFormat());
    cursor.setPosition(0);
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.setBlockCharFormat(QTextCharFormat());
    // As in insertLast(), a character goes ahead, here into a paragraph of its own. With that paragraph the
    // format of the line's first one would go, too.
    cursor.insertHtml(QLatin1Char('.') + getLineHtml(line.kind, line.text, line.detail));
    const QTextBlock firstBlock = document->firstBlock().next();
    const QTextBlockFormat blockFormat = firstBlock.blockFormat();
    const QTextCharFormat charFormat = firstBlock.charFormat();
    cursor.setPosition(0);
    cursor.deleteChar();
    cursor.deleteChar();
    cursor.setBlockFormat(blockFormat);
    cursor.setBlockCharFormat(charFormat);
    blockCounts.push_front(document->blockCount() - blockCountBefore);
    --shownBegin;
}

/// Takes out the lines that are not kept any more.
void JournalWriter::trimDocument()
{
    int surplus = 0;
    while (shownBegin < omittedCount && !blockCounts.empty()) {
        surplus += blockCounts.front();
        blockCounts.pop_front();
        ++shownBegin;
    }
    if (surplus == 0)
        return;
    if (blockCounts.empty())
        return journal->clear();
    // A passing limit takes away the oldest blocks; a lasting one would count blocks, where we count lines.
    QTextDocument* document = journal->document();
    document->setMaximumBlockCount(document->blockCount() - surplus);
    document->setMaximumBlockCount(0);
}

const JournalWriter::Line& JournalWriter::getLine(qint64 number) const
{
    return lines[static_cast<std::size_t>(number - omittedCount)];
}
