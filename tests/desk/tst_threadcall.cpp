#include "apps/desk/runs/ThreadCall.h"
#include "tests/desk/LineCollector.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

/// Calls from a run's thread into the window's.
class TestThreadCall : public QObject
{
    Q_OBJECT

private slots:
    void actionIsDoneInTheObjectsThread();
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

void TestThreadCall::actionIsDoneInTheObjectsThread()
{
    QObject object;
    const StoppableMonitor monitor;
    std::atomic<bool> isReturned{false};
    bool isDone = false;
    QThread* thread = nullptr;
    std::thread run([&] {
        isDone = callInThread(object, monitor, [&] { thread = QThread::currentThread(); });
        isReturned = true;
    });
    QTRY_VERIFY(isReturned);
    run.join();
    QVERIFY(isDone);
    QCOMPARE(thread, QThread::currentThread());
}

void TestThreadCall::stoppedRunDoesNotWait()
{
    QObject object;
    StoppableMonitor monitor;
    bool isDone = true;
    // The thread of the object processes no events: it waits for the run, as a closing window does.
    std::thread run([&] { isDone = callInThread(object, monitor, [] {}); });
    monitor.isStopped = true;
    run.join();
    QVERIFY(!isDone);
}

void TestThreadCall::actionOfStoppedRunIsNotDone()
{
    QObject object;
    StoppableMonitor monitor;
    monitor.isStopped = true;
    bool isActionDone = false;
    std::thread run([&] { callInThread(object, monitor, [&] { isActionDone = true; }); });
    run.join();
    QCoreApplication::processEvents();
    QVERIFY(!isActionDone);
}

QTEST_GUILESS_MAIN(TestThreadCall)
#include "tst_threadcall.moc"
