#include "tests/host/process/RecordingMonitor.h"
#include "tests/host/process/ThreadedRun.h"

#include <QtTest>

class TestCallQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takenCallsAreGone();
    void fullQueueHoldsTheRunBack();
    void largeLinesFillTheQueueToo();
    void lineLargerThanTheQueuePasses();
    void abandonReleasesARunThatWritesIntoAFullQueue();
    void abandonedCallsAreDropped();
};

void TestCallQueue::takenCallsAreGone()
{
    CallQueue queue([] {});
    QVERIFY(queue.isEmpty());
    queue.post(monitorcalls::StartStage{L"one"});
    QVERIFY(!queue.isEmpty());
    QCOMPARE(queue.take().size(), std::size_t(1));
    QVERIFY(queue.isEmpty());
    QCOMPARE(queue.take().size(), std::size_t(0));
}

void TestCallQueue::fullQueueHoldsTheRunBack()
{
    constexpr int count = 100000;
    std::atomic<int> written{0};
    ThreadedRun run([&written](OrderedMonitorProxy& monitor) {
        for (; written < count; ++written)
            monitor.write(L"line");
    });
    run.waitForWake();
    QVERIFY(run.parts.calls.isAwaited());
    QCOMPARE(written.load(), 20000);
    RecordingMonitor target;
    run.serveAll(target);
    QVERIFY(!run.parts.calls.isAwaited());
    QCOMPARE(target.calls.size(), count);
}

void TestCallQueue::largeLinesFillTheQueueToo()
{
    constexpr int count = 100;
    constexpr std::size_t length = std::size_t(1024) * 1024 / sizeof(wchar_t); // 1 MiB
    std::atomic<int> written{0};
    ThreadedRun run([&written](OrderedMonitorProxy& monitor) {
        for (; written < count; ++written)
            monitor.write(std::wstring(length, L'x'));
    });
    run.waitForWake();
    QCOMPARE(written.load(), 15);
    RecordingMonitor target;
    run.serveAll(target);
    QCOMPARE(target.calls.size(), count);
}

void TestCallQueue::lineLargerThanTheQueuePasses()
{
    constexpr int length = 8 * 1024 * 1024; // 32 MiB
    MonitorParts parts;
    parts.proxy.write(std::wstring(length, L'x'));
    RecordingMonitor target;
    parts.deliver(target);
    QCOMPARE(target.calls.first().size(), length + 8);
}

void TestCallQueue::abandonReleasesARunThatWritesIntoAFullQueue()
{
    std::atomic<bool> isOver{false};
    ThreadedRun run([&isOver](OrderedMonitorProxy& monitor) {
        for (int i = 0; i < 100000; ++i)
            monitor.write(L"line");
        isOver = true;
    });
    run.waitForWake();
    QVERIFY(!isOver);
    run.parts.calls.abandon();
    QTRY_VERIFY(isOver);
}

void TestCallQueue::abandonedCallsAreDropped()
{
    MonitorParts parts;
    parts.proxy.write(L"first");
    parts.proxy.setPercentage(3);
    parts.calls.abandon();
    parts.proxy.write(L"second");
    parts.proxy.setPercentage(4);
    QVERIFY(parts.calls.isEmpty());
    QCOMPARE(parts.calls.take().size(), std::size_t(0));
}

QTEST_APPLESS_MAIN(TestCallQueue)
#include "tst_callqueue.moc"
