#include "apps/desk/gui/TablePreviewModel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/templates/TemplateTexts.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace orvel::desk {

namespace {

using formats::TableRow;

/// A colour of the palette with a part of red: seen on light and dark ground alike.
QColor getFaultColour()
{
    constexpr double share = 0.3;
    const QColor ground = QGuiApplication::palette().color(QPalette::Base);
    const QColor red(220, 50, 47);
    const auto mix = [](int from, int to) { return static_cast<int>(from + (to - from) * share); };
    return {mix(ground.red(), red.red()), mix(ground.green(), red.green()), mix(ground.blue(), red.blue())};
}

QString describeSkipped(TableRow::Kind kind)
{
    switch (kind) {
    case TableRow::Kind::Heading:
        return Desk::tr("шапка, пропускается");
    case TableRow::Kind::Empty:
        return Desk::tr("пустая, пропускается");
    case TableRow::Kind::Comment:
        return Desk::tr("комментарий, пропускается");
    case TableRow::Kind::OpenQuote:
        return Desk::tr("не прочитана: кавычка не закрыта");
    case TableRow::Kind::Cells:
        break;
    }
    return QString();
}

} // namespace

void TablePreviewModel::setContent(const QByteArray& beginning)
{
    content = beginning;
    readRows();
}

void TablePreviewModel::setFormat(const levelling::TableTemplate& newFormat)
{
    format = newFormat;
    readRows();
}

int TablePreviewModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

int TablePreviewModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : FirstCell + cellColumns;
}

QVariant TablePreviewModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const Row& row = rows[static_cast<std::size_t>(index.row())];
    const Cell cell = getCell(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        if (cell.fault.isEmpty())
            return cell.text;
        return cell.text.isEmpty() ? QStringLiteral("⚠ %1").arg(cell.fault)
                                   : QStringLiteral("%1 ⚠ %2").arg(cell.text, cell.fault);
    case Qt::ToolTipRole:
        return row.remark.toHtmlEscaped();
    case Qt::BackgroundRole:
        if (!cell.fault.isEmpty() || (row.state == State::Refused && index.column() == Remark))
            return getFaultColour();
        return QVariant();
    case Qt::ForegroundRole: {
        const auto column = static_cast<std::size_t>(index.column() - FirstCell);
        const bool isRead = index.column() == Remark || column >= format.columns.size() ||
                            format.columns[column] != levelling::ColumnRole::Skip;
        if (row.state == State::Skipped || !isRead)
            return QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
        return QVariant();
    }
    default:
        return QVariant();
    }
}

QVariant TablePreviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Vertical)
        return QString::number(rows[static_cast<std::size_t>(section)].line);
    return section == Remark ? Desk::tr("Строка") : Desk::tr("Столбец %1").arg(section);
}

void TablePreviewModel::readRows()
{
    beginResetModel();
    rows.clear();
    usableRows = 0;
    refusedRows = 0;
    cellColumns = static_cast<int>(format.columns.size());
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    formats::TextTable table(buffer, format.syntax);
    TableRow tableRow;
    while (static_cast<int>(rows.size()) < kMostRows && table.readRow(tableRow))
        rows.push_back(makeRow(tableRow));
    // The last line may be cut off.
    if (content.size() >= kBeginning && static_cast<int>(rows.size()) < kMostRows && rows.size() > 1)
        rows.pop_back();
    for (const Row& row : rows)
        cellColumns = std::max(cellColumns, static_cast<int>(row.cells.size()));
    endResetModel();
}

TablePreviewModel::Row TablePreviewModel::makeRow(const TableRow& tableRow)
{
    Row row;
    row.line = tableRow.line;
    row.remark = describeSkipped(tableRow.kind);
    for (const QString& cell : tableRow.cells)
        row.cells.push_back({cell, QString()});
    if (tableRow.kind == TableRow::Kind::OpenQuote) {
        row.state = State::Refused;
        ++refusedRows;
        return row;
    }
    if (tableRow.kind != TableRow::Kind::Cells) {
        row.state = State::Skipped;
        return row;
    }
    const levelling::TableValues values = levelling::readValues(format, tableRow.cells);
    QStringList remarks;
    for (const levelling::CellFault& fault : values.faults) {
        const QString text = templatetexts::describeFault(fault);
        remarks.append(QStringLiteral("%1: %2").arg(templatetexts::describeRole(fault.role), text));
        const auto column = static_cast<std::size_t>(
            std::find(format.columns.begin(), format.columns.end(), fault.role) - format.columns.begin());
        if (row.cells.size() <= column)
            row.cells.resize(column + 1);
        row.cells[column].fault = text;
    }
    const bool isRead = !levelling::findFault(format).has_value();
    if (!values.isUsable()) {
        row.state = State::Refused;
        ++refusedRows;
        row.remark = Desk::tr("не прочитана: %1").arg(remarks.join(QStringLiteral("; ")));
    } else {
        usableRows += isRead ? 1 : 0;
        row.remark = remarks.isEmpty() ? (isRead ? Desk::tr("годится") : QString())
                                       : Desk::tr("годится, но %1").arg(remarks.join(QStringLiteral("; ")));
    }
    return row;
}

TablePreviewModel::Cell TablePreviewModel::getCell(const QModelIndex& index) const
{
    const Row& row = rows[static_cast<std::size_t>(index.row())];
    if (index.column() == Remark)
        return {row.remark, QString()};
    const auto column = static_cast<std::size_t>(index.column() - FirstCell);
    return column < row.cells.size() ? row.cells[column] : Cell();
}

} // namespace orvel::desk
