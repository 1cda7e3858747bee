#include "bench/tasks/ProtocolPanelTask.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/gui/SearchField.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "bench/Clocks.h"
#include "bench/DeskHost.h"
#include "bench/DeskLines.h"
#include "bench/StallWatch.h"
#include "tests/levelling/SyntheticNetwork.h"

#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>

#include <functional>
#include <malloc.h>

namespace orvel::bench {

namespace {

class ProtocolPanelTask : public Task
{
public:
    explicit ProtocolPanelTask(const TaskRequest& request)
    {
        const int pointCount = 2000;
        host.document->setNetwork(test::networks::synthetic(pointCount, 2 * pointCount));
        writeDeskLines(*host.document, request.size);
        malloc_trim(0);
    }

    void run() override
    {
        runStep(QStringLiteral("open"), [this] {
            panel = std::make_unique<desk::ProtocolPanel>(*host.document);
            panel->showProtocol(enums::Compile);
            panel->resize(800, 300);
            panel->show();
        });
        QTreeView& view = panel->getView();
        runStep(QStringLiteral("next_problem"), [this] { panel->goToProblem(true); });
        runStep(QStringLiteral("previous_problem"), [this] { panel->goToProblem(false); });
        runStep(QStringLiteral("search"), [this] { panel->getSearch().setText(QStringLiteral("7")); });
        runStep(QStringLiteral("search_on"), [this] { panel->getSearch().setText(QStringLiteral("77")); });
        runStep(QStringLiteral("search_off"), [this] { panel->getSearch().clear(); });
        runStep(QStringLiteral("unfold_all"), [&view] { view.expandAll(); });
        runStep(QStringLiteral("scroll"),
                [&view] { view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2); });
        runStep(QStringLiteral("hide_kind"),
                [this] { panel->findChildren<QToolButton*>().constFirst()->click(); });
        runStep(QStringLiteral("about_item"), [this] {
            panel->setCurrentItem(host.document->getSections().back()->getId());
            panel->findChildren<QToolButton*>().at(3)->click();
        });
        runStep(QStringLiteral("about_all"), [this] { panel->findChildren<QToolButton*>().at(3)->click(); });
        runStep(QStringLiteral("other_lines"), [this] { Q_EMIT host.document->summaryChanged(); });
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    /// A step is what the user does, and all that follows of it until the panel shows the result.
    void runStep(const QString& name, const std::function<void()>& step)
    {
        const double start = clocks::getSteady();
        stalls.push_back(stallWatch.watch(name, step, [this] { return panel->isWorking(); }));
        stalls.push_back({name + QStringLiteral("_until_shown"), clocks::getSteady() - start, 0});
    }

    DeskHost host;
    std::unique_ptr<desk::ProtocolPanel> panel;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
};

} // namespace

std::unique_ptr<Task> makeProtocolPanelTask(const TaskRequest& request)
{
    return std::make_unique<ProtocolPanelTask>(request);
}

} // namespace orvel::bench
