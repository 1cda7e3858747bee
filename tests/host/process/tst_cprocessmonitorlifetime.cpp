#include "host/process/CProcessMonitor.h"

#include <QPointer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTextBrowser>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace {

/// Fails the test when an override is called after its part of the object is gone.
class TestMonitor : public CProcessMonitor
{
public:
    using CProcessMonitor::write;

    TestMonitor() : self(new int(0)) {}
    ~TestMonitor() override
    {
        shutdown();
        delete self;
        self = nullptr;
    }

    std::wstring getItemLink(LONGID, const std::wstring& text) override
    {
        countCall();
        return text;
    }

protected:
    void write(const QString& text, const QString& detail) override
    {
        countCall();
        CProcessMonitor::write(text, detail);
    }
    void onThreadFinished() override
    {
        countCall();
        CProcessMonitor::onThreadFinished();
    }

private:
    void countCall()
    {
        if (self == nullptr)
            qFatal("an override was called after its object");
        ++*self;
    }

    int* self;
};

// Does all that a run can do, in a random order that the seed fixes, until it is stopped.
class BusyRun
{
public:
    BusyRun(quint32 randomSeed, std::atomic<int>* runsToCount) : seed(randomSeed), runs(runsToCount) {}

    void operator()(qor::IProcessMonitor& monitor) const
    {
        ++*runs;
        QRandomGenerator random(seed);
        while (monitor.isProcessRunning()) {
            switch (random.bounded(7)) {
            case 0:
                monitor.write(monitor.getItemLink(1, L"item"));
                break;
            case 1:
                monitor.setPercentage(random.bounded(100));
                break;
            case 2:
                monitor.pause();
                break;
            case 3:
                monitor.startStage(L"stage");
                monitor.finishCurrentStage();
                break;
            default:
                monitor.write(L"line");
            }
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(50)));
        }
        if (seed % 3 == 0)
            monitor.write(monitor.getItemLink(1, L"last words"));
        --*runs;
    }

private:
    quint32 seed;
    std::atomic<int>* runs;
};

/// A monitor whose hooks do something more, as those may that have an event loop of their own.
class HookedMonitor : public CProcessMonitor
{
public:
    using CProcessMonitor::getInterrupted;

    std::function<void()> atStart;
    std::function<void()> atEnd;

protected:
    void onStarted() override
    {
        CProcessMonitor::onStarted();
        perform(atStart);
    }
    void onThreadFinished() override
    {
        CProcessMonitor::onThreadFinished();
        perform(atEnd);
    }

private:
    /// By value: what is performed may delete the monitor.
    static void perform(std::function<void()> hook)
    {
        if (hook)
            hook();
    }
};

} // namespace

class TestCProcessMonitorLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { runs = 0; }
    void stoppedAtARandomMoment();
    void closedAtARandomMoment();
    void destroyedAtARandomMoment();
    void destroyedWhilePaused();
    void destroyedWhileARunWritesWithoutEnd();
    void destroyedWhenTheRunHasJustEnded();
    void destroyedByItsOwnSignal();
    void deletedOnCloseAtARandomMoment();
    void stoppedInAHook();
    void closedInTheStartHook();
    void deletedInAHook_data();
    void deletedInAHook();
    void notStartedAnewInTheEndHook();

private:
    void waitAtRandom() { QTest::qWait(random.bounded(4)); }
    BusyRun makeRun() { return {random.generate(), &runs}; }

    QRandomGenerator random{20240229};
    std::atomic<int> runs{0};
};

void TestCProcessMonitorLifetime::stoppedAtARandomMoment()
{
    TestMonitor monitor;
    for (int i = 0; i < 200; ++i) {
        monitor.start(makeRun());
        waitAtRandom();
        monitor.stop();
        QVERIFY(monitor.waitForFinished());
        QCOMPARE(runs.load(), 0);
    }
}

void TestCProcessMonitorLifetime::closedAtARandomMoment()
{
    for (int i = 0; i < 100; ++i) {
        TestMonitor monitor;
        monitor.show();
        monitor.start(makeRun());
        waitAtRandom();
        if (i % 2 == 0)
            monitor.close();
        else
            QTest::keyClick(&monitor, Qt::Key_Escape);
        QTRY_VERIFY(!monitor.isVisible());
        QCOMPARE(runs.load(), 0);
    }
}

void TestCProcessMonitorLifetime::destroyedAtARandomMoment()
{
    for (int i = 0; i < 200; ++i) {
        {
            TestMonitor monitor;
            monitor.start(makeRun());
            waitAtRandom();
            if (i % 2 == 0)
                monitor.stop();
        }
        QCOMPARE(runs.load(), 0);
        QCoreApplication::processEvents();
    }
}

