#include "levelling/M5LevelReader.h"

#include "formats/M5File.h"
#include "formats/RecFile.h"
#include "levelling/LevelFileEnd.h"

#include <QHash>
#include <QRegularExpression>

#include <cmath>
#include <utility>

namespace levelling {

namespace m5levelreader {

namespace {

using formats::M5File;
using formats::M5Record;
using formats::M5Value;

constexpr int kPointLength = 8;
constexpr double kFoot = 0.3048;
constexpr double kInch = 0.0254;

/// What a value is, whatever the language of the instrument.
enum class ValueKind { None, Back, Fore, Intermediate, Alone, Distance, Height, Spread, Sum, Other };

ValueKind findKind(const QString& type)
{
    static const QHash<QString, ValueKind> kinds{
        {QString(), ValueKind::None},
        {QStringLiteral("Rb"), ValueKind::Back},
        {QStringLiteral("Lr"), ValueKind::Back},
        {QStringLiteral("Rf"), ValueKind::Fore},
        {QStringLiteral("Lv"), ValueKind::Fore},
        {QStringLiteral("Rz"), ValueKind::Intermediate},
        {QStringLiteral("Lz"), ValueKind::Intermediate},
        {QStringLiteral("R"), ValueKind::Alone},
        {QStringLiteral("L"), ValueKind::Alone},
        {QStringLiteral("HD"), ValueKind::Distance},
        {QStringLiteral("E"), ValueKind::Distance},
        {QStringLiteral("Z"), ValueKind::Height},
        {QStringLiteral("sR"), ValueKind::Spread},
        {QStringLiteral("sL"), ValueKind::Spread},
        {QStringLiteral("Sh"), ValueKind::Sum},
        {QStringLiteral("dz"), ValueKind::Sum},
        {QStringLiteral("Db"), ValueKind::Sum},
        {QStringLiteral("Df"), ValueKind::Sum},
        {QStringLiteral("Sr"), ValueKind::Sum},
        {QStringLiteral("Sv"), ValueKind::Sum},
    };
    return kinds.value(type, ValueKind::Other);
}

/// Metres of one unit; none for a unit that is not of length.
std::optional<double> findUnit(const QString& unit)
{
    if (unit == QLatin1String("m"))
        return 1.0;
    if (unit == QLatin1String("mm"))
        return 0.001;
    if (unit == QLatin1String("ft"))
        return kFoot;
    if (unit == QLatin1String("in"))
        return kInch;
    return std::nullopt;
}

LevelMethod findMethod(const QString& text)
{
    static const QHash<QString, LevelMethod> methods{
        {QStringLiteral("BF"), LevelMethod::BackFore},
        {QStringLiteral("BFFB"), LevelMethod::BackForeForeBack},
        {QStringLiteral("aBF"), LevelMethod::AlternateBackFore},
        {QStringLiteral("aBFFB"), LevelMethod::AlternateBackForeForeBack},
        {QStringLiteral("BFBF"), LevelMethod::OtherDouble},
        {QStringLiteral("FBBF"), LevelMethod::OtherDouble},
    };
    return methods.value(text, LevelMethod::Unknown);
}

/// A value of length as a number.
struct Length
{
    double metres = 0.0;
    double resolution = 0.0; ///< m
};

/// Takes the records of a file into the book.
class RecordTaker
{
public:
    explicit RecordTaker(LevelBook& levelBook) : book(levelBook) {}

    void takeUnreadable(qint64 line)
    {
        isBehindUnused = true;
        book.addProblem(ProblemKind::LineUnreadable, Severity::Error, line);
    }

    void take(const M5Record& record)
    {
        if (record.type.startsWith(QLatin1String("TO")) || record.type.startsWith(QLatin1String("TI")))
            takeText(record);
        else
            takeMeasurement(record);
    }

private:
    void takeText(const M5Record& record)
    {
        const QString text = record.information.simplified();
        const auto says = [&text](const char* start) {
            return text.startsWith(QLatin1String(start), Qt::CaseInsensitive);
        };
        const bool wasUnused = std::exchange(isBehindUnused, false);
        if (says("Start-Line") || (says("Cont-Line") && !book.isInLine())) {
            beginLine(record, text.section(QLatin1Char(' '), 1, 1));
        } else if (says("End-Line")) {
            book.endLine();
        } else if (says("Measurement repeated")) {
            if (!wasUnused)
                book.dropReading();
        } else if (says("Station repeated")) {
            if (!wasUnused)
                book.dropStation();
        } else if (!says("Cont-Line") && !says("Intermediate sight") && !says("End of interm")) {
            takeUnits(text);
            if (!text.isEmpty())
                book.addUnused(record.type, record.line);
        }
    }

    void beginLine(const M5Record& record, const QString& methodText)
    {
        const LevelMethod method = findMethod(methodText);
        if (method == LevelMethod::Unknown)
            book.addProblem(ProblemKind::MethodUnknown, Severity::Warning, record.line, {methodText});
        book.beginLine(record.line, method);
    }

