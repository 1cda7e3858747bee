#include "bench/tasks/WindowRunTasks.h"

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "bench/BenchFiles.h"
#include "bench/BenchHost.h"
#include "bench/Digest.h"
#include "bench/SampleMessages.h"
#include "bench/StallWatch.h"
#include "bench/programs/DirectMonitor.h"
#include "host/process/JournalWriter.h"
#include "host/window/ProjectWindow.h"
#include "tests/support/OrvelTestAccess.h"

#include <QCoreApplication>
#include <QTextBrowser>
#include <QTextDocument>

#include <algorithm>

namespace orvel::bench {

namespace {

constexpr int kType = enums::Compile;

std::vector<std::wstring> makeWideLines(int count)
{
    std::vector<std::wstring> lines;
    for (const QString& line : sample::makeLines(count))
        lines.push_back(line.toStdWString());
    return lines;
}

void writeLines(const std::vector<std::wstring>& lines, qor::IProcessMonitor& monitor)
{
    int number = 0;
    for (const std::wstring& line : lines) {
        switch (sample::getKind(number++)) {
        case COVMessage::Error:
            monitor.writeError(line);
            break;
        case COVMessage::Warning:
            monitor.writeWarning(line);
            break;
        case COVMessage::Message:
            monitor.writeMessage(line);
            break;
        default:
            monitor.write(line);
        }
    }
}

class RunTask : public Task
{
public:
    explicit RunTask(const TaskRequest& request) : lines(makeWideLines(request.size))
    {
        sample::addPoints(request.size, host.model);
        OrvelTestAccess::dataFilePath(host.protocol) = getWorkPath(request, QStringLiteral("xml"));
    }

    QString getDigest() override
    {
        OrvelTestAccess::ReadXML(host.protocol);
        // The closing lines of a run hold the time.
        sample::MessageStore& messages = OrvelTestAccess::messages(host.protocol);
        messages[kType].resize(lines.size(), COVMessage(0, 0, 0, 0, QString(), 0));
        Digest digest;
        digest.add(messages);
        return digest.getResult();
    }

protected:
    BenchHost host;
    const std::vector<std::wstring> lines;
};

class WindowRun : public RunTask
{
public:
    explicit WindowRun(const TaskRequest& request) : RunTask(request), window(&host.model), monitor(&window)
    {
        monitor.setProtocolType(kType);
        monitor.show();
        QCoreApplication::processEvents();
    }

    void run() override
    {
        stallWatch.start();
        monitor.start([this](qor::IProcessMonitor& target) { writeLines(lines, target); });
        monitor.waitForFinished();
        stalls.push_back(stallWatch.stop(QStringLiteral("run")));
    }

    /// Somebody turns to the journal, and all its lines come.
    void runOn() override
    {
        const int shownLines = std::min(static_cast<int>(lines.size()), JournalWriter::kLineLimit);
        stallWatch.start();
        const QTextDocument& journal = *monitor.getJournal()->document();
        while (journal.blockCount() < shownLines)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        stalls.push_back(stallWatch.stop(QStringLiteral("journal")));
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    ProjectWindow window;
    OrvelProcessMonitor monitor;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
};

class BareRun : public RunTask
{
public:
    using RunTask::RunTask;

    void run() override
    {
        DirectMonitor monitor(host.protocol, kType);
        host.protocol.ProtocolBegin(kType);
        writeLines(lines, monitor);
        host.protocol.ProtocolEnd(kType);
    }
};

} // namespace

std::unique_ptr<Task> makeWindowRunTask(const TaskRequest& request)
{
    if (request.program == QLatin1String("orvel"))
        return std::make_unique<WindowRun>(request);
    return std::make_unique<BareRun>(request);
}

} // namespace orvel::bench
