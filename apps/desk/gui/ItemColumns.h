#pragma once

#include "host/delegates/CProjectItemModel.h"

#include <QVariant>

namespace orvel::desk {

/// The columns of the item table, for points and sections alike.
///
/// A cell has a value: a text, a number (double, or int for counts), a bool in the report column, or nothing.
/// How it is shown follows from the column.
namespace itemcolumns {

enum Column { Name, Type, X, Y, Height, Sigma, Difference, Residual, Lines, Report };
constexpr int kCount = Report + 1;

/// The item's LONGID, and the value of a cell for sorting.
enum Role { ItemIdRole = CProjectItemModel::ItemIdRole, SortRole };

QString getTitle(int column);
/// What the column means, in a sentence.
QString getExplanation(int column);
/// The cell's data for a role of the usual ones or SortRole.
QVariant present(int column, const QVariant& value, int role);

} // namespace itemcolumns

} // namespace orvel::desk
