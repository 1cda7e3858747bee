#pragma once

#include <QString>

namespace orvel::desk {

namespace spreadsheet {

/// Text of a file as it may stand in a cell: with an apostrophe before what a spreadsheet would take for a
/// formula. A number stays as it is.
QString guard(const QString& text);

} // namespace spreadsheet

} // namespace orvel::desk
