#include "apps/desk/process/MonitorDisplay.h"

#include <QTest>
#include <QWidget>

using namespace orvel::desk;

/// When and where the progress window is shown.
class TestMonitorDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void standsBesideTheDesk_data();
    void standsBesideTheDesk();
    void shortRunShowsNothing();
    void longRunIsShownAndGoes();
    void problemsStay();
    void keyboardStaysWithTheDesk();
    void wantedWindowStays();

private:
    std::unique_ptr<QWidget> monitor;
    std::unique_ptr<QWidget> desk;
    std::unique_ptr<MonitorDisplay> display;
};

void TestMonitorDisplay::init()
{
    monitor = std::make_unique<QWidget>();
    desk = std::make_unique<QWidget>();
    display = std::make_unique<MonitorDisplay>(*monitor, *desk);
}

void TestMonitorDisplay::cleanup()
{
    display.reset();
    desk.reset();
    monitor.reset();
}

void TestMonitorDisplay::standsBesideTheDesk_data()
{
    QTest::addColumn<QRect>("deskPlace");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("right of it") << QRect(100, 50, 1000, 700) << QPoint(1100, 50);
    QTest::newRow("left of it") << QRect(900, 50, 1000, 700) << QPoint(140, 50);
    QTest::newRow("below it") << QRect(400, 0, 1400, 500) << QPoint(400, 500);
    QTest::newRow("above it") << QRect(400, 560, 1400, 500) << QPoint(400, 40);
    QTest::newRow("over its lower corner") << QRect(0, 0, 1920, 1080) << QPoint(1160, 560);
}

void TestMonitorDisplay::standsBesideTheDesk()
{
    QFETCH(QRect, deskPlace);
    QFETCH(QPoint, place);
    const QSize size(760, 520);
    QCOMPARE(MonitorDisplay::findPlace(size, deskPlace, QRect(0, 0, 1920, 1080)), QRect(place, size));
}

void TestMonitorDisplay::shortRunShowsNothing()
{
    display->beginRun();
    QVERIFY(!monitor->isVisible());
    display->endRun(false);
    QTest::qWait(500);
    QVERIFY(!monitor->isVisible());
}

void TestMonitorDisplay::longRunIsShownAndGoes()
{
    display->beginRun();
    QTRY_VERIFY(monitor->isVisible());
    display->endRun(false);
    QVERIFY(!monitor->isVisible());
}

void TestMonitorDisplay::problemsStay()
{
    display->beginRun();
    display->endRun(true);
    QVERIFY(monitor->isVisible());
    display->beginRun();
    display->endRun(false);
    QVERIFY(!monitor->isVisible());
}

void TestMonitorDisplay::keyboardStaysWithTheDesk()
{
    display->beginRun();
    display->endRun(true);
    QVERIFY(monitor->isVisible());
    QVERIFY(monitor->testAttribute(Qt::WA_ShowWithoutActivating));
    monitor->close();
    display->showWanted();
    QVERIFY(!monitor->testAttribute(Qt::WA_ShowWithoutActivating));
}

void TestMonitorDisplay::wantedWindowStays()
{
    display->showWanted();
    display->beginRun();
    display->endRun(false);
    QVERIFY(monitor->isVisible());
    monitor->close();
    display->beginRun();
    display->endRun(false);
    QVERIFY(!monitor->isVisible());
}

QTEST_MAIN(TestMonitorDisplay)
#include "tst_monitordisplay.moc"
