#include "host/delegates/CProjectItemModel.h"

#include "host/enums/EnumData.h"
#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"

#include <algorithm>

namespace {

// Searching this many rows costs less than counting all rows of a large table.
constexpr int kRowShiftLimit = 1000;

bool isBelow(const CModelElement* item, const CModelElement* ancestor)
{
    while (item != nullptr && item != ancestor)
        item = item->getParent();
    return item != nullptr;
}

void collect(CModelElement& item, std::vector<CModelElement*>& items)
{
    items.push_back(&item);
    for (const auto& child : item.getChildren())
        collect(*child, items);
}

} // namespace

CProjectItemModel::CProjectItemModel(CProjectModel* itemsModel, QVector<Column> tableColumns, QObject* parent)
    : QAbstractTableModel(parent)
    , projectModel(itemsModel)
    , columns(std::move(tableColumns))
{
    connect(projectModel, &CProjectModel::itemAdded, this, &CProjectItemModel::showAddition);
    connect(projectModel, &CProjectModel::itemAboutToBeRemoved, this, &CProjectItemModel::beginRemoval);
    connect(projectModel, &CProjectModel::itemRemoved, this, &CProjectItemModel::endRemoval);
    connect(projectModel, &CProjectModel::itemChanged, this, &CProjectItemModel::showChange);
    connect(projectModel, &CProjectModel::itemsAboutToBeReplaced, this, &CProjectItemModel::beginReplacement);
    connect(projectModel, &CProjectModel::itemsReplaced, this, &CProjectItemModel::endReplacement);
    readItems();
}

CProjectItemModel::~CProjectItemModel() = default;

CModelElement* CProjectItemModel::getItem(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this || index.row() >= rowCount())
        return nullptr;
    return items[static_cast<std::size_t>(index.row())];
}

CProjectModel* CProjectItemModel::getProjectModel() const
{
    return projectModel;
}

QModelIndex CProjectItemModel::getIndex(LONGID id, int column) const
{
    const int row = getRow(projectModel->findItemAnywhere(id));
    return row < 0 ? QModelIndex() : index(row, column);
}

int CProjectItemModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(items.size());
}

int CProjectItemModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns.size();
}

QVariant CProjectItemModel::data(const QModelIndex& index, int role) const
{
    const CModelElement* item = getItem(index);
    if (item == nullptr)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return getValue(*item, columns[index.column()]);
    case ItemIdRole:
        return item->getId();
    default:
        return {};
    }
}

bool CProjectItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    CModelElement* item = getItem(index);
    if (item == nullptr || role != Qt::EditRole)
        return false;
    const Column& column = columns[index.column()];
    return column.source == Source::Property &&
           projectModel->setPropertyValue(*item, column.propertyId, value);
}

QVariant CProjectItemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    if (isTitle && section >= 0 && section < columns.size())
        return columns[section].title;
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags CProjectItemModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags readOnlyFlags = QAbstractTableModel::flags(index);
    const CModelElement* item = getItem(index);
    if (item == nullptr || columns[index.column()].source != Source::Property)
        return readOnlyFlags;
    const Column& column = columns[index.column()];
    const bool isEditable =
        column.delegateId != 0 || !projectModel->isPropertyReadonly(*item, column.propertyId);
    return isEditable ? readOnlyFlags | Qt::ItemIsEditable : readOnlyFlags;
}

void CProjectItemModel::readItems()
{
    items.reserve(projectModel->getTopLevelItems().size());
    for (const auto& item : projectModel->getTopLevelItems())
        collect(*item, items);
}

void CProjectItemModel::beginReplacement()
{
    beginResetModel();
    items.clear();
    countedRows.clear();
    rowShift = 0;
}

void CProjectItemModel::endReplacement()
{
    readItems();
    endResetModel();
}

void CProjectItemModel::showAddition(LONGID id)
{
    CModelElement* item = projectModel->findItemAnywhere(id);
    if (item == nullptr || getRow(item) >= 0)
        return; // came with an item above it
    std::vector<CModelElement*> newItems;
    collect(*item, newItems);
    const int count = static_cast<int>(newItems.size());
    const int row = getInsertionRow(*item);
    const bool isAtEnd = row == rowCount();
    beginInsertRows({}, row, row + count - 1);
    items.insert(items.begin() + row, newItems.begin(), newItems.end());
    for (int i = 0; i < count; ++i)
        countedRows.insert(newItems[static_cast<std::size_t>(i)], row + i);
    if (!isAtEnd)
        rowShift += count;
    endInsertRows();
}

void CProjectItemModel::beginRemoval(LONGID id)
{
    const CModelElement* item = projectModel->findItemAnywhere(id);
    const int row = getRow(item);
    if (row < 0)
        return;
    removing = true;
    beginRemoveRows({}, row, row);
    items.erase(items.begin() + row);
    countedRows.remove(item);
    ++rowShift;
}

void CProjectItemModel::endRemoval()
{
    if (!removing)
        return;
    removing = false;
    endRemoveRows();
}

void CProjectItemModel::showChange(LONGID id)
{
    const int row = getRow(projectModel->findItemAnywhere(id));
    if (row >= 0)
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

// An item is always added as the last of its siblings. So it stands behind the sibling before it and all that
// is below that one, or at once behind its parent.
int CProjectItemModel::getInsertionRow(const CModelElement& item) const
{
    const CModelElement* parent = item.getParent();
    if (items.empty() || parent == nullptr || isBelow(items.back(), parent))
        return rowCount();
    const CModelElement::Children& siblings = parent->getChildren();
    const CModelElement* before = siblings.size() > 1 ? siblings[siblings.size() - 2].get() : parent;
    int row = getRow(before) + 1;
    while (before != parent && row < rowCount() && isBelow(items[static_cast<std::size_t>(row)], before))
        ++row;
    return row;
}

int CProjectItemModel::getRow(const CModelElement* item) const
{
    const int nextRow = latestRow + 1 < rowCount() ? latestRow + 1 : 0;
    if (nextRow < rowCount() && items[static_cast<std::size_t>(nextRow)] == item) {
        latestRow = nextRow;
        return latestRow;
    }
    if (rowShift > kRowShiftLimit || countedRows.isEmpty())
        countRows();
    const auto counted = countedRows.constFind(item);
    if (counted == countedRows.constEnd())
        return -1;
    const auto first = items.begin() + std::max(0, std::min(counted.value() - rowShift, rowCount()));
    const auto last = items.begin() + std::min(counted.value() + rowShift + 1, rowCount());
    const auto found = std::find(first, last, item);
    if (found == last)
        return -1;
    latestRow = static_cast<int>(found - items.begin());
    return latestRow;
}

void CProjectItemModel::countRows() const
{
    countedRows.clear();
    countedRows.reserve(rowCount());
    int row = 0;
    for (const CModelElement* item : items)
        countedRows.insert(item, row++);
    rowShift = 0;
}

QVariant CProjectItemModel::getValue(const CModelElement& item, const Column& column) const
{
    switch (column.source) {
    case Source::Name:
        return item.getName();
    case Source::Type:
        return QString::fromStdWString(getEnumData(item.getType()).getTextSingular());
    case Source::Property:
        return projectModel->getPropertyValue(item, column.propertyId);
    }
    return {};
}
