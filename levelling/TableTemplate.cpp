#include "levelling/TableTemplate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace levelling {

namespace {

// As in network files.
constexpr double kLargestNumber = 1e9;
constexpr double kSmallestPositive = 1e-9;
constexpr int kMostStations = 1000000;

constexpr std::array kNames{
    std::pair(ColumnRole::Skip, "skip"),     std::pair(ColumnRole::From, "from"),
    std::pair(ColumnRole::To, "to"),         std::pair(ColumnRole::Difference, "dh"),
    std::pair(ColumnRole::Length, "length"), std::pair(ColumnRole::Stations, "stations"),
    std::pair(ColumnRole::Sigma, "sigma"),   std::pair(ColumnRole::Date, "date"),
    std::pair(ColumnRole::Note, "note"),     std::pair(ColumnRole::Point, "point"),
    std::pair(ColumnRole::Height, "height"), std::pair(ColumnRole::X, "x"),
    std::pair(ColumnRole::Y, "y"),
};

bool isOfPoints(ColumnRole role)
{
    return role == ColumnRole::Point || role == ColumnRole::Height || role == ColumnRole::X ||
           role == ColumnRole::Y;
}

bool isOfSections(ColumnRole role)
{
    switch (role) {
    case ColumnRole::From:
    case ColumnRole::To:
    case ColumnRole::Difference:
    case ColumnRole::Length:
    case ColumnRole::Stations:
    case ColumnRole::Date:
        return true;
    default:
        return false;
    }
}

std::optional<double> toNumber(QString text, QChar decimal)
{
    text.replace(QChar(0x2212), QLatin1Char('-'));
    if (decimal != QLatin1Char('.')) {
        if (text.contains(QLatin1Char('.')))
            return std::nullopt;
        text.replace(decimal, QLatin1Char('.'));
    }
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok || !std::isfinite(number) || std::abs(number) > kLargestNumber)
        return std::nullopt;
    return number;
}

/// Reads the cells of one row.
class RowReader
{
public:
    RowReader(const TableTemplate& tableFormat, TableValues& rowValues)
        : format(tableFormat)
        , values(rowValues)
    {}

    void read(ColumnRole role, const QString& text)
    {
        switch (role) {
        case ColumnRole::Skip:
            break;
        case ColumnRole::From:
            takeName(role, text, values.from);
            break;
        case ColumnRole::To:
            takeName(role, text, values.to);
            break;
        case ColumnRole::Point:
            takeName(role, text, values.point);
            break;
        case ColumnRole::Date:
            values.date = text;
            break;
        case ColumnRole::Note:
            values.note = text;
            break;
        case ColumnRole::Difference:
            values.difference = readNumber(role, text, true);
            if (values.difference)
                *values.difference *= toMetres(format.differenceUnit);
            break;
        case ColumnRole::Length:
            values.length = readPositive(role, text);
            if (values.length && format.lengthUnit == LengthUnit::Metre)
                *values.length *= 1e-3;
            break;
        case ColumnRole::Stations:
            takeStations(text);
            break;
        case ColumnRole::Sigma:
            takeSigma(text);
            break;
        case ColumnRole::Height:
            values.height = readNumber(role, text, !format.has(ColumnRole::X));
            break;
        case ColumnRole::X:
            values.x = readNumber(role, text, !format.has(ColumnRole::Height));
            break;
        case ColumnRole::Y:
            values.y = readNumber(role, text, !format.has(ColumnRole::Height));
            break;
        }
    }

private:
    void addFault(ColumnRole role, CellFault::Kind kind, const QString& text, bool isFatal)
    {
        values.faults.push_back({role, kind, text, isFatal});
    }

    void takeName(ColumnRole role, const QString& text, QString& name)
    {
        name = text;
        if (name.isEmpty())
            addFault(role, CellFault::Kind::Missing, QString(), true);
    }

    void addNumberFault(ColumnRole role, const QString& text, bool isFatal)
    {
        const QChar other = format.decimal == QLatin1Char('.') ? QLatin1Char(',') : QLatin1Char('.');
        const bool isOther = toNumber(text, other).has_value() && !toNumber(text, format.decimal);
        addFault(role, isOther ? CellFault::Kind::OtherDecimal : CellFault::Kind::NoNumber, text, isFatal);
    }

    std::optional<double> readNumber(ColumnRole role, const QString& text, bool isNeeded)
    {
        if (text.isEmpty()) {
            if (isNeeded)
                addFault(role, CellFault::Kind::Missing, QString(), true);
            return std::nullopt;
        }
        const std::optional<double> number = toNumber(text, format.decimal);
        if (!number)
            addNumberFault(role, text, isNeeded);
        return number;
    }

    std::optional<double> readPositive(ColumnRole role, const QString& text)
    {
        const std::optional<double> number = readNumber(role, text, false);
        if (!number || *number >= kSmallestPositive)
            return number;
        addFault(role, CellFault::Kind::NoNumber, text, false);
        return std::nullopt;
    }

    void takeStations(const QString& text)
    {
        if (text.isEmpty())
            return;
        const std::optional<double> number = toNumber(text, format.decimal);
        if (number && *number >= 1 && *number <= kMostStations && std::floor(*number) == *number)
            values.stations = static_cast<int>(*number);
        else
            addFault(ColumnRole::Stations, CellFault::Kind::NoNumber, text, false);
    }

