#include "formats/TextTable.h"

#include <QIODevice>
#include <QTextCodec>

#include <algorithm>
#include <utility>

namespace formats {

namespace {

constexpr QChar kQuote = QLatin1Char('"');
constexpr QChar kByteOrderMark = QChar(QChar::ByteOrderMark);
constexpr qint64 kBlock = qint64(64) << 10;
// Of the longest byte order mark.
constexpr int kMarkLength = 4;

bool isLineEnd(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r');
}

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t');
}

/// Whether a text may hold the code unit whatever stands beside it.
bool isUsable(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 0x20 && code < 0xFFFD && !character.isSurrogate()) || character == QLatin1Char('\t');
}

/// Goes through the characters of a line.
class Cursor
{
public:
    explicit Cursor(const QString& text) : line(text) {}

    bool isAtEnd() const { return position >= line.size(); }
    QChar get() const { return line[position]; }
    void advance() { ++position; }
    bool isAt(QChar character) const { return !isAtEnd() && get() == character; }
    /// Also a separator may be blank: it ends the blanks.
    void skipBlanks(QChar separator)
    {
        while (!isAtEnd() && isBlank(get()) && get() != separator)
            advance();
    }
    void skipAllBlanks()
    {
        while (!isAtEnd() && isBlank(get()))
            advance();
    }

private:
    const QString& line;
    int position = 0;
};

/// Takes what stands in quotation marks, the first of which is the cursor's. False if the second is missing.
bool takeQuoted(Cursor& cursor, QString& cell)
{
    cursor.advance();
    while (!cursor.isAtEnd()) {
        if (cursor.isAt(kQuote)) {
            cursor.advance();
            if (!cursor.isAt(kQuote))
                return true;
        }
        cell += cursor.get();
        cursor.advance();
    }
    return false;
}

} // namespace

QTextCodec* findCodec(const QByteArray& name)
{
    return name.compare("system", Qt::CaseInsensitive) == 0 ? QTextCodec::codecForLocale()
                                                            : QTextCodec::codecForName(name);
}

TextTable::TextTable(QIODevice& tableDevice, TableSyntax tableSyntax, std::function<bool()> stopQuestion)
    : device(tableDevice)
    , syntax(std::move(tableSyntax))
    , isStopped(std::move(stopQuestion))
{}

TextTable::~TextTable() = default;

bool TextTable::readRow(TableRow& row)
{
    QString line;
    if (!readLine(line))
        return false;
    row.cells.clear();
    row.line = lineNumber;
    replaceUnusable(line);
    divide(line, row);
    if (lineNumber <= syntax.skipRows)
        row.kind = TableRow::Kind::Heading;
    return true;
}

bool TextTable::readLine(QString& line)
{
    int end = position;
    for (;;) {
        while (end < text.size() && !isLineEnd(text.at(end)))
            ++end;
        if (end - position > kLongestLine) {
            ++lineNumber;
            failure = Failure::LineTooLong;
            return false;
        }
        // Behind a carriage return there may be a line feed that is not read yet.
        const bool isWhole =
            end < text.size() && (text.at(end) == QLatin1Char('\n') || end + 1 < text.size());
        if (isWhole || isAtEnd)
            break;
        const int searched = end - position;
        if (!fill())
            return false;
        end = searched;
    }
    if (position == text.size())
        return false;
    line = text.mid(position, end - position);
    const bool isPair =
        end + 1 < text.size() && text.at(end) == QLatin1Char('\r') && text.at(end + 1) == QLatin1Char('\n');
    position = std::min(end + (isPair ? 2 : 1), text.size());
    ++lineNumber;
    return true;
}

