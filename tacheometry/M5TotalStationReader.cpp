#include "tacheometry/M5TotalStationReader.h"

#include "formats/M5File.h"
#include "tacheometry/Angles.h"
#include "tacheometry/FieldBookBuilder.h"

#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tacheometry {

namespace m5totalstation {

namespace {

using formats::M5File;
using formats::M5Record;
using formats::M5Value;

constexpr double kFoot = 0.3048;
constexpr double kMillimetres = 1000.0;
constexpr int kInformationLength = 27;
constexpr int kNumberLength = 12;
constexpr int kCodeLength = 5;

struct PointName
{
    QString code;
    QString number;
};

bool isOneOf(const QString& text, std::initializer_list<const char*> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&text](const char* name) { return text == QLatin1String(name); });
}

std::optional<double> toLength(const M5Value& value)
{
    const std::optional<double> number = M5File::toNumber(value);
    const bool isInFeet = value.unit.compare(QLatin1String("ft"), Qt::CaseInsensitive) == 0;
    if (!number || (!isInFeet && value.unit != QLatin1String("m")))
        return std::nullopt;
    const double metres = isInFeet ? *number * kFoot : *number;
    return std::abs(metres) <= FieldBookBuilder::kLargestLength ? std::optional<double>(metres)
                                                                : std::nullopt;
}

std::optional<double> toAngle(const M5Value& value)
{
    const std::optional<double> number = M5File::toNumber(value);
    const QString unit = value.unit.toUpper();
    std::optional<double> angle;
    if (!number)
        return std::nullopt;
    if (unit == QLatin1String("DMS"))
        angle = angles::fromNumber(*number, angles::Unit::Sexagesimal);
    else if (unit == QLatin1String("GON"))
        angle = angles::fromNumber(*number, angles::Unit::Gon);
    else if (unit == QLatin1String("DEG"))
        angle = angles::fromNumber(*number, angles::Unit::Degrees);
    else if (unit == QLatin1String("MIL"))
        angle = angles::fromNumber(*number, angles::Unit::Mil);
    return angle ? std::optional<double>(angles::normalise(*angle)) : std::nullopt;
}

class Reader
{
public:
    FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped)
    {
        M5File file(device, isStopped);
        M5File::Line kind = M5File::Line::Blank;
        while (!builder.isFull() && (kind = file.readNext()) != M5File::Line::End) {
            line = file.getLineNumber();
            if (kind == M5File::Line::Malformed)
                builder.tell(ProblemKind::LineUnreadable, Severity::Error, line);
            else if (kind == M5File::Line::Record)
                takeRecord(file.getRecord());
        }
        dropOffset();
        openSetup();
        return builder.finish(file.getEnd(), file.getLineNumber());
    }

