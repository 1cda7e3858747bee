#pragma once

#include "Orvel/orvel_export.h"

#include <QString>
#include <QStringView>

class QIODevice;

/// Where a page goes while it is made: to the end of a text, or piece by piece to a file, as UTF-8. Thus a
/// page that goes to a file is never in memory as a whole; one of 100,000 lines would take 90 MB.
///
/// Refers to the text or file, and lives no longer than it takes to make the page.
class ORVEL_EXPORT HtmlOutput
{
public:
    /// Appends to `text`. Implicit, so that a text can stand where an output is wanted.
    HtmlOutput(QString& text) : buffer(text) {}
    /// Writes to `file`, through `piece`. A failed write shows in the device's error.
    HtmlOutput(QString& piece, QIODevice& file) : buffer(piece), device(&file) {}

    const HtmlOutput& operator<<(QLatin1String html) const;
    const HtmlOutput& operator<<(QStringView html) const;

    /// Writes what has been collected for the file.
    void flush() const;

private:
    void flushPiece() const;

    QString& buffer;
    QIODevice* const device = nullptr;
};
