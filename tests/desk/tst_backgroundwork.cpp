#include "apps/desk/process/BackgroundWork.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace orvel::desk;

/// Work in another thread whose newest request counts.
class TestBackgroundWork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resultIsTakenInTheThreadOfTheOwner();
    void newestCounts();
    void onlyTheNewestOfManyIsMade();
    void stoppedWorkIsNotTaken();
    void finishedWorkCanBeStopped();
    void destructorStopsTheWork();
    void destructorDoesNotWait();
    void ownerMayGoWhenItTakes();
    void whatNobodyWantsIsFreedBeside();
    void failureIsThrownWhereItIsTaken();
    void failureOfStoppedWorkIsNobodys();
};

namespace {

using IsStopped = BackgroundWork::IsStopped;

/// Work that goes on until it is told to stop.
struct EndlessWork
{
    void perform(const IsStopped& isStopped)
    {
        begun.release();
        while (!isStopped())
            QThread::yieldCurrentThread();
        ended.release();
    }

    BackgroundWork::Make make()
    {
        return [this](const IsStopped& isStopped) {
            perform(isStopped);
            return [this] { isTaken = true; };
        };
    }

    QSemaphore begun;
    QSemaphore ended;
    bool isTaken = false;
};

/// Catches what is thrown in the event loop, which passes no exception on.
class Catcher : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        try {
            return QCoreApplication::notify(receiver, event);
        } catch (const std::runtime_error& error) {
            s_caught = error.what();
            return false;
        }
    }

    static inline std::string s_caught;
};

} // namespace

void TestBackgroundWork::resultIsTakenInTheThreadOfTheOwner()
{
    BackgroundWork work;
    QThread* maker = nullptr;
    QThread* taker = nullptr;
    QVERIFY(!work.isWorking());
    work.start([&](const IsStopped& /*isStopped*/) {
        maker = QThread::currentThread();
        return [&] {
            // Whoever takes may ask for more.
            taker = work.isWorking() ? nullptr : QThread::currentThread();
        };
    });
    QVERIFY(work.isWorking());
    QTRY_VERIFY(!work.isWorking());
    QCOMPARE(taker, QThread::currentThread());
    QVERIFY(maker != nullptr && maker != taker);
}

void TestBackgroundWork::newestCounts()
{
    EndlessWork first;
    BackgroundWork work;
    work.start(first.make());
    first.begun.acquire();
    int taken = 0;
    work.start([&](const IsStopped& isStopped) {
        const int made = isStopped() ? 1 : 2;
        return [&taken, made] { taken = made; };
    });
    QVERIFY(work.isWorking());
    QTRY_COMPARE(taken, 2);
    QVERIFY(!work.isWorking());
    QCOMPARE(first.ended.available(), 1);
    QVERIFY(!first.isTaken);
}

void TestBackgroundWork::onlyTheNewestOfManyIsMade()
{
    EndlessWork first;
    BackgroundWork work;
    work.start(first.make());
    first.begun.acquire();
    std::vector<int> made;
    std::vector<int> taken;
    for (int number = 0; number < 100; ++number) {
        work.start([&, number](const IsStopped& /*isStopped*/) {
            made.push_back(number);
            return [&taken, number] { taken.push_back(number); };
        });
    }
    QTRY_VERIFY(!work.isWorking());
    QCOMPARE(made, std::vector<int>{99});
    QCOMPARE(taken, std::vector<int>{99});
}

void TestBackgroundWork::stoppedWorkIsNotTaken()
{
    EndlessWork endless;
    BackgroundWork work;
    work.start(endless.make());
    endless.begun.acquire();
    work.stop();
    QVERIFY(!work.isWorking());
    endless.ended.acquire();
    // The thread tells its end a little later.
    QTest::qWait(50);
    QVERIFY(!endless.isTaken);
    // The next one is not disturbed by it.
    bool isTaken = false;
    work.start([&](const IsStopped& isStopped) {
        const bool goesOn = !isStopped();
        return [&isTaken, goesOn] { isTaken = goesOn; };
    });
    QTRY_VERIFY(isTaken);
}

