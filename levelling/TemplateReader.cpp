#include "levelling/TemplateReader.h"

#include "levelling/GkfReader.h"
#include "levelling/SectionKey.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <utility>

namespace levelling {

namespace {

// A middle value says something of fewer rows hardly.
constexpr std::size_t kRowsForUnits = 3;
// What lies beyond these is, in the middle of a table, in another unit.
constexpr double kLargestDifference = 100.0;  // m
constexpr double kSmallestDifference = 0.01;  // m, where the unit is a smaller one
constexpr double kLargestLength = 50.0;       // km
constexpr double kSmallestLength = 0.005;     // km, where the unit is the metre
constexpr double kDifferencePerStation = 5.0; // m, the longest staff

double getMedian(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Counts a skipped row, the first ones with their lines.
void note(qint64 line, qint64& count, std::vector<qint64>& lines)
{
    ++count;
    if (lines.size() < TemplateReader::kListedLines)
        lines.push_back(line);
}

QString toText(double number)
{
    return QString::number(number, 'g', 6);
}

} // namespace

TableResult TemplateReader::read(QIODevice& device, const TableTemplate& format, const Parameters& parameters,
                                 const std::function<bool()>& isStopped)
{
    TemplateReader reader(device, format, parameters, isStopped);
    reader.readTable();
    return std::move(reader.result);
}

TableResult TemplateReader::readFile(QFile& file, const TableTemplate& format, const Parameters& parameters,
                                     const std::function<bool()>& isStopped)
{
    TableResult result;
    if (file.isOpen())
        result = read(file, format, parameters, isStopped);
    if (file.error() != QFileDevice::NoError) {
        result = TableResult();
        result.fatal = Problem{ProblemKind::FileNotReadable, Severity::Fatal, 0, {file.errorString()}};
    }
    return result;
}

TemplateReader::TemplateReader(QIODevice& device, const TableTemplate& tableFormat,
                               const Parameters& parameters, const std::function<bool()>& isStopped)
    : format(tableFormat)
    , table(device, tableFormat.syntax, isStopped)
{
    result.network.parameters = parameters;
}

void TemplateReader::readTable()
{
    formats::TableRow row;
    while (!result.fatal && table.readRow(row)) {
        takeRow(row);
        checkLimits();
    }
    switch (table.getFailure()) {
    case formats::TextTable::Failure::None:
        break;
    case formats::TextTable::Failure::Stopped:
        result = TableResult();
        result.isStopped = true;
        return;
    case formats::TextTable::Failure::FileTooLarge:
        fail(ProblemKind::FileTooLarge, table.getLine(), formats::TextTable::kLargestFile >> 20);
        break;
    case formats::TextTable::Failure::LineTooLong:
        fail(ProblemKind::LineTooLong, table.getLine(), formats::TextTable::kLongestLine);
        break;
    }
    if (result.fatal)
        return;
    completeObservedHeights();
    tellOfRepeatedRows();
    if (result.fatal)
        return;
    checkUnits();
    tellOfText();
    if (result.counts.used == 0)
        addProblem(ProblemKind::NoRows, Severity::Error, 0);
    std::stable_sort(result.problems.begin(), result.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
}

void TemplateReader::takeRow(const formats::TableRow& row)
{
    switch (row.kind) {
    case formats::TableRow::Kind::Heading:
        ++result.counts.headings;
        return;
    case formats::TableRow::Kind::Empty:
        note(row.line, result.counts.empty, result.counts.emptyLines);
        return;
    case formats::TableRow::Kind::Comment:
        note(row.line, result.counts.comments, result.counts.commentLines);
        return;
    case formats::TableRow::Kind::OpenQuote:
        ++result.counts.refused;
        addProblem(ProblemKind::RowQuoteOpen, Severity::Error, row.line);
        return;
    case formats::TableRow::Kind::Cells:
        break;
    }
    const auto columns = static_cast<int>(format.columns.size());
    const bool isLong = std::any_of(row.cells.begin() + std::min(columns, row.cells.size()), row.cells.end(),
                                    [](const QString& cell) { return !cell.isEmpty(); });
    if (isLong && ++longRows == 1)
        longRowLine = row.line;

    const TableValues values = readValues(format, row.cells);
    if (!values.isUsable()) {
        ++result.counts.refused;
        refuse(row.line, *std::find_if(values.faults.begin(), values.faults.end(),
                                       [](const CellFault& fault) { return fault.isFatal; }));
    } else if (format.isOfPoints()) {
        addPoint(row.line, values);
    } else {
        addSection(row.line, values);
    }
}

void TemplateReader::refuse(qint64 line, const CellFault& fault)
{
    const QString role = getRoleName(fault.role);
    switch (fault.kind) {
    case CellFault::Kind::Missing:
        addProblem(ProblemKind::RowCellMissing, Severity::Error, line, {role});
        break;
    case CellFault::Kind::NoNumber:
        addProblem(ProblemKind::RowCellUnusable, Severity::Error, line, {role, fault.text});
        break;
    case CellFault::Kind::OtherDecimal:
        addProblem(ProblemKind::RowDecimalSign, Severity::Error, line, {role, fault.text, format.decimal});
        break;
    }
}

void TemplateReader::addSection(qint64 line, const TableValues& values)
{
    const QStringList ends{values.from, values.to};
    if (values.from == values.to) {
        ++result.counts.refused;
        addProblem(ProblemKind::SectionSameEnds, Severity::Error, line, ends);
        return;
    }
    ++result.counts.used;
    tellOfFaults(line, values, ends);
    Section section;
    section.from = findPoint(values.from, line);
    section.to = findPoint(values.to, line);
    section.difference = *values.difference;
    section.distance = values.length;
    section.stations = values.stations;
    section.stdev = values.sigma;
    section.date = values.date;
    section.note = values.note;
    section.line = line;
    setWeight(section, ends);
    checkSlope(section, ends);
    result.network.sections.push_back(std::move(section));
}

void TemplateReader::setWeight(Section& section, const QStringList& ends)
{
    section.sigma = findSigma(section, result.network.parameters.sigmaApriori);
    if (section.stdev || section.distance)
        return;
    if (section.stations)
        ++result.counts.weighedByStations;
    else
        addProblem(ProblemKind::RowWithoutWeight, Severity::Warning, section.line, ends);
}

double TemplateReader::findSigma(const Section& section, double sigmaApriori)
{
    if (section.stdev)
        return *section.stdev;
    const double length =
        section.distance.value_or(section.stations ? *section.stations * kStationLength : 1.0);
    return sigmaApriori * std::sqrt(length);
}

void TemplateReader::checkSlope(const Section& section, const QStringList& ends)
{
    std::optional<double> limit;
    if (section.stations)
        limit = *section.stations * kDifferencePerStation;
    else if (section.distance)
        limit = *section.distance * 1000.0;
    if (limit && std::abs(section.difference) > *limit)
        steepSections.push_back({ProblemKind::SectionTooSteep, Severity::Warning, section.line,
                                 ends + QStringList{toText(section.difference), toText(*limit)}});
}

void TemplateReader::addPoint(qint64 line, const TableValues& values)
{
    ++result.counts.used;
    tellOfFaults(line, values, {values.point});
    const int index = findPoint(values.point, line);
    Point& point = result.network.points[static_cast<std::size_t>(index)];
    if (point.line != line)
        addProblem(ProblemKind::PointRepeated, Severity::Warning, line,
                   {values.point, QString::number(point.line)});
    point.line = line;
    if (values.x) {
        point.x = values.x;
        point.y = values.y;
        point.surveyed = true;
    }
    if (!values.height)
        return;
    point.declared = true;
    point.height = values.height;
    point.observed = values.sigma.value_or(0.0) > 0.0;
    point.fixed = !point.observed;
    if (point.observed)
        sigmaOfPoint.insert(index, *values.sigma);
}

int TemplateReader::findPoint(const QString& id, qint64 line)
{
    const int index = pointNames.add(id);
    if (index == static_cast<int>(result.network.points.size())) {
        Point point;
        point.id = id;
        point.line = line;
        result.network.points.push_back(point);
    }
    return index;
}

void TemplateReader::tellOfFaults(qint64 line, const TableValues& values, const QStringList& names)
{
    for (const CellFault& fault : values.faults) {
        switch (fault.role) {
        case ColumnRole::Length:
            addProblem(ProblemKind::DistanceUnusable, Severity::Error, line, names + QStringList(fault.text));
            break;
        case ColumnRole::Stations:
            addProblem(ProblemKind::StationsUnusable, Severity::Error, line, names + QStringList(fault.text));
            break;
        case ColumnRole::Sigma:
            addProblem(format.isOfPoints() ? ProblemKind::PointSigmaUnusable : ProblemKind::StdevUnusable,
                       Severity::Error, line, names + QStringList(fault.text));
            break;
        case ColumnRole::Height:
            addProblem(ProblemKind::HeightUnusable, Severity::Error, line, names + QStringList(fault.text));
            break;
        default:
            addProblem(ProblemKind::CoordinateUnusable, Severity::Error, line,
                       names + QStringList{getRoleName(fault.role), fault.text});
            break;
        }
    }
}

void TemplateReader::completeObservedHeights()
{
    int index = 0;
    for (const Point& point : result.network.points) {
        if (point.observed) {
            const double sigma = sigmaOfPoint.value(index);
            result.network.observedHeights.push_back({{index}, {sigma * sigma}});
        }
        ++index;
    }
}

/// Sorting takes less time and memory than a table of all rows.
void TemplateReader::tellOfRepeatedRows()
{
    const auto getSection = [this](std::size_t index) -> const Section& {
        return result.network.sections[index];
    };
    std::vector<std::pair<SectionKey, std::size_t>> rows;
    rows.reserve(result.network.sections.size());
    for (const Section& section : result.network.sections)
        rows.emplace_back(makeSectionKey(section), rows.size());
    std::sort(rows.begin(), rows.end());
    std::size_t first = 0;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (rows[i].first != rows[first].first) {
            first = i;
            continue;
        }
        const Section& section = getSection(rows[i].second);
        const auto& points = result.network.points;
        addProblem(ProblemKind::RowRepeated, Severity::Warning, section.line,
                   {points[static_cast<std::size_t>(section.from)].id,
                    points[static_cast<std::size_t>(section.to)].id,
                    QString::number(getSection(rows[first].second).line)});
        checkLimits();
        if (result.fatal)
            return;
    }
}

void TemplateReader::checkUnits()
{
    std::vector<double> differences;
    std::vector<double> lengths;
    for (const Section& section : result.network.sections) {
        differences.push_back(std::abs(section.difference));
        if (section.distance)
            lengths.push_back(*section.distance);
    }
    bool isDoubtful = false;
    const auto tell = [&](ColumnRole role, double median, double unit, const QString& unitName) {
        isDoubtful = true;
        addProblem(ProblemKind::UnitDoubtful, Severity::Warning, 0,
                   {getRoleName(role), unitName, toText(median / unit)});
    };
    if (differences.size() >= kRowsForUnits) {
        const double median = getMedian(differences);
        const DifferenceUnit unit = format.differenceUnit;
        if (unit == DifferenceUnit::Metre ? median >= kLargestDifference : median < kSmallestDifference)
            tell(ColumnRole::Difference, median, toMetres(unit), getUnitName(unit));
    }
    if (lengths.size() >= kRowsForUnits) {
        const double median = getMedian(lengths);
        if (format.lengthUnit == LengthUnit::Kilometre && median >= kLargestLength)
            tell(ColumnRole::Length, median, 1.0, getUnitName(format.lengthUnit));
        else if (format.lengthUnit == LengthUnit::Metre && median < kSmallestLength)
            tell(ColumnRole::Length, median, 1e-3, getUnitName(format.lengthUnit));
    }
    // With the wrong unit they are all too steep.
    if (isDoubtful)
        return;
    for (Problem& problem : steepSections)
        addProblem(problem.kind, problem.severity, problem.line, problem.arguments);
}

void TemplateReader::tellOfText()
{
    if (longRows > 0)
        addProblem(ProblemKind::RowsTooLong, Severity::Warning, longRowLine,
                   {QString::number(longRows), QString::number(format.columns.size())});
    if (table.getUndecodedRows() > 0)
        addProblem(ProblemKind::RowsUndecoded, Severity::Warning, table.getUndecodedLine(),
                   {QString::number(table.getUndecodedRows()), QString::fromLatin1(format.syntax.encoding)});
    if (!table.getMarkedEncoding().isEmpty())
        addProblem(
            ProblemKind::EncodingMarked, Severity::Warning, 0,
            {QString::fromLatin1(table.getMarkedEncoding()), QString::fromLatin1(format.syntax.encoding)});
}

void TemplateReader::checkLimits()
{
    const Network& network = result.network;
    if (network.points.size() + network.sections.size() > GkfReader::kMaxEntries)
        fail(ProblemKind::TooManyEntries, table.getLine(), GkfReader::kMaxEntries);
    else if (result.problems.size() > GkfReader::kMaxProblems)
        fail(ProblemKind::TooManyProblems, table.getLine(), GkfReader::kMaxProblems);
}

void TemplateReader::fail(ProblemKind kind, qint64 line, qint64 limit)
{
    result = TableResult();
    result.fatal = Problem{kind, Severity::Fatal, line, {QString::number(limit)}};
}

void TemplateReader::addProblem(ProblemKind kind, Severity severity, qint64 line,
                                const QStringList& arguments)
{
    result.problems.push_back(Problem{kind, severity, line, arguments});
}

} // namespace levelling
