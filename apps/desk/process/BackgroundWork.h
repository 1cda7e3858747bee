#pragma once

#include <QObject>

#include <functional>
#include <future>
#include <memory>

namespace orvel::desk {

/// Makes something in another thread, and has it taken in the thread of this object, by its event loop.
///
/// There is one piece of work at a time, and the newest counts: the one before it is told to stop, what it
/// made is never taken, and the new one begins when it has ended. Nobody waits for that, not even the
/// destructor: what is still at work then is waited for when the application ends.
class BackgroundWork : public QObject
{
    Q_OBJECT

public:
    /// The work asks this now and then, and may end with whatever it has when nobody wants it any more.
    using IsStopped = std::function<bool()>;
    /// Takes what was made.
    using Take = std::function<void()>;
    /// Performed in the other thread: touches nothing that another thread changes or destroys meanwhile. What
    /// it throws is thrown where it would be taken.
    using Make = std::function<Take(const IsStopped& isStopped)>;

    explicit BackgroundWork(QObject* parent = nullptr) : QObject(parent) {}
    /// Has the work stop. Nothing is taken any more.
    ~BackgroundWork() override;

    void start(Make make);
    /// Nobody wants what is being made.
    void stop();
    /// Something that was started has still to be taken.
    bool isWorking() const { return isWanted; }

private:
    struct Job;

    void begin();
    void finish();

    bool isWanted = false;
    Make next; ///< waits until the present one has ended
    std::shared_ptr<Job> job;
    std::future<Take> present;
};

} // namespace orvel::desk
