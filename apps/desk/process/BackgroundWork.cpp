#include "apps/desk/process/BackgroundWork.h"

#include <QScopeGuard>

#include <utility>

namespace orvel::desk {

BackgroundWork::~BackgroundWork()
{
    isStopped = true;
    if (present.valid())
        present.wait();
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
    isStopped = true;
}

void BackgroundWork::begin()
{
    isStopped = false;
    present = std::async(std::launch::async, [this, make = std::exchange(next, nullptr)]() mutable {
        // Also when the work throws.
        const auto atEnd = qScopeGuard(
            [this] { QMetaObject::invokeMethod(this, &BackgroundWork::finish, Qt::QueuedConnection); });
        Take take = make([this] { return isStopped.load(); });
        // There may be much to be freed of what the work was given, and of what nobody wants.
        make = nullptr;
        if (isStopped)
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
