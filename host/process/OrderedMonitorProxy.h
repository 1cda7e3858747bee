#pragma once

#include "host/process/CallQueue.h"
#include "host/process/IProcessMonitor.h"
#include "host/process/LinkQuestions.h"
#include "host/process/RunControl.h"

#include <atomic>
#include <string>

/// The monitor that a run gets in its thread: it hands every call on, in order, to whoever delivers them.
///
/// Stages, lines and percentages stand in one queue, so they can't overtake each other; a percentage that the
/// run repeats is left out. Questions are answered at once: whether the run goes on, whether it is silent and
/// whether it wrote errors from what is known here, getItemLink() as LinkQuestions tells.
///
/// May be used from any thread of the run.
class OrderedMonitorProxy final : public qor::IProcessMonitor
{
public:
    /// What is handed in is not owned and outlives the run.
    /// @param callQueue  takes the calls
    /// @param linkQuestions  makes the links
    /// @param runControl  knows whether the run goes on
    /// @param silent  what getSilent() answers until the run says otherwise
    OrderedMonitorProxy(CallQueue& callQueue, LinkQuestions& linkQuestions, RunControl& runControl,
                        bool silent);
    ~OrderedMonitorProxy() override;

    void setPercentage(int percentage) override;
    void startStage(std::wstring name) override;
    void finishCurrentStage() override;
    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;
    bool isProcessRunning() const override;
    void setSilent(bool silent) override;
    bool getSilent() const override; ///< What the run itself has said last.
    void pause() override;
    void writeError(std::wstring text) override;                      ///< Queues an error line.
    void writeError(std::wstring text, std::wstring detail) override; ///< Queues an error line with a detail.
    void writeWarning(std::wstring text) override;                    ///< Queues a warning line.
    /// Queues a warning line with a detail.
    void writeWarning(std::wstring text, std::wstring detail) override;
    void writeMessage(std::wstring text) override; ///< Queues a message line.
    /// Queues a message line with a detail.
    void writeMessage(std::wstring text, std::wstring detail) override;
    void write(std::wstring text) override;
    void write(std::wstring text, std::wstring detail) override; ///< Queues a service line with a detail.
    /// Counts every error written so far, delivered or not.
    bool wasErrors() const override;
    std::wstring getItemLink(LONGID id, const std::wstring& text) override;

private:
    CallQueue& calls;
    LinkQuestions& questions;
    RunControl& control;
    std::atomic<int> latestPercentage{-1};
    std::atomic<bool> silentMode;
    std::atomic<bool> errorsWritten{false};
};
