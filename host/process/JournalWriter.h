#pragma once

#include "host/process/LineKind.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <deque>
#include <optional>

class QTextBrowser;
class QTextCursor;

/// Brings lines into a journal without freezing it, however many come.
///
/// The newest lines are kept as they are; only what flush() is asked for is laid out. The journal begins with
/// the end: while lines pour in only the last ones enter the document, and the earlier ones follow when
/// somebody wants to see them all.
///
/// A line is `<p class="K"><span class="mark">M</span> text <span class="detail">detail</span></p>`, with
/// `error`, `warning`, `message` or `service` for K; a service line has no mark, and without a detail there
/// is no detail span. The document's default style sheet says how they look.
class JournalWriter : public QObject
{
    Q_OBJECT

public:
    /// What flush() brings into the document.
    enum class Extent {
        Newest, ///< at least the last lines, more than a journal shows at a time
        All     ///< all that are kept
    };

    /// How many lines a journal keeps.
    static constexpr int kLineLimit = 10000;
    /// How many lines enter the document before earlier ones do.
    static constexpr int kNewestCount = 100;
    /// Of a text with more characters only the beginning is shown.
    static constexpr int kLengthLimit = 10000;

    /// @param journalBrowser  not owned, outlives the writer
    explicit JournalWriter(QTextBrowser* journalBrowser);
    ~JournalWriter() override;

    /// Empties the journal and forgets all lines.
    void clear();
    /// Appends a line. @p text and @p detail are HTML; the detail, if any, is shown behind the text.
    void append(LineKind kind, const QString& text, const QString& detail);
    /// Brings lines into the document until all of @p extent are there or @p budget is spent. A journal
    /// scrolled to its end stays there; one that is scrolled up keeps showing the same lines.
    /// @return true when all of the extent are there
    bool flush(std::chrono::milliseconds budget, Extent extent = Extent::All);
    /// Whether there are warnings or errors, and if so, brings a line of the gravest kind to the top: the one
    /// with the text @p worst, or else the first, as far as they are kept. What follows it in the document
    /// comes by flush().
    bool turnToGravest(std::chrono::milliseconds budget, const QString& worst = {});
    /// Whether the journal is scrolled to its end, and stays there when lines come.
    bool isFollowing() const { return isAtEnd; }
    /// Whether the document has all lines that are kept.
    bool isComplete() const;
    /// How many lines have come since the document got its last one.
    qint64 getNewCount() const { return getEnd() - getShownEnd(); }
    /// How many lines are kept.
    int getLineCount() const { return static_cast<int>(lines.size()); }
    /// How many lines were too early to be kept.
    qint64 getOmittedCount() const { return omittedCount; }

    /// The mark-up of one line as it goes into the document.
    static QString getLineHtml(LineKind kind, const QString& text, const QString& detail);

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Line
    {
        LineKind kind;
        QString text;
        QString detail;
    };

    qint64 getEnd() const { return omittedCount + getLineCount(); }
    qint64 getShownEnd() const { return shownBegin + static_cast<qint64>(blockCounts.size()); }
    std::optional<qint64> findGravest(const QString& worst) const;
    void scrollTo(qint64 number);
    void followIfAtEnd();
    void emptyDocument();
    void skipToNewest();
    void insertNewLines(TimePoint deadline);
    void insertEarlierLines(TimePoint deadline);
    void insertLast(QTextCursor& cursor, const Line& line);
    void insertFirst(QTextCursor& cursor, const Line& line);
    void trimDocument();
    const Line& getLine(qint64 number) const;

    QTextBrowser* journal;
    // Lines have numbers, from 0 on as they come.
    std::deque<Line> lines; // those that are kept, from number `omittedCount` on
    qint64 omittedCount = 0;
    qint64 shownBegin = 0;       // number of the first line in the document
    std::deque<int> blockCounts; // of each line in the document, the first first
    bool isAtEnd = true;         // the journal is scrolled to its end
    bool flushing = false;
};
