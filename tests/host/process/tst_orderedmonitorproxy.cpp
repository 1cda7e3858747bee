#include "host/process/OrderedMonitorProxy.h"
#include "tests/host/process/RecordingMonitor.h"

#include <QtTest>

#include <atomic>
#include <functional>
#include <limits>
#include <stdexcept>
#include <thread>

namespace {

constexpr std::chrono::milliseconds kNoLimit{std::numeric_limits<int>::max()};

class FailingMonitor : public RecordingMonitor
{
public:
    std::wstring getItemLink(LONGID, const std::wstring&) override
    {
        throw std::runtime_error("no such item");
    }
};

/// A run in a thread of its own, whose calls the test delivers to `target` as a GUI thread would.
class Run
{
public:
    explicit Run(std::function<void(OrderedMonitorProxy&)> function)
        : proxy(false, [this] { ++wakeCount; })
        , thread([this, function] {
            function(proxy);
            proxy.setFinished(false);
        })
    {}

    ~Run()
    {
        proxy.abandon();
        thread.join();
    }

    void deliverAll(qor::IProcessMonitor& target)
    {
        while (!proxy.isDrained()) {
            proxy.answerQuestions(target);
            proxy.deliver(target, kNoLimit);
            std::this_thread::yield();
        }
    }

    void waitForWake()
    {
        while (wakeCount == 0)
            std::this_thread::yield();
    }

    std::atomic<int> wakeCount{0};
    OrderedMonitorProxy proxy;
    std::thread thread;
};

} // namespace

class TestOrderedMonitorProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCallArrivesAsItWasMade();
    void linesAndStagesKeepTheirOrder();
    void onlyTheNewestPercentageArrives();
    void deliveryEndsWithItsBudget();
    void linkIsAnsweredByTheTarget();
    void failureToMakeALinkReachesTheRun();
    void errorsCountBeforeTheyAreDelivered();
    void silenceIsKnownAtOnce();
    void fullQueueHoldsTheRunBack();
    void largeLinesFillTheQueueToo();
    void lineLargerThanTheQueuePasses();
    void pausedRunWaitsUntilItMayGoOn();
    void stopReleasesAPausedRun();
    void stopIsTooLateForAFinishedRun();
    void abandonReleasesARunThatWritesIntoAFullQueue();
    void abandonReleasesARunThatAsksForALink();
    void abandonedCallsAreNotDelivered();
};

void TestOrderedMonitorProxy::everyCallArrivesAsItWasMade()
{
    Run run([](OrderedMonitorProxy& monitor) {
        monitor.startStage(L"one");
        monitor.startProtocolStage(L"two");
        monitor.writeError(L"a");
        monitor.writeError(L"a", L"b");
        monitor.writeWarning(L"c");
        monitor.writeWarning(L"c", L"d");
        monitor.writeMessage(L"e");
        monitor.writeMessage(L"e", L"f");
        monitor.write(L"g");
        monitor.write(L"g", L"");
        monitor.setSilent(true);
        monitor.finishProtocolStage();
        monitor.finishCurrentStage();
    });
    RecordingMonitor target;
    run.deliverAll(target);
    const QStringList expected = {
        QStringLiteral("stage one"), QStringLiteral("protocol stage two"),
        QStringLiteral("error a"),   QStringLiteral("error a|b"),
        QStringLiteral("warning c"), QStringLiteral("warning c|d"),
        QStringLiteral("message e"), QStringLiteral("message e|f"),
        QStringLiteral("service g"), QStringLiteral("service g|"),
        QStringLiteral("silent on"), QStringLiteral("protocol stage end"),
        QStringLiteral("stage end"),
    };
    QCOMPARE(target.calls, expected);
}

