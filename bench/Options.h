#pragma once

#include <QString>
#include <QStringList>

namespace orvel::bench {

/// What the command line asks for.
struct Options
{
    QString operation; ///< empty for all
    int size = 0;      ///< 0 for all
    int rounds = 3;
    bool isQuick = false;
    QString jsonPath;
    QString folder;  ///< for the files; empty for a temporary one
    QString program; ///< set in a child process, which measures this one
    bool wantsDigest = false;
};

/// Ends the program after a word on stderr when the arguments are no good, and for "--help".
Options readOptions(const QStringList& arguments);

} // namespace orvel::bench
