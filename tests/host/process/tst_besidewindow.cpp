#include "host/process/BesideWindow.h"

#include <QSemaphore>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

// More than what goes unnoticed, far more than any machine needs for a timer.
constexpr int kLongWait = 30000;

} // namespace

class TestBesideWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAWindowItIsAPlainCall();
    void anotherThreadWorksWhileAWindowIsShown();
    void shortWorkMeetsNoTimer();
    void timersAreServedAndWindowsPaintedDuringLongWork();
    void theCursorTellsOfLongWork();
    void exceptionsComeThrough_data();
    void exceptionsComeThrough();
    // The last one: an application that was told to quit has no nested event loops any more.
    void anApplicationThatQuitsWaitsForTheWork();
};

void TestBesideWindow::withoutAWindowItIsAPlainCall()
{
    std::thread::id worker;
    performBesideWindow([&worker] { worker = std::this_thread::get_id(); });
    QCOMPARE(worker, std::this_thread::get_id());
}

void TestBesideWindow::anotherThreadWorksWhileAWindowIsShown()
{
    QWidget window;
    window.show();
    std::thread::id worker;
    performBesideWindow([&worker] { worker = std::this_thread::get_id(); });
    QVERIFY(worker != std::thread::id());
    QVERIFY(worker != std::this_thread::get_id());
}

void TestBesideWindow::shortWorkMeetsNoTimer()
{
    QWidget window;
    window.show();
    bool isServed = false;
    QTimer::singleShot(0, &window, [&isServed] { isServed = true; });
    performBesideWindow([] {});
    QVERIFY(!isServed);
}

void TestBesideWindow::timersAreServedAndWindowsPaintedDuringLongWork()
{
    class Window : public QWidget
    {
    public:
        QSemaphore painted;

    protected:
        void paintEvent(QPaintEvent* event) override
        {
            QWidget::paintEvent(event);
            painted.release();
        }
    };
    Window window;
    window.show();
    QSemaphore served;
    QTimer::singleShot(0, &window, [&served] { served.release(); });
    bool isBoth = false;
    performBesideWindow(
        [&] { isBoth = served.tryAcquire(1, kLongWait) && window.painted.tryAcquire(1, kLongWait); });
    QVERIFY(isBoth);
}

void TestBesideWindow::theCursorTellsOfLongWork()
{
    QWidget window;
    window.show();
    QSemaphore served;
    Qt::CursorShape shape = Qt::ArrowCursor;
    QTimer::singleShot(0, &window, [&] {
        shape = QGuiApplication::overrideCursor() ? QGuiApplication::overrideCursor()->shape() : shape;
        served.release();
    });
    performBesideWindow([&served] { served.tryAcquire(1, kLongWait); });
    QCOMPARE(shape, Qt::BusyCursor);
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
}

void TestBesideWindow::exceptionsComeThrough_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<bool>("isLong");
    QTest::newRow("without a window") << false << false;
    QTest::newRow("short work") << true << false;
    QTest::newRow("long work") << true << true;
}

void TestBesideWindow::exceptionsComeThrough()
{
    QFETCH(bool, isShown);
    QFETCH(bool, isLong);
    QWidget window;
    window.setVisible(isShown);
    QSemaphore served;
    QTimer::singleShot(0, &window, [&served] { served.release(); });
    const auto work = [&served, isLong] {
        if (isLong)
            served.tryAcquire(1, kLongWait);
        throw std::runtime_error("what the work throws");
    };
    QVERIFY_EXCEPTION_THROWN(performBesideWindow(work), std::runtime_error);
}

void TestBesideWindow::anApplicationThatQuitsWaitsForTheWork()
{
    QWidget window;
    window.show();
    QSemaphore told;
    QTimer::singleShot(0, &window, [&told] {
        QCoreApplication::quit();
        told.release();
    });
    bool isDone = false;
    performBesideWindow([&] {
        told.tryAcquire(1, kLongWait);
        // The loop has ended long before that.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isDone = true;
    });
    QVERIFY(isDone);
    performBesideWindow([&isDone] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        isDone = false;
    });
    QVERIFY(!isDone);
}

QTEST_MAIN(TestBesideWindow)
#include "tst_besidewindow.moc"
