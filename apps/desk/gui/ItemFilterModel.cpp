#include "apps/desk/gui/ItemFilterModel.h"

#include "apps/desk/gui/ItemColumns.h"

#include <QTimer>

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace orvel::desk {

using tableorder::Value;
using tableorder::Values;

namespace {

/// Whether traits follow from one of these columns.
bool hasTraitColumn(int first, int last)
{
    return first <= itemcolumns::Severity && last >= itemcolumns::Type;
}

} // namespace

ItemFilterModel::ItemFilterModel(const Limits& tableLimits, QObject* parent)
    : QAbstractProxyModel(parent)
    , limits(tableLimits)
    , stepTimer(new QTimer(this))
{
    stepTimer->setSingleShot(true);
    connect(stepTimer, &QTimer::timeout, this, [this] {
        rowsThisTurn = 0;
        proceed();
    });
}

void ItemFilterModel::setSearchText(const QString& text)
{
    const QStringList newWords = tableorder::makeWords(text);
    if (newWords == words)
        return;
    words = newWords;
    update();
}

void ItemFilterModel::setWantedTraits(int traits)
{
    if (traits == wantedTraits)
        return;
    wantedTraits = traits;
    update();
}

void ItemFilterModel::sort(int column, Qt::SortOrder order)
{
    sortColumn = column;
    sortDirection = order;
    update();
}

bool ItemFilterModel::isMeant(const QModelIndex& sourceIndex) const
{
    return tableorder::hasTraits(readTraitsOfRow(sourceIndex.row()), wantedTraits) &&
           tableorder::isFound(words, readValue(sourceIndex.row(), itemcolumns::Name),
                               readValue(sourceIndex.row(), itemcolumns::Type));
}

void ItemFilterModel::setSourceModel(QAbstractItemModel* table)
{
    beginResetModel();
    if (sourceModel())
        sourceModel()->disconnect(this);
    QAbstractProxyModel::setSourceModel(table);
    if (table) {
        connect(table, &QAbstractItemModel::dataChanged, this, &ItemFilterModel::takeChanged);
        connect(table, &QAbstractItemModel::headerDataChanged, this, &ItemFilterModel::headerDataChanged);
        connect(table, &QAbstractItemModel::rowsAboutToBeInserted, this, &ItemFilterModel::beginRows);
        connect(table, &QAbstractItemModel::rowsInserted, this, &ItemFilterModel::endSourceRows);
        connect(table, &QAbstractItemModel::rowsAboutToBeRemoved, this, &ItemFilterModel::beginRows);
        connect(table, &QAbstractItemModel::rowsRemoved, this, &ItemFilterModel::endSourceRows);
        connect(table, &QAbstractItemModel::rowsAboutToBeMoved, this, &ItemFilterModel::beginRows);
        connect(table, &QAbstractItemModel::rowsMoved, this, &ItemFilterModel::endSourceRows);
        connect(table, &QAbstractItemModel::layoutAboutToBeChanged, this, &ItemFilterModel::beginRows);
        connect(table, &QAbstractItemModel::layoutChanged, this, &ItemFilterModel::endSourceRows);
        connect(table, &QAbstractItemModel::modelAboutToBeReset, this, &ItemFilterModel::beginResetModel);
        connect(table, &QAbstractItemModel::modelReset, this, &ItemFilterModel::endReset);
        connect(table, &QObject::destroyed, this, [this] {
            beginResetModel();
            endReset();
        });
    }
    endReset();
}

QModelIndex ItemFilterModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex ItemFilterModel::parent(const QModelIndex& /*child*/) const
{
    return {};
}

int ItemFilterModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(sourceRows.size());
}

int ItemFilterModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() || !sourceModel() ? 0 : sourceModel()->columnCount();
}

bool ItemFilterModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0 && columnCount(parent) > 0;
}

QVariant ItemFilterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (!sourceModel() || section < 0)
        return {};
    if (orientation == Qt::Horizontal)
        return sourceModel()->headerData(section, orientation, role);
    return section < rowCount()
               ? sourceModel()->headerData(sourceRows[static_cast<std::size_t>(section)], orientation, role)
               : QVariant();
}

QModelIndex ItemFilterModel::mapToSource(const QModelIndex& proxyIndex) const
{
    if (!proxyIndex.isValid() || !sourceModel() || proxyIndex.row() >= rowCount())
        return {};
    return sourceModel()->index(sourceRows[static_cast<std::size_t>(proxyIndex.row())], proxyIndex.column());
}

QModelIndex ItemFilterModel::mapFromSource(const QModelIndex& sourceIndex) const
{
    const auto row = static_cast<std::size_t>(sourceIndex.row());
    if (!sourceIndex.isValid() || row >= places.size() || places[row] < 0)
        return {};
    return createIndex(places[row], sourceIndex.column());
}

