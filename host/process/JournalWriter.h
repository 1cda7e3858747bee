#pragma once

#include "host/host_export.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstddef>
#include <deque>

class QTextBrowser;
class QTextCursor;

/// Brings lines into a journal without freezing it, however many come.
///
/// Lines wait here and go into the document a few at a time. The journal keeps the newest lines only: what
/// would scroll off at once never enters the document.
///
/// A line is `<p class="K"><span class="mark">M</span> text <span class="detail">detail</span></p>`, with
/// `error`, `warning`, `message` or `service` for K; a service line has no mark, and without a detail there
/// is no detail span. The document's default style sheet says how they look.
class HOST_EXPORT JournalWriter : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Error, Warning, Message, Service };

    /// How many lines a journal keeps.
    static constexpr int kLineLimit = 10000;
    /// Of a text with more characters only the beginning is shown.
    static constexpr int kLengthLimit = 10000;

    /// @param journalBrowser  not owned, outlives the writer
    explicit JournalWriter(QTextBrowser* journalBrowser);
    ~JournalWriter() override;

    /// Empties the journal and forgets the lines that wait.
    void clear();
    /// Appends a line. @p text and @p detail are HTML; the detail, if any, is shown behind the text.
    void append(Kind kind, const QString& text, const QString& detail);
    /// Shows lines that wait until none is left or @p budget is spent. A journal scrolled to its end stays
    /// there; one that is scrolled up keeps showing the same lines.
    /// @return true when no line waits
    bool flush(std::chrono::milliseconds budget);
    /// How many lines wait to be shown.
    std::size_t getWaitingCount() const { return waiting.size(); }
    /// How many lines the journal no longer shows.
    qint64 getOmittedCount() const { return omittedCount; }

    /// The mark-up of one line as it goes into the document.
    static QString getLineHtml(Kind kind, const QString& text, const QString& detail);

private:
    struct Line
    {
        Kind kind;
        QString text;
        QString detail;
    };

    void followIfAtEnd();
    void insertLines(std::chrono::steady_clock::time_point deadline);
    void insertLine(QTextCursor& cursor, const Line& line);
    void trimDocument();

    QTextBrowser* journal;
    std::deque<Line> waiting;
    std::deque<int> shownBlockCounts; // of each line in the document, oldest first
    qint64 omittedCount = 0;
    bool isAtEnd = true; // the journal is scrolled to its end
};
