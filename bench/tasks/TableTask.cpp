#include "bench/tasks/TableTask.h"

#include "bench/BenchHost.h"
#include "bench/Clocks.h"
#include "bench/SampleMessages.h"
#include "host/delegates/CProjectItemModel.h"

#include <QCoreApplication>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <functional>

namespace {

constexpr int kHeightProperty = 1;
constexpr int kLinesPerPoint = 4;

using Column = CProjectItemModel::Column;
using Source = CProjectItemModel::Source;

class TableTask : public Task
{
public:
    explicit TableTask(const TaskRequest& request)
    {
        sample::addPoints(request.size * kLinesPerPoint, host.model);
        for (const auto& item : host.model.getTopLevelItems())
            item->setProperty(kHeightProperty,
                              100 + 0.001 * static_cast<double>(item->getId() * 7919 % 9973));
    }

    void run() override
    {
        runStep(QStringLiteral("open"), [this] { open(); });
        runStep(QStringLiteral("sort"), [this] { view.sortByColumn(0, Qt::AscendingOrder); });
        runStep(QStringLiteral("sort_numbers"), [this] { view.sortByColumn(2, Qt::AscendingOrder); });
        runStep(QStringLiteral("filter"), [this] { proxy.setFilterFixedString(QStringLiteral("Рп 77")); });
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    void open()
    {
        const QVector<Column> columns{{QStringLiteral("Имя"), Source::Name, 0, 0},
                                      {QStringLiteral("Тип"), Source::Type, 0, 0},
                                      {QStringLiteral("Высота"), Source::Property, kHeightProperty, 0}};
        table = std::make_unique<CProjectItemModel>(&host.model, columns);
        proxy.setSourceModel(table.get());
        view.setModel(&proxy);
        view.setSortingEnabled(true);
        view.show();
    }

    /// A step is one reaction to the user, and the painting after it.
    void runStep(const QString& name, const std::function<void()>& step)
    {
        const double start = clocks::getSteady();
        const double cpuStart = clocks::getThreadCpu();
        step();
        QCoreApplication::processEvents();
        stalls.push_back({name, clocks::getSteady() - start, clocks::getThreadCpu() - cpuStart});
    }

    BenchHost host;
    std::unique_ptr<CProjectItemModel> table;
    QSortFilterProxyModel proxy;
    QTableView view;
    std::vector<Stall> stalls;
};

} // namespace

std::unique_ptr<Task> makeTableTask(const TaskRequest& request)
{
    return std::make_unique<TableTask>(request);
}
