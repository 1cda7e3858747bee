#pragma once

#include "host/process/IProcessMonitor.h"

#include <QObject>

#include <condition_variable>
#include <functional>
#include <mutex>

namespace orvel::desk {

/// Lets a run have something done in the window's thread: the one that this object was made in.
///
/// Serves one run, one call at a time.
class ThreadCall : public QObject
{
    Q_OBJECT

public:
    ThreadCall();

    /// Has the action done and waits until it is. To be called in the run's thread.
    ///
    /// False if the run was stopped before the action began; it will not be done any more then.
    bool call(const qor::IProcessMonitor& monitor, const std::function<void()>& requestedAction);
    /// Nothing is done any more, and nobody waits for it. To be called in the window's thread before it waits
    /// for the run without processing events.
    void close();

Q_SIGNALS:
    void requested();

private:
    enum class State { Idle, Waiting, Begun, Declined };

    void perform();

    std::mutex mutex;
    std::condition_variable changed;
    State state = State::Idle;
    bool isClosed = false;
    // The caller's, who waits.
    const std::function<void()>* action = nullptr;
    const qor::IProcessMonitor* runMonitor = nullptr;
};

} // namespace orvel::desk
