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

    /// Has the action done and waits until it is. A stopped run stops waiting, since the window's thread may
    /// be waiting for the run by then. To be called in the run's thread.
    ///
    /// False if the run was stopped before the action began; it will not be done any more then.
    bool call(const qor::IProcessMonitor& monitor, const std::function<void()>& requestedAction);

Q_SIGNALS:
    void requested();

private:
    enum class State { Idle, Waiting, Begun };

    void perform();

    std::mutex mutex;
    std::condition_variable changed;
    State state = State::Idle;
    const std::function<void()>* action = nullptr; ///< the caller's, who waits
};

} // namespace orvel::desk
