#include "tacheometry/GsiTotalStationReader.h"

#include "formats/GsiFile.h"
#include "tacheometry/Angles.h"
#include "tacheometry/FieldBookBuilder.h"

#include <QIODevice>

#include <algorithm>
#include <cmath>

namespace tacheometry {

namespace gsitotalstation {

namespace {

using formats::GsiBlock;
using formats::GsiFile;
using formats::GsiWord;

enum Word {
    PointName = 11,
    StationName = 16,
    Direction = 21,
    Zenith = 22,
    SlopeDistance = 31,
    HorizontalDistance = 32,
    Code = 41,
    PpmAndPrism = 51,
    PrismConstant = 58,
    Ppm = 59,
    Remark = 71,
    East = 81,
    North = 82,
    Height = 83,
    StationEast = 84,
    StationNorth = 85,
    StationHeight = 86,
    TargetHeight = 87,
    InstrumentHeight = 88
};

/// What tells nothing that the field book needs: instrument, date and time, differences of directions, and
/// remarks behind the first one.
bool isUnneeded(int index)
{
    constexpr int known[] = {12, 13, 17, 18, 19, 25, 33, 52, 53};
    const int first = index >= 100 ? index / 10 : index;
    return std::find(std::begin(known), std::end(known), index) != std::end(known) ||
           (first >= 42 && first <= 49) || (first >= 72 && first <= 79) ||
           (first >= 53 && first <= 59 && index >= 100) || (first >= 90 && first <= 99);
}

std::optional<double> toAngle(const GsiWord& word)
{
    constexpr double hundredThousandths = 1e5;
    constexpr double tenThousandths = 1e4;
    const std::optional<qint64> number = word.toNumber();
    if (!number)
        return std::nullopt;
    const auto digits = static_cast<double>(*number);
    std::optional<double> angle;
    switch (word.getUnit().toLatin1()) {
    case '2':
        angle = angles::fromNumber(digits / hundredThousandths, angles::Unit::Gon);
        break;
    case '3':
        angle = angles::fromNumber(digits / hundredThousandths, angles::Unit::Degrees);
        break;
    case '4':
        angle = angles::fromNumber(digits / hundredThousandths, angles::Unit::Sexagesimal);
        break;
    case '5':
        angle = angles::fromNumber(digits / tenThousandths, angles::Unit::Mil);
        break;
    default:
        break;
    }
    return angle ? std::optional<double>(angles::normalise(*angle)) : std::nullopt;
}

/// Key of a place: whole millimetres.
QString toKey(const Position& position)
{
    constexpr double millimetres = 1000.0;
    return QStringLiteral("%1 %2").arg(QString::number(std::llround(*position.x * millimetres)),
                                       QString::number(std::llround(*position.y * millimetres)));
}

class Reader
{
public:
    FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped)
    {
        GsiFile file(device, isStopped);
        GsiFile::Line kind = GsiFile::Line::Blank;
        while (!builder.isFull() && (kind = file.readNext()) != GsiFile::Line::End) {
            line = file.getLineNumber();
            if (kind == GsiFile::Line::Malformed)
                builder.tell(ProblemKind::LineUnreadable, Severity::Error, line);
            else if (kind == GsiFile::Line::Block)
                takeBlock(file.getBlock());
        }
        return builder.finish(file.getEnd(), file.getLineNumber());
    }

private:
    void takeBlock(const GsiBlock& block)
    {
        if (!block.unreadable.isEmpty())
            builder.tell(ProblemKind::WordsUnreadable, Severity::Error, line,
                         {block.unreadable.join(QLatin1Char(' '))});
        tellUnknown(block);
        const GsiWord* nameWord = block.find(PointName);
        const QString name = nameWord ? nameWord->toText() : QString();
        if (name.isEmpty()) {
            // A block of a code has no point.
            if (!block.find(Code))
                builder.tell(ProblemKind::PointWithoutName, Severity::Error, line);
            return;
        }
        takeStation(block, name);
        if (const GsiWord* word = block.find(TargetHeight))
            targetHeight = length(*word).value_or(targetHeight);
        const GsiWord* remark = block.find(Remark);
        const QString code = remark ? remark->toText() : QString();
        const Position position = readPosition(block, name, East, North, Height);
        if (isMeasurement(block))
            takeSight(block, name, code, position);
        else if (position.hasPlan() || position.height)
            takePoint({name, code, position, line});
    }

    static bool isMeasurement(const GsiBlock& block)
    {
        return block.find(Direction) || block.find(Zenith) || block.find(SlopeDistance) ||
               block.find(HorizontalDistance);
    }

    void tellUnknown(const GsiBlock& block)
    {
        constexpr int used[] = {
            PointName,   StationName,   Direction,    Zenith,        SlopeDistance, HorizontalDistance,
            PpmAndPrism, PrismConstant, Ppm,          Remark,        East,          North,
            Height,      StationEast,   StationNorth, StationHeight, TargetHeight,  InstrumentHeight};
        for (const GsiWord& word : block.words) {
            if (std::find(std::begin(used), std::end(used), word.index) == std::end(used) &&
                !isUnneeded(word.index))
                builder.tellOnce(ProblemKind::ValueUnknown, Severity::Warning, line,
                                 QString::number(word.index));
        }
    }

    Position readPosition(const GsiBlock& block, const QString& name, Word east, Word north, Word height)
    {
        Position position;
        if (const GsiWord* word = block.find(east))
            position.y = length(*word);
        if (const GsiWord* word = block.find(north))
            position.x = length(*word);
        if (const GsiWord* word = block.find(height))
            position.height = length(*word);
        if (position.x.has_value() != position.y.has_value()) {
            builder.tell(ProblemKind::CoordinatesHalf, Severity::Error, line, {name});
            position.x.reset();
            position.y.reset();
        }
        return position;
    }

