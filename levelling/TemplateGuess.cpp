#include "levelling/TemplateGuess.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace levelling {

namespace {

using Rows = std::vector<QStringList>;

constexpr std::size_t kRowsLookedAt = 100;

bool isUtf8(const QByteArray& bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0;
}

QByteArray guessEncoding(const QByteArray& bytes)
{
    if (const QTextCodec* marked = QTextCodec::codecForUtfText(bytes, nullptr))
        return marked->name();
    // Every second byte of letters and digits is zero there.
    int evenZeros = 0;
    int oddZeros = 0;
    for (int i = 0; i < bytes.size(); ++i) {
        if (bytes.at(i) == '\0')
            ++(i % 2 == 0 ? evenZeros : oddZeros);
    }
    if (oddZeros > bytes.size() / 8)
        return "UTF-16LE";
    if (evenZeros > bytes.size() / 8)
        return "UTF-16BE";
    return isUtf8(bytes) ? "UTF-8" : "windows-1251";
}

Rows readRows(QByteArray bytes, const formats::TableSyntax& syntax)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    formats::TextTable table(buffer, syntax);
    Rows rows;
    formats::TableRow row;
    while (rows.size() < kRowsLookedAt && table.readRow(row)) {
        if (row.kind == formats::TableRow::Kind::Cells)
            rows.push_back(row.cells);
    }
    return rows;
}

bool isNumber(const QString& cell)
{
    static const QRegularExpression number(QStringLiteral("^[-+\u2212]?\\d+([.,]\\d+)?([eE][-+]?\\d+)?$"));
    return number.match(cell).hasMatch();
}

bool isFraction(const QString& cell)
{
    return isNumber(cell) && (cell.contains(QLatin1Char('.')) || cell.contains(QLatin1Char(',')));
}

/// The count of cells that most rows have, and how many rows that are.
std::pair<int, int> findUsualCount(const Rows& rows)
{
    std::map<int, int> counts;
    for (const QStringList& row : rows)
        ++counts[row.size()];
    std::pair<int, int> usual;
    for (const auto& [cells, count] : counts) {
        if (count >= usual.second)
            usual = {cells, count};
    }
    return usual;
}

/// How well the rows look divided: so many columns with numbers there are in those that are alike.
double judge(const Rows& rows)
{
    const auto [cells, count] = findUsualCount(rows);
    if (cells < 2)
        return 0.0;
    int numbers = 0;
    for (const QStringList& row : rows) {
        if (row.size() == cells)
            numbers += static_cast<int>(std::count_if(row.begin(), row.end(), isNumber));
    }
    const double share = static_cast<double>(count) / static_cast<double>(rows.size());
    return share * (static_cast<double>(numbers) / count + 0.1 * cells);
}

QChar guessSeparator(const QByteArray& bytes, formats::TableSyntax syntax)
{
    QChar best = syntax.separator;
    double bestScore = 0.0;
    for (const char candidate : {';', '\t', '|', ',', ' '}) {
        syntax.separator = QLatin1Char(candidate);
        const double score = judge(readRows(bytes, syntax));
        // The later ones stand in texts and numbers, too.
        if (score > bestScore + 1e-9) {
            bestScore = score;
            best = syntax.separator;
        }
    }
    return best;
}

QChar guessDecimal(const Rows& rows)
{
    int commas = 0;
    int points = 0;
    for (const QStringList& row : rows) {
        for (const QString& cell : row) {
            if (isNumber(cell))
                ++(cell.contains(QLatin1Char(',')) ? commas : points);
            if (isNumber(cell) && !isFraction(cell))
                --points;
        }
    }
    return commas > points ? QLatin1Char(',') : QLatin1Char('.');
}

/// Rows before the first one that has numbers where the rows behind it have them.
int guessHeadings(const QByteArray& bytes, const formats::TableSyntax& syntax)
{
    const Rows rows = readRows(bytes, syntax);
    const int usual = findUsualCount(rows).first;
    std::vector<int> numbers(static_cast<std::size_t>(usual), 0);
    for (const QStringList& row : rows) {
        for (int column = 0; column < std::min(usual, row.size()); ++column)
            numbers[static_cast<std::size_t>(column)] += isNumber(row[column]) ? 1 : 0;
    }
    const auto isData = [&](const QStringList& row) {
        for (int column = 0; column < usual; ++column) {
            const bool isNumeric =
                2 * numbers[static_cast<std::size_t>(column)] >= static_cast<int>(rows.size());
            if (isNumeric && isNumber(row.value(column)))
                return true;
        }
        return false;
    };
    QByteArray content = bytes;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    formats::TextTable table(buffer, syntax);
    formats::TableRow row;
    while (table.readRow(row)) {
        if (row.kind == formats::TableRow::Kind::Cells && isData(row.cells))
            return static_cast<int>(row.line) - 1;
    }
    return 0;
}

/// The words of headings, in the order in which they are looked for.
const std::vector<std::pair<ColumnRole, QRegularExpression>>& getHeadingWords()
{
    const auto words = [](const char* pattern) {
        return QRegularExpression(QString::fromUtf8(pattern),
                                  QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::UseUnicodePropertiesOption);
    };
    static const std::vector<std::pair<ColumnRole, QRegularExpression>> all{
        {ColumnRole::Sigma, words("ско|сигма|sigma|σ|st\\.?\\s?dev|std|ошибка")},
        {ColumnRole::Stations, words("штатив|станци|station|set-?up")},
        {ColumnRole::Difference, words("превыш|^d?h\\b.*изм|\\bdh\\b|^Δ ?h|^Δ|diff")},
        {ColumnRole::Length, words("длин|расст|length|dist|^[lsd]\\b")},
        {ColumnRole::Date, words("дата|время|date|time")},
        {ColumnRole::Note, words("примеч|замеч|note|remark|comment")},
        {ColumnRole::From, words("^от\\b|начал|задн|from|start|back")},
        {ColumnRole::To, words("^до\\b|^к\\b|^на\\b|конеч|конец|передн|^to\\b|^end|fore")},
        {ColumnRole::Height, words("отметк|высот|height|elev|^[hz]\\b")},
        {ColumnRole::X, words("^x\\b|^х\\b|север|north")},
        {ColumnRole::Y, words("^y\\b|^у\\b|восток|east")},
        {ColumnRole::Point, words("пункт|точк|репер|марк|имя|назван|point|name|bench|^id$|^№|^n$")},
    };
    return all;
}

