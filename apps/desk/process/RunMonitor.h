#pragma once

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "apps/desk/runs/DeskRun.h"

namespace orvel::desk {

class JournalRecorder;

/// The progress window of the desk's runs.
class RunMonitor : public OrvelProcessMonitor
{
    Q_OBJECT

public:
    explicit RunMonitor(ProjectWindow* window, QWidget* parent = nullptr);
    ~RunMonitor() override;

    /// Has the runs from now on recorded, or with null not any more. Not owned.
    void setRecorder(JournalRecorder* journalRecorder);

    /// Starts a run. One at a time.
    void startRun(const DeskRun& deskRun);
    /// The latest run.
    const DeskRun& getRun() const { return run; }
    /// Whether the latest run was stopped, or ended by an exception.
    bool wasInterrupted() const { return getInterrupted(); }
    /// Whether the latest run wrote an error or a warning.
    bool hasProblems() const { return problems; }
    /// Whether the protocol of the latest run's type is that of an earlier run, since the latest was stopped,
    /// or refused and told to keep it.
    bool isProtocolKept() const;

    using OrvelProcessMonitor::write;
    using OrvelProcessMonitor::writeError;
    using OrvelProcessMonitor::writeMessage;
    using OrvelProcessMonitor::writeWarning;

    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;

protected:
    void writeError(const QString& text, const QString& detail) override;
    void writeWarning(const QString& text, const QString& detail) override;
    void writeMessage(const QString& text, const QString& detail) override;
    void write(const QString& text, const QString& detail) override;
    void onStarted() override;
    void onThreadFinished() override;
    QString getWorstLine() const override { return run.worst->getText(); }

private:
    void record(const QString& command, const QString& text);

    DeskRun run;
    bool problems = false;
    JournalRecorder* recorder = nullptr;
};

} // namespace orvel::desk