void TestCProcessMonitorLifetime::destroyedWhilePaused()
{
    for (int i = 0; i < 50; ++i) {
        {
            TestMonitor monitor;
            monitor.start(makeRun());
            waitAtRandom();
            monitor.setPaused(true);
            waitAtRandom();
        }
        QCOMPARE(runs.load(), 0);
    }
}

void TestCProcessMonitorLifetime::destroyedWhileARunWritesWithoutEnd()
{
    for (int i = 0; i < 20; ++i) {
        TestMonitor monitor;
        monitor.start([](qor::IProcessMonitor& run) {
            while (run.isProcessRunning())
                run.write(L"line");
        });
        waitAtRandom();
    }
}

void TestCProcessMonitorLifetime::destroyedWhenTheRunHasJustEnded()
{
    for (int i = 0; i < 100; ++i) {
        TestMonitor monitor;
        monitor.start([](qor::IProcessMonitor& run) { run.write(L"line"); });
        if (i % 2 == 0)
            waitAtRandom();
    }
}

void TestCProcessMonitorLifetime::destroyedByItsOwnSignal()
{
    for (int i = 0; i < 50; ++i) {
        QPointer<TestMonitor> monitor = new TestMonitor;
        connect(monitor, &CProcessMonitor::runFinished, monitor, [monitor] { delete monitor; });
        monitor->start(makeRun());
        waitAtRandom();
        monitor->close();
        QTRY_VERIFY(monitor.isNull());
    }
}

void TestCProcessMonitorLifetime::deletedOnCloseAtARandomMoment()
{
    for (int i = 0; i < 50; ++i) {
        QPointer<TestMonitor> monitor = new TestMonitor;
        monitor->setAttribute(Qt::WA_DeleteOnClose);
        monitor->show();
        monitor->start(makeRun());
        waitAtRandom();
        monitor->close();
        QTRY_VERIFY(monitor.isNull());
        QCOMPARE(runs.load(), 0);
    }
}

void TestCProcessMonitorLifetime::stoppedInAHook()
{
    HookedMonitor monitor;
    monitor.atStart = [&monitor] { monitor.stop(); };
    monitor.start(makeRun());
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getInterrupted());
    QCOMPARE(runs.load(), 0);

    // The stop of one run is not that of the next.
    bool isWorking = false;
    monitor.atStart = nullptr;
    monitor.start([&isWorking](qor::IProcessMonitor& run) { isWorking = run.isProcessRunning(); });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(isWorking);
    QVERIFY(!monitor.getInterrupted());
}

void TestCProcessMonitorLifetime::closedInTheStartHook()
{
    HookedMonitor monitor;
    monitor.show();
    monitor.atStart = [&monitor] { monitor.close(); };
    monitor.start(makeRun());
    QVERIFY(monitor.isVisible());
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getInterrupted());
    QVERIFY(!monitor.isVisible());
}

void TestCProcessMonitorLifetime::deletedInAHook_data()
{
    QTest::addColumn<bool>("atStart");
    QTest::newRow("start") << true;
    QTest::newRow("end") << false;
}

void TestCProcessMonitorLifetime::deletedInAHook()
{
    QFETCH(bool, atStart);
    auto* monitor = new HookedMonitor;
    const QPointer<HookedMonitor> guard = monitor;
    std::function<void()>& hook = atStart ? monitor->atStart : monitor->atEnd;
    hook = [monitor] { delete monitor; };
    bool isFinished = false;
    connect(monitor, &CProcessMonitor::runFinished, this, [&isFinished] { isFinished = true; });
    monitor->start([](qor::IProcessMonitor&) {});
    QTRY_VERIFY(guard.isNull());
    QCoreApplication::processEvents();
    QVERIFY(!isFinished);
}

void TestCProcessMonitorLifetime::notStartedAnewInTheEndHook()
{
    HookedMonitor monitor;
    int started = 0;
    monitor.atEnd = [&] {
        QVERIFY(monitor.isRunning());
        QTest::ignoreMessage(QtWarningMsg, "CProcessMonitor::start: a run is working already");
        monitor.start([&started](qor::IProcessMonitor&) { ++started; });
    };
    monitor.start([&started](qor::IProcessMonitor&) { ++started; });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(!monitor.isRunning());
    QCOMPARE(started, 1);
}

QTEST_MAIN(TestCProcessMonitorLifetime)
#include "tst_cprocessmonitorlifetime.moc"