    void takeUnits(const QString& text)
    {
        static const QRegularExpression units(QStringLiteral("^Measurement units\\s+(m|ft|in)$"),
                                              QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch match = units.match(text);
        if (match.hasMatch())
            unitOfFile = match.captured(1).toLower();
    }

    void takeMeasurement(const M5Record& record)
    {
        const QString point = record.information.left(kPointLength).trimmed();
        isBehindUnused = record.isMarked || record.information.contains(QLatin1String("#####"));
        if (isBehindUnused) {
            book.addProblem(ProblemKind::RecordMarked, Severity::Warning, record.line, {point});
            return;
        }
        bool isSum = false;
        std::optional<double> distance;
        for (const M5Value& value : record.values) {
            const ValueKind kind = findKind(value.type);
            isSum = isSum || kind == ValueKind::Sum;
            if (kind == ValueKind::Distance) {
                if (const std::optional<Length> length = toLength(value))
                    distance = length->metres;
            }
        }
        for (const M5Value& value : record.values)
            takeValue(record, value, point, distance, isSum);
    }

    void takeValue(const M5Record& record, const M5Value& value, const QString& point,
                   const std::optional<double>& distance, bool isSum)
    {
        switch (findKind(value.type)) {
        case ValueKind::Back:
            takeReading(record, value, point, distance, Sight::Back);
            break;
        case ValueKind::Fore:
            takeReading(record, value, point, distance, Sight::Fore);
            break;
        case ValueKind::Intermediate:
            takeReading(record, value, point, distance, Sight::Intermediate);
            break;
        case ValueKind::Height:
            // Behind the end of a line, and beside its sums, the height is one more sum.
            if (isSum || !book.isInLine())
                book.addUnused(value.type, record.line);
            else
                takeHeight(record, value, point);
            break;
        case ValueKind::Alone:
            book.addProblem(ProblemKind::ReadingOutsideLine, Severity::Warning, record.line,
                            {point, value.type});
            break;
        case ValueKind::Sum:
        case ValueKind::Other:
            book.addUnused(value.type, record.line);
            break;
        case ValueKind::None:
        case ValueKind::Distance:
        case ValueKind::Spread:
            break;
        }
    }

    std::optional<Length> toLength(const M5Value& value)
    {
        const QString unitText = value.unit.isEmpty() ? unitOfFile : value.unit;
        const std::optional<double> number = M5File::toNumber(value);
        const std::optional<double> unit = findUnit(unitText);
        if (!number || !unit)
            return std::nullopt;
        if (unitText == QLatin1String("ft") || unitText == QLatin1String("in"))
            book.setInFeet();
        const int point = value.text.indexOf(QLatin1Char('.'));
        const int decimals = point < 0 ? 0 : value.text.size() - point - 1;
        return Length{*number * *unit, std::pow(10.0, -decimals) * *unit};
    }

    void takeReading(const M5Record& record, const M5Value& value, const QString& point,
                     const std::optional<double>& distance, Sight sight)
    {
        const std::optional<Length> length = toLength(value);
        if (!length || point.isEmpty()) {
            isBehindUnused = true;
            book.addProblem(ProblemKind::ReadingUnusable, Severity::Error, record.line,
                            {point, value.text + QLatin1Char(' ') + value.unit});
            return;
        }
        StaffReading reading;
        reading.sight = sight;
        reading.point = point;
        reading.value = length->metres;
        reading.resolution = length->resolution;
        reading.distance = distance;
        reading.line = record.line;
        book.addReading(reading);
    }

    void takeHeight(const M5Record& record, const M5Value& value, const QString& point)
    {
        const std::optional<Length> length = toLength(value);
        if (!length || point.isEmpty()) {
            book.addProblem(ProblemKind::HeightUnusable, Severity::Error, record.line,
                            {point, value.text + QLatin1Char(' ') + value.unit});
            return;
        }
        StatedHeight height;
        height.point = point;
        height.value = length->metres;
        height.resolution = length->resolution;
        height.line = record.line;
        book.addHeight(height);
    }

    LevelBook& book;
    QString unitOfFile = QStringLiteral("m");
    bool isBehindUnused = false; // the record before is not used, so that nothing of it is to be taken back
};

LevelResult read(M5File& file, const LevelSettings& settings, const std::function<bool()>& isStopped)
{
    LevelBook book(settings);
    RecordTaker taker(book);
    for (auto line = file.readNext(); line != M5File::Line::End && !book.isFull(); line = file.readNext()) {
        if (line == M5File::Line::Record)
            taker.take(file.getRecord());
        else if (line == M5File::Line::Malformed)
            taker.takeUnreadable(file.getLineNumber());
    }
    return finishLevelFile(book, file.getEnd(), file.getLineNumber(), isStopped);
}

} // namespace

LevelResult readM5(QIODevice& device, const LevelSettings& settings, const std::function<bool()>& isStopped)
{
    M5File file(device, isStopped);
    return read(file, settings, isStopped);
}

LevelResult readRec(QIODevice& device, const LevelSettings& settings, const std::function<bool()>& isStopped)
{
    formats::RecFile file(device, isStopped);
    return read(file, settings, isStopped);
}

} // namespace m5levelreader

} // namespace levelling
