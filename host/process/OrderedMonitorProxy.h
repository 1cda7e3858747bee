#pragma once

#include "host/host_export.h"
#include "host/process/IProcessMonitor.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

/// The monitor that a run gets in its thread: it keeps every call, in order, until the GUI thread makes them.
///
/// Stages and lines stand in one queue, so they can't overtake each other; of the percentages only the
/// newest is delivered. Questions are answered at once: whether the run goes on, whether it is silent and
/// whether it wrote errors from what the proxy knows itself, getItemLink() by the GUI thread, for which
/// the run waits. The queue is bounded: a run that writes faster than the window takes lines waits.
///
/// The upper half (IProcessMonitor) may be used from any thread of the run. The lower half belongs to the
/// GUI thread, which must see to it that the run is over before it destroys the proxy.
class HOST_EXPORT OrderedMonitorProxy final : public qor::IProcessMonitor
{
public:
    /// Called, in any thread, when the GUI thread should come to answerQuestions() and, if
    /// isDeliveryUrgent(), to deliver().
    using WakeFunction = std::function<void()>;

    /// @param silent  what getSilent() answers until the run says otherwise
    OrderedMonitorProxy(bool silent, WakeFunction wakeFunction);
    ~OrderedMonitorProxy() override;
    OrderedMonitorProxy(const OrderedMonitorProxy&) = delete;
    OrderedMonitorProxy& operator=(const OrderedMonitorProxy&) = delete;

    void setPercentage(int percentage) override;
    void startStage(std::wstring name) override;
    void finishCurrentStage() override;
    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;
    bool isProcessRunning() const override;
    void setSilent(bool silent) override;
    bool getSilent() const override;
    void pause() override;
    void writeError(std::wstring text) override;
    void writeError(std::wstring text, std::wstring detail) override;
    void writeWarning(std::wstring text) override;
    void writeWarning(std::wstring text, std::wstring detail) override;
    void writeMessage(std::wstring text) override;
    void writeMessage(std::wstring text, std::wstring detail) override;
    void write(std::wstring text) override;
    void write(std::wstring text, std::wstring detail) override;
    /// Counts every error written so far, delivered or not.
    bool wasErrors() const override;
    std::wstring getItemLink(LONGID id, const std::wstring& text) override;

    /// Says that the run wrote its last call; the run's thread calls it as its last use of the proxy.
    /// @param failed  the run ended by an exception
    void setFinished(bool failed);

    /// Makes the waiting calls on @p target, in order, until none is left or @p budget is spent.
    /// @return true when none was left
    bool deliver(qor::IProcessMonitor& target, std::chrono::milliseconds budget);
    /// Answers the links that the run asks for through @p target, for a few milliseconds at most; if
    /// questions are left, it wakes the GUI thread again.
    void answerQuestions(qor::IProcessMonitor& target);
    /// True when the run waits for room in the queue, or is over.
    bool isDeliveryUrgent() const;
    /// True when the run is over and every call of it is delivered.
    bool isDrained() const;
    /// True when the run ended by an exception.
    bool isFailed() const;

    /// From now on isProcessRunning() says false and a paused run goes on. Too late for a run that is over.
    void requestStop();
    bool isStopRequested() const;
    /// While paused, the run waits in pause() and setPercentage().
    void setPaused(bool paused);
    bool isPaused() const;

    /// Stops the run for good, without delivering anything more: what is queued and what the run still
    /// writes is dropped, and a link that it asks for is the bare text.
    void abandon();

private:
    enum class CallKind {
        StartStage,
        FinishStage,
        StartProtocolStage,
        FinishProtocolStage,
        SetSilent,
        Error,
        Warning,
        Message,
        Service
    };

    struct Call
    {
        CallKind kind = CallKind::Service;
        bool flag = false; // a line: it has a detail; SetSilent: the value
        std::wstring text = {};
        std::wstring detail = {};
    };

    struct Question
    {
        LONGID id = 0;
        std::wstring text; // of the link; then the answer
        std::exception_ptr failure;
        std::atomic<bool> answered{false};
    };

    void answer(Question& question, qor::IProcessMonitor& target);
    void post(Call call);
    void waitWhilePaused();
    bool takeWaitingCalls();
    static void makeCall(Call&& call, qor::IProcessMonitor& target);
    void deliverPercentage(qor::IProcessMonitor& target);

    const WakeFunction wake;

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Call> waiting;
    std::size_t waitingBytes = 0;
    int writersWaiting = 0; // for room in the queue
    std::deque<std::shared_ptr<Question>> questions;
    int percentage = 0;
    bool percentageChanged = false;
    bool answering = false; // the GUI thread looks after the questions without being woken
    bool paused = false;
    bool finished = false;
    bool failed = false;
    bool abandoned = false;

    // Asked in the inner loops of a run, hence not behind the mutex.
    std::atomic<bool> stopRequested{false};
    std::atomic<bool> silentMode;
    std::atomic<bool> errorsWritten{false};
    // Looked at without the mutex, though it changes behind it.
    std::atomic<bool> questionsWait{false};

    // Taken from the queue but not yet delivered; the GUI thread's own.
    std::deque<Call> inHand;
};
