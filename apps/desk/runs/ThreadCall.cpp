#include "apps/desk/runs/ThreadCall.h"

namespace orvel::desk {

ThreadCall::ThreadCall()
{
    connect(this, &ThreadCall::requested, this, &ThreadCall::perform, Qt::QueuedConnection);
}

bool ThreadCall::call(const qor::IProcessMonitor& monitor, const std::function<void()>& requestedAction)
{
    std::unique_lock<std::mutex> lock(mutex);
    if (isClosed)
        return false;
    action = &requestedAction;
    runMonitor = &monitor;
    state = State::Waiting;
    Q_EMIT requested();
    changed.wait(lock, [this] { return state == State::Idle || state == State::Declined; });
    const bool isDone = state == State::Idle;
    state = State::Idle;
    return isDone;
}

void ThreadCall::close()
{
    const std::lock_guard<std::mutex> lock(mutex);
    isClosed = true;
    if (state == State::Waiting)
        state = State::Declined;
    changed.notify_all();
}

void ThreadCall::perform()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (state != State::Waiting)
            return;
        state = State::Begun;
    }
    // Only this thread gives the caller leave to go, so what he has handed in is there.
    const bool isWanted = runMonitor->isProcessRunning();
    if (isWanted)
        (*action)();
    const std::lock_guard<std::mutex> lock(mutex);
    state = isWanted ? State::Idle : State::Declined;
    changed.notify_all();
}

} // namespace orvel::desk
