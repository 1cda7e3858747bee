#include "tacheometry/FieldBookBuilder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tacheometry {

namespace {

/// The largest of the differences that two positions have; 0 where only one of them is known.
double findDifference(const Position& one, const Position& other)
{
    const auto differ = [](const std::optional<double>& a, const std::optional<double>& b) {
        return a && b ? std::abs(*a - *b) : 0.0;
    };
    return std::max({differ(one.x, other.x), differ(one.y, other.y), differ(one.height, other.height)});
}

} // namespace

void FieldBookBuilder::beginSetup(const Setup& setup)
{
    if (reading.book.setups.size() == FieldBook::kMostSights) {
        stopAt(ProblemKind::TooManySights, setup.line, FieldBook::kMostSights);
        return;
    }
    reading.book.setups.push_back(setup);
}

void FieldBookBuilder::addSight(const Sight& sight)
{
    if (!hasSetup()) {
        tell(ProblemKind::SightWithoutStation, Severity::Error, sight.line, {sight.point});
        return;
    }
    if (++sights > FieldBook::kMostSights) {
        stopAt(ProblemKind::TooManySights, sight.line, FieldBook::kMostSights);
        return;
    }
    getSetup().sights.push_back(sight);
}

void FieldBookBuilder::addPoint(const GivenPoint& point)
{
    const auto known = placeOfPoint.constFind(point.name);
    if (known == placeOfPoint.constEnd()) {
        if (reading.points.size() == FieldBook::kMostSights) {
            stopAt(ProblemKind::TooManySights, point.line, FieldBook::kMostSights);
            return;
        }
        placeOfPoint.insert(point.name, reading.points.size());
        reading.points.push_back(point);
        return;
    }
    GivenPoint& earlier = reading.points[*known];
    const double difference = findDifference(earlier.position, point.position);
    if (difference > kSameCoordinates)
        tell(ProblemKind::CoordinatesChanged, Severity::Warning, point.line,
             {point.name, QString::number(earlier.line), QString::number(difference, 'f', 3)});
    if (point.position.hasPlan()) {
        earlier.position.x = point.position.x;
        earlier.position.y = point.position.y;
        earlier.line = point.line;
    }
    if (point.position.height)
        earlier.position.height = point.position.height;
}

void FieldBookBuilder::addSettings(double prismConstant, double ppm)
{
    const auto known = std::find_if(reading.settings.begin(), reading.settings.end(),
                                    [=](const InstrumentSettings& settings) {
                                        return settings.prismConstant == prismConstant && settings.ppm == ppm;
                                    });
    if (known != reading.settings.end())
        ++known->sights;
    else if (reading.settings.size() < kMostSettings)
        reading.settings.push_back({prismConstant, ppm, 1});
}

void FieldBookBuilder::tell(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments)
{
    if (reading.problems.size() == kMaxProblems)
        stopAt(ProblemKind::TooManyProblems, line, kMaxProblems);
    else
        reading.problems.push_back(Problem{kind, severity, line, arguments});
}

void FieldBookBuilder::tellOnce(ProblemKind kind, Severity severity, qint64 line, const QString& argument)
{
    const QString key = QString::number(static_cast<int>(kind)) + QLatin1Char(' ') + argument;
    if (toldOnce.contains(key))
        return;
    toldOnce.insert(key);
    tell(kind, severity, line, {argument});
}

void FieldBookBuilder::stopAt(ProblemKind kind, qint64 line, std::size_t largest)
{
    if (!limit)
        limit = Problem{kind, Severity::Fatal, line, {QString::number(largest)}};
}

FieldBookReading FieldBookBuilder::finish(formats::LineReader::End end, qint64 lastLine)
{
    using End = formats::LineReader::End;
    if (end == End::FileTooLarge)
        stopAt(ProblemKind::FileTooLarge, lastLine, formats::LineReader::kLargestFile >> 20);
    else if (end == End::LineTooLong)
        stopAt(ProblemKind::LineTooLong, lastLine + 1, formats::LineReader::kLongestLine);
    FieldBookReading nothing;
    nothing.isStopped = end == End::Stopped;
    nothing.fatal = limit;
    if (nothing.isStopped || limit)
        return nothing;
    if (reading.points.empty() && sights == 0)
        tell(ProblemKind::NothingUsable, Severity::Error, 0);
    // What came of a line may be told when later ones have been read.
    std::stable_sort(reading.problems.begin(), reading.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
    return std::move(reading);
}

} // namespace tacheometry
