#include "host/process/RunSession.h"

#include "host/files/ExceptionText.h"

#include <QScopedValueRollback>
#include <QString>
#include <QTimer>

#include <exception>
#include <utility>

namespace {

// How often the calls of a run are taken, and how long they may be worked on at a time.
constexpr std::chrono::milliseconds kBatchInterval{30};
constexpr std::chrono::milliseconds kDeliveryBudget{12};
constexpr std::chrono::milliseconds kAnsweringBudget{10};

} // namespace

RunSession::RunSession(qor::IProcessMonitor& monitor, LinkQuestions::LinkSource linkSource, bool silent)
    : target(monitor)
    , calls([this] { Q_EMIT runWaits(QPrivateSignal()); })
    , questions([this] { Q_EMIT runWaits(QPrivateSignal()); }, std::move(linkSource))
    , proxy(calls, questions, control, silent)
    , batchTimer(new QTimer(this))
{
    batchTimer->setSingleShot(true);
    connect(batchTimer, &QTimer::timeout, this, &RunSession::deliverBatch);
    connect(this, &RunSession::runWaits, this, &RunSession::serveRun, Qt::QueuedConnection);
}

RunSession::~RunSession()
{
    abandon();
}

void RunSession::start(RunFunction function)
{
    worker = std::thread([this, runFunction = std::move(function)] { work(runFunction); });
    batchTimer->start(kBatchInterval);
}

void RunSession::abandon()
{
    over = true;
    batchTimer->stop();
    calls.abandon();
    questions.abandon();
    control.requestStop();
    if (worker.joinable())
        worker.join();
    inHand.clear();
    nextInHand = 0;
}

void RunSession::work(const RunFunction& function)
{
    bool isFailed = false;
    try {
        function(proxy);
    } catch (...) {
        isFailed = true;
        // An exception's text is plain, a line is HTML.
        const std::wstring text = exceptions::getExceptionText(std::current_exception());
        proxy.writeError(QString::fromStdWString(text).toHtmlEscaped().toStdWString());
    }
    control.setFinished(isFailed);
    Q_EMIT runWaits(QPrivateSignal());
}

void RunSession::serveRun()
{
    if (over)
        return;
    if (!questions.answer(target, kAnsweringBudget))
        Q_EMIT runWaits(QPrivateSignal());
    if (calls.isAwaited() || control.isFinished())
        deliverBatch();
}

void RunSession::deliverBatch()
{
    if (over || delivering)
        return; // delivering: an override that runs an event loop of its own
    if (isDrained()) {
        end();
        return;
    }
    bool isAll = false;
    {
        const QScopedValueRollback<bool> guard(delivering, true);
        isAll = deliver(kDeliveryBudget);
    }
    Q_EMIT delivered(!isAll);
    // What ends the run may take its time, so it comes after the events that came meanwhile.
    if (!isAll || isDrained())
        batchTimer->start(0);
    else
        batchTimer->start(kBatchInterval);
}

/// Makes the waiting calls, in order, until none is left or the budget is spent. True when none was left.
bool RunSession::deliver(std::chrono::milliseconds budget)
{
    const auto deadline = std::chrono::steady_clock::now() + budget;
    while (takeCalls()) {
        monitorcalls::make(std::move(inHand[nextInHand++]), target);
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
    }
    return true;
}

bool RunSession::takeCalls()
{
    if (nextInHand < inHand.size())
        return true;
    inHand = calls.take();
    nextInHand = 0;
    return !inHand.empty();
}

bool RunSession::isDrained() const
{
    return control.isFinished() && nextInHand == inHand.size() && calls.isEmpty();
}

void RunSession::end()
{
    over = true;
    worker.join();
    Q_EMIT ended();
}
