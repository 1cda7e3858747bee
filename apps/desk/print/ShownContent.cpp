#include "apps/desk/print/ShownContent.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"

#include <algorithm>

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
std::vector<int> listColumns(const ItemTable& items)
{
    std::vector<int> columns = items.getColumns().listShown();
    columns.erase(std::remove_if(columns.begin(), columns.end(),
                                 [&items](int column) { return !hasText(*items.model(), column); }),
                  columns.end());
    return columns;
}

void addLines(const ProtocolTreeModel& model, const QModelIndex& branch, ReportTable& table)
{
    for (int row = 0; row < model.rowCount(branch); ++row) {
        const QModelIndex index = model.index(row, 0, branch);
        if (const ProtocolLine* line = model.getLine(index)) {
            table.rows.push_back({{itemlook::nameSeverity(line->kind), line->text},
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

ReportTable makeTable(const ItemTable& items)
{
    const QAbstractItemModel& model = *items.model();
    ReportTable table;
    const std::vector<int> columns = listColumns(items);
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
