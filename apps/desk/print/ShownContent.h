#pragma once

#include "apps/desk/reports/ReportContent.h"

namespace orvel::desk {

class ItemTable;
class ProtocolTreeModel;

/// What windows show, as tables to be printed.
namespace showncontent {

/// The rows of a table as they are shown: filtered, sorted, with the columns in the order in which they
/// stand. Columns that show no text are left out.
ReportTable makeTable(const ItemTable& items);

/// The lines of a protocol as its panel shows them; stages become headings.
ReportTable makeLines(const ProtocolTreeModel& lines);

} // namespace showncontent

} // namespace orvel::desk
