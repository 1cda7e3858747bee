#include "bench/tasks/TableTask.h"

#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/TableColumns.h"
#include "bench/Clocks.h"
#include "bench/DeskHost.h"
#include "bench/DeskLines.h"
#include "bench/DeskResults.h"
#include "bench/StallWatch.h"
#include "tests/levelling/SyntheticNetwork.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include <functional>
#include <malloc.h>

namespace orvel::bench {

namespace {

class TableTask : public Task
{
public:
    explicit TableTask(const TaskRequest& request)
    {
        const int pointCount = request.size * 2 / 5;
        const levelling::Network network = test::networks::synthetic(pointCount, request.size - pointCount);
        host.document->setNetwork(network);
        writeDeskLines(*host.document, request.size);
        adjustment = makeResults(network);
        host.document->setAdjustment(adjustment);
        nextItems =
            desk::NetworkItems::make(network, host.document->getSnapshot(), host.document->getNextId());
        // What was freed meanwhile is not put in order by the first step.
        malloc_trim(0);
    }

    void run() override
    {
        runStep(QStringLiteral("open"), [this] {
            table = std::make_unique<desk::ItemTable>(*host.document, host.window.get());
            for (int column = 0; column < desk::itemcolumns::kCount; ++column)
                table->getColumns().choose(column, true);
            table->show();
        });
        runSort(QStringLiteral("sort_names"), desk::itemcolumns::Name);
        runSort(QStringLiteral("sort_kinds"), desk::itemcolumns::Type);
        runSort(QStringLiteral("sort_heights"), desk::itemcolumns::Height);
        runSort(QStringLiteral("sort_residuals"), desk::itemcolumns::Residual);
        runSort(QStringLiteral("sort_severities"), desk::itemcolumns::Severity);
        runSort(QStringLiteral("sort_tested"), desk::itemcolumns::NormalisedResidual);
        runSort(QStringLiteral("sort_redundancies"), desk::itemcolumns::Redundancy);
        runSort(QStringLiteral("sort_lengths"), desk::itemcolumns::Length);
        runSort(QStringLiteral("sort_files"), desk::itemcolumns::Source);
        runChoice(QStringLiteral("choose_over_limit"), desk::itemcolumns::OverLimitTrait);
        runChoice(QStringLiteral("choose_all"), 0);
        runStep(QStringLiteral("select_all"), [this] { table->selectAll(); });
        runSort(QStringLiteral("sort_selected"), desk::itemcolumns::Difference);
        runCopy();
        runSearch(QStringLiteral("search"), QStringLiteral("7"));
        runSearch(QStringLiteral("search_on"), QStringLiteral("77"));
        runSearch(QStringLiteral("search_off"), QString());
        runStep(QStringLiteral("select"),
                [this] { table->selectItem(host.document->getSections().back()->getId()); });
        runStep(QStringLiteral("scroll"),
                [this] { table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum() / 2); });
        runStep(QStringLiteral("fit_column"),
                [this] { table->resizeColumnToContents(desk::itemcolumns::Name); });
        runStep(QStringLiteral("type"), [this] {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
            QCoreApplication::sendEvent(table.get(), &event);
        });
        runStep(QStringLiteral("results"), [this] { host.document->setAdjustment(adjustment); });
        runStep(QStringLiteral("lines"), [this] { Q_EMIT host.document->summaryChanged(); });
        runStep(QStringLiteral("network"), [this] { host.document->exchangeItems(nextItems); });
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    void runSort(const QString& name, int column)
    {
        runStep(name, [this, column] { table->sortByColumn(column, Qt::AscendingOrder); });
    }

    void runChoice(const QString& name, int traits)
    {
        runStep(name, [this, traits] { table->getFilterModel()->setWantedTraits(traits); });
    }

    void runCopy()
    {
        bool isCopied = false;
        const auto connection = QObject::connect(table.get(), &desk::ItemTable::copied, table.get(),
                                                 [&isCopied] { isCopied = true; });
        runStep(QStringLiteral("copy_all"), [&] {
            table->copySelected();
            while (!isCopied)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
        QObject::disconnect(connection);
        table->clearSelection();
    }

    void runSearch(const QString& name, const QString& text)
    {
        runStep(name, [this, text] { table->getFilterModel()->setSearchText(text); });
    }

    /// A step is what the user does, and all that follows of it until the table shows the result.
    void runStep(const QString& name, const std::function<void()>& step)
    {
        const double start = clocks::getSteady();
        stalls.push_back(
            stallWatch.watch(name, step, [this] { return table->getFilterModel()->isWorking(); }));
        stalls.push_back({name + QStringLiteral("_until_shown"), clocks::getSteady() - start, 0});
    }

    DeskHost host;
    levelling::Adjustment adjustment;
    desk::NetworkItems nextItems;
    std::unique_ptr<desk::ItemTable> table;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
};

} // namespace

std::unique_ptr<Task> makeTableTask(const TaskRequest& request)
{
    return std::make_unique<TableTask>(request);
}

} // namespace orvel::bench