/// Roles by the words of a heading; without any of them nothing.
std::vector<ColumnRole> guessByHeading(const QStringList& heading, int columns)
{
    std::vector<ColumnRole> roles(static_cast<std::size_t>(columns), ColumnRole::Skip);
    for (int column = 0; column < std::min(columns, heading.size()); ++column) {
        for (const auto& [role, words] : getHeadingWords()) {
            if (words.match(heading[column]).hasMatch() &&
                std::find(roles.begin(), roles.end(), role) == roles.end()) {
                roles[static_cast<std::size_t>(column)] = role;
                break;
            }
        }
    }
    return roles;
}

/// Roles by what the columns hold: names come first, then numbers.
std::vector<ColumnRole> guessByContent(const Rows& rows, int columns)
{
    std::vector<ColumnRole> roles(static_cast<std::size_t>(columns), ColumnRole::Skip);
    const auto share = [&](int column, bool (*test)(const QString&)) {
        const auto count = std::count_if(rows.begin(), rows.end(),
                                         [&](const QStringList& row) { return test(row.value(column)); });
        return 2 * count > static_cast<std::ptrdiff_t>(rows.size());
    };
    int firstFraction = 0;
    while (firstFraction < columns && !share(firstFraction, isFraction))
        ++firstFraction;
    const bool isOfPoints = firstFraction < 2;
    std::vector<ColumnRole> expected{ColumnRole::From, ColumnRole::To};
    std::vector<ColumnRole> numbers{ColumnRole::Difference, ColumnRole::Length};
    if (isOfPoints) {
        expected = {ColumnRole::Point};
        numbers = {ColumnRole::Height, ColumnRole::Sigma};
    }
    std::size_t names = 0;
    std::size_t next = 0;
    for (int column = 0; column < columns; ++column) {
        ColumnRole& role = roles[static_cast<std::size_t>(column)];
        if (column < firstFraction && names < expected.size())
            role = expected[names++];
        else if (column >= firstFraction && share(column, isNumber) && next < numbers.size())
            role = numbers[next++];
    }
    return roles;
}

bool containsUnit(const QString& heading, const char* unit)
{
    const QRegularExpression word(QStringLiteral("[,(\\[ ]%1[.)\\] ]*$").arg(QString::fromUtf8(unit)),
                                  QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::UseUnicodePropertiesOption);
    return word.match(heading).hasMatch();
}

void guessUnits(const QStringList& heading, TableTemplate& format)
{
    for (std::size_t column = 0; column < format.columns.size(); ++column) {
        const QString title = heading.value(static_cast<int>(column));
        if (format.columns[column] == ColumnRole::Difference) {
            if (containsUnit(title, "мм") || containsUnit(title, "mm"))
                format.differenceUnit = DifferenceUnit::Millimetre;
            else if (containsUnit(title, "см") || containsUnit(title, "cm"))
                format.differenceUnit = DifferenceUnit::Centimetre;
        } else if (format.columns[column] == ColumnRole::Length) {
            if (containsUnit(title, "м") || containsUnit(title, "m"))
                format.lengthUnit = LengthUnit::Metre;
        }
    }
}

/// Where no heading tells the unit of lengths, whole hundreds are metres.
void guessLengthUnit(const Rows& rows, const QStringList& heading, TableTemplate& format)
{
    const auto found = std::find(format.columns.begin(), format.columns.end(), ColumnRole::Length);
    if (found == format.columns.end())
        return;
    const auto column = static_cast<int>(found - format.columns.begin());
    if (containsUnit(heading.value(column), "км") || containsUnit(heading.value(column), "km"))
        return;
    constexpr double longestKilometres = 20.0;
    std::vector<double> lengths;
    for (const QStringList& row : rows) {
        QString cell = row.value(column);
        if (isNumber(cell))
            lengths.push_back(cell.replace(QLatin1Char(','), QLatin1Char('.')).toDouble());
    }
    if (lengths.empty())
        return;
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    if (*middle > longestKilometres)
        format.lengthUnit = LengthUnit::Metre;
}

} // namespace

TableTemplate guessTemplate(const QByteArray& beginning)
{
    TableTemplate format;
    format.syntax.encoding = guessEncoding(beginning);
    format.syntax.separator = guessSeparator(beginning, format.syntax);
    const int headings = guessHeadings(beginning, format.syntax);
    const Rows all = readRows(beginning, format.syntax);
    format.syntax.skipRows = headings;
    const Rows rows = readRows(beginning, format.syntax);
    format.decimal = guessDecimal(rows);

    const int columns = findUsualCount(rows).first;
    const std::size_t headingRows = all.size() > rows.size() ? all.size() - rows.size() : 0;
    const QStringList heading = headingRows > 0 ? all[headingRows - 1] : QStringList();
    format.columns = guessByHeading(heading, columns);
    if (findFault(format))
        format.columns = guessByContent(rows, columns);
    guessUnits(heading, format);
    guessLengthUnit(rows, heading, format);
    return format;
}

} // namespace levelling
