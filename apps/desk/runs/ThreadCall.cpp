#include "apps/desk/runs/ThreadCall.h"

#include <chrono>

namespace orvel::desk {

ThreadCall::ThreadCall()
{
    connect(this, &ThreadCall::requested, this, &ThreadCall::perform, Qt::QueuedConnection);
}

bool ThreadCall::call(const qor::IProcessMonitor& monitor, const std::function<void()>& requestedAction)
{
    constexpr std::chrono::milliseconds lookInterval(20);
    std::unique_lock<std::mutex> lock(mutex);
    action = &requestedAction;
    state = State::Waiting;
    Q_EMIT requested();
    while (state != State::Idle) {
        if (state == State::Waiting && !monitor.isProcessRunning()) {
            state = State::Idle;
            return false;
        }
        changed.wait_for(lock, lookInterval);
    }
    return true;
}

void ThreadCall::perform()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (state != State::Waiting)
            return;
        state = State::Begun;
    }
    (*action)();
    const std::lock_guard<std::mutex> lock(mutex);
    state = State::Idle;
    changed.notify_all();
}

} // namespace orvel::desk