    void takePoint(const GivenPoint& point)
    {
        builder.addPoint(point);
        if (point.position.hasPlan())
            nameOfPlace.insert(toKey(point.position), point.name);
    }

    /// Sets the instrument up if the block says so.
    void takeStation(const GsiBlock& block, const QString& name)
    {
        const GsiWord* stationWord = block.find(StationName);
        const GsiWord* heightWord = block.find(InstrumentHeight);
        const bool isOwnBlock = !isMeasurement(block);
        const Position position = readPosition(block, name, StationEast, StationNorth, StationHeight);
        if (!stationWord && !heightWord && !position.hasPlan())
            return;
        Setup setup;
        setup.line = line;
        if (builder.hasSetup()) {
            setup.station = builder.getSetup().station;
            setup.instrumentHeight = builder.getSetup().instrumentHeight;
        }
        const bool isElsewhere = position.hasPlan() && toKey(position) != stationPlace;
        const QString stationName = stationWord ? stationWord->toText() : QString();
        if (!stationName.isEmpty())
            setup.station = stationName;
        else if (isOwnBlock)
            setup.station = name;
        else if (isElsewhere)
            setup.station = findName(position);
        if (heightWord)
            setup.instrumentHeight = length(*heightWord);
        if (setup.station.isEmpty())
            return;
        if (position.hasPlan()) {
            stationPlace = toKey(position);
            takePoint({setup.station, QString(), position, line});
        }
        const bool isSame = builder.hasSetup() && !isOwnBlock && !isElsewhere &&
                            builder.getSetup().station == setup.station &&
                            builder.getSetup().instrumentHeight == setup.instrumentHeight;
        if (!isSame)
            builder.beginSetup(setup);
    }

    QString findName(const Position& position)
    {
        const auto known = nameOfPlace.constFind(toKey(position));
        return known != nameOfPlace.constEnd() ? *known : QStringLiteral("S%1").arg(++namelessStations);
    }

    void takeSight(const GsiBlock& block, const QString& name, const QString& code, const Position& recorded)
    {
        Sight sight;
        sight.point = name;
        sight.code = code;
        sight.line = line;
        sight.recorded = recorded;
        sight.targetHeight = targetHeight;
        if (const GsiWord* word = block.find(Direction))
            sight.direction = angle(*word);
        if (const GsiWord* word = block.find(Zenith))
            sight.zenith = angle(*word);
        if (const GsiWord* word = block.find(SlopeDistance))
            sight.slopeDistance = distance(*word);
        if (const GsiWord* word = block.find(HorizontalDistance))
            sight.horizontalDistance = distance(*word);
        if (sight.slopeDistance && sight.zenith)
            sight.horizontalDistance.reset();
        if (!sight.direction && !sight.hasDistance()) {
            builder.tell(ProblemKind::SightWithoutReadings, Severity::Error, line, {name});
            return;
        }
        builder.addSight(sight);
        takeSettings(block);
    }

    void takeSettings(const GsiBlock& block)
    {
        const GsiWord* both = block.find(PpmAndPrism);
        const GsiWord* prism = block.find(PrismConstant);
        const GsiWord* ppm = block.find(Ppm);
        if (!both && !prism && !ppm)
            return;
        double prismConstant = 0.0;
        double distancePpm = 0.0;
        if (both) {
            // Two numbers: ppm and mm, the second one with its sign.
            const int sign =
                std::max(both->data.lastIndexOf(QLatin1Char('+')), both->data.lastIndexOf(QLatin1Char('-')));
            bool isPpm = false;
            bool isPrism = false;
            distancePpm = both->data.left(std::max(sign, 0)).toInt(&isPpm) * (both->isNegative ? -1.0 : 1.0);
            prismConstant = both->data.mid(std::max(sign, 0)).toInt(&isPrism);
            if (!isPpm || !isPrism) {
                refuse(*both);
                return;
            }
        }
        constexpr double millimetres = 1000.0;
        constexpr double tenThousandths = 1e4;
        if (prism)
            prismConstant = length(*prism).value_or(0.0) * millimetres;
        if (ppm && ppm->toNumber())
            distancePpm = static_cast<double>(*ppm->toNumber()) / tenThousandths;
        builder.addSettings(std::round(prismConstant * 10.0) / 10.0, distancePpm);
    }

    std::optional<double> length(const GsiWord& word)
    {
        const std::optional<double> metres = word.toMetres();
        if (metres && std::abs(*metres) <= FieldBookBuilder::kLargestLength)
            return metres;
        refuse(word);
        return std::nullopt;
    }

    /// What was not measured is zero.
    std::optional<double> distance(const GsiWord& word)
    {
        const std::optional<double> metres = length(word);
        if (!metres || *metres > 0.0)
            return metres;
        if (*metres < 0.0)
            refuse(word);
        return std::nullopt;
    }

    std::optional<double> angle(const GsiWord& word)
    {
        const std::optional<double> radians = toAngle(word);
        if (!radians)
            refuse(word);
        return radians;
    }

    void refuse(const GsiWord& word)
    {
        builder.tell(ProblemKind::ValueUnusable, Severity::Error, line,
                     {QString::number(word.index),
                      word.information + QLatin1Char(word.isNegative ? '-' : '+') + word.data});
    }

    FieldBookBuilder builder;
    qint64 line = 0;
    double targetHeight = 0.0;
    QString stationPlace;
    QHash<QString, QString> nameOfPlace;
    int namelessStations = 0;
};

} // namespace

FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped)
{
    return Reader().read(device, isStopped);
}

} // namespace gsitotalstation

} // namespace tacheometry
