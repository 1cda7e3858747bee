#include "host/process/RunSession.h"
#include "tests/host/process/RecordingMonitor.h"

#include <QtTest>

#include <atomic>
#include <stdexcept>

namespace {

void waitForEnd(RunSession& session)
{
    QEventLoop loop;
    QObject::connect(&session, &RunSession::ended, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Takes longer for a line than a batch may take.
class SlowMonitor : public RecordingMonitor
{
public:
    using RecordingMonitor::write;
    void write(std::wstring text) override
    {
        QTest::qSleep(15);
        RecordingMonitor::write(text);
    }
};

} // namespace

class TestRunSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endComesAfterTheLastCall();
    void batchEndsWithItsBudget();
    void stoppedRunIsInterrupted();
    void exceptionInterruptsTheRun();
    void abandonedRunDeliversNothing();
};

void TestRunSession::endComesAfterTheLastCall()
{
    RecordingMonitor target;
    RunSession session(target, {}, false);
    session.start([](qor::IProcessMonitor& run) {
        run.write(L"first");
        run.setPercentage(100);
        run.write(L"last");
    });
    waitForEnd(session);
    QCOMPARE(target.calls, (QStringList{QStringLiteral("service first"), QStringLiteral("percentage 100"),
                                        QStringLiteral("service last")}));
    QVERIFY(!session.isInterrupted());
}

void TestRunSession::batchEndsWithItsBudget()
{
    SlowMonitor target;
    RunSession session(target, {}, false);
    QVector<QPair<int, bool>> batches; // calls by its end, and whether others wait
    connect(&session, &RunSession::delivered, this, [&](bool isBusy) {
        batches.append({target.calls.size(), isBusy});
    });
    session.start([](qor::IProcessMonitor& run) {
        run.write(L"first");
        run.write(L"second");
    });
    waitForEnd(session);
    batches.erase(
        std::remove_if(batches.begin(), batches.end(), [](const auto& batch) { return !batch.second; }),
        batches.end());
    QCOMPARE(batches, (QVector<QPair<int, bool>>{{1, true}, {2, true}}));
}

void TestRunSession::stoppedRunIsInterrupted()
{
    RecordingMonitor target;
    RunSession session(target, {}, false);
    session.start([](qor::IProcessMonitor& run) {
        while (run.isProcessRunning())
            QTest::qSleep(1);
        run.write(L"last words");
    });
    session.requestStop();
    waitForEnd(session);
    QVERIFY(session.isInterrupted());
    QCOMPARE(target.calls, QStringList{QStringLiteral("service last words")});
}

void TestRunSession::exceptionInterruptsTheRun()
{
    RecordingMonitor target;
    RunSession session(target, {}, false);
    session.start([](qor::IProcessMonitor&) { throw std::runtime_error("a < b"); });
    waitForEnd(session);
    QVERIFY(session.isInterrupted());
    QVERIFY(session.wasErrors());
    QCOMPARE(target.calls, QStringList{QStringLiteral("error a &lt; b")});
}

void TestRunSession::abandonedRunDeliversNothing()
{
    RecordingMonitor target;
    std::atomic<bool> isOver{false};
    RunSession session(target, {}, false);
    QSignalSpy ended(&session, &RunSession::ended);
    session.start([&isOver](qor::IProcessMonitor& run) {
        while (run.isProcessRunning())
            run.write(run.getItemLink(1, L"item"));
        isOver = true;
    });
    session.abandon();
    QVERIFY(isOver);
    QTest::qWait(50);
    QCOMPARE(target.calls, QStringList());
    QCOMPARE(ended.count(), 0);
}

QTEST_GUILESS_MAIN(TestRunSession)
#include "tst_runsession.moc"
