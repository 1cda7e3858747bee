#pragma once

#include "Orvel/integration/OrvelProcessMonitor.h"

#include <future>

/// A run whose lines come from the journal: its thread works from the construction until the run is ended.
class ReplayRun
{
public:
    ReplayRun(ProjectWindow* window, int protocolType);
    ~ReplayRun();
    ReplayRun(const ReplayRun&) = delete;
    ReplayRun& operator=(const ReplayRun&) = delete;

    /// Takes the lines and stages of the run.
    qor::IProcessMonitor& getMonitor();

    void end();
    void interrupt();

private:
    std::promise<void> threadEnd;
    bool hasEnded = false;
    OrvelProcessMonitor monitor;
};
