#include "apps/desk/gui/PointTableModel.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/edit/CellEdit.h"
#include "apps/desk/edit/CellLook.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/runs/NumberTexts.h"
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

} // namespace

PointTableModel::PointTableModel(Document& openDocument, QObject* parent)
    : CProjectItemModel(&openDocument.getModel(), makeColumns(), parent)
    , document(openDocument)
{
    connect(&document, &Document::summaryChanged, this, &PointTableModel::showProtocols);
    connect(&document, &Document::surveyRulesChanged, this, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, itemcolumns::Report),
                               {Qt::DisplayRole, Qt::ToolTipRole});
    });
    connect(&document, &Document::outdatedChanged, this, &PointTableModel::showResults);
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
    const CModelElement* item = getItem(index);
    if (role == itemcolumns::ItemIdRole || !item)
        return CProjectItemModel::data(index, role);
    if (role == Qt::EditRole)
        return celledits::getText(getPoint(index), index.column());
    if (role == itemcolumns::TraitsRole)
        return int(itemcolumns::PointTrait);
    const QVariant look = celllook::present(role, false, isOutdated(index));
    if (look.isValid())
        return look;
    if (itemlook::isAsked(index.column(), role))
        return itemlook::present(item->getName(), document.getSummary().findWorst(item->getId()), role);
    return itemcolumns::present(index.column(), getValue(index), NumberFormat(document.getToleranceRules()),
                                role);
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
    if (!getItem(index))
        return itemFlags;
    const bool isEditable = celledits::isEditable(document, getPoint(index), index.column());
    return itemFlags | Qt::ItemNeverHasChildren | (isEditable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool PointTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !getItem(index) ||
        !celledits::isEditable(document, getPoint(index), index.column()))
        return false;
    const celledits::Outcome outcome =
        celledits::edit(document, getPoint(index), index.column(), value.toString());
    if (!outcome.isTaken)
        Q_EMIT editRefused(outcome.problem);
    return outcome.isTaken;
}

/// Whether a result stands in the cell that belongs to another state of the network.
bool PointTableModel::isOutdated(const QModelIndex& index) const
{
    const bool isResult = index.column() == itemcolumns::Height || index.column() == itemcolumns::Sigma;
    return isResult && document.areResultsOutdated() && getPoint(index).getResult() &&
           !getPoint(index).getPoint().fixed;
}

const LevellingPoint& PointTableModel::getPoint(const QModelIndex& index) const
{
    return static_cast<const LevellingPoint&>(*getItem(index));
}

QVariant PointTableModel::getValue(const QModelIndex& index) const
{
    const LevellingPoint& point = getPoint(index);
    const bool isFixed = point.getPoint().fixed;
    const auto& result = point.getResult();
    switch (index.column()) {
    case itemcolumns::Name:
        return point.getName();
    case itemcolumns::Type:
        return isFixed ? fixedPointText : pointText;
    case itemcolumns::Severity:
        return itemcolumns::toVariant(document.getSummary().findWorst(point.getId()));
    case itemcolumns::X:
        return itemcolumns::toVariant(point.getPosition().x);
    case itemcolumns::Y:
        return itemcolumns::toVariant(point.getPosition().y);
    case itemcolumns::Height:
        return itemcolumns::toVariant(point.getPosition().height);
    case itemcolumns::Sigma:
        return result && !isFixed ? QVariant(result->sigma) : QVariant();
    case itemcolumns::Lines:
        return document.getSummary().linesOfItem.value(point.getId());
    case itemcolumns::Source:
        return itemcolumns::toVariant(document.getSources().value(point.getPoint().source));
    case itemcolumns::SourceLine:
        return point.getPoint().line > 0 ? QVariant(point.getPoint().line) : QVariant();
    case itemcolumns::Report:
        return getProjectModel()->getPropertyValue(point, kWarningReportProperty);
    default:
        return QVariant();
    }
}

void PointTableModel::showResults()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, itemcolumns::Height), index(rowCount() - 1, itemcolumns::Sigma));
}

void PointTableModel::showProtocols()
{
    if (rowCount() == 0)
        return;
    const int last = rowCount() - 1;
    Q_EMIT dataChanged(index(0, itemcolumns::Severity), index(last, itemcolumns::Severity));
    Q_EMIT dataChanged(index(0, itemcolumns::Lines), index(last, itemcolumns::Report));
    Q_EMIT dataChanged(index(0, 0), index(last, itemcolumns::Report), itemlook::getRoles());
}

} // namespace orvel::desk
