#pragma once

#include "apps/desk/runs/RunLines.h"

namespace orvel::desk {

/// Writes the lines about one file. Where there are several, each names its own.
class FileLines
{
public:
    /// @param runLines  outlive this object
    /// @param fileName  empty if there is one file only
    FileLines(RunLines& runLines, const QString& fileName) : lines(runLines)
    {
        if (!fileName.isEmpty())
            prefix = RunLines::escape(fileName) + QStringLiteral(": ");
    }

    void error(const QString& text) { lines.error(prefix + text); }
    void error(const QString& text, double ratio) { lines.error(prefix + text, ratio); }
    void warning(const QString& text) { lines.warning(prefix + text); }
    void message(const QString& text) { lines.message(prefix + text); }
    RunLines& get() { return lines; }

private:
    RunLines& lines;
    QString prefix;
};

} // namespace orvel::desk
