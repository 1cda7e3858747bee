#include "apps/desk/process/RunMonitor.h"

#include "Orvel/integration/ExceptionCatcher.h"

RunMonitor::RunMonitor(ProjectWindow* window, QWidget* parent) : OrvelProcessMonitor(window, parent)
{}

RunMonitor::~RunMonitor()
{
    shutdown();
}

void RunMonitor::startRun(const DeskRun& deskRun)
{
    if (isRunning())
        return;
    run = deskRun;
    setProtocolType(run.protocolType);
    start([function = run.function, failure = run.failure](qor::IProcessMonitor& monitor) {
        try {
            function(monitor);
        } catch (...) {
            *failure = ExceptionCatcher::getMessage(std::current_exception());
            throw;
        }
    });
}

void RunMonitor::onThreadFinished()
{
    if (!getInterrupted())
        run.takeResults();
    OrvelProcessMonitor::onThreadFinished();
}
