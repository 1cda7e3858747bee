#pragma once

#include "apps/desk/gui/TableOrder.h"
#include "apps/desk/process/BackgroundWork.h"

#include <QAbstractProxyModel>
#include <QPersistentModelIndex>

#include <map>
#include <memory>
#include <set>
#include <vector>

class QTimer;

namespace orvel::desk {

/// Sorts the item table, names as people count ("2" before "10"), and hides what a search does not mean.
///
/// A short table is sorted and searched at once. Of a long one the values are read bit by bit, and the order
/// is computed in another thread while the table shows what it showed; what was asked for last is put in
/// place. The source must be a table whose columns stay.
class ItemFilterModel : public QAbstractProxyModel
{
    Q_OBJECT

public:
    struct Limits
    {
        int immediateRows =
            20000;              ///< so many are sorted and searched at once before other events have a turn
        int rowsAtOnce = 50000; ///< so many cells are read in one go
    };

    explicit ItemFilterModel(QObject* parent = nullptr) : ItemFilterModel(Limits(), parent) {}
    explicit ItemFilterModel(const Limits& tableLimits, QObject* parent = nullptr);

    /// Shows the items whose names or kinds hold all words of the text.
    void setSearchText(const QString& text);
    /// Shows the items that have all these traits, bits of itemcolumns::Trait.
    void setWantedTraits(int traits);
    bool isFiltering() const { return wantedTraits != 0 || !words.isEmpty(); }
    /// Sorts by the column, or as the source is for -1.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    /// Whether the rows are not yet as they were asked for.
    bool isWorking() const { return working; }
    /// Whether search and wanted traits mean that row of the source.
    bool isMeant(const QModelIndex& sourceIndex) const;

    void setSourceModel(QAbstractItemModel* table) override;
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits = 1,
                          Qt::MatchFlags flags = Qt::MatchFlags(Qt::MatchStartsWith |
                                                                Qt::MatchWrap)) const override;
    QModelIndex mapToSource(const QModelIndex& proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex& sourceIndex) const override;

Q_SIGNALS:
    /// Work has begun, or the rows are as they were asked for.
    void workingChanged(bool isWorking);

private:
    /// One computation: for which request it is, of which values, and what came of it.
    struct Work
    {
        unsigned request = 0;
        unsigned values = 0;
        tableorder::Task task;
        std::vector<int> rows;
    };

    bool isImmediate() const;
    bool dependsOn(int firstColumn, int lastColumn) const;
    void update();
    void startStep();
    void proceed();
    std::set<int> getMissingColumns() const;
    tableorder::Value readValue(int row, int column) const;
    int readTraitsOfRow(int row) const;
    bool readNeeded(int limit);
    bool readValues(int& limit);
    bool readAllTraits(int& limit);
    Work makeWork();
    void compute();
    void take(const Work& work);
    void keep(const Work& work);
    void showRows(const std::vector<int>& rows);
    std::vector<int> arrangeAtOnce();
    void setWorking(bool isWorking);

    void beginRows();
    void keepIndexes();
    void moveIndexes();
    void putRows(const std::vector<int>& rows);
    void endRows();
    void renewRows();
    void endSourceRows();
    void endReset();
    void forgetColumns(int first, int last);
    void takeChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);

    const Limits limits;
    QStringList words;
    int wantedTraits = 0;
    int sortColumn = -1;
    Qt::SortOrder sortDirection = Qt::AscendingOrder;

    std::vector<int> sourceRows; ///< by row
    std::vector<int> places;     ///< by row of the source; -1 for one that is not shown

    // Made of values that have not changed since.
    std::map<int, std::shared_ptr<const tableorder::Ranks>> ranksOfColumn;
    std::shared_ptr<const tableorder::SearchTexts> searchTexts;
    std::shared_ptr<const tableorder::Traits> traitsOfRow;
    tableorder::Traits readTraits;                    ///< as far as they are read
    std::map<int, tableorder::Values> valuesOfColumn; ///< as far as they are read

    unsigned requestNumber = 0; ///< counts what was asked for
    unsigned valuesNumber = 0;  ///< counts the changes of the source
    bool working = false;
    int rowsThisTurn = 0; ///< that were sorted and searched since other events had a turn
    QTimer* const stepTimer;

    // While rows change.
    QModelIndexList indexesBefore;
    std::vector<QPersistentModelIndex> sourcesBefore;

    BackgroundWork computation;
};

} // namespace orvel::desk