void TestOrderedMonitorProxy::linesAndStagesKeepTheirOrder()
{
    constexpr int count = 30000;
    Run run([](OrderedMonitorProxy& monitor) {
        for (int i = 0; i < count; ++i) {
            monitor.startProtocolStage(std::to_wstring(i));
            monitor.writeWarning(std::to_wstring(i));
            monitor.setPercentage(i % 100);
            monitor.finishProtocolStage();
        }
    });
    RecordingMonitor target;
    run.deliverAll(target);
    target.calls = target.calls.filter(QRegularExpression(QStringLiteral("^(?!percentage)")));
    QCOMPARE(target.calls.size(), 3 * count);
    for (int i = 0; i < count; ++i) {
        const QString number = QString::number(i);
        QCOMPARE(target.calls[3 * i], QStringLiteral("protocol stage ") + number);
        QCOMPARE(target.calls[3 * i + 1], QStringLiteral("warning ") + number);
        QCOMPARE(target.calls[3 * i + 2], QStringLiteral("protocol stage end"));
    }
}

void TestOrderedMonitorProxy::onlyTheNewestPercentageArrives()
{
    OrderedMonitorProxy proxy(false, [] {});
    for (int percentage = 0; percentage <= 42; ++percentage)
        proxy.setPercentage(percentage);
    RecordingMonitor target;
    QVERIFY(proxy.deliver(target, kNoLimit));
    QVERIFY(proxy.deliver(target, kNoLimit));
    QCOMPARE(target.calls, QStringList{QStringLiteral("percentage 42")});
}

void TestOrderedMonitorProxy::deliveryEndsWithItsBudget()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.write(L"first");
    proxy.write(L"second");
    RecordingMonitor target;
    QVERIFY(!proxy.deliver(target, std::chrono::milliseconds(0)));
    QCOMPARE(target.calls, QStringList{QStringLiteral("service first")});
    proxy.setFinished(false);
    QVERIFY(!proxy.isDrained());
    QVERIFY(proxy.deliver(target, kNoLimit));
    QCOMPARE(target.calls, (QStringList{QStringLiteral("service first"), QStringLiteral("service second")}));
    QVERIFY(proxy.isDrained());
}

void TestOrderedMonitorProxy::linkIsAnsweredByTheTarget()
{
    std::wstring link;
    RecordingMonitor target;
    {
        Run run([&link](OrderedMonitorProxy& monitor) { link = monitor.getItemLink(7, L"Rp 7"); });
        run.deliverAll(target);
    }
    QCOMPARE(QString::fromStdWString(link), QStringLiteral("<a href=\"7\">Rp 7</a>"));
}

void TestOrderedMonitorProxy::failureToMakeALinkReachesTheRun()
{
    std::string failure;
    FailingMonitor target;
    {
        Run run([&failure](OrderedMonitorProxy& monitor) {
            try {
                monitor.getItemLink(7, L"Rp 7");
            } catch (const std::runtime_error& error) {
                failure = error.what();
            }
        });
        run.deliverAll(target);
    }
    QCOMPARE(failure, std::string("no such item"));
}

void TestOrderedMonitorProxy::errorsCountBeforeTheyAreDelivered()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.writeWarning(L"a");
    QVERIFY(!proxy.wasErrors());
    proxy.writeError(L"b");
    QVERIFY(proxy.wasErrors());
}

void TestOrderedMonitorProxy::silenceIsKnownAtOnce()
{
    OrderedMonitorProxy proxy(true, [] {});
    QVERIFY(proxy.getSilent());
    proxy.setSilent(false);
    QVERIFY(!proxy.getSilent());
}

void TestOrderedMonitorProxy::fullQueueHoldsTheRunBack()
{
    constexpr int count = 100000;
    std::atomic<int> written{0};
    Run run([&written](OrderedMonitorProxy& monitor) {
        for (; written < count; ++written)
            monitor.write(L"line");
    });
    run.waitForWake();
    QVERIFY(run.proxy.isDeliveryUrgent());
    QCOMPARE(written.load(), 20000);
    RecordingMonitor target;
    run.deliverAll(target);
    QCOMPARE(target.calls.size(), count);
}

