#pragma once

#include "apps/desk/document/LevellingClass.h"
#include "apps/desk/runs/ImportRun.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace orvel::desk {

/// What the command line asks for. Files are paths, whether they were given as such or as file URLs; "-" is
/// the standard input or output.
struct CommandLine
{
    /// A file to be imported, and how it is to be read if it does not tell that itself.
    struct ImportFile
    {
        QString path;
        QString templateFile; ///< JSON; empty if the file needs none
    };
    /// A report to be written.
    struct ReportFile
    {
        int type = 0; ///< of the report
        QString path; ///< whose suffix tells what the file is
    };
    /// Which lines of the runs make the program fail.
    enum class FailLevel { Never, Error, Warning };

    bool isHeadless = false;
    bool wantsHelp = false;
    bool wantsVersion = false;
    QString language;                ///< "ru", "en", or empty for the system's
    std::vector<ImportFile> imports; ///< files of the network to import, in this order
    QString projectFile;             ///< project to open
    std::vector<int> runs;           ///< their protocol types, in this order
    std::optional<LevellingClass> levellingClass;
    std::optional<SectionSigma> sigma; ///< of the sections of field files
    QString toleranceFile;             ///< JSON: tolerances instead of the project's
    std::vector<ReportFile> reports;
    QString exportFile;  ///< whose suffix names the format
    QString pagesFolder; ///< where the pages of the runs go
    QString dataFile;    ///< copy of the protocol's data file
    QString saveFile;    ///< project to save
    QString recordFile;  ///< journal of the runs to record
    FailLevel failLevel = FailLevel::Never;
    QString argument; ///< file or URI for the window

    /// Why the arguments cannot be followed: one sentence; empty if they can.
    QString error;

    /// Reads the arguments, the program's name being the first. Options of Qt's own, like -platform, are
    /// known and left to Qt.
    static CommandLine parse(const QStringList& arguments);
    static QString getHelp();
};

} // namespace orvel::desk
