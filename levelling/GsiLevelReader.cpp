#include "levelling/GsiLevelReader.h"

#include "formats/GsiFile.h"
#include "levelling/LevelFileEnd.h"

#include <utility>

namespace levelling {

namespace gsilevelreader {

namespace {

using formats::GsiBlock;
using formats::GsiFile;
using formats::GsiWord;

// Indices of words.
constexpr int kPoint = 11;
constexpr int kDistance = 32;
constexpr int kCode = 41;
constexpr int kHeight = 83;
constexpr int kMeasuredAlone = 330;
constexpr int kFirstBack = 331;
constexpr int kFirstFore = 332;
constexpr int kIntermediate = 333;
constexpr int kSetOut = 334;
constexpr int kSecondBack = 335;
constexpr int kSecondFore = 336;

constexpr int kLongestQuote = 60; // characters of the file in a protocol's line

QString quote(const QString& text)
{
    return text.size() <= kLongestQuote ? text : text.left(kLongestQuote) + QStringLiteral("…");
}

/// Whether the word is of no interest beside the readings: what the instrument has averaged or summed up.
bool isExpected(int index)
{
    switch (index) {
    case kPoint:
    case kDistance:
    case 390:
    case 391:
    case 392:
    case 571:
    case 572:
    case 573:
    case 574:
        return true;
    default:
        return false;
    }
}

HeightOrigin findOrigin(const GsiWord& word)
{
    switch (word.getInputMode().unicode()) {
    case '0':
    case '2':
        return HeightOrigin::Measured;
    case '1':
    case '5':
        return HeightOrigin::Entered;
    default:
        return HeightOrigin::Unknown;
    }
}

/// Takes the blocks of a file into the book.
class BlockTaker
{
public:
    explicit BlockTaker(LevelBook& levelBook) : book(levelBook) {}

    void take(const GsiBlock& block)
    {
        if (block.words.empty()) {
            book.addProblem(ProblemKind::LineUnreadable, Severity::Error, block.line);
            return;
        }
        for (const QString& text : block.unreadable)
            book.addProblem(ProblemKind::WordUnreadable, Severity::Error, block.line, {quote(text)});
        if (block.words.front().index == kCode) {
            takeCode(block);
            return;
        }
        const GsiWord* point = block.find(kPoint);
        const QString name = point ? point->toText() : QString();
        for (const GsiWord& word : block.words) {
            if (book.isFull())
                return;
            if (!isExpected(word.index))
                takeWord(block, word, name);
        }
    }

private:
    void takeCode(const GsiBlock& block)
    {
        const QString data = block.words.front().data;
        const int mark = data.indexOf(QLatin1Char('?'));
        if (mark < 0) {
            for (const GsiWord& word : block.words)
                book.addUnused(QString::number(word.index), block.line);
            return;
        }
        QString digits = data.mid(mark + 1);
        digits.remove(QLatin1Char('.'));
        const QString method = digits.trimmed();
        isChecking = method == QLatin1String("10");
        if (isChecking) {
            book.endLine();
            book.addProblem(ProblemKind::InstrumentCheck, Severity::Warning, block.line);
            return;
        }
        static const QStringList methods{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                                         QStringLiteral("4")};
        const int index = methods.indexOf(method);
        if (index < 0)
            book.addProblem(ProblemKind::MethodUnknown, Severity::Warning, block.line, {quote(method)});
        book.beginLine(block.line, index < 0 ? LevelMethod::Unknown : static_cast<LevelMethod>(index + 1));
    }

    void takeWord(const GsiBlock& block, const GsiWord& word, const QString& point)
    {
        switch (word.index) {
        case kFirstBack:
            takeReading(block, word, point, Sight::Back, 1);
            break;
        case kSecondBack:
            takeReading(block, word, point, Sight::Back, 2);
            break;
        case kFirstFore:
            takeReading(block, word, point, Sight::Fore, 1);
            break;
        case kSecondFore:
            takeReading(block, word, point, Sight::Fore, 2);
            break;
        case kIntermediate:
            takeReading(block, word, point, Sight::Intermediate, 1);
            break;
        case kHeight:
            takeHeight(block, word, point);
            break;
        case kMeasuredAlone:
        case kSetOut:
            book.addProblem(ProblemKind::ReadingOutsideLine, Severity::Warning, block.line,
                            {point, QString::number(word.index)});
            isBesideLine = true;
            break;
        default:
            book.addUnused(QString::number(word.index), block.line);
        }
    }

    void takeReading(const GsiBlock& block, const GsiWord& word, const QString& point, Sight sight,
                     int series)
    {
        // The check of the instrument has its own line.
        if (isChecking)
            return;
        isBesideLine = false;
        const std::optional<double> value = word.toMetres();
        if (!value || point.isEmpty()) {
            book.addProblem(ProblemKind::ReadingUnusable, Severity::Error, block.line,
                            {point, quote(word.data)});
            return;
        }
        if (word.isInFeet())
            book.setInFeet();
        StaffReading reading;
        reading.sight = sight;
        reading.series = series;
        reading.point = point;
        reading.value = *value;
        reading.resolution = *word.getResolution();
        if (const GsiWord* distance = block.find(kDistance))
            reading.distance = distance->toMetres();
        reading.line = block.line;
        book.addReading(reading);
    }

    void takeHeight(const GsiBlock& block, const GsiWord& word, const QString& point)
    {
        // A height behind a reading that is no part of the line is none of the line, either.
        if (isChecking || std::exchange(isBesideLine, false))
            return;
        const std::optional<double> value = word.toMetres();
        if (!value || point.isEmpty()) {
            book.addProblem(ProblemKind::HeightUnusable, Severity::Error, block.line,
                            {point, quote(word.data)});
            return;
        }
        if (word.isInFeet())
            book.setInFeet();
        StatedHeight height;
        height.point = point;
        height.value = *value;
        height.resolution = *word.getResolution();
        height.origin = findOrigin(word);
        height.line = block.line;
        book.addHeight(height);
    }

    LevelBook& book;
    bool isChecking = false;   // the readings are of a check of the instrument
    bool isBesideLine = false; // the last reading is no part of the line
};

} // namespace

LevelResult read(QIODevice& device, const LevelSettings& settings, const std::function<bool()>& isStopped)
{
    LevelBook book(settings);
    BlockTaker taker(book);
    GsiFile file(device, isStopped);
    for (GsiFile::Line line = file.readNext(); line != GsiFile::Line::End && !book.isFull();
         line = file.readNext()) {
        if (line != GsiFile::Line::Blank)
            taker.take(file.getBlock());
    }
    return finishLevelFile(book, file.getEnd(), file.getLineNumber(), isStopped);
}

} // namespace gsilevelreader

} // namespace levelling
