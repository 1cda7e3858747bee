#pragma once

#include "host/host_export.h"

#include <QString>

#include <chrono>
#include <deque>

class QTextBrowser;

/// Brings lines into a journal without freezing it, however many come.
///
/// Lines wait here and go into the document a few at a time. The journal keeps the newest lines only: what
/// would scroll off at once never enters the document.
class HOST_EXPORT JournalWriter
{
public:
    enum class Kind { Error, Warning, Message, Service };

    /// How many lines a journal keeps.
    static constexpr int kLineLimit = 10000;

    /// @param journalBrowser  not owned, outlives the writer
    explicit JournalWriter(QTextBrowser* journalBrowser);

    /// Empties the journal and forgets the lines that wait.
    void clear();
    /// Appends a line. @p text and @p detail are HTML; the detail, if any, is shown behind the text.
    void append(Kind kind, const QString& text, const QString& detail);
    /// Shows lines that wait until none is left or @p budget is spent.
    /// @return true when no line waits
    bool flush(std::chrono::milliseconds budget);
    /// How many lines the journal no longer shows.
    qint64 getOmittedCount() const { return omittedCount; }

    /// The mark-up of one line as it goes into the document.
    static QString getLineHtml(Kind kind, const QString& text, const QString& detail);

private:
    void dropOverflow();
    void insertChunk();
    void trimDocument();

    QTextBrowser* journal;
    std::deque<QString> waiting;
    std::deque<int> shownBlockCounts; // of each shown line, oldest first
    qint64 omittedCount = 0;
};
