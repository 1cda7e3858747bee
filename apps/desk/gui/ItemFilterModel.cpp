#include "apps/desk/gui/ItemFilterModel.h"

#include "apps/desk/gui/ItemColumns.h"

#include <algorithm>

namespace orvel::desk {

namespace {

template<typename T, typename Read>
void fill(std::vector<T>& list, int first, int last, Read read)
{
    list.reserve(list.size() + static_cast<std::size_t>(last - first) + 1);
    for (int row = first; row <= last; ++row)
        list.push_back(read(row));
}

/// Puts what is read of the rows from `first` to `last` into their places.
template<typename T, typename Read>
void insert(std::vector<T>& list, int first, int last, Read read)
{
    std::vector<T> inserted;
    fill(inserted, first, last, read);
    list.insert(list.begin() + first, std::make_move_iterator(inserted.begin()),
                std::make_move_iterator(inserted.end()));
}

} // namespace

// The locale of a system that was told none sorts by code alone.
ItemFilterModel::ItemFilterModel(QObject* parent)
    : QSortFilterProxyModel(parent)
    , collator(QLocale().language() == QLocale::C ? QLocale(QLocale::Russian) : QLocale())
{
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    setDynamicSortFilter(true);
}

void ItemFilterModel::setSourceModel(QAbstractItemModel* table)
{
    if (sourceModel())
        sourceModel()->disconnect(this);
    forgetRows();
    // Before the base class connects, which sorts and filters on these signals.
    if (table) {
        connect(table, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex&, int first, int last) { takeInserted(first, last); });
        connect(table, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex&, int first, int last) { takeRemoved(first, last); });
        connect(table, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                    takeChanged(topLeft.row(), bottomRight.row());
                });
        connect(table, &QAbstractItemModel::modelReset, this, &ItemFilterModel::forgetRows);
        connect(table, &QAbstractItemModel::layoutChanged, this, &ItemFilterModel::forgetRows);
        connect(table, &QAbstractItemModel::rowsMoved, this, &ItemFilterModel::forgetRows);
    }
    QSortFilterProxyModel::setSourceModel(table);
}

void ItemFilterModel::setSearchText(const QString& text)
{
    words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // Not invalidateFilter(), which takes rows away or adds them one by one.
    invalidate();
}

bool ItemFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& /*sourceParent*/) const
{
    if (words.isEmpty())
        return true;
    const SearchTexts& texts = getSearchTexts(sourceRow);
    return std::all_of(words.begin(), words.end(), [&texts](const QString& word) {
        return texts.name.contains(word, Qt::CaseInsensitive) ||
               texts.kind.contains(word, Qt::CaseInsensitive);
    });
}

bool ItemFilterModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const SortKey& leftKey = getSortKey(left);
    const SortKey& rightKey = getSortKey(right);
    const bool isLeftEmpty = std::holds_alternative<std::monostate>(leftKey);
    const bool isRightEmpty = std::holds_alternative<std::monostate>(rightKey);
    // Empty cells stand last in either order.
    if (isLeftEmpty != isRightEmpty)
        return isRightEmpty == (sortOrder() == Qt::AscendingOrder);
    return leftKey < rightKey;
}

ItemFilterModel::SearchTexts ItemFilterModel::readSearchTexts(int row) const
{
    const auto textOf = [this, row](int column) {
        return sourceModel()->index(row, column).data(Qt::DisplayRole).toString();
    };
    return {textOf(itemcolumns::Name), textOf(itemcolumns::Type)};
}

ItemFilterModel::SortKey ItemFilterModel::readSortKey(int row, int column) const
{
    const QVariant value = sourceModel()->index(row, column).data(itemcolumns::SortRole);
    if (!value.isValid())
        return {};
    return value.type() == QVariant::String ? getTextKey(value.toString()) : SortKey(value.toDouble());
}

ItemFilterModel::SortKey ItemFilterModel::getTextKey(const QString& text) const
{
    if (text != lastText || std::holds_alternative<std::monostate>(lastTextKey)) {
        lastText = text;
        lastTextKey = collator.sortKey(text);
    }
    return lastTextKey;
}

const ItemFilterModel::SearchTexts& ItemFilterModel::getSearchTexts(int row) const
{
    if (searchTexts.empty())
        fill(searchTexts, 0, sourceModel()->rowCount() - 1,
             [this](int each) { return readSearchTexts(each); });
    return searchTexts[static_cast<std::size_t>(row)];
}

const ItemFilterModel::SortKey& ItemFilterModel::getSortKey(const QModelIndex& index) const
{
    const int column = index.column();
    if (sortKeyColumn != column) {
        sortKeyColumn = column;
        sortKeys.clear();
        fill(sortKeys, 0, sourceModel()->rowCount() - 1,
             [this, column](int row) { return readSortKey(row, column); });
    }
    return sortKeys[static_cast<std::size_t>(index.row())];
}

void ItemFilterModel::takeInserted(int first, int last)
{
    if (!searchTexts.empty())
        insert(searchTexts, first, last, [this](int row) { return readSearchTexts(row); });
    if (sortKeyColumn >= 0)
        insert(sortKeys, first, last, [this](int row) { return readSortKey(row, sortKeyColumn); });
}

void ItemFilterModel::takeRemoved(int first, int last)
{
    if (!searchTexts.empty())
        searchTexts.erase(searchTexts.begin() + first, searchTexts.begin() + last + 1);
    if (sortKeyColumn >= 0)
        sortKeys.erase(sortKeys.begin() + first, sortKeys.begin() + last + 1);
}

void ItemFilterModel::takeChanged(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto place = static_cast<std::size_t>(row);
        if (!searchTexts.empty())
            searchTexts[place] = readSearchTexts(row);
        if (sortKeyColumn >= 0)
            sortKeys[place] = readSortKey(row, sortKeyColumn);
    }
}

void ItemFilterModel::forgetRows()
{
    searchTexts.clear();
    sortKeys.clear();
    sortKeyColumn = -1;
}

} // namespace orvel::desk
