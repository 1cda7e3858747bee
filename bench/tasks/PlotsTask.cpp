#include "bench/tasks/PlotsTask.h"

#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/plots/PlotView.h"
#include "bench/Clocks.h"
#include "bench/DeskHost.h"
#include "bench/DeskLines.h"
#include "bench/DeskResults.h"
#include "bench/StallWatch.h"
#include "tests/levelling/SyntheticNetwork.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <functional>
#include <malloc.h>

namespace orvel::bench {

namespace {

using desk::plots::Kind;

class PlotsTask : public Task
{
public:
    explicit PlotsTask(const TaskRequest& request)
    {
        constexpr double sectionsPerPoint = 2.5;
        const levelling::Network network = test::networks::synthetic(
            request.size, static_cast<int>(sectionsPerPoint * static_cast<double>(request.size)));
        host.document->setNetwork(network);
        writeDeskLines(*host.document, request.size);
        results = makeResults(network);
        host.document->setAdjustment(results);
        malloc_trim(0);
    }

    void run() override
    {
        runStep(QStringLiteral("open"), [this] {
            panel = std::make_unique<desk::PlotPanel>(*host.document);
            panel->resize(900, 600);
            panel->show();
            waitFor(desk::plots::NormalisedResiduals, QStringLiteral("histogram"));
            waitFor(desk::plots::ResidualsByLength, QStringLiteral("residuals"));
            waitFor(desk::plots::Misclosures, QStringLiteral("misclosures"));
        });
        runStep(QStringLiteral("show_residuals"),
                [this] { panel->showPlot(desk::plots::ResidualsByLength); });
        runStep(QStringLiteral("next_mark"), [this] { pressKey(desk::plots::ResidualsByLength); });
        runStep(QStringLiteral("find_mark"),
                [this] { panel->getView(desk::plots::ResidualsByLength).findMark(QPoint(400, 200)); });
        runStep(QStringLiteral("resize"), [this] { panel->resize(1000, 700); });
        runStep(QStringLiteral("show_misclosures"), [this] { panel->showPlot(desk::plots::Misclosures); });
        runStep(QStringLiteral("lines"), [this] { Q_EMIT host.document->summaryChanged(); });
        runStep(QStringLiteral("results"), [this] { host.document->setAdjustment(results); });
        runStep(QStringLiteral("edit_and_leave"), [this] {
            Q_EMIT host.document->itemsEdited({host.document->getSections().front()->getId()});
            waitFor(desk::plots::NormalisedResiduals, {});
            panel.reset();
        });
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    void pressKey(Kind kind)
    {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
        QCoreApplication::sendEvent(&panel->getView(kind), &event);
    }

    /// Waits until the plot is there, and tells since when if it has a name.
    void waitFor(Kind kind, const QString& name)
    {
        const double start = clocks::getSteady();
        while (panel->isWorking(kind))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!name.isEmpty())
            stalls.push_back({name + QStringLiteral("_until_shown"), clocks::getSteady() - start, 0});
    }

    /// A step is what the user does, and all that follows of it until the panel shows the result.
    void runStep(const QString& name, const std::function<void()>& step)
    {
        stalls.push_back(stallWatch.watch(name, step, [this] { return panel && panel->isWorking(); }));
    }

    DeskHost host;
    levelling::Adjustment results;
    std::unique_ptr<desk::PlotPanel> panel;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
};

} // namespace

std::unique_ptr<Task> makePlotsTask(const TaskRequest& request)
{
    return std::make_unique<PlotsTask>(request);
}

} // namespace orvel::bench
