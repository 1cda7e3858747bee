#include "apps/desk/process/BackgroundWork.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

namespace orvel::desk {

/// What both threads know of a piece of work.
struct BackgroundWork::Job
{
    explicit Job(BackgroundWork* workOwner) : owner(workOwner) {}

    void tellEnd()
    {
        const std::lock_guard lock(mutex);
        if (owner != nullptr)
            QMetaObject::invokeMethod(owner, &BackgroundWork::finish, Qt::QueuedConnection);
    }

    void forgetOwner()
    {
        const std::lock_guard lock(mutex);
        owner = nullptr;
    }

    std::atomic<bool> isStopped{false};

private:
    std::mutex mutex;
    BackgroundWork* owner; ///< null when it has gone
};

namespace {

/// Work whose owner has gone. A future waits for its work when it is destroyed.
std::vector<std::future<BackgroundWork::Take>>& getLeftWork()
{
    static std::vector<std::future<BackgroundWork::Take>> leftWork;
    return leftWork;
}

/// Keeps the work until it ends, or the application does, whose texts it may use.
void leave(std::future<BackgroundWork::Take> work)
{
    auto& leftWork = getLeftWork();
    const auto hasEnded = [](const std::future<BackgroundWork::Take>& one) {
        return one.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    leftWork.erase(std::remove_if(leftWork.begin(), leftWork.end(), hasEnded), leftWork.end());
    if (leftWork.empty())
        qAddPostRoutine([] { getLeftWork().clear(); });
    leftWork.push_back(std::move(work));
}

} // namespace

BackgroundWork::~BackgroundWork()
{
    stop();
    if (!present.valid())
        return;
    job->forgetOwner();
    leave(std::move(present));
}

void BackgroundWork::start(Make make)
{
    stop();
    isWanted = true;
    next = std::move(make);
    if (!present.valid())
        begin();
}

void BackgroundWork::stop()
{
    isWanted = false;
    next = nullptr;
    if (job)
        job->isStopped = true;
}

void BackgroundWork::begin()
{
    job = std::make_shared<Job>(this);
    present = std::async(std::launch::async, [job = job, make = std::exchange(next, nullptr)]() mutable {
        // Also when the work throws.
        const auto atEnd = qScopeGuard([&job] { job->tellEnd(); });
        Take take = make([&job] { return job->isStopped.load(); });
        // There may be much to be freed of what the work was given, and of what nobody wants.
        make = nullptr;
        if (job->isStopped)
            take = nullptr;
        return take;
    });
}

void BackgroundWork::finish()
{
    std::future<Take> ended = std::exchange(present, {});
    if (next) {
        ended.wait();
        begin();
        return;
    }
    if (!std::exchange(isWanted, false))
        return;
    ended.get()();
}

} // namespace orvel::desk
