#pragma once

#include "apps/desk/CommandLine.h"
#include "apps/desk/process/JournalRecorder.h"
#include "apps/desk/process/RunMonitor.h"

#include <QTextStream>

#include <memory>

class ProjectWindow;

namespace orvel::desk {

class Document;

/// Does what the command line asks for without a display.
///
/// Writes one line per run: its counts of errors, warnings and messages, and where its page lies.
class Headless
{
public:
    /// The window is not shown. All outlive the object.
    Headless(Document& openDocument, ProjectWindow& projectWindow, QTextStream& outputStream);

    /// Throws exceptions::Error when something cannot be done.
    void execute(const CommandLine& commandLine);

private:
    void perform(const DeskRun& run);
    void writePages(const QString& folder);
    void report(const QString& pagesFolder);
    void copyData(const QString& filePath);

    Document& document;
    QTextStream& output;
    std::unique_ptr<JournalRecorder> recorder;
    RunMonitor monitor;
    std::vector<int> performedTypes; // in the order of the runs, each once
};

} // namespace orvel::desk
