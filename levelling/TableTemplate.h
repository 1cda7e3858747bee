#pragma once

#include "formats/TextTable.h"

#include <optional>
#include <vector>

namespace levelling {

/// What a column of a text file holds.
enum class ColumnRole {
    Skip,
    From,
    To,
    Difference,
    Length,
    Stations,
    Sigma,
    Date,
    Note,
    Point,
    Height,
    X,
    Y
};

enum class DifferenceUnit { Metre, Centimetre, Millimetre };
enum class LengthUnit { Kilometre, Metre };

/// The name of a unit as template files have it: "m", "cm", "mm", "km".
QString getUnitName(DifferenceUnit unit);
QString getUnitName(LengthUnit unit);
double toMetres(DifferenceUnit unit);

/// How a text file is to be read: as a table of measured sections, or as one of known points.
///
/// Standard deviations are in mm, heights and coordinates in m.
struct TableTemplate
{
    QString name;
    formats::TableSyntax syntax;
    QChar decimal = QLatin1Char('.');
    std::vector<ColumnRole> columns;
    DifferenceUnit differenceUnit = DifferenceUnit::Metre;
    LengthUnit lengthUnit = LengthUnit::Kilometre;

    bool has(ColumnRole role) const;
    /// A table of known points, and not one of sections.
    bool isOfPoints() const { return has(ColumnRole::Point); }
};

/// What keeps files from being read by a template.
struct TemplateFault
{
    enum class Kind {
        RoleMissing,      ///< a table needs the role
        RoleRepeated,     ///< two columns have the role
        RolesMixed,       ///< the role is of another kind of table than the others
        WidthCount,       ///< there are not as many widths as columns
        SeparatorUnusable ///< a letter, a digit or a part of numbers cannot stand between cells
    };

    Kind kind = Kind::RoleMissing;
    ColumnRole role = ColumnRole::Skip;
};

/// The first fault; none if files can be read.
std::optional<TemplateFault> findFault(const TableTemplate& format);

/// The name of a role as template files have it: "from", "dh".
QString getRoleName(ColumnRole role);
std::optional<ColumnRole> findRole(const QString& name);
/// All of them, in the order in which they are offered.
const std::vector<ColumnRole>& getRoles();

/// Why a cell cannot be used.
struct CellFault
{
    enum class Kind {
        Missing,
        NoNumber,    ///< not a number, or none of such a quantity
        OtherDecimal ///< a number with another decimal sign
    };

    ColumnRole role = ColumnRole::Skip;
    Kind kind = Kind::Missing;
    QString text;
    /// The row says nothing without it.
    bool isFatal = false;
};

/// What a row of the table tells, in the units of a network.
struct TableValues
{
    QString from;
    QString to;
    QString point;
    QString date;
    QString note;
    std::optional<double> difference; ///< m
    std::optional<double> length;     ///< km
    std::optional<int> stations;
    std::optional<double> sigma;  ///< mm; zero only for the height of a point that is held
    std::optional<double> height; ///< m
    std::optional<double> x;      ///< m
    std::optional<double> y;      ///< m
    /// In the order of the columns.
    std::vector<CellFault> faults;

    bool isUsable() const;
};

TableValues readValues(const TableTemplate& format, const QStringList& cells);

} // namespace levelling
