#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <string>

namespace qor {

/// What a processing run knows of the window that shows it: progress, stages and journal lines.
///
/// Lines are HTML; texts that come from files are escaped by whoever writes them. The two-argument writers
/// take a detail (a file, a place in it) that is shown behind the line.
struct HOST_EXPORT IProcessMonitor
{
    virtual ~IProcessMonitor() = default;

    /// Shows how far the run is, 0 to 100. A paused run waits here.
    virtual void setPercentage(int percentage) = 0;
    /// Shows the name of the stage that begins; stages nest.
    virtual void startStage(std::wstring name) = 0;
    /// Ends the innermost stage of startStage().
    virtual void finishCurrentStage() = 0;
    /// Begins a stage that groups the lines of the protocol.
    virtual void startProtocolStage(std::wstring name) = 0;
    /// Ends the innermost stage of startProtocolStage().
    virtual void finishProtocolStage() = 0;
    /// False from the moment the user asked to stop: a long computation asks this often and returns.
    virtual bool isProcessRunning() const = 0;
    /// A silent monitor shows no lines; they still count and are still recorded.
    virtual void setSilent(bool silent) = 0;
    virtual bool getSilent() const = 0; ///< Whether lines are not shown.
    /// A checkpoint: waits here while the user has paused the run.
    virtual void pause() = 0;

    virtual void writeError(std::wstring text) = 0; ///< Writes an error line.
    /// Writes an error line with a detail.
    virtual void writeError(std::wstring text, std::wstring detail) = 0;
    virtual void writeWarning(std::wstring text) = 0; ///< Writes a warning line.
    /// Writes a warning line with a detail.
    virtual void writeWarning(std::wstring text, std::wstring detail) = 0;
    virtual void writeMessage(std::wstring text) = 0; ///< Writes a message line.
    /// Writes a message line with a detail.
    virtual void writeMessage(std::wstring text, std::wstring detail) = 0;
    /// Writes a service line: one that is neither of the above.
    virtual void write(std::wstring text) = 0;
    virtual void write(std::wstring text, std::wstring detail) = 0; ///< Writes a service line with a detail.

    /// Whether an error line was written since the run began.
    virtual bool wasErrors() const = 0;
    /// Mark-up that shows @p text, which is HTML, as a link to the item @p id; the bare text where the
    /// monitor knows no links.
    virtual std::wstring getItemLink(LONGID id, const std::wstring& text) = 0;
};

} // namespace qor
