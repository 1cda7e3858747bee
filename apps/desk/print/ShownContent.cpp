#include "apps/desk/print/ShownContent.h"

#include "apps/desk/Desk.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"

#include <QHeaderView>
#include <QTableView>

namespace orvel::desk {

namespace showncontent {

namespace {

using Row = ReportTable::Row;

/// Whether some row has a text there.
bool hasText(const QAbstractItemModel& model, int column)
{
    for (int row = 0; row < model.rowCount(); ++row) {
        if (!model.index(row, column).data().toString().isEmpty())
            return true;
    }
    return false;
}

/// The columns that somebody sees texts in, from left to right.
std::vector<int> listColumns(const QTableView& view)
{
    const QHeaderView& header = *view.horizontalHeader();
    std::vector<int> columns;
    for (int position = 0; position < header.count(); ++position) {
        const int column = header.logicalIndex(position);
        if (!header.isSectionHidden(column) && hasText(*view.model(), column))
            columns.push_back(column);
    }
    return columns;
}

QString nameKind(COVMessage::MessageType kind)
{
    if (kind == COVMessage::Error)
        return Desk::tr("ошибка");
    return kind == COVMessage::Warning ? Desk::tr("предупреждение") : Desk::tr("сообщение");
}

void addLines(const ProtocolTreeModel& model, const QModelIndex& branch, ReportTable& table)
{
    for (int row = 0; row < model.rowCount(branch); ++row) {
        const QModelIndex index = model.index(row, 0, branch);
        if (const ProtocolLine* line = model.getLine(index)) {
            table.rows.push_back({{nameKind(line->kind), line->text},
                                  line->kind == COVMessage::Error ? Row::Kind::Marked : Row::Kind::Plain});
            continue;
        }
        // Kinds stand beside each line.
        const bool isStage = model.getLine(model.index(0, 0, index)) == nullptr;
        if (isStage)
            table.rows.push_back({{index.data().toString()}, Row::Kind::Heading});
        addLines(model, index, table);
    }
}

} // namespace

ReportTable makeTable(const QTableView& view)
{
    const QAbstractItemModel& model = *view.model();
    ReportTable table;
    const std::vector<int> columns = listColumns(view);
    for (const int column : columns) {
        const int alignment = model.index(0, column).data(Qt::TextAlignmentRole).toInt();
        table.columns.push_back(
            {model.headerData(column, Qt::Horizontal).toString(), (alignment & Qt::AlignRight) == 0});
    }
    for (int row = 0; row < model.rowCount(); ++row) {
        Row shown;
        for (const int column : columns)
            shown.cells.append(model.index(row, column).data().toString());
        table.rows.push_back(std::move(shown));
    }
    return table;
}

ReportTable makeLines(const ProtocolTreeModel& lines)
{
    ReportTable table;
    table.columns = {{Desk::tr("Вид"), true}, {Desk::tr("Строка протокола"), true}};
    addLines(lines, {}, table);
    return table;
}

} // namespace showncontent

} // namespace orvel::desk
