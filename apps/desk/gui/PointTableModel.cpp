#include "apps/desk/gui/PointTableModel.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/gui/ItemColumns.h"
#include "host/model/ItemTypes.h"

namespace orvel::desk {

namespace {

QVector<CProjectItemModel::Column> makeColumns()
{
    QVector<CProjectItemModel::Column> columns;
    for (int column = 0; column < itemcolumns::kCount; ++column) {
        CProjectItemModel::Column description;
        description.title = itemcolumns::getTitle(column);
        columns.append(description);
    }
    CProjectItemModel::Column& report = columns[itemcolumns::Report];
    report.source = CProjectItemModel::Source::Property;
    report.propertyId = kWarningReportProperty;
    report.delegateId = kWarningReportDelegate;
    return columns;
}

QVariant toVariant(const std::optional<double>& number)
{
    return number ? QVariant(*number) : QVariant();
}

} // namespace

PointTableModel::PointTableModel(Document& openDocument, QObject* parent)
    : CProjectItemModel(&openDocument.getModel(), makeColumns(), parent)
    , document(openDocument)
{
    connect(&document, &Document::summaryChanged, this, &PointTableModel::showProtocols);
}

// The base class would count all rows for this.
QModelIndex PointTableModel::findPoint(LONGID id) const
{
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex first = index(row, 0);
        if (getItem(first)->getId() == id)
            return first;
    }
    return {};
}

QVariant PointTableModel::data(const QModelIndex& index, int role) const
{
    if (role == itemcolumns::ItemIdRole || !getItem(index))
        return CProjectItemModel::data(index, role);
    return itemcolumns::present(index.column(), getValue(index), role);
}

QVariant PointTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::ToolTipRole)
        return itemcolumns::getExplanation(section);
    return CProjectItemModel::headerData(section, orientation, role);
}

Qt::ItemFlags PointTableModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags itemFlags = CProjectItemModel::flags(index);
    return index.isValid() ? itemFlags | Qt::ItemNeverHasChildren : itemFlags;
}

QVariant PointTableModel::getValue(const QModelIndex& index) const
{
    const auto& point = static_cast<const LevellingPoint&>(*getItem(index));
    const bool isFixed = point.getPoint().fixed;
    const auto& result = point.getResult();
    switch (index.column()) {
    case itemcolumns::Name:
        return point.getName();
    case itemcolumns::Type:
        return isFixed ? fixedPointText : pointText;
    case itemcolumns::X:
        return toVariant(point.getPosition().x);
    case itemcolumns::Y:
        return toVariant(point.getPosition().y);
    case itemcolumns::Height:
        return toVariant(point.getPosition().height);
    case itemcolumns::Sigma:
        return result && !isFixed ? QVariant(result->sigma) : QVariant();
    case itemcolumns::Lines:
        return document.getSummary().linesOfItem.value(point.getId());
    case itemcolumns::Report:
        return getProjectModel()->getPropertyValue(point, kWarningReportProperty);
    default:
        return QVariant();
    }
}

void PointTableModel::showProtocols()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, itemcolumns::Lines), index(rowCount() - 1, itemcolumns::Report));
}

} // namespace orvel::desk
