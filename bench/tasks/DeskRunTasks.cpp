#include "bench/tasks/DeskRunTasks.h"

#include "Orvel/store/COrvel.h"
#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/process/RunMonitor.h"
#include "apps/desk/runs/DeskRun.h"
#include "apps/desk/runs/ImportRun.h"
#include "bench/BenchFiles.h"
#include "bench/BusyPrograms.h"
#include "bench/Clocks.h"
#include "bench/DeskHost.h"
#include "bench/Digest.h"
#include "bench/SampleMessages.h"
#include "bench/StallWatch.h"
#include "bench/programs/DirectMonitor.h"
#include "host/files/WholeFile.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/support/OrvelTestAccess.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextBrowser>
#include <QTextDocument>

#include <optional>

namespace orvel::bench {

namespace {

/// So many sections has a network per point.
constexpr double kSectionsPerPoint = 2.5;

class DeskRunTask : public Task
{
public:
    explicit DeskRunTask(const TaskRequest& request)
        // The same for all programs: the import writes a line with the name.
        : networkFile(QDir(request.folder).filePath(QStringLiteral("desk_run.gkf")))
    {
        const auto sectionCount = static_cast<int>(kSectionsPerPoint * request.size);
        files::writeAll(networkFile,
                        test::networks::toGkf(test::networks::synthetic(request.size, sectionCount)));
        OrvelTestAccess::dataFilePath(host.document->getProtocol()) =
            getWorkPath(request, QStringLiteral("xml"));
    }

    QString getDigest() override
    {
        COrvel& protocol = host.document->getProtocol();
        OrvelTestAccess::ReadXML(protocol);
        // The closing lines of a run hold the time.
        constexpr std::size_t closingLines = 3;
        sample::MessageStore& messages = OrvelTestAccess::messages(protocol);
        for (auto& [type, lines] : messages)
            lines.resize(lines.size() - closingLines, COVMessage(0, 0, 0, 0, QString(), 0));
        Digest digest;
        digest.add(messages);
        return digest.getResult();
    }

protected:
    DeskHost host;
    const QString networkFile;
};

/// The runs as the desk performs them.
class MonitoredRun : public DeskRunTask
{
public:
    MonitoredRun(const TaskRequest& request, bool isImportOnly)
        : DeskRunTask(request)
        , importOnly(isImportOnly)
        , monitor(host.window.get())
    {
        if (request.program == QLatin1String("busy"))
            busyPrograms.emplace();
        if (request.program == QLatin1String("window"))
            showWindows();
    }

    void run() override
    {
        desk::Document& document = *host.document;
        perform(desk::runs::makeImport(document, {{networkFile, std::nullopt}}, desk::ImportMode::Replace,
                                       sample::getProjectName()),
                QStringLiteral("import"));
        if (importOnly)
            return;
        perform(desk::runs::makeCompile(document), QStringLiteral("compile"));
        perform(desk::runs::makeAdjust(document), QStringLiteral("adjust"));
        perform(desk::runs::makeL1Analysis(document), QStringLiteral("l1"));
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    void showWindows()
    {
        table = std::make_unique<desk::ItemTable>(*host.document, host.window.get());
        table->show();
        monitor.show();
        QCoreApplication::processEvents();
        const QTextBrowser* journal = monitor.getJournal();
        QObject::connect(journal, &QTextBrowser::textChanged, &monitor, [this, journal] {
            if (!firstLine && !journal->document()->isEmpty())
                firstLine = clocks::getSteady() - start;
        });
    }

    void perform(const desk::DeskRun& run, const QString& name)
    {
        firstLine.reset();
        start = clocks::getSteady();
        stallWatch.start();
        // As the desk does before and after each.
        host.document->checkProtocol();
        monitor.startRun(run);
        monitor.waitForFinished();
        host.document->checkProtocol(run.protocolType);
        stalls.push_back(stallWatch.stop(name));
        // The other runs compute for a while before they write.
        if (firstLine && run.protocolType == enums::Compile)
            stalls.push_back({name + QStringLiteral("_first_line"), *firstLine, 0});
    }

    const bool importOnly;
    std::optional<BusyPrograms> busyPrograms;
    std::unique_ptr<desk::ItemTable> table;
    desk::RunMonitor monitor;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
    double start = 0;
    std::optional<double> firstLine; // seconds from the start until the journal shows something
};

/// The same computations, their lines straight into the protocol.
class BareRun : public DeskRunTask
{
public:
    using DeskRunTask::DeskRunTask;

    void run() override
    {
        desk::Document& document = *host.document;
        perform(enums::Import, [&](qor::IProcessMonitor& monitor) {
            desk::runImport(monitor, {{networkFile, std::nullopt}}, {},
                            [&](const levelling::Network& network, const auto& /*fieldBook*/) {
                                document.setNetwork(network);
                                return document.shareSnapshot();
                            });
        });
        perform(desk::runs::makeCompile(document));
        perform(desk::runs::makeAdjust(document));
        perform(desk::runs::makeL1Analysis(document));
    }

private:
    void perform(int type, const std::function<void(qor::IProcessMonitor&)>& function)
    {
        COrvel& protocol = host.document->getProtocol();
        DirectMonitor monitor(protocol, type);
        protocol.ProtocolBegin(type);
        function(monitor);
        protocol.ProtocolEnd(type);
    }

    void perform(const desk::DeskRun& run)
    {
        perform(run.protocolType, run.function);
        if (run.takeResults)
            run.takeResults();
    }
};

} // namespace

std::unique_ptr<Task> makeDeskRunTask(const TaskRequest& request)
{
    if (request.program == QLatin1String("bare"))
        return std::make_unique<BareRun>(request);
    return std::make_unique<MonitoredRun>(request, false);
}

std::unique_ptr<Task> makeImportTask(const TaskRequest& request)
{
    return std::make_unique<MonitoredRun>(request, true);
}

} // namespace orvel::bench
