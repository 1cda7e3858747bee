#include "host/process/OrderedMonitorProxy.h"

#include <exception>
#include <thread>
#include <utility>

namespace {

// What may wait in the queue: enough for the GUI thread to have work until it comes again, and little enough
// for any machine.
constexpr std::size_t kCallLimit = 20000;
constexpr std::size_t kByteLimit = std::size_t(16) * 1024 * 1024;

// A thread that sleeps takes long to wake up, some ten times longer than a link to make, and runs ask for one
// link after the other. So both sides stay awake for a moment before they go to sleep; the GUI thread sees to
// its other duties in between.
constexpr std::chrono::microseconds kWakefulTime{100};
constexpr std::chrono::milliseconds kAnsweringBudget{10};

template<class Condition>
void stayAwakeUntil(Condition isMet)
{
    const auto end = std::chrono::steady_clock::now() + kWakefulTime;
    while (!isMet() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

} // namespace

OrderedMonitorProxy::OrderedMonitorProxy(bool silent, WakeFunction wakeFunction)
    : wake(std::move(wakeFunction))
    , silentMode(silent)
{}

OrderedMonitorProxy::~OrderedMonitorProxy() = default;

void OrderedMonitorProxy::setPercentage(int newPercentage)
{
    waitWhilePaused();
    const std::lock_guard<std::mutex> lock(mutex);
    percentage = newPercentage;
    percentageChanged = !abandoned;
}

void OrderedMonitorProxy::startStage(std::wstring name)
{
    post({CallKind::StartStage, false, std::move(name)});
}

void OrderedMonitorProxy::finishCurrentStage()
{
    post({CallKind::FinishStage});
}

void OrderedMonitorProxy::startProtocolStage(std::wstring name)
{
    post({CallKind::StartProtocolStage, false, std::move(name)});
}

void OrderedMonitorProxy::finishProtocolStage()
{
    post({CallKind::FinishProtocolStage});
}

bool OrderedMonitorProxy::isProcessRunning() const
{
    return !stopRequested;
}

void OrderedMonitorProxy::setSilent(bool silent)
{
    silentMode = silent;
    post({CallKind::SetSilent, silent});
}

bool OrderedMonitorProxy::getSilent() const
{
    return silentMode;
}

void OrderedMonitorProxy::pause()
{
    waitWhilePaused();
}

void OrderedMonitorProxy::writeError(std::wstring text)
{
    errorsWritten = true;
    post({CallKind::Error, false, std::move(text)});
}

void OrderedMonitorProxy::writeError(std::wstring text, std::wstring detail)
{
    errorsWritten = true;
    post({CallKind::Error, true, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::writeWarning(std::wstring text)
{
    post({CallKind::Warning, false, std::move(text)});
}

void OrderedMonitorProxy::writeWarning(std::wstring text, std::wstring detail)
{
    post({CallKind::Warning, true, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::writeMessage(std::wstring text)
{
    post({CallKind::Message, false, std::move(text)});
}

void OrderedMonitorProxy::writeMessage(std::wstring text, std::wstring detail)
{
    post({CallKind::Message, true, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::write(std::wstring text)
{
    post({CallKind::Service, false, std::move(text)});
}

void OrderedMonitorProxy::write(std::wstring text, std::wstring detail)
{
    post({CallKind::Service, true, std::move(text), std::move(detail)});
}

bool OrderedMonitorProxy::wasErrors() const
{
    return errorsWritten;
}

std::wstring OrderedMonitorProxy::getItemLink(LONGID id, const std::wstring& text)
{
    // Shared, since the run gives up waiting when it is abandoned while the answer is being made.
    const auto question = std::make_shared<Question>();
    question->id = id;
    question->text = text;

    std::unique_lock<std::mutex> lock(mutex);
    if (abandoned)
        return text;
    questions.push_back(question);
    questionsWait = true;
    const bool isAwaited = answering;
    lock.unlock();
    if (!isAwaited)
        wake();
    stayAwakeUntil([&] { return question->answered.load(); });
    lock.lock();
    changed.wait(lock, [&] { return question->answered || abandoned; });
    if (question->failure)
        std::rethrow_exception(question->failure);
    return question->answered ? question->text : text;
}

void OrderedMonitorProxy::setFinished(bool runFailed)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        finished = true;
        failed = runFailed;
    }
    wake();
}

bool OrderedMonitorProxy::deliver(qor::IProcessMonitor& target, std::chrono::milliseconds budget)
{
    const auto deadline = std::chrono::steady_clock::now() + budget;
    bool isInTime = true;
    while (isInTime && takeWaitingCalls()) {
        while (isInTime && !inHand.empty()) {
            Call call = std::move(inHand.front());
            inHand.pop_front();
            makeCall(std::move(call), target);
            isInTime = std::chrono::steady_clock::now() < deadline;
        }
    }
    deliverPercentage(target);
    return inHand.empty() && isInTime;
}

void OrderedMonitorProxy::answerQuestions(qor::IProcessMonitor& target)
{
    const auto deadline = std::chrono::steady_clock::now() + kAnsweringBudget;
    std::unique_lock<std::mutex> lock(mutex);
    answering = true;
    while (!questions.empty() && std::chrono::steady_clock::now() < deadline) {
        const auto question = questions.front();
        questions.pop_front();
        questionsWait = !questions.empty();
        lock.unlock();
        answer(*question, target);
        stayAwakeUntil([this] { return questionsWait.load(); });
        lock.lock();
    }
    answering = false;
    const bool isUnfinished = !questions.empty();
    lock.unlock();
    if (isUnfinished)
        wake();
}

bool OrderedMonitorProxy::isDeliveryUrgent() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return finished || writersWaiting > 0;
}

bool OrderedMonitorProxy::isDrained() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return finished && waiting.empty() && inHand.empty() && !percentageChanged;
}

bool OrderedMonitorProxy::isFailed() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return failed;
}

void OrderedMonitorProxy::requestStop()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!finished)
            stopRequested = true;
    }
    changed.notify_all();
}

bool OrderedMonitorProxy::isStopRequested() const
{
    return stopRequested;
}

void OrderedMonitorProxy::setPaused(bool pausedByUser)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        paused = pausedByUser;
    }
    changed.notify_all();
}

bool OrderedMonitorProxy::isPaused() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return paused;
}

