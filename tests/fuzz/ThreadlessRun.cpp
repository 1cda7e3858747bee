// Stands in for apps/replay/ReplayRun.cpp: the same lines to the same monitor and protocol, but without a
// thread and an event loop for each run. They never see a byte of the journal, and take a hundred times as
// long.

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "Orvel/store/COrvel.h"
#include "apps/replay/ReplayRun.h"

namespace orvel::replay {

ReplayRun::ReplayRun(OrvelProcessMonitor& processMonitor, int protocolType) : monitor(processMonitor)
{
    monitor.setProtocolType(protocolType);
    monitor.getOrvel()->ProtocolBegin(protocolType);
}

ReplayRun::~ReplayRun() = default;

qor::IProcessMonitor& ReplayRun::getMonitor()
{
    return monitor;
}

void ReplayRun::end()
{
    hasEnded = true;
    monitor.getOrvel()->ProtocolEnd(monitor.getProtocolType());
}

void ReplayRun::interrupt()
{
    hasEnded = true;
}

} // namespace orvel::replay
