#include "host/process/CallQueue.h"

#include <utility>

CallQueue::CallQueue(std::function<void()> wakeFunction) : wake(std::move(wakeFunction))
{}

void CallQueue::post(MonitorCall call)
{
    const std::size_t bytes = monitorcalls::countBytes(call);
    std::unique_lock<std::mutex> lock(mutex);
    const auto canPost = [&] {
        return abandoned || waiting.empty() ||
               (waiting.size() < kCallLimit && waitingBytes + bytes <= kByteLimit);
    };
    if (!canPost()) {
        ++writersWaiting;
        lock.unlock();
        wake();
        lock.lock();
        roomMade.wait(lock, canPost);
        --writersWaiting;
    }
    if (abandoned)
        return;
    const bool isPercentage = std::holds_alternative<monitorcalls::SetPercentage>(call);
    if (isPercentage && !waiting.empty() &&
        std::holds_alternative<monitorcalls::SetPercentage>(waiting.back())) {
        waiting.back() = std::move(call);
        return;
    }
    waitingBytes += bytes;
    waiting.push_back(std::move(call));
}

bool CallQueue::isAwaited() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return writersWaiting > 0;
}

bool CallQueue::isEmpty() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return waiting.empty();
}

CallQueue::Calls CallQueue::take()
{
    Calls taken;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        taken.swap(waiting);
        waitingBytes = 0;
    }
    roomMade.notify_all();
    return taken;
}

void CallQueue::abandon()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        abandoned = true;
        waiting.clear();
    }
    roomMade.notify_all();
}
