#include "apps/desk/gui/ItemFilterModel.h"

#include "apps/desk/gui/ItemColumns.h"

#include <algorithm>

ItemFilterModel::ItemFilterModel(QObject* parent) : QSortFilterProxyModel(parent)
{
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    setSortRole(itemcolumns::SortRole);
    setDynamicSortFilter(true);
}

void ItemFilterModel::setSearchText(const QString& text)
{
    words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
}

bool ItemFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (words.isEmpty())
        return true;
    const auto textOf = [&](int column) {
        return sourceModel()->index(sourceRow, column, sourceParent).data(Qt::DisplayRole).toString();
    };
    const QString text = textOf(itemcolumns::Name) + QLatin1Char(' ') + textOf(itemcolumns::Type);
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

bool ItemFilterModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const QVariant leftValue = left.data(itemcolumns::SortRole);
    const QVariant rightValue = right.data(itemcolumns::SortRole);
    // Empty cells stand last in either order.
    if (leftValue.isValid() != rightValue.isValid())
        return leftValue.isValid() == (sortOrder() == Qt::AscendingOrder);
    if (left.column() == itemcolumns::Name || left.column() == itemcolumns::Type)
        return collator.compare(leftValue.toString(), rightValue.toString()) < 0;
    return leftValue.toDouble() < rightValue.toDouble();
}
