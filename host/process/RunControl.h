#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

/// Whether a run goes on: its pause, its stop and its end, known to both threads.
class RunControl
{
public:
    /// From now on the run should stop, and a paused one goes on. Too late for a run that is over.
    void requestStop();
    /// Whether the user wants the run to end.
    bool isStopRequested() const { return stopRequested; }

    void setPaused(bool pausedByUser); ///< A paused run waits at its next checkpoint.
    bool isPaused() const;             ///< Whether the run is to wait.
    /// The run's thread waits here while the run is paused.
    void waitWhilePaused();

    /// Says that the run made its last call; the run's thread calls it as its last act.
    /// @param runFailed  the run ended by an exception
    void setFinished(bool runFailed);
    bool isFinished() const; ///< Whether the run is over.
    /// True when the run ended by an exception.
    bool isFailed() const;

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    bool paused = false;
    bool finished = false;
    bool failed = false;
    // Asked in the inner loops of a run, hence readable without the mutex.
    std::atomic<bool> stopRequested{false};
};
