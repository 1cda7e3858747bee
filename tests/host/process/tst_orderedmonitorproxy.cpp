#include "tests/host/process/RecordingMonitor.h"
#include "tests/host/process/ThreadedRun.h"

#include <QtTest>

class TestOrderedMonitorProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCallArrivesAsItWasMade();
    void linesAndStagesKeepTheirOrder();
    void onlyTheNewestPercentageArrives();
    void percentageDoesNotOvertakeLines();
    void repeatedPercentageIsLeftOut();
    void linkIsAnsweredByTheTarget();
    void errorsCountBeforeTheyAreDelivered();
    void silenceIsKnownAtOnce();
    void pausedRunWaitsUntilItMayGoOn();
    void stopReleasesAPausedRun();
};

void TestOrderedMonitorProxy::everyCallArrivesAsItWasMade()
{
    MonitorParts parts;
    qor::IProcessMonitor& monitor = parts.proxy;
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
    RecordingMonitor target;
    parts.deliver(target);
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
    ThreadedRun run([](OrderedMonitorProxy& monitor) {
        for (int i = 0; i < count; ++i) {
            monitor.startProtocolStage(std::to_wstring(i));
            monitor.writeWarning(std::to_wstring(i));
            monitor.setPercentage(i % 100);
            monitor.finishProtocolStage();
        }
    });
    RecordingMonitor target;
    run.serveAll(target);
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
    MonitorParts parts;
    for (int percentage = 0; percentage <= 42; ++percentage)
        parts.proxy.setPercentage(percentage);
    RecordingMonitor target;
    parts.deliver(target);
    parts.deliver(target);
    QCOMPARE(target.calls, QStringList{QStringLiteral("percentage 42")});
}

void TestOrderedMonitorProxy::percentageDoesNotOvertakeLines()
{
    MonitorParts parts;
    parts.proxy.write(L"first");
    parts.proxy.setPercentage(50);
    parts.proxy.write(L"second");
    parts.proxy.setPercentage(100);
    RecordingMonitor target;
    parts.deliver(target);
    QCOMPARE(target.calls, (QStringList{QStringLiteral("service first"), QStringLiteral("percentage 50"),
                                        QStringLiteral("service second"), QStringLiteral("percentage 100")}));
}

void TestOrderedMonitorProxy::repeatedPercentageIsLeftOut()
{
    MonitorParts parts;
    parts.proxy.setPercentage(7);
    parts.proxy.write(L"line");
    parts.proxy.setPercentage(7);
    parts.proxy.write(L"line");
    RecordingMonitor target;
    parts.deliver(target);
    QCOMPARE(target.calls, (QStringList{QStringLiteral("percentage 7"), QStringLiteral("service line"),
                                        QStringLiteral("service line")}));
}

void TestOrderedMonitorProxy::linkIsAnsweredByTheTarget()
{
    std::wstring link;
    RecordingMonitor target;
    {
        ThreadedRun run([&link](OrderedMonitorProxy& monitor) { link = monitor.getItemLink(7, L"Rp 7"); });
        run.serveAll(target);
    }
    QCOMPARE(QString::fromStdWString(link), QStringLiteral("<a href=\"7\">Rp 7</a>"));
}

void TestOrderedMonitorProxy::errorsCountBeforeTheyAreDelivered()
{
    MonitorParts parts;
    parts.proxy.writeWarning(L"a");
    QVERIFY(!parts.proxy.wasErrors());
    parts.proxy.writeError(L"b");
    QVERIFY(parts.proxy.wasErrors());
}

void TestOrderedMonitorProxy::silenceIsKnownAtOnce()
{
    MonitorParts parts({}, true);
    QVERIFY(parts.proxy.getSilent());
    parts.proxy.setSilent(false);
    QVERIFY(!parts.proxy.getSilent());
}

void TestOrderedMonitorProxy::pausedRunWaitsUntilItMayGoOn()
{
    MonitorParts parts;
    parts.control.setPaused(true);
    QVERIFY(parts.control.isPaused());
    std::atomic<bool> isBefore{false};
    std::atomic<bool> isBetween{false};
    std::thread thread([&] {
        isBefore = true;
        parts.proxy.pause();
        isBetween = true;
        parts.proxy.setPercentage(50);
    });
    QTRY_VERIFY(isBefore);
    QTest::qWait(20);
    QVERIFY(!isBetween);
    parts.control.setPaused(false);
    thread.join();
    QVERIFY(isBetween);
    QVERIFY(!parts.control.isPaused());
    RecordingMonitor target;
    parts.deliver(target);
    QCOMPARE(target.calls, QStringList{QStringLiteral("percentage 50")});
}

void TestOrderedMonitorProxy::stopReleasesAPausedRun()
{
    MonitorParts parts;
    parts.control.setPaused(true);
    bool isRunning = true;
    std::thread thread([&] {
        parts.proxy.setPercentage(1);
        isRunning = parts.proxy.isProcessRunning();
    });
    parts.control.requestStop();
    thread.join();
    QVERIFY(!isRunning);
    QVERIFY(parts.control.isStopRequested());
}

QTEST_APPLESS_MAIN(TestOrderedMonitorProxy)
#include "tst_orderedmonitorproxy.moc"
