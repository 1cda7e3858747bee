#pragma once

#include "host/process/IProcessMonitor.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel::desk {

class Document;

/// A processing run of the desk, ready to be started.
struct DeskRun
{
    int protocolType = 0;
    /// The work, done in the run's thread.
    std::function<void(qor::IProcessMonitor&)> function;
    /// Takes over what the work gave; called in the window's thread when the run ended without interruption.
    std::function<void()> takeResults;
    /// Takes back what the work changed; called in the window's thread when the run was interrupted.
    std::function<void()> discardResults;
    /// Why the run gave nothing, as plain text; empty if it did its work. To be read after the run.
    std::shared_ptr<QString> failure = std::make_shared<QString>();
};

/// Makes runs on the document as it is at this moment. The document outlives them.
namespace runs {

DeskRun makeImport(Document& document, const QString& filePath);
DeskRun makeCompile(const Document& document);
DeskRun makeAdjust(Document& document);
DeskRun makeL1Analysis(const Document& document);
/// Export of the adjusted heights as CSV.
DeskRun makeExport(const Document& document, const QString& filePath);

} // namespace runs

} // namespace orvel::desk
