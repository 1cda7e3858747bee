#include "apps/desk/runs/ThreadCall.h"
#include "tests/desk/LineCollector.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

using namespace orvel::desk;
using namespace orvel::test;

/// Calls from a run's thread into the window's.
class TestThreadCall : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionIsDoneInTheWindowsThread();
    void stoppedRunDoesNotWait();
    void actionOfStoppedRunIsNotDone();
};

namespace {

/// A monitor whose run can be stopped from another thread.
struct StoppableMonitor : LineCollector
{
    bool isProcessRunning() const override { return !isStopped; }

    std::atomic<bool> isStopped{false};
};

} // namespace

void TestThreadCall::actionIsDoneInTheWindowsThread()
{
    ThreadCall windowThread;
    const StoppableMonitor monitor;
    std::atomic<bool> isReturned{false};
    bool isDone = false;
    QThread* thread = nullptr;
    std::thread run([&] {
        isDone = windowThread.call(monitor, [&] { thread = QThread::currentThread(); });
        isReturned = true;
    });
    QTRY_VERIFY(isReturned);
    run.join();
    QVERIFY(isDone);
    QCOMPARE(thread, QThread::currentThread());
}

void TestThreadCall::stoppedRunDoesNotWait()
{
    ThreadCall windowThread;
    StoppableMonitor monitor;
    bool isDone = true;
    // The window's thread processes no events: it waits for the run, as a closing window does.
    std::thread run([&] { isDone = windowThread.call(monitor, [] {}); });
    monitor.isStopped = true;
    run.join();
    QVERIFY(!isDone);
}

void TestThreadCall::actionOfStoppedRunIsNotDone()
{
    ThreadCall windowThread;
    StoppableMonitor monitor;
    monitor.isStopped = true;
    bool isActionDone = false;
    std::thread run([&] { windowThread.call(monitor, [&] { isActionDone = true; }); });
    run.join();
    QCoreApplication::processEvents();
    QVERIFY(!isActionDone);
}

QTEST_GUILESS_MAIN(TestThreadCall)
#include "tst_threadcall.moc"
