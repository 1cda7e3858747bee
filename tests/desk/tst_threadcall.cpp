#include "apps/desk/runs/ThreadCall.h"
#include "tests/desk/LineCollector.h"

#include <QSemaphore>
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
    void closedCallIsNotWaitedFor();
    void closedCallIsNotBegun();
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

void TestThreadCall::closedCallIsNotWaitedFor()
{
    ThreadCall windowThread;
    const StoppableMonitor monitor;
    bool isDone = true;
    bool isActionDone = false;
    // The window's thread processes no events: it waits for the run, as a closing window does.
    QSemaphore asked;
    connect(
        &windowThread, &ThreadCall::requested, this, [&asked] { asked.release(); }, Qt::DirectConnection);
    std::thread run([&] { isDone = windowThread.call(monitor, [&] { isActionDone = true; }); });
    asked.acquire();
    windowThread.close();
    run.join();
    QVERIFY(!isDone);
    QCoreApplication::processEvents();
    QVERIFY(!isActionDone);
}

void TestThreadCall::closedCallIsNotBegun()
{
    ThreadCall windowThread;
    const StoppableMonitor monitor;
    windowThread.close();
    bool isDone = true;
    std::thread run([&] { isDone = windowThread.call(monitor, [] {}); });
    run.join();
    QVERIFY(!isDone);
}

void TestThreadCall::actionOfStoppedRunIsNotDone()
{
    ThreadCall windowThread;
    StoppableMonitor monitor;
    monitor.isStopped = true;
    bool isActionDone = false;
    std::atomic<bool> isReturned{false};
    bool isDone = true;
    std::thread run([&] {
        isDone = windowThread.call(monitor, [&] { isActionDone = true; });
        isReturned = true;
    });
    QTRY_VERIFY(isReturned);
    run.join();
    QVERIFY(!isDone);
    QVERIFY(!isActionDone);
}

QTEST_GUILESS_MAIN(TestThreadCall)
#include "tst_threadcall.moc"
