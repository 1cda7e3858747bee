#pragma once

#include <QString>
#include <QStringList>

namespace orvel::test {

/// The desk's program, run to its end.
struct DeskProcess
{
    int exitCode = -1;
    QString output;
    QString errors;

    /// Runs "orvel-desk --headless" with the arguments in a folder.
    static DeskProcess run(const QString& folder, const QStringList& arguments);
    /// Runs "orvel-desk" with just these arguments.
    static DeskProcess runPlain(const QString& folder, const QStringList& arguments);
};

} // namespace orvel::test
