#pragma once

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "apps/desk/runs/DeskRun.h"

/// The progress window of the desk's runs.
class RunMonitor : public OrvelProcessMonitor
{
    Q_OBJECT

public:
    explicit RunMonitor(ProjectWindow* window, QWidget* parent = nullptr);
    ~RunMonitor() override;

    /// Starts a run. One at a time.
    void startRun(const DeskRun& deskRun);
    const DeskRun& getRun() const { return run; }
    /// Whether the latest run was stopped, or ended by an exception.
    bool wasInterrupted() const { return getInterrupted(); }

protected:
    void onThreadFinished() override;

private:
    DeskRun run;
};
