#include "formats/GsiFile.h"

#include <algorithm>
#include <utility>

namespace formats {

namespace {

constexpr int kHeaderLength = 7;
constexpr int kShortData = 8;
constexpr int kLongData = 16;
constexpr int kSignPosition = 6;
constexpr double kFoot = 0.3048;

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Whether it stands for nothing: blanks, and the control characters that end a file or fill it up.
bool isFiller(QChar character)
{
    return character <= QLatin1Char(' ') || character == QChar(0x7f);
}

/// Whether a word begins there: its index, the information and the sign.
bool isHeader(const QString& text, int position)
{
    if (text.size() < position + kHeaderLength)
        return false;
    const auto isInformation = [](QChar character) {
        return isDigit(character) || character == QLatin1Char('.');
    };
    const auto* const first = text.constData() + position;
    const QChar sign = first[kSignPosition];
    return isDigit(first[0]) && isDigit(first[1]) &&
           std::all_of(first + 2, first + kSignPosition, isInformation) &&
           (sign == QLatin1Char('+') || sign == QLatin1Char('-'));
}

/// Position behind the word of that width; none if there is no such word, or another one begins in it.
std::optional<int> findEnd(const QString& text, int position, int dataLength)
{
    const int end = position + kHeaderLength + dataLength;
    if (end > text.size() || (end < text.size() && !isFiller(text.at(end))))
        return std::nullopt;
    for (int i = position + kHeaderLength; i < end; ++i) {
        if (isFiller(text.at(i)) && isHeader(text, i + 1))
            return std::nullopt;
    }
    return end;
}

int findBlank(const QString& text, int position)
{
    while (position < text.size() && !isFiller(text.at(position)))
        ++position;
    return position;
}

/// @param isFirst  the word begins the block: the information of a point or a code is the block's number
GsiWord makeWord(const QString& text, bool isFirst)
{
    GsiWord word;
    const int tens = text.left(2).toInt();
    const bool isNumbered = tens == 11 || tens == 41;
    word.index = isDigit(text.at(2)) && !(isNumbered && isFirst) ? text.left(3).toInt() : tens;
    word.information = text.mid(2, kSignPosition - 2);
    word.isNegative = text.at(kSignPosition) == QLatin1Char('-');
    word.data = text.mid(kHeaderLength);
    return word;
}

} // namespace

QString GsiWord::toText() const
{
    const QString text = data.trimmed();
    int zeros = 0;
    while (zeros + 1 < text.size() && text.at(zeros) == QLatin1Char('0'))
        ++zeros;
    return text.mid(zeros).trimmed();
}

std::optional<qint64> GsiWord::toNumber() const
{
    const QString text = data.trimmed();
    if (isCutOff || text.isEmpty() || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return isNegative ? -number : number;
}

std::optional<double> GsiWord::getResolution() const
{
    switch (getUnit().unicode()) {
    case '0':
        return 1e-3;
    case '1':
        return 1e-3 * kFoot;
    case '6':
        return 1e-4;
    case '7':
        return 1e-4 * kFoot;
    case '8':
        return 1e-5;
    default:
        return std::nullopt;
    }
}

bool GsiWord::isInFeet() const
{
    return getUnit() == QLatin1Char('1') || getUnit() == QLatin1Char('7');
}

std::optional<double> GsiWord::toMetres() const
{
    // Divided, a number of decimals is the nearest one to what is written.
    const std::optional<qint64> number = toNumber();
    const double factor = isInFeet() ? kFoot : 1.0;
    if (!number)
        return std::nullopt;
    switch (getUnit().unicode()) {
    case '0':
    case '1':
        return static_cast<double>(*number) / 1e3 * factor;
    case '6':
    case '7':
        return static_cast<double>(*number) / 1e4 * factor;
    case '8':
        return static_cast<double>(*number) / 1e5;
    default:
        return std::nullopt;
    }
}

const GsiWord* GsiBlock::find(int index) const
{
    const auto found = std::find_if(words.begin(), words.end(),
                                    [index](const GsiWord& word) { return word.index == index; });
    return found == words.end() ? nullptr : &*found;
}

GsiFile::GsiFile(QIODevice& device, std::function<bool()> isStopped) : lines(device, std::move(isStopped))
{}

GsiFile::Line GsiFile::readNext()
{
    if (!lines.readNext())
        return Line::End;
    block = parse(lines.getLine());
    block.line = lines.getNumber();
    if (!block.words.empty())
        return Line::Block;
    return block.unreadable.isEmpty() ? Line::Blank : Line::Malformed;
}

GsiBlock GsiFile::parse(const QByteArray& line)
{
    const QString text = LineReader::decode(line);
    GsiBlock block;
    int position = 0;
    const auto skipFiller = [&] {
        while (position < text.size() && isFiller(text.at(position)))
            ++position;
    };
    skipFiller();
    block.isLong = position < text.size() && text.at(position) == QLatin1Char('*');
    position += block.isLong ? 1 : 0;
    int widest = block.isLong ? kLongData : kShortData;
    const int expected = block.isLong ? kLongData : kShortData;
    const int other = block.isLong ? kShortData : kLongData;
    for (skipFiller(); position < text.size(); skipFiller()) {
        const bool isWord = isHeader(text, position);
        std::optional<int> end;
        if (isWord) {
            end = findEnd(text, position, expected);
            if (!end)
                end = findEnd(text, position, other);
        }
        const int wordEnd = end.value_or(findBlank(text, position));
        const QString word = text.mid(position, wordEnd - position);
        position = wordEnd;
        if (!isWord || word.size() <= kHeaderLength) {
            block.unreadable.append(word);
            continue;
        }
        block.words.push_back(makeWord(word, block.words.empty()));
        const int width = word.size() - kHeaderLength;
        widest = std::max(widest, std::min(width, kLongData));
        // Only the last word of a line may be a short one among wide ones for having been cut off.
        const bool isLast = std::all_of(text.begin() + position, text.end(), isFiller);
        const bool isShort = isLast ? width < widest : width != kShortData && width < kLongData;
        block.words.back().isCutOff = isShort && block.words.back().data.startsWith(QLatin1Char('0'));
    }
    return block;
}

} // namespace formats
