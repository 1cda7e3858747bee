#include "apps/desk/runs/DeskRun.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/common/TerminationSignals.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/reports/ReportTexts.h"
#include "apps/desk/runs/AdjustRun.h"
#include "apps/desk/runs/ChainsRun.h"
#include "apps/desk/runs/CompileRun.h"
#include "apps/desk/runs/ExportRun.h"
#include "apps/desk/runs/FixedPointsRun.h"
#include "apps/desk/runs/ImportRun.h"
#include "apps/desk/runs/L1Run.h"
#include "apps/desk/runs/NetworkExportRun.h"
#include "apps/desk/runs/PlanExportRun.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/TacheometryRun.h"
#include "apps/desk/runs/ThreadCall.h"
#include "apps/desk/runs/Tolerances.h"
#include "host/process/BesideWindow.h"

#include <QFileInfo>
#include <QUndoStack>

#include <algorithm>
#include <optional>
#include <thread>
#include <utility>

namespace orvel::desk {

namespace runs {

namespace {

/// Destroys a network that the window's thread would take too long for.
void destroyElsewhere(std::optional<NetworkItems>& items)
{
    if (!items)
        return;
    std::thread([condemned = std::move(*items)] {}).detach();
    items.reset();
}

int getImportType(const std::vector<ImportSource>& sources)
{
    return sources.front().format ? enums::ImportTemplate : enums::Import;
}

/// What the network comes from has no protocol of the other kind when that is replaced.
std::optional<int> getOtherImport(int importType)
{
    return importType == enums::Import ? enums::ImportTemplate : enums::Import;
}

/// The sections that are switched off.
std::vector<HandChange> listOff(const Document& document)
{
    std::vector<HandChange> off = document.getHandChanges();
    off.erase(
        std::remove_if(off.begin(), off.end(),
                       [](const HandChange& change) { return change.kind != HandChange::Kind::SectionOff; }),
        off.end());
    return off;
}

/// Tells which sections an exported file goes without.
void writeOff(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
              const std::vector<HandChange>& off)
{
    if (off.empty())
        return;
    RunLines lines(monitor, snapshot);
    QStringList links;
    for (std::size_t i = 0; i < std::min(off.size(), RunLines::kListLimit); ++i)
        links.append(lines.item(off[i].id, off[i].name));
    if (off.size() > RunLines::kListLimit)
        links.append(QStringLiteral("…"));
    lines.message(Desk::tr("Отключённые секции в файл не вошли, их %1: %2")
                      .arg(QString::number(off.size()), links.join(QStringLiteral(", "))));
}

/// Tells that the heights of an exported file are those of the network as it was.
void writeOutdated(qor::IProcessMonitor& monitor)
{
    const NetworkSnapshot nothing;
    RunLines(monitor, nothing).warning(reporttexts::warnOfOldResults());
}

/// A run that looks at the network by the project's rules, and changes nothing.
DeskRun makeAnalysis(const Document& document, int protocolType,
                     QString (*analyse)(qor::IProcessMonitor&, const NetworkSnapshot&, const SurveyRules&,
                                        WorstLine*))
{
    DeskRun run;
    run.protocolType = protocolType;
    run.function = [snapshot = document.shareSnapshot(), rules = document.getSurveyRules(), analyse,
                    worst = run.worst, failure = run.failure](qor::IProcessMonitor& monitor) {
        const auto judged = tolerances::applyLevel(snapshot, rules.tolerances);
        *failure =
            RunFailure::make(RunFailure::Kind::NoResult, analyse(monitor, *judged, rules, worst.get()));
    };
    return run;
}

} // namespace

DeskRun makeImport(Document& document, const std::vector<ImportSource>& sources, ImportMode mode,
                   const QString& projectName, const std::optional<SectionSigma>& sigma)
{
    DeskRun run;
    const ImportSettings settings{document.getSurveyRules(), sigma};
    run.protocolType = getImportType(sources);
    const auto replaced = std::make_shared<std::optional<NetworkItems>>();
    const auto windowThread = std::make_shared<ThreadCall>();
    run.function = [&document, sources, mode, settings, type = run.protocolType, replaced, windowThread,
                    worst = run.worst, known = document.shareWholeSnapshot(),
                    hands = document.getHandStates(), nextId = document.getNextId(),
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        const auto isStopped = [&monitor] { return !monitor.isProcessRunning(); };
        const NetworkTaker takeNetwork = [&](levelling::Network network,
                                             std::shared_ptr<const tacheometry::FieldBook> fieldBook)
            -> std::shared_ptr<const NetworkSnapshot> {
            std::optional<NetworkItems> items =
                NetworkItems::make(std::move(network), *known, nextId, isStopped, std::move(fieldBook),
                                   mode == ImportMode::Add ? &hands : nullptr);
            if (!items)
                return nullptr;
            const std::shared_ptr<const NetworkSnapshot> snapshot = items->snapshot;
            const bool isTaken = windowThread->call(monitor, [&] {
                document.takeNetwork(*items,
                                     mode == ImportMode::Replace ? getOtherImport(type) : std::nullopt);
                replaced->emplace(std::move(*items));
            });
            return isTaken ? snapshot : nullptr;
        };
        *failure =
            RunFailure::make(RunFailure::Kind::Refused,
                             runImport(monitor, sources, mode == ImportMode::Add ? *known : NetworkSnapshot(),
                                       takeNetwork, settings, worst.get()));
    };
    // The links of the run's lines name the project.
    const Document::Origin origin = document.getOrigin();
    if (!projectName.isEmpty())
        document.setProjectName(projectName);
    run.takeResults = [&document, replaced, origin, failure = run.failure] {
        // The commands fit the network that was there.
        if (*replaced)
            document.getUndoStack().clear();
        destroyElsewhere(*replaced);
        if (failure->kind != RunFailure::Kind::None)
            document.setOrigin(origin);
    };
    run.letGo = [windowThread] { windowThread->close(); };
    run.discardResults = [&document, replaced, origin, wasModified = document.isModified()] {
        if (*replaced) {
            document.exchangeItems(**replaced);
            document.setModified(wasModified);
        }
        destroyElsewhere(*replaced);
        document.setOrigin(origin);
    };
    return run;
}

DeskRun makeRefusedImport(const std::vector<ImportSource>& sources, const ImportRefusal& refusal)
{
    DeskRun run;
    run.protocolType = getImportType(sources);
    run.function = [refusal, failure = run.failure](qor::IProcessMonitor& monitor) {
        writeRefusal(monitor, refusal);
        *failure = RunFailure::make(RunFailure::Kind::Refused, refusal.reason);
    };
    return run;
}

std::optional<ImportRefusal> findRefusal(const Document& document, const std::vector<ImportSource>& sources)
{
    const bool areRegular = std::all_of(sources.begin(), sources.end(), [](const ImportSource& source) {
        const QFileInfo file(source.filePath);
        return !file.exists() || file.isFile();
    });
    if (!areRegular)
        return std::nullopt;
    std::optional<ImportRefusal> refusal;
    performBesideWindow([&, settings = ImportSettings{document.getLevellingClass(), std::nullopt},
                         snapshot = document.shareSnapshot()] {
        refusal =
            tryImport(sources, snapshot->network.parameters, settings, &apps::TerminationSignals::hasCome);
    });
    return refusal;
}

DeskRun makeCompile(const Document& document)
{
    DeskRun run;
    run.protocolType = enums::Compile;
    run.function = [snapshot = document.shareSnapshot(), rules = document.getSurveyRules(),
                    worst = run.worst](qor::IProcessMonitor& monitor) {
        runCompile(monitor, *snapshot, rules, worst.get());
    };
    return run;
}

DeskRun makeAdjust(Document& document)
{
    DeskRun run;
    run.protocolType = enums::Adjust;
    const auto adjustment = std::make_shared<std::optional<levelling::Adjustment>>();
    run.function = [snapshot = document.shareSnapshot(), rules = document.getSurveyRules(),
                    handChanges = document.getHandChanges(), adjustment, worst = run.worst,
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        *adjustment = runAdjust(monitor, *tolerances::applyLevel(snapshot, rules.tolerances), rules,
                                handChanges, worst.get());
        if (*adjustment)
            *failure = RunFailure::make(RunFailure::Kind::NoResult, describeFailure((*adjustment)->status));
    };
    run.takeResults = [&document, adjustment] {
        if (*adjustment)
            document.setAdjustment(**adjustment);
    };
    return run;
}

DeskRun makeL1Analysis(const Document& document)
{
    return makeAnalysis(document, enums::L1Analysis, runL1Analysis);
}

DeskRun makeChains(const Document& document)
{
    return makeAnalysis(document, enums::AutoChainTracingAnalysis, runChains);
}

DeskRun makeFixedPoints(const Document& document)
{
    return makeAnalysis(document, enums::FixedPointsAnalysis, runFixedPoints);
}

DeskRun makeTacheometry(Document& document)
{
    DeskRun run;
    run.protocolType = enums::CalcTacheometry;
    const auto outcome = std::make_shared<TacheometryOutcome>();
    run.function = [snapshot = document.shareSnapshot(), given = document.getGivenPositions(), outcome,
                    worst = run.worst, failure = run.failure](qor::IProcessMonitor& monitor) {
        *outcome = runTacheometry(monitor, *snapshot, given, worst.get());
        *failure = RunFailure::make(RunFailure::Kind::NoResult, outcome->failure);
    };
    run.takeResults = [&document, outcome] { document.setPolarResults(outcome->computation); };
    return run;
}

DeskRun makeHeightExport(const Document& document, const QString& filePath)
{
    std::vector<ExportedHeight> heights;
    for (const LevellingPoint* point : document.getPoints()) {
        ExportedHeight height{point->getName(), point->getId(), point->getPosition(), std::nullopt};
        // Without coordinates only what the adjustment gave is a height to be exported.
        if (const auto& result = point->getResult())
            height.sigma = result->sigma;
        else if (!height.position.hasPlan())
            height.position.height.reset();
        heights.push_back(height);
    }
    DeskRun run;
    run.protocolType = enums::Export;
    // An adjustment that gave no heights is no fault of the one who asks for them.
    const bool wasAdjusted = document.getSummary().types.count(enums::Adjust) != 0;
    const auto kind =
        wasAdjusted && !document.hasResults() ? RunFailure::Kind::NoResult : RunFailure::Kind::Refused;
    run.function = [heights, wasAdjusted, kind, filePath, isOutdated = document.areResultsOutdated(),
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        if (isOutdated)
            writeOutdated(monitor);
        *failure = RunFailure::make(kind, runExport(monitor, heights, wasAdjusted, filePath));
    };
    return run;
}

DeskRun makeNetworkExport(const Document& document, const QString& filePath)
{
    DeskRun run;
    run.protocolType = enums::Export;
    run.function = [snapshot = document.shareSnapshot(), off = listOff(document), filePath,
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        writeOff(monitor, *snapshot, off);
        *failure =
            RunFailure::make(RunFailure::Kind::Refused, runNetworkExport(monitor, *snapshot, filePath));
    };
    return run;
}

namespace {

/// What of the document has coordinates, and the points that have none, by their indices.
Plan makePlan(const Document& document, std::vector<int>& withoutPlace)
{
    Plan plan;
    std::vector<int> placeOfPoint;
    for (const LevellingPoint* point : document.getPoints()) {
        const tacheometry::Position position = point->getPosition();
        if (!position.hasPlan()) {
            withoutPlace.push_back(static_cast<int>(placeOfPoint.size()));
            placeOfPoint.push_back(-1);
            continue;
        }
        placeOfPoint.push_back(static_cast<int>(plan.points.size()));
        PlanPoint planned{point->getName(), point->getPoint().hasPlan(), position, std::nullopt};
        if (point->getResult())
            planned.sigma = point->getResult()->sigma;
        plan.points.push_back(planned);
    }
    for (const LevellingSection* section : document.getSections()) {
        if (section->isOff())
            continue;
        const levelling::Section& measured = section->getSection();
        const int from = placeOfPoint[static_cast<std::size_t>(measured.from)];
        const int to = placeOfPoint[static_cast<std::size_t>(measured.to)];
        if (from >= 0 && to >= 0)
            plan.sections.push_back({section->getName(), from, to, measured.difference, measured.distance});
    }
    return plan;
}

DeskRun makePlanExport(const Document& document, const QString& filePath, QByteArray (*toBytes)(const Plan&))
{
    DeskRun run;
    run.protocolType = enums::Export;
    std::vector<int> withoutPlace;
    const auto plan = std::make_shared<const Plan>(makePlan(document, withoutPlace));
    run.function = [snapshot = document.shareSnapshot(), off = listOff(document), plan, withoutPlace, toBytes,
                    filePath, isOutdated = document.areResultsOutdated(),
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        if (isOutdated)
            writeOutdated(monitor);
        writeOff(monitor, *snapshot, off);
        *failure =
            RunFailure::make(RunFailure::Kind::Refused,
                             runPlanExport(monitor, *snapshot, *plan, toBytes, withoutPlace, filePath));
    };
    return run;
}

} // namespace

DeskRun makeGeoJsonExport(const Document& document, const QString& filePath)
{
    return makePlanExport(document, filePath, planexport::toGeoJson);
}

DeskRun makeDxfExport(const Document& document, const QString& filePath)
{
    return makePlanExport(document, filePath, planexport::toDxf);
}

DeskRun makeRefusedExport(const QString& failure)
{
    DeskRun run;
    run.protocolType = enums::Export;
    run.function = [failure, result = run.failure](qor::IProcessMonitor& monitor) {
        monitor.writeError(RunLines::escape(failure).toStdWString());
        *result = RunFailure::make(RunFailure::Kind::Refused, failure);
    };
    return run;
}

} // namespace runs

} // namespace orvel::desk
