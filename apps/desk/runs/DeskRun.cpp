#include "apps/desk/runs/DeskRun.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/runs/AdjustRun.h"
#include "apps/desk/runs/CompileRun.h"
#include "apps/desk/runs/ExportRun.h"
#include "apps/desk/runs/ImportRun.h"
#include "apps/desk/runs/L1Run.h"
#include "apps/desk/runs/ThreadCall.h"

namespace orvel::desk {

namespace runs {

DeskRun makeImport(Document& document, const QString& filePath)
{
    DeskRun run;
    run.protocolType = enums::Import;
    const auto replaced = std::make_shared<std::optional<Document::Content>>();
    const auto windowThread = std::make_shared<ThreadCall>();
    run.function = [&document, filePath, replaced, windowThread,
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        const NetworkTaker takeNetwork = [&](const levelling::Network& network, NetworkSnapshot& snapshot) {
            return windowThread->call(monitor, [&] {
                *replaced = document.copyContent();
                document.setNetwork(network);
                snapshot = document.getSnapshot();
            });
        };
        *failure = RunFailure::make(RunFailure::Kind::Refused, runImport(monitor, filePath, takeNetwork));
    };
    run.discardResults = [&document, replaced] {
        if (*replaced)
            document.setContent(std::move(**replaced));
    };
    return run;
}

DeskRun makeCompile(const Document& document)
{
    DeskRun run;
    run.protocolType = enums::Compile;
    run.function = [snapshot = document.getSnapshot(), levellingClass = document.getLevellingClass()](
                       qor::IProcessMonitor& monitor) { runCompile(monitor, snapshot, levellingClass); };
    return run;
}

DeskRun makeAdjust(Document& document)
{
    DeskRun run;
    run.protocolType = enums::Adjust;
    const auto adjustment = std::make_shared<std::optional<levelling::Adjustment>>();
    run.function = [snapshot = document.getSnapshot(), adjustment,
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        *adjustment = runAdjust(monitor, snapshot);
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
    DeskRun run;
    run.protocolType = enums::L1Analysis;
    run.function = [snapshot = document.getSnapshot(), failure = run.failure](qor::IProcessMonitor& monitor) {
        *failure = RunFailure::make(RunFailure::Kind::NoResult, runL1Analysis(monitor, snapshot));
    };
    return run;
}

DeskRun makeExport(const Document& document, const QString& filePath)
{
    std::vector<ExportedHeight> heights;
    for (const LevellingPoint* point : document.getPoints()) {
        ExportedHeight height{point->getName(), point->getId(), std::nullopt, 0.0};
        if (const auto& result = point->getResult()) {
            height.height = result->height;
            height.sigma = result->sigma;
        }
        heights.push_back(height);
    }
    DeskRun run;
    run.protocolType = enums::Export;
    // An adjustment that gave no heights is no fault of the one who asks for them.
    const bool wasAdjusted = document.getSummary().types.count(enums::Adjust) != 0;
    const auto kind =
        wasAdjusted && !document.hasResults() ? RunFailure::Kind::NoResult : RunFailure::Kind::Refused;
    run.function = [heights, wasAdjusted, kind, filePath,
                    failure = run.failure](qor::IProcessMonitor& monitor) {
        *failure = RunFailure::make(kind, runExport(monitor, heights, wasAdjusted, filePath));
    };
    return run;
}

} // namespace runs

} // namespace orvel::desk
