#pragma once

#include "host/process/MonitorCall.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

/// The calls of a run on their way to the GUI thread, in the order in which they were made.
///
/// The queue is bounded: a run that writes faster than its calls are taken waits in post().
class CallQueue
{
public:
    using Calls = std::vector<MonitorCall>; ///< The oldest first.

    /// How many calls may wait: enough for the GUI thread to have work until it comes again.
    static constexpr std::size_t kCallLimit = 20000;
    /// How much memory they may take: little enough for any machine. One call may be larger than that.
    static constexpr std::size_t kByteLimit = std::size_t(16) * 1024 * 1024;

    /// @param wakeFunction  called, in the run's thread, when the run begins to wait for room
    explicit CallQueue(std::function<void()> wakeFunction);

    /// Appends the call. A percentage takes the place of one that waits as the last. In any thread.
    void post(MonitorCall call);

    /// Whether the run waits for room.
    bool isAwaited() const;
    bool isEmpty() const; ///< Whether no call waits.
    /// All that waits; room for as much again.
    Calls take();
    /// Drops what waits and all that comes.
    void abandon();

private:
    const std::function<void()> wake;

    mutable std::mutex mutex;
    std::condition_variable roomMade;
    Calls waiting;
    std::size_t waitingBytes = 0;
    int writersWaiting = 0;
    bool abandoned = false;
};