// A letter that is typed in the table goes through all cells of a column. In the order of the source they lie
// near each other, and the way by the base class would be longer.
QModelIndexList ItemFilterModel::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                       Qt::MatchFlags flags) const
{
    if (hits != 1 || flags != (Qt::MatchStartsWith | Qt::MatchWrap) || !start.isValid())
        return QAbstractProxyModel::match(start, role, value, hits, flags);
    const QString text = value.toString();
    int nearest = rowCount();
    int sourceRow = -1;
    for (const int place : places) {
        ++sourceRow;
        const int distance = (place - start.row() + rowCount()) % rowCount();
        if (place >= 0 && distance < nearest &&
            sourceModel()
                ->index(sourceRow, start.column())
                .data(role)
                .toString()
                .startsWith(text, Qt::CaseInsensitive))
            nearest = distance;
    }
    if (nearest == rowCount())
        return {};
    return {index((start.row() + nearest) % rowCount(), start.column())};
}

/// Whether the user need not wait for the order.
bool ItemFilterModel::isImmediate() const
{
    return (!isFiltering() && sortColumn < 0) || !sourceModel() ||
           sourceModel()->rowCount() <= limits.immediateRows - rowsThisTurn;
}

bool ItemFilterModel::dependsOn(int firstColumn, int lastColumn) const
{
    const bool isSearched = firstColumn <= itemcolumns::Type && lastColumn >= itemcolumns::Name;
    return (sortColumn >= firstColumn && sortColumn <= lastColumn) || (!words.isEmpty() && isSearched) ||
           (wantedTraits != 0 && hasTraitColumn(firstColumn, lastColumn));
}

/// Brings the rows up to what is asked for, of the values as they are.
void ItemFilterModel::update()
{
    ++requestNumber;
    if (isImmediate()) {
        showRows(arrangeAtOnce());
        return;
    }
    setWorking(true);
    startStep();
}

/// What is still to be done comes after the events that came meanwhile.
void ItemFilterModel::startStep()
{
    if (!stepTimer->isActive())
        stepTimer->start(0);
}

/// Goes on with the work, one step.
void ItemFilterModel::proceed()
{
    if (!working || computation.isWorking())
        return;
    if (readNeeded(limits.rowsAtOnce))
        compute();
    else
        startStep();
}

/// The columns whose values are needed for what is asked.
std::set<int> ItemFilterModel::getMissingColumns() const
{
    std::set<int> columns;
    if (sortColumn >= 0 && ranksOfColumn.count(sortColumn) == 0)
        columns.insert(sortColumn);
    if (!words.isEmpty() && !searchTexts)
        columns.insert({itemcolumns::Name, itemcolumns::Type});
    return columns;
}

Value ItemFilterModel::readValue(int row, int column) const
{
    const QVariant value = sourceModel()->index(row, column).data(itemcolumns::SortRole);
    if (!value.isValid())
        return {};
    if (value.type() == QVariant::String)
        return value.toString();
    return value.toDouble();
}

int ItemFilterModel::readTraitsOfRow(int row) const
{
    return sourceModel()->index(row, 0).data(itemcolumns::TraitsRole).toInt();
}

/// Reads what is needed, at most so many cells. True if all is there.
bool ItemFilterModel::readNeeded(int limit)
{
    return readValues(limit) && readAllTraits(limit);
}

bool ItemFilterModel::readAllTraits(int& limit)
{
    if (wantedTraits == 0 || traitsOfRow)
        return true;
    const int rowCount = sourceModel() ? sourceModel()->rowCount() : 0;
    for (auto row = static_cast<int>(readTraits.size()); row < rowCount; ++row) {
        if (limit-- == 0)
            return false;
        readTraits.push_back(readTraitsOfRow(row));
    }
    traitsOfRow = std::make_shared<const tableorder::Traits>(std::exchange(readTraits, {}));
    return true;
}

bool ItemFilterModel::readValues(int& limit)
{
    const int rowCount = sourceModel() ? sourceModel()->rowCount() : 0;
    for (const int column : getMissingColumns()) {
        Values& values = valuesOfColumn[column];
        values.reserve(static_cast<std::size_t>(rowCount));
        for (auto row = static_cast<int>(values.size()); row < rowCount; ++row) {
            if (limit-- == 0)
                return false;
            values.push_back(readValue(row, column));
        }
    }
    return true;
}

/// What is to be computed, with all that it needs.
ItemFilterModel::Work ItemFilterModel::makeWork()
{
    Work work{requestNumber, valuesNumber, {}, {}};
    work.task.rowCount = sourceModel() ? sourceModel()->rowCount() : 0;
    work.task.direction = sortDirection;
    work.task.words = words;
    work.task.texts = searchTexts;
    work.task.wantedTraits = wantedTraits;
    work.task.traits = traitsOfRow;
    work.task.sortColumn = sortColumn;
    const auto ranks = ranksOfColumn.find(sortColumn);
    if (ranks != ranksOfColumn.end())
        work.task.ranks = ranks->second;
    work.task.values.swap(valuesOfColumn);
    return work;
}

