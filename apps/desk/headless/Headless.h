#pragma once

#include "apps/desk/CommandLine.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "apps/desk/print/ReportPicture.h"
#include "apps/desk/process/JournalRecorder.h"
#include "apps/desk/process/RunMonitor.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>

class ProjectWindow;

namespace orvel::desk {

class Document;
class ProjectLock;

/// Does what the command line asks for without a display.
///
/// What was done is written and reported whatever fails before or after: pages, data file, project, and one
/// line per run with its counts of errors, warnings and messages, and where its page lies.
class Headless
{
public:
    enum ExitCode {
        Done = 0,
        NoResult = 1, ///< a run could not produce its result, or the level of --fail-on was reached
        Refused = 2   ///< wrong use, unreadable input or failed output
    };

    /// Tells the user in one sentence why something was not done.
    using Complain = std::function<void(const QString& text)>;

    /// The window is not shown. All outlive the object.
    Headless(Document& openDocument, ProjectWindow& projectWindow, Complain complainFunction);

    /// @return the gravest ExitCode of all that was asked for
    int execute(const CommandLine& commandLine);

private:
    void performAll(const CommandLine& commandLine);
    bool load(const CommandLine& commandLine);
    bool import(const std::optional<SectionSigma>& sigma);
    void startRecording(const QString& path);
    bool perform(const DeskRun& run);
    void writeReport(const CommandLine::ReportFile& file);
    void writePages(const QString& folder);
    void writePage(int type, const QString& path);
    void copyData(const QString& filePath);
    bool checkProtocol(std::optional<int> finishedRun = std::nullopt);
    void save(const QString& filePath);
    void report(const CommandLine& commandLine);
    void judge(CommandLine::FailLevel level);
    ProtocolSummary::Counts getCounts(int protocolType) const;
    void fail(ExitCode code, const QString& text);

    Document& document;
    ReportPicture picture;
    Complain complain;
    std::vector<ImportSource> sources;            // with the templates that were read
    std::optional<ToleranceRules> toleranceRules; // instead of the project's
    std::shared_ptr<ProjectLock> lock;            // of the project to be saved
    int exitCode = Done;
    std::unique_ptr<JournalRecorder> recorder;
    RunMonitor monitor;
    std::vector<int> performedTypes; // in the order of the runs, each once
    std::map<int, QString> pages;    // that were written, by protocol type
};

} // namespace orvel::desk
