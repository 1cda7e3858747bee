#pragma once

#include "host/process/CallQueue.h"
#include "host/process/LinkQuestions.h"
#include "host/process/OrderedMonitorProxy.h"
#include "host/process/RunControl.h"

#include <QObject>

#include <chrono>
#include <cstddef>
#include <functional>
#include <thread>

class QTimer;

/// One run, seen from the GUI thread: its thread, its calls on their way to the monitor that shows them, and
/// its end. Calls are delivered in batches, so that other events have their turn however many come.
class RunSession : public QObject
{
    Q_OBJECT

public:
    /// A run; it gets its monitor in its own thread.
    using RunFunction = std::function<void(qor::IProcessMonitor&)>;

    /// @param monitor     gets the calls and the questions; not owned, outlives the session
    /// @param linkSource  may be empty; see LinkQuestions
    /// @param silent      whether the run is silent until it says otherwise
    RunSession(qor::IProcessMonitor& monitor, LinkQuestions::LinkSource linkSource, bool silent);
    /// Abandons a run that still works.
    ~RunSession() override;

    /// Runs the function in a thread of its own. An exception that leaves it becomes an error line.
    void start(RunFunction function);

    /// The run ends at its next look at isProcessRunning().
    void requestStop() { control.requestStop(); }
    /// Whether the run was asked to end.
    bool isStopRequested() const { return control.isStopRequested(); }
    /// A paused run waits at its next checkpoint.
    void setPaused(bool paused) { control.setPaused(paused); }
    /// Whether the run is to wait.
    bool isPaused() const { return control.isPaused(); }
    /// Whether the run wrote an error, delivered or not.
    bool wasErrors() const { return proxy.wasErrors(); }
    /// Whether the run was stopped or ended by an exception; known when it has ended.
    bool isInterrupted() const { return control.isStopRequested() || control.isFailed(); }

    /// Whether the run ended by an exception.
    bool isFailed() const { return control.isFailed(); }

    /// Stops the run for good and waits for it. What it still had to say is dropped, and neither the monitor
    /// nor a signal is called any more.
    void abandon();

Q_SIGNALS:
    /// Calls were delivered.
    /// @param isBusy  more of them wait already
    void delivered(bool isBusy);
    /// The run's thread is joined and its last call delivered.
    void ended();
    /// Emitted in the run's thread when the run waits for the GUI thread, or is over.
    void runWaits(QPrivateSignal);

private:
    void work(const RunFunction& function);
    void serveRun();
    void deliverBatch();
    bool deliver(std::chrono::milliseconds budget);
    bool takeCalls();
    bool isDrained() const;
    void end();

    qor::IProcessMonitor& target;
    CallQueue calls;
    LinkQuestions questions;
    RunControl control;
    OrderedMonitorProxy proxy;
    std::thread worker;
    QTimer* batchTimer;

    // Taken from the queue; those before `nextInHand` are delivered.
    CallQueue::Calls inHand;
    std::size_t nextInHand = 0;
    bool delivering = false;
    bool over = false;
};
