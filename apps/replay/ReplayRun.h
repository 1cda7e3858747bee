#pragma once

#include "host/process/IProcessMonitor.h"

#include <future>

class OrvelProcessMonitor;

namespace orvel::replay {

/// A run whose lines come from the journal: its thread works from the construction until the run is ended.
class ReplayRun
{
public:
    /// The monitor works on one run at a time and outlives it.
    ReplayRun(OrvelProcessMonitor& processMonitor, int protocolType);
    ~ReplayRun();
    ReplayRun(const ReplayRun&) = delete;
    ReplayRun& operator=(const ReplayRun&) = delete;

    /// Takes the lines and stages of the run.
    qor::IProcessMonitor& getMonitor();

    void end();
    void interrupt();

private:
    OrvelProcessMonitor& monitor;
    std::promise<void> threadEnd;
    bool hasEnded = false;
};

} // namespace orvel::replay
