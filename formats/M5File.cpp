#include "formats/M5File.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace formats {

namespace {

// Where things stand in a line, from 0.
constexpr int kTypeColumn = 17;
constexpr int kTypeLength = 3;
constexpr int kInformationColumn = 21;
constexpr int kInformationLength = 27;
constexpr int kValueColumn = 49;
constexpr int kValueStep = 23;
constexpr int kValueTypeLength = 2;
constexpr int kNumberOffset = 3;
constexpr int kNumberLength = 14;
constexpr int kUnitOffset = 18;
constexpr int kUnitLength = 4;
constexpr int kMarkColumn = 118;
constexpr int kSeparators[] = {6, 16, 48, 71, 94, 117};
constexpr int kLineLength = 119;

constexpr double kLargestNumber = 1e9;

QString field(const QString& line, int column, int length)
{
    return line.mid(column, length).trimmed();
}

bool isBlank(const QByteArray& line)
{
    return line.trimmed().isEmpty();
}

} // namespace

const M5Value* M5Record::find(const QString& valueType) const
{
    const auto* const found = std::find_if(
        values.begin(), values.end(), [&valueType](const M5Value& value) { return value.type == valueType; });
    return found == values.end() ? nullptr : found;
}

M5File::M5File(QIODevice& device, std::function<bool()> isStopped)
    : M5File(device, std::move(isStopped), &M5File::parse)
{}

M5File::M5File(QIODevice& device, std::function<bool()> isStopped, Parse parseFunction)
    : lines(device, std::move(isStopped))
    , parseLine(parseFunction)
{}

M5File::Line M5File::readNext()
{
    if (!lines.readNext())
        return Line::End;
    if (isBlank(lines.getLine()))
        return Line::Blank;
    std::optional<M5Record> parsed = parseLine(lines.getLine());
    if (!parsed)
        return Line::Malformed;
    record = std::move(*parsed);
    record.line = lines.getNumber();
    return Line::Record;
}

std::optional<M5Record> M5File::parse(const QByteArray& line)
{
    const QString text = LineReader::decode(line);
    if (!text.startsWith(QLatin1String("For M5|Adr")) || text.trimmed().size() > kLineLength)
        return std::nullopt;
    const bool isInColumns = std::all_of(std::begin(kSeparators), std::end(kSeparators), [&text](int column) {
        return column >= text.size() || text.at(column) == QLatin1Char('|');
    });
    if (!isInColumns || text.size() <= kInformationColumn)
        return std::nullopt;

    M5Record record;
    record.type = field(text, kTypeColumn, kTypeLength);
    record.information = text.mid(kInformationColumn, kInformationLength).leftJustified(kInformationLength);
    int column = kValueColumn;
    for (M5Value& value : record.values) {
        value.type = field(text, column, kValueTypeLength);
        value.text = field(text, column + kNumberOffset, kNumberLength);
        value.unit = field(text, column + kUnitOffset, kUnitLength);
        // Numbers stand at the right of their column: a line that ends in it has lost digits.
        if (!value.text.isEmpty() && text.size() < column + kNumberOffset + kNumberLength)
            value.text += QStringLiteral("…");
        column += kValueStep;
    }
    record.isMarked = !field(text, kMarkColumn, 1).isEmpty();
    return record;
}

std::optional<double> M5File::toNumber(const M5Value& value)
{
    bool isNumber = false;
    const double number = value.text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || std::abs(number) > kLargestNumber)
        return std::nullopt;
    return number;
}

} // namespace formats
