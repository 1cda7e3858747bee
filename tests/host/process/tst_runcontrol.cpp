#include "host/process/RunControl.h"

#include <QtTest>

class TestRunControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stopIsRemembered();
    void stopIsTooLateForAFinishedRun();
    void endMayBeAFailure();
};

void TestRunControl::stopIsRemembered()
{
    RunControl control;
    QVERIFY(!control.isStopRequested());
    control.requestStop();
    QVERIFY(control.isStopRequested());
    control.setPaused(true);
    control.waitWhilePaused(); // a stopped run goes on
}

void TestRunControl::stopIsTooLateForAFinishedRun()
{
    RunControl control;
    control.setFinished(false);
    control.requestStop();
    QVERIFY(!control.isStopRequested());
}

void TestRunControl::endMayBeAFailure()
{
    RunControl control;
    QVERIFY(!control.isFinished());
    control.setFinished(true);
    QVERIFY(control.isFinished());
    QVERIFY(control.isFailed());
}

QTEST_APPLESS_MAIN(TestRunControl)
#include "tst_runcontrol.moc"
