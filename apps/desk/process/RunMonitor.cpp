#include "apps/desk/process/RunMonitor.h"

#include "apps/desk/Desk.h"
#include "apps/desk/process/JournalRecorder.h"
#include "host/files/ExceptionText.h"

namespace orvel::desk {

// A dialog would stay above the other windows.
RunMonitor::RunMonitor(ProjectWindow* window, QWidget* parent)
    : OrvelProcessMonitor(window, parent, Qt::Window)
{}

RunMonitor::~RunMonitor()
{
    if (run.letGo)
        run.letGo();
    shutdown();
}

void RunMonitor::setRecorder(JournalRecorder* journalRecorder)
{
    recorder = journalRecorder;
}

void RunMonitor::startRun(const DeskRun& deskRun)
{
    if (isRunning())
        return;
    run = deskRun;
    problems = false;
    setProtocolType(run.protocolType);
    start([function = run.function, failure = run.failure](qor::IProcessMonitor& monitor) {
        try {
            function(monitor);
        } catch (...) {
            *failure = {RunFailure::Kind::NoResult,
                        QString::fromStdWString(exceptions::getExceptionText(std::current_exception()))};
            throw;
        }
    });
}

bool RunMonitor::isProtocolKept() const
{
    return getInterrupted() || (run.keepsProtocol && run.failure->kind == RunFailure::Kind::Refused);
}

void RunMonitor::startProtocolStage(std::wstring name)
{
    record(QStringLiteral("startStage"), QString::fromStdWString(name));
    OrvelProcessMonitor::startProtocolStage(std::move(name));
}

void RunMonitor::finishProtocolStage()
{
    if (recorder)
        recorder->finishStage();
    OrvelProcessMonitor::finishProtocolStage();
}

void RunMonitor::writeError(const QString& text, const QString& detail)
{
    problems = true;
    record(QStringLiteral("writeError"), text);
    OrvelProcessMonitor::writeError(text, detail);
}

void RunMonitor::writeWarning(const QString& text, const QString& detail)
{
    problems = true;
    record(QStringLiteral("writeWarning"), text);
    OrvelProcessMonitor::writeWarning(text, detail);
}

void RunMonitor::writeMessage(const QString& text, const QString& detail)
{
    record(QStringLiteral("writeMessage"), text);
    OrvelProcessMonitor::writeMessage(text, detail);
}

void RunMonitor::write(const QString& text, const QString& detail)
{
    record(QStringLiteral("write"), text);
    OrvelProcessMonitor::write(text, detail);
}

void RunMonitor::onStarted()
{
    if (recorder)
        recorder->beginRun(run.protocolType);
    OrvelProcessMonitor::onStarted();
}

void RunMonitor::onThreadFinished()
{
    const std::function<void()>& settle = getInterrupted() ? run.discardResults : run.takeResults;
    if (settle)
        settle();
    // What the run kept of the project as it was is not needed any more.
    run.function = nullptr;
    run.takeResults = nullptr;
    run.discardResults = nullptr;
    run.letGo = nullptr;
    if (recorder)
        recorder->endRun(isProtocolKept());
    if (!isProtocolKept() || getInterrupted()) {
        OrvelProcessMonitor::onThreadFinished();
        return;
    }
    // The window's own writers would put the line into the protocol that stays, and end it.
    // NOLINTBEGIN(bugprone-parent-virtual-call)
    CProcessMonitor::write(Desk::tr("В проекте ничего не изменилось, протокол прежнего импорта остался."),
                           {});
    CProcessMonitor::onThreadFinished();
    // NOLINTEND(bugprone-parent-virtual-call)
}

void RunMonitor::record(const QString& command, const QString& text)
{
    if (recorder)
        recorder->writeLine(command, text);
}

} // namespace orvel::desk