void TestOrderedMonitorProxy::largeLinesFillTheQueueToo()
{
    constexpr int count = 100;
    constexpr std::size_t length = std::size_t(1024) * 1024 / sizeof(wchar_t); // 1 MiB
    std::atomic<int> written{0};
    Run run([&written](OrderedMonitorProxy& monitor) {
        for (; written < count; ++written)
            monitor.write(std::wstring(length, L'x'));
    });
    run.waitForWake();
    QCOMPARE(written.load(), 15);
    RecordingMonitor target;
    run.deliverAll(target);
    QCOMPARE(target.calls.size(), count);
}

void TestOrderedMonitorProxy::lineLargerThanTheQueuePasses()
{
    constexpr int length = 8 * 1024 * 1024; // 32 MiB
    OrderedMonitorProxy proxy(false, [] {});
    proxy.write(std::wstring(length, L'x'));
    RecordingMonitor target;
    QVERIFY(proxy.deliver(target, kNoLimit));
    QCOMPARE(target.calls.first().size(), length + 8);
}

void TestOrderedMonitorProxy::pausedRunWaitsUntilItMayGoOn()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.setPaused(true);
    QVERIFY(proxy.isPaused());
    std::atomic<bool> isBefore{false};
    std::atomic<bool> isBetween{false};
    std::thread thread([&] {
        isBefore = true;
        proxy.pause();
        isBetween = true;
        proxy.setPercentage(50);
    });
    while (!isBefore)
        std::this_thread::yield();
    QTest::qWait(20);
    QVERIFY(!isBetween);
    proxy.setPaused(false);
    thread.join();
    QVERIFY(isBetween);
    QVERIFY(!proxy.isPaused());
    RecordingMonitor target;
    proxy.deliver(target, kNoLimit);
    QCOMPARE(target.calls, QStringList{QStringLiteral("percentage 50")});
}

void TestOrderedMonitorProxy::stopReleasesAPausedRun()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.setPaused(true);
    bool isRunning = true;
    std::thread thread([&] {
        proxy.setPercentage(1);
        isRunning = proxy.isProcessRunning();
    });
    proxy.requestStop();
    thread.join();
    QVERIFY(!isRunning);
    QVERIFY(proxy.isStopRequested());
}

void TestOrderedMonitorProxy::stopIsTooLateForAFinishedRun()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.setFinished(false);
    proxy.requestStop();
    QVERIFY(!proxy.isStopRequested());
}

void TestOrderedMonitorProxy::abandonReleasesARunThatWritesIntoAFullQueue()
{
    std::atomic<bool> isOver{false};
    Run run([&isOver](OrderedMonitorProxy& monitor) {
        for (int i = 0; i < 100000; ++i)
            monitor.write(L"line");
        isOver = true;
    });
    run.waitForWake();
    QVERIFY(!isOver);
    run.proxy.abandon();
    QTRY_VERIFY(isOver);
}

void TestOrderedMonitorProxy::abandonReleasesARunThatAsksForALink()
{
    std::wstring link;
    {
        Run run([&link](OrderedMonitorProxy& monitor) {
            link = monitor.getItemLink(7, L"first");
            link += monitor.getItemLink(8, L"second");
        });
        run.waitForWake();
        run.proxy.abandon();
    }
    QCOMPARE(QString::fromStdWString(link), QStringLiteral("firstsecond"));
}

void TestOrderedMonitorProxy::abandonedCallsAreNotDelivered()
{
    OrderedMonitorProxy proxy(false, [] {});
    proxy.write(L"first");
    proxy.write(L"second");
    proxy.setPercentage(3);
    RecordingMonitor target;
    proxy.deliver(target, std::chrono::milliseconds(0));
    target.calls.clear();
    proxy.abandon();
    proxy.write(L"third");
    proxy.setPercentage(4);
    proxy.deliver(target, kNoLimit);
    QCOMPARE(target.calls, QStringList());
    QVERIFY(!proxy.isProcessRunning());
}

QTEST_APPLESS_MAIN(TestOrderedMonitorProxy)
#include "tst_orderedmonitorproxy.moc"
