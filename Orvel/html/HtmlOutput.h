#pragma once

#include <QString>
#include <QStringView>
#include <QTextEncoder>

#include <memory>

class QIODevice;

namespace orvel {

/// Where a page goes while it is made: to the end of a text, or piece by piece to a file, as UTF-8 without a
/// byte order mark. Thus a page that goes to a file is never in memory as a whole; one of 100,000 lines would
/// take 90 MB.
///
/// Refers to the text or file, and lives no longer than it takes to make the page.
class HtmlOutput
{
public:
    /// Appends to `text`.
    explicit HtmlOutput(QString& text);
    /// Writes to `file`. A failed write shows in the device's error.
    explicit HtmlOutput(QIODevice& file);

    HtmlOutput& operator<<(QLatin1String html);
    HtmlOutput& operator<<(QStringView html);

    /// Writes what has been collected for the file.
    void flush();

private:
    QString piece;
    QString& target; ///< the text, or the piece that is collected for the file
    QIODevice* const device;
    /// Knows the first half of a surrogate pair that two pieces share.
    const std::unique_ptr<QTextEncoder> encoder;
};

} // namespace orvel
