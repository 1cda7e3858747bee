#include "apps/replay/ReplayRun.h"

#include "Orvel/integration/OrvelProcessMonitor.h"

namespace orvel::replay {

ReplayRun::ReplayRun(OrvelProcessMonitor& processMonitor, int protocolType) : monitor(processMonitor)
{
    monitor.setProtocolType(protocolType);
    monitor.start([ended = threadEnd.get_future().share()](qor::IProcessMonitor&) { ended.wait(); });
}

ReplayRun::~ReplayRun()
{
    if (!hasEnded)
        threadEnd.set_value();
}

qor::IProcessMonitor& ReplayRun::getMonitor()
{
    return monitor;
}

void ReplayRun::end()
{
    hasEnded = true;
    threadEnd.set_value();
    monitor.waitForFinished();
}

void ReplayRun::interrupt()
{
    monitor.stop();
    end();
}

} // namespace orvel::replay