void ItemFilterModel::compute()
{
    computation.start([this, work = makeWork()](const BackgroundWork::IsStopped& /*isStopped*/) mutable {
        const auto done = std::make_shared<Work>(std::move(work));
        done->rows = tableorder::arrange(done->task);
        return [this, done] { take(*done); };
    });
}

void ItemFilterModel::take(const Work& work)
{
    keep(work);
    // Values that the request depends on have not changed either: that would have made another request of it.
    if (working && work.request == requestNumber)
        showRows(work.rows);
    else
        proceed();
}

/// Keeps for the next time what was made of values that are still the same.
void ItemFilterModel::keep(const Work& work)
{
    if (work.values != valuesNumber)
        return;
    if (work.task.ranks)
        ranksOfColumn[work.task.sortColumn] = work.task.ranks;
    if (work.task.texts)
        searchTexts = work.task.texts;
}

std::vector<int> ItemFilterModel::arrangeAtOnce()
{
    readNeeded(std::numeric_limits<int>::max());
    Work work = makeWork();
    if (isFiltering() || sortColumn >= 0) {
        rowsThisTurn += work.task.rowCount;
        startStep();
    }
    std::vector<int> rows = tableorder::arrange(work.task);
    keep(work);
    return rows;
}

/// Puts the rows that were asked for in place.
void ItemFilterModel::showRows(const std::vector<int>& rows)
{
    if (rows != sourceRows) {
        // A selection of many rows is kept row by row then, and not cell by cell.
        Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
        keepIndexes();
        putRows(rows);
        moveIndexes();
        Q_EMIT layoutChanged({}, VerticalSortHint);
    }
    setWorking(false);
}

void ItemFilterModel::setWorking(bool isWorking)
{
    if (working == isWorking)
        return;
    working = isWorking;
    Q_EMIT workingChanged(working);
}

// Views keep the current row and the selection by persistent indexes, which follow the rows of the source.
void ItemFilterModel::beginRows()
{
    Q_EMIT layoutAboutToBeChanged();
    keepIndexes();
}

void ItemFilterModel::keepIndexes()
{
    indexesBefore = persistentIndexList();
    sourcesBefore.clear();
    for (const QModelIndex& each : qAsConst(indexesBefore))
        sourcesBefore.emplace_back(mapToSource(each));
}

void ItemFilterModel::putRows(const std::vector<int>& rows)
{
    sourceRows = rows;
    places.assign(static_cast<std::size_t>(sourceModel() ? sourceModel()->rowCount() : 0), -1);
    int place = 0;
    for (const int row : sourceRows)
        places[static_cast<std::size_t>(row)] = place++;
}

void ItemFilterModel::endRows()
{
    moveIndexes();
    Q_EMIT layoutChanged();
}

void ItemFilterModel::moveIndexes()
{
    QModelIndexList indexes;
    for (const QPersistentModelIndex& source : sourcesBefore)
        indexes.append(mapFromSource(source));
    changePersistentIndexList(indexesBefore, indexes);
    indexesBefore.clear();
    sourcesBefore.clear();
}

/// The source has other rows. Those of a long table are shown as they are until the order is there.
void ItemFilterModel::renewRows()
{
    forgetColumns(0, std::numeric_limits<int>::max());
    if (isImmediate()) {
        putRows(arrangeAtOnce());
        return;
    }
    std::vector<int> rows(static_cast<std::size_t>(sourceModel()->rowCount()));
    std::iota(rows.begin(), rows.end(), 0);
    putRows(rows);
}

void ItemFilterModel::endSourceRows()
{
    renewRows();
    endRows();
    update();
}

void ItemFilterModel::endReset()
{
    renewRows();
    endResetModel();
    update();
}

void ItemFilterModel::forgetColumns(int first, int last)
{
    ++valuesNumber;
    const auto forget = [first, last](auto& columns) {
        columns.erase(columns.lower_bound(first), columns.upper_bound(last));
    };
    forget(ranksOfColumn);
    forget(valuesOfColumn);
    if (first <= itemcolumns::Type && last >= itemcolumns::Name)
        searchTexts.reset();
    if (hasTraitColumn(first, last)) {
        traitsOfRow.reset();
        readTraits.clear();
    }
}

void ItemFilterModel::takeChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                  const QVector<int>& roles)
{
    const bool isLook =
        !roles.isEmpty() && !roles.contains(itemcolumns::SortRole) && !roles.contains(Qt::DisplayRole);
    if (!isLook)
        forgetColumns(topLeft.column(), bottomRight.column());
    int first = rowCount();
    int last = -1;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        const int place = places[static_cast<std::size_t>(row)];
        if (place < 0)
            continue;
        first = std::min(first, place);
        last = std::max(last, place);
    }
    if (last >= 0)
        Q_EMIT dataChanged(index(first, topLeft.column()), index(last, bottomRight.column()), roles);
    if (!isLook && dependsOn(topLeft.column(), bottomRight.column()))
        update();
}

} // namespace orvel::desk