void TestBackgroundWork::finishedWorkCanBeStopped()
{
    BackgroundWork work;
    QSemaphore made;
    bool isTaken = false;
    work.start([&](const IsStopped& /*isStopped*/) {
        made.release();
        return [&isTaken] { isTaken = true; };
    });
    made.acquire();
    work.stop();
    bool isNextTaken = false;
    work.start([&](const IsStopped& /*isStopped*/) { return [&isNextTaken] { isNextTaken = true; }; });
    QTRY_VERIFY(isNextTaken);
    QVERIFY(!isTaken);
}

void TestBackgroundWork::destructorStopsTheWork()
{
    EndlessWork endless;
    auto work = std::make_unique<BackgroundWork>();
    work->start(endless.make());
    endless.begun.acquire();
    // One that has not begun never does.
    bool isMade = false;
    work->start([&](const IsStopped& /*isStopped*/) {
        isMade = true;
        return [] {};
    });
    work.reset();
    endless.ended.acquire();
    QCoreApplication::processEvents();
    QVERIFY(!endless.isTaken);
    QVERIFY(!isMade);
}

void TestBackgroundWork::destructorDoesNotWait()
{
    // Each of these ends only after its owner has gone.
    QSemaphore begun;
    QSemaphore goOn;
    QSemaphore ended;
    constexpr int count = 5;
    for (int number = 0; number < count; ++number) {
        BackgroundWork work;
        work.start([&](const IsStopped& isStopped) {
            begun.release();
            goOn.acquire();
            ended.release(isStopped() ? 1 : 0);
            return [] { QFAIL("taken by nobody"); };
        });
        begun.acquire();
    }
    goOn.release(count);
    ended.acquire(count);
    QCoreApplication::processEvents();
}

void TestBackgroundWork::ownerMayGoWhenItTakes()
{
    auto work = std::make_unique<BackgroundWork>();
    work->start([&work](const IsStopped& /*isStopped*/) { return [&work] { work.reset(); }; });
    QTRY_VERIFY(!work);
}

void TestBackgroundWork::whatNobodyWantsIsFreedBeside()
{
    struct Witness
    {
        explicit Witness(QThread*& threadOfEnd) : thread(threadOfEnd) {}
        ~Witness() { thread = QThread::currentThread(); }
        QThread*& thread;
    };
    QThread* threadOfInput = nullptr;
    QThread* threadOfResult = nullptr;
    EndlessWork endless;
    BackgroundWork work;
    work.start([&, input = std::make_shared<Witness>(threadOfInput)](const IsStopped& isStopped) {
        endless.perform(isStopped);
        return [result = std::make_shared<Witness>(threadOfResult)] {};
    });
    endless.begun.acquire();
    work.stop();
    bool isNextTaken = false;
    work.start([&](const IsStopped& /*isStopped*/) { return [&isNextTaken] { isNextTaken = true; }; });
    QTRY_VERIFY(isNextTaken);
    QVERIFY(threadOfInput != nullptr && threadOfInput != QThread::currentThread());
    QVERIFY(threadOfResult != nullptr && threadOfResult != QThread::currentThread());
}

void TestBackgroundWork::failureIsThrownWhereItIsTaken()
{
    BackgroundWork work;
    work.start([](const IsStopped& /*isStopped*/) -> BackgroundWork::Take {
        throw std::runtime_error("no memory");
    });
    QTRY_COMPARE(Catcher::s_caught, std::string("no memory"));
    QVERIFY(!work.isWorking());
}

void TestBackgroundWork::failureOfStoppedWorkIsNobodys()
{
    EndlessWork endless;
    BackgroundWork work;
    work.start([&](const IsStopped& isStopped) -> BackgroundWork::Take {
        endless.perform(isStopped);
        throw std::runtime_error("no memory");
    });
    endless.begun.acquire();
    bool isNextTaken = false;
    work.start([&](const IsStopped& /*isStopped*/) { return [&isNextTaken] { isNextTaken = true; }; });
    QTRY_VERIFY(isNextTaken);
}

int main(int argumentCount, char** arguments)
{
    const Catcher application(argumentCount, arguments);
    TestBackgroundWork test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "tst_backgroundwork.moc"
