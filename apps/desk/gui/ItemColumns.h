#pragma once

#include "host/delegates/CProjectItemModel.h"

#include <QVariant>

#include <optional>

namespace orvel::desk {

struct NumberFormat;

/// The columns of the item table, for points and sections alike.
///
/// A cell has a value: a text, a number (double, or int for counts), a bool in the report column, or nothing.
/// How it is shown follows from the column.
namespace itemcolumns {

enum Column {
    Name,
    Type,
    Severity, ///< the gravest kind of line about the item
    X,
    Y,
    Height,
    Sigma,
    Difference,
    Length,
    Stations,
    Residual,
    NormalisedResidual, ///< its size, as it is tested
    Redundancy,
    Lines,
    Source,
    SourceLine,
    Date,
    Note,
    Report
};
constexpr int kCount = Report + 1;

/// The item's LONGID, the value of a cell for sorting, and the row's traits.
enum Role { ItemIdRole = CProjectItemModel::ItemIdRole, SortRole, TraitsRole };

/// What a row can be chosen by, as bits of TraitsRole.
enum Trait {
    PointTrait = 1,
    SectionTrait = 2,
    OverLimitTrait = 4, ///< a section with an error
    OffTrait = 8        ///< a section that is switched off
};

/// The value of a cell that may have none: an empty text is none.
template<typename Number>
QVariant toVariant(const std::optional<Number>& number)
{
    return number ? QVariant(*number) : QVariant();
}
inline QVariant toVariant(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QString getTitle(int column);
/// What the column is called where it is stored.
QString getKey(int column);
/// What the column means, in a sentence.
QString getExplanation(int column);
/// The cell's data for a role of the usual ones or SortRole.
QVariant present(int column, const QVariant& value, const NumberFormat& format, int role);

} // namespace itemcolumns

} // namespace orvel::desk
