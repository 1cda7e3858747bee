#include "host/process/RunControl.h"

void RunControl::requestStop()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!finished)
            stopRequested = true;
    }
    changed.notify_all();
}

void RunControl::setPaused(bool pausedByUser)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        paused = pausedByUser;
    }
    changed.notify_all();
}

bool RunControl::isPaused() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return paused;
}

void RunControl::waitWhilePaused()
{
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return !paused || stopRequested; });
}

void RunControl::setFinished(bool runFailed)
{
    const std::lock_guard<std::mutex> lock(mutex);
    finished = true;
    failed = runFailed;
}

bool RunControl::isFinished() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return finished;
}

bool RunControl::isFailed() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return failed;
}