private:
    /// How far the target stands in front and to the right of the point to be measured next.
    struct Offset
    {
        QString number;
        double front = 0.0;
        double right = 0.0;
        qint64 line = 0;
    };

    void takeRecord(const M5Record& record)
    {
        if (record.type == QLatin1String("TI"))
            takeSettings(record);
        else if (record.type.startsWith(QLatin1String("PI")))
            takePoint(record);
        else
            builder.tellOnce(ProblemKind::RecordUnknown, Severity::Warning, line, record.type);
    }

    void takeSettings(const M5Record& record)
    {
        if (record.information.trimmed() == QLatin1String("KN STAT")) {
            openSetup();
            station = GivenPoint();
            orientation.reset();
            hasOpened = false;
            isStationing = true;
        }
        for (const M5Value& value : record.values) {
            if (!value.type.isEmpty())
                takeSetting(value);
        }
        lastSight = nullptr;
    }

    void takeSetting(const M5Value& value)
    {
        if (value.type == QLatin1String("th"))
            targetHeight = length(value).value_or(targetHeight);
        else if (value.type == QLatin1String("ih"))
            takeInstrumentHeight(value);
        else if (value.type == QLatin1String("Om"))
            orientation = angle(value);
        else if (value.type == QLatin1String("PC"))
            prismConstant = length(value).value_or(prismConstant);
        else if (value.type == QLatin1String("m"))
            takeScale(value);
        else if (value.type == QLatin1String("21"))
            codeColumn = value.text.toInt();
        else if (value.type == QLatin1String("22"))
            numberColumn = value.text.toInt();
        else if (!isOneOf(value.type,
                          {"01", "02", "03", "04", "05", "06", "20", "i", "c", "SZ", "SK", "T_", "P", "A"}))
            builder.tellOnce(ProblemKind::ValueUnknown, Severity::Warning, line, value.type);
    }

    void takeInstrumentHeight(const M5Value& value)
    {
        const std::optional<double> height = length(value);
        if (height)
            instrumentHeight = height;
    }

    void takeScale(const M5Value& value)
    {
        constexpr double smallest = 0.5;
        constexpr double largest = 2.0;
        const std::optional<double> number = M5File::toNumber(value);
        if (number && *number >= smallest && *number <= largest)
            scale = *number;
        else
            refuse(value);
    }

    void takePoint(const M5Record& record)
    {
        const PointName name = readName(record.information);
        if (name.number.isEmpty()) {
            builder.tell(ProblemKind::PointWithoutName, Severity::Error, line);
            return;
        }
        if (record.isMarked) {
            builder.tell(ProblemKind::RecordMarked, Severity::Error, line, {name.number});
            return;
        }
        Sight sight;
        sight.point = name.number;
        sight.code = name.code;
        sight.line = line;
        Position position;
        Offset newOffset{name.number, 0.0, 0.0, line};
        bool isSight = false;
        bool isPosition = false;
        bool isOffset = false;
        for (const M5Value& value : record.values) {
            const QString& type = value.type;
            if (type == QLatin1String("Y"))
                position.y = length(value);
            else if (type == QLatin1String("X"))
                position.x = length(value);
            else if (type == QLatin1String("Z"))
                position.height = length(value);
            else if (type == QLatin1String("SD"))
                sight.slopeDistance = distance(value);
            else if (type == QLatin1String("HD"))
                sight.horizontalDistance = distance(value);
            else if (type == QLatin1String("Hz"))
                sight.direction = angle(value);
            else if (type == QLatin1String("V1"))
                sight.zenith = angle(value);
            else if (type == QLatin1String("Tv"))
                newOffset.front = length(value).value_or(0.0);
            else if (type == QLatin1String("Tr"))
                newOffset.right = length(value).value_or(0.0);
            else if (type == QLatin1String("Tl"))
                newOffset.right = -length(value).value_or(0.0);
            else if (!type.isEmpty())
                builder.tellOnce(ProblemKind::ValueUnknown, Severity::Error, line, type);
            isPosition = isPosition || isOneOf(type, {"X", "Y", "Z"});
            isSight = isSight || isOneOf(type, {"SD", "HD", "Hz", "V1"});
            isOffset = isOffset || isOneOf(type, {"Tv", "Tr", "Tl"});
        }
        if (isOffset)
            takeOffset(newOffset);
        if (isPosition || (isStation(name) && !isSight && !isOffset))
            takePosition(name, position);
        if (isSight)
            takeSight(name, sight);
    }

    static bool isStation(const PointName& name) { return name.code == QLatin1String("S"); }

    PointName readName(const QString& information) const
    {
        const bool areColumnsKnown = codeColumn >= 1 && codeColumn <= kInformationLength &&
                                     numberColumn >= 1 && numberColumn <= kInformationLength;
        PointName name;
        if (areColumnsKnown) {
            const int codeLength =
                numberColumn > codeColumn ? std::min(kCodeLength, numberColumn - codeColumn) : kCodeLength;
            name.code = information.mid(codeColumn - 1, codeLength).trimmed();
            name.number = information.mid(numberColumn - 1, kNumberLength).trimmed();
        }
        if (name.number.isEmpty()) {
            const QString all = information.simplified();
            name.number = all.section(QLatin1Char(' '), -1);
            name.code = all.section(QLatin1Char(' '), 0, -2);
        }
        return name;
    }

    void takeOffset(const Offset& newOffset)
    {
        if (offset.number == newOffset.number) {
            offset.front += newOffset.front;
            offset.right += newOffset.right;
            return;
        }
        dropOffset();
        offset = newOffset;
    }

    void dropOffset()
    {
        if (!offset.number.isEmpty())
            builder.tell(ProblemKind::OffsetWithoutSight, Severity::Error, offset.line, {offset.number});
        offset = Offset();
    }

    void takePosition(const PointName& name, Position position)
    {
        if (position.x.has_value() != position.y.has_value()) {
            builder.tell(ProblemKind::CoordinatesHalf, Severity::Error, line, {name.number});
            position.x.reset();
            position.y.reset();
        }
        if (lastSight && lastSight->point == name.number && lastSight->code == name.code) {
            lastSight->recorded = position;
            lastSight = nullptr;
            return;
        }
        lastSight = nullptr;
        const GivenPoint point{name.number, name.code, position, line};
        if (isStation(name)) {
            if (!station.name.isEmpty())
                openSetup();
            station = point;
            hasOpened = false;
        }
        if (position.hasPlan() || position.height)
            builder.addPoint(point);
    }

    void takeSight(const PointName& name, Sight sight)
    {
        lastSight = nullptr;
        if (offset.number == name.number) {
            sight.beyond = offset.front;
            sight.right = -offset.right;
            offset = Offset();
        }
        dropOffset();
        if (!sight.direction && !sight.hasDistance()) {
            builder.tell(ProblemKind::SightWithoutReadings, Severity::Error, line, {name.number});
            return;
        }
        sight.targetHeight = targetHeight;
        if (name.code == QLatin1String("A") && !hasOpened) {
            backsights.push_back(sight);
            return;
        }
        openSetup();
        if (isStationing) {
            builder.tell(ProblemKind::SightWithoutStation, Severity::Error, line, {name.number});
            return;
        }
        continueSetup();
        builder.addSight(sight);
        if (!builder.hasSetup() || builder.getSetup().sights.empty())
            return;
        lastSight = &builder.getSetup().sights.back();
        if (sight.hasDistance())
            builder.addSettings(std::round(prismConstant * kMillimetres * 10.0) / 10.0, 0.0);
    }

    /// Begins the set-up whose station, orientation and backsights have been read.
    void openSetup()
    {
        if (hasOpened)
            return;
        lastSight = nullptr;
        if (station.name.isEmpty()) {
            for (const Sight& sight : backsights)
                builder.tell(ProblemKind::SightWithoutStation, Severity::Error, sight.line, {sight.point});
            backsights.clear();
            return;
        }
        hasOpened = true;
        isStationing = false;
        Setup setup;
        setup.station = station.name;
        setup.instrumentHeight = instrumentHeight;
        setup.scale = scale;
        setup.line = station.line;
        if (orientation)
            setup.orientation = 0.0;
        builder.beginSetup(setup);
        for (Sight& sight : backsights) {
            // Read before the circle was set.
            if (orientation && sight.direction)
                sight.direction = angles::normalise(*sight.direction + *orientation);
            builder.addSight(sight);
        }
        backsights.clear();
        hasPolarSights = false;
    }

    /// The heights and settings of a set-up are those of its first measurement; other ones make another.
    void continueSetup()
    {
        if (!builder.hasSetup())
            return;
        Setup& setup = builder.getSetup();
        if (setup.instrumentHeight == instrumentHeight && setup.scale == scale) {
            hasPolarSights = true;
            return;
        }
        if (hasPolarSights) {
            Setup next = setup;
            next.sights.clear();
            next.line = line;
            builder.beginSetup(next);
        }
        hasPolarSights = true;
        builder.getSetup().instrumentHeight = instrumentHeight;
        builder.getSetup().scale = scale;
    }

    std::optional<double> length(const M5Value& value)
    {
        const std::optional<double> metres = toLength(value);
        if (!metres)
            refuse(value);
        return metres;
    }

    std::optional<double> distance(const M5Value& value)
    {
        const std::optional<double> metres = length(value);
        if (!metres || *metres > 0.0)
            return metres;
        refuse(value);
        return std::nullopt;
    }

    std::optional<double> angle(const M5Value& value)
    {
        const std::optional<double> radians = toAngle(value);
        if (!radians)
            refuse(value);
        return radians;
    }

    void refuse(const M5Value& value)
    {
        builder.tell(ProblemKind::ValueUnusable, Severity::Error, line,
                     {value.type, (value.text + QLatin1Char(' ') + value.unit).trimmed()});
    }

    FieldBookBuilder builder;
    qint64 line = 0;
    // In the information of a point, from 1; 0 if they are not known.
    int codeColumn = 0;
    int numberColumn = 0;
    double targetHeight = 0.0;
    std::optional<double> instrumentHeight;
    double prismConstant = 0.0;
    double scale = 1.0;
    std::optional<double> orientation;
    GivenPoint station;
    /// The set-up of the station has begun.
    bool hasOpened = false;
    bool hasPolarSights = false;
    /// A station is being set up, and which one has not been said.
    bool isStationing = false;
    std::vector<Sight> backsights;
    Offset offset;
    /// What coordinates in the next record belong to.
    Sight* lastSight = nullptr;
};

} // namespace

FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped)
{
    return Reader().read(device, isStopped);
}

} // namespace m5totalstation

} // namespace tacheometry