    void takeSigma(const QString& text)
    {
        const std::optional<double> zero = toNumber(text, format.decimal);
        if (format.isOfPoints() && zero && *zero == 0.0)
            values.sigma = 0.0;
        else
            values.sigma = readPositive(ColumnRole::Sigma, text);
    }

    const TableTemplate& format;
    TableValues& values;
};

std::optional<TemplateFault> findMissingRole(const TableTemplate& format)
{
    const auto needs = [&format](ColumnRole role) -> std::optional<TemplateFault> {
        if (format.has(role))
            return std::nullopt;
        return TemplateFault{TemplateFault::Kind::RoleMissing, role};
    };
    std::vector<ColumnRole> needed{ColumnRole::From, ColumnRole::To, ColumnRole::Difference};
    if (std::any_of(format.columns.begin(), format.columns.end(),
                    [](ColumnRole role) { return isOfPoints(role); })) {
        needed = {ColumnRole::Point};
        const bool hasPlace = format.has(ColumnRole::X) || format.has(ColumnRole::Y);
        if (!hasPlace || format.has(ColumnRole::Sigma))
            needed.push_back(ColumnRole::Height);
        if (hasPlace)
            needed.insert(needed.end(), {ColumnRole::X, ColumnRole::Y});
    }
    for (const ColumnRole role : needed) {
        if (const auto fault = needs(role))
            return fault;
    }
    return std::nullopt;
}

/// Whether a character can stand between cells.
bool separates(QChar character)
{
    const QString partsOfNumbers = QStringLiteral("+-.\u2212\"");
    return !character.isLetterOrNumber() && !partsOfNumbers.contains(character) &&
           (character.isPrint() || character == QLatin1Char('\t'));
}

} // namespace

double toMetres(DifferenceUnit unit)
{
    switch (unit) {
    case DifferenceUnit::Centimetre:
        return 1e-2;
    case DifferenceUnit::Millimetre:
        return 1e-3;
    case DifferenceUnit::Metre:
        break;
    }
    return 1.0;
}

QString getUnitName(DifferenceUnit unit)
{
    switch (unit) {
    case DifferenceUnit::Centimetre:
        return QStringLiteral("cm");
    case DifferenceUnit::Millimetre:
        return QStringLiteral("mm");
    case DifferenceUnit::Metre:
        break;
    }
    return QStringLiteral("m");
}

QString getUnitName(LengthUnit unit)
{
    return unit == LengthUnit::Kilometre ? QStringLiteral("km") : QStringLiteral("m");
}

bool TableTemplate::has(ColumnRole role) const
{
    return std::find(columns.begin(), columns.end(), role) != columns.end();
}

std::optional<TemplateFault> findFault(const TableTemplate& format)
{
    using Kind = TemplateFault::Kind;
    std::optional<ColumnRole> ofPoints;
    std::optional<ColumnRole> ofSections;
    for (auto role = format.columns.begin(); role != format.columns.end(); ++role) {
        if (*role != ColumnRole::Skip && std::find(format.columns.begin(), role, *role) != role)
            return TemplateFault{Kind::RoleRepeated, *role};
        if (isOfPoints(*role))
            ofPoints = *role;
        if (isOfSections(*role))
            ofSections = *role;
        if (ofPoints && ofSections)
            return TemplateFault{Kind::RolesMixed, *role};
    }
    if (const auto missing = findMissingRole(format))
        return missing;
    const std::vector<int>& widths = format.syntax.widths;
    if (!widths.empty() && widths.size() != format.columns.size())
        return TemplateFault{Kind::WidthCount, ColumnRole::Skip};
    if (widths.empty() && !separates(format.syntax.separator))
        return TemplateFault{Kind::SeparatorUnusable, ColumnRole::Skip};
    return std::nullopt;
}

QString getRoleName(ColumnRole role)
{
    const auto* const found =
        std::find_if(kNames.begin(), kNames.end(), [role](const auto& name) { return name.first == role; });
    return QString::fromLatin1(found->second);
}

std::optional<ColumnRole> findRole(const QString& name)
{
    const auto* const found = std::find_if(kNames.begin(), kNames.end(), [&name](const auto& known) {
        return name == QLatin1String(known.second);
    });
    if (found == kNames.end())
        return std::nullopt;
    return found->first;
}

const std::vector<ColumnRole>& getRoles()
{
    static const std::vector<ColumnRole> roles = [] {
        std::vector<ColumnRole> all;
        all.reserve(std::size(kNames));
        for (const auto& name : kNames)
            all.push_back(name.first);
        return all;
    }();
    return roles;
}

bool TableValues::isUsable() const
{
    return std::none_of(faults.begin(), faults.end(), [](const CellFault& fault) { return fault.isFatal; });
}

TableValues readValues(const TableTemplate& format, const QStringList& cells)
{
    TableValues values;
    RowReader reader(format, values);
    for (std::size_t column = 0; column < format.columns.size(); ++column)
        reader.read(format.columns[column], cells.value(static_cast<int>(column)));
    // Half of a place is none.
    if (values.x.has_value() != values.y.has_value() && values.isUsable())
        values.faults.push_back(
            {values.x ? ColumnRole::Y : ColumnRole::X, CellFault::Kind::Missing, QString(), true});
    if (format.isOfPoints() && values.isUsable() && !values.height && !values.x)
        values.faults.push_back({ColumnRole::Height, CellFault::Kind::Missing, QString(), true});
    return values;
}

} // namespace levelling