void OrderedMonitorProxy::abandon()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        abandoned = true;
        stopRequested = true;
        percentageChanged = false;
        waiting.clear();
        questions.clear();
        questionsWait = false;
    }
    inHand.clear();
    changed.notify_all();
}

void OrderedMonitorProxy::answer(Question& question, qor::IProcessMonitor& target)
{
    std::wstring link;
    std::exception_ptr failure;
    try {
        link = target.getItemLink(question.id, question.text);
    } catch (...) {
        failure = std::current_exception(); // it is the run that asked
    }
    {
        const std::lock_guard<std::mutex> lock(mutex);
        question.text = std::move(link);
        question.failure = failure;
        question.answered = true;
    }
    changed.notify_all();
}

void OrderedMonitorProxy::post(Call call)
{
    const std::size_t bytes = sizeof(Call) + sizeof(wchar_t) * (call.text.size() + call.detail.size());
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
        changed.wait(lock, canPost);
        --writersWaiting;
    }
    if (abandoned)
        return;
    waitingBytes += bytes;
    waiting.push_back(std::move(call));
}

void OrderedMonitorProxy::waitWhilePaused()
{
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return !paused || stopRequested; });
}

bool OrderedMonitorProxy::takeWaitingCalls()
{
    if (!inHand.empty())
        return true;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        inHand.swap(waiting);
        waitingBytes = 0;
    }
    changed.notify_all();
    return !inHand.empty();
}

void OrderedMonitorProxy::makeCall(Call&& call, qor::IProcessMonitor& target)
{
    switch (call.kind) {
    case CallKind::StartStage:
        return target.startStage(std::move(call.text));
    case CallKind::FinishStage:
        return target.finishCurrentStage();
    case CallKind::StartProtocolStage:
        return target.startProtocolStage(std::move(call.text));
    case CallKind::FinishProtocolStage:
        return target.finishProtocolStage();
    case CallKind::SetSilent:
        return target.setSilent(call.flag);
    case CallKind::Error:
        return call.flag ? target.writeError(std::move(call.text), std::move(call.detail))
                         : target.writeError(std::move(call.text));
    case CallKind::Warning:
        return call.flag ? target.writeWarning(std::move(call.text), std::move(call.detail))
                         : target.writeWarning(std::move(call.text));
    case CallKind::Message:
        return call.flag ? target.writeMessage(std::move(call.text), std::move(call.detail))
                         : target.writeMessage(std::move(call.text));
    case CallKind::Service:
        return call.flag ? target.write(std::move(call.text), std::move(call.detail))
                         : target.write(std::move(call.text));
    }
}

void OrderedMonitorProxy::deliverPercentage(qor::IProcessMonitor& target)
{
    int newest = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!percentageChanged)
            return;
        percentageChanged = false;
        newest = percentage;
    }
    target.setPercentage(newest);
}