/// Decodes the next portion. False at a failure.
bool TextTable::fill()
{
    if (isStopped && isStopped()) {
        failure = Failure::Stopped;
        return false;
    }
    text.remove(0, position);
    position = 0;
    QByteArray block = readBlock();
    if (!decoder) {
        // A pipe may give single bytes.
        while (!isAtEnd && block.size() < kMarkLength)
            block += readBlock();
        chooseCodec(block);
    }
    if (rest < 0) {
        failure = Failure::FileTooLarge;
        return false;
    }
    const bool isBeginning = lineNumber == 0 && text.isEmpty();
    text += decoder->toUnicode(block);
    if (isBeginning && text.startsWith(kByteOrderMark))
        text.remove(0, 1);
    if (isAtEnd && decoder->needsMoreData())
        text += QChar(QChar::ReplacementCharacter);
    return true;
}

QByteArray TextTable::readBlock()
{
    // One byte more than allowed tells a file that ends there from one that goes on.
    QByteArray block = device.read(std::min(kBlock, rest + 1));
    isAtEnd = block.isEmpty();
    rest -= block.size();
    return block;
}

void TextTable::chooseCodec(const QByteArray& beginning)
{
    QTextCodec* const asked = findCodec(syntax.encoding);
    QTextCodec* const marked = QTextCodec::codecForUtfText(beginning, nullptr);
    if (marked && asked != marked && !(asked && marked->name().startsWith(asked->name())))
        markedEncoding = marked->name();
    QTextCodec* const codec = marked ? marked : asked;
    decoder.reset((codec ? codec : QTextCodec::codecForName("UTF-8"))->makeDecoder());
}

void TextTable::replaceUnusable(QString& line)
{
    bool isDecoded = true;
    for (int i = 0; i < line.size(); ++i) {
        if (isUsable(line.at(i)))
            continue;
        if (line.at(i).isHighSurrogate() && i + 1 < line.size() && line.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        line[i] = QChar(QChar::ReplacementCharacter);
        isDecoded = false;
    }
    if (isDecoded)
        return;
    if (++undecodedRows == 1)
        undecodedLine = lineNumber;
}

void TextTable::divide(const QString& line, TableRow& row) const
{
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty()) {
        row.kind = TableRow::Kind::Empty;
    } else if (!syntax.comment.isEmpty() && trimmed.startsWith(syntax.comment)) {
        row.kind = TableRow::Kind::Comment;
    } else if (!syntax.widths.empty()) {
        row.kind = TableRow::Kind::Cells;
        row.cells = divideByWidths(line);
    } else {
        row.kind = divideBySeparator(line, row.cells) ? TableRow::Kind::Cells : TableRow::Kind::OpenQuote;
    }
    if (std::all_of(row.cells.begin(), row.cells.end(), [](const QString& cell) { return cell.isEmpty(); }) &&
        row.kind == TableRow::Kind::Cells)
        row.kind = TableRow::Kind::Empty;
}

/// False if a quotation mark is missing.
bool TextTable::divideBySeparator(const QString& line, QStringList& cells) const
{
    const bool isBlankSeparated = syntax.separator == QLatin1Char(' ');
    const auto isSeparator = [&](QChar character) {
        return isBlankSeparated ? isBlank(character) : character == syntax.separator;
    };
    Cursor cursor(line);
    for (;;) {
        if (isBlankSeparated)
            cursor.skipAllBlanks();
        else
            cursor.skipBlanks(syntax.separator);
        if (isBlankSeparated && cursor.isAtEnd())
            return true;
        QString cell;
        if (cursor.isAt(kQuote) && !takeQuoted(cursor, cell))
            return false;
        QString unquoted;
        while (!cursor.isAtEnd() && !isSeparator(cursor.get())) {
            unquoted += cursor.get();
            cursor.advance();
        }
        cells.append((cell + unquoted).trimmed());
        if (cursor.isAtEnd())
            return true;
        cursor.advance();
    }
}

/// A line may end early; what stands behind the last column is a cell more.
QStringList TextTable::divideByWidths(const QString& line) const
{
    QStringList cells;
    int begin = 0;
    for (const int width : syntax.widths) {
        cells.append(line.mid(begin, width).trimmed());
        begin = begin > line.size() ? begin : begin + width;
    }
    if (begin < line.size())
        cells.append(line.mid(begin).trimmed());
    return cells;
}

} // namespace formats
