#include "apps/desk/runs/ThreadCall.h"

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace {

/// How far the call is; shared by both threads, whichever leaves first.
class Call
{
public:
    void perform(const std::function<void()>& action)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            if (state == State::Cancelled)
                return;
            state = State::Begun;
        }
        action();
        const std::lock_guard<std::mutex> lock(mutex);
        state = State::Done;
        changed.notify_all();
    }

    bool wait(const qor::IProcessMonitor& monitor)
    {
        constexpr std::chrono::milliseconds lookInterval(20);
        std::unique_lock<std::mutex> lock(mutex);
        while (state != State::Done) {
            if (state == State::Waiting && !monitor.isProcessRunning()) {
                state = State::Cancelled;
                return false;
            }
            changed.wait_for(lock, lookInterval);
        }
        return true;
    }

private:
    enum class State { Waiting, Begun, Done, Cancelled };

    std::mutex mutex;
    std::condition_variable changed;
    State state = State::Waiting;
};

} // namespace

bool callInThread(QObject& object, const qor::IProcessMonitor& monitor, const std::function<void()>& action)
{
    const auto call = std::make_shared<Call>();
    // The action is the caller's: it is touched only while the caller waits.
    QMetaObject::invokeMethod(
        &object, [call, &action] { call->perform(action); }, Qt::QueuedConnection);
    return call->wait(monitor);
}
