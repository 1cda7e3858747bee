#pragma once

#include "formats/LineReader.h"
#include "tacheometry/FieldBookReading.h"

#include <QHash>
#include <QSet>

namespace tacheometry {

/// Collects what a reader finds, within limits: what is the same for files of every instrument.
class FieldBookBuilder
{
public:
    static constexpr std::size_t kMaxProblems = 1000000;
    /// Nothing that is surveyed is farther away, m.
    static constexpr double kLargestLength = 1e8;
    /// So many settings of the instrument are told apart.
    static constexpr std::size_t kMostSettings = 100;
    /// Coordinates of one point that differ by more are told, m.
    static constexpr double kSameCoordinates = 0.0005;

    /// The sights that follow belong to this set-up.
    void beginSetup(const Setup& setup);
    bool hasSetup() const { return !reading.book.setups.empty(); }
    /// The set-up at work; there must be one.
    Setup& getSetup() { return reading.book.setups.back(); }
    /// Adds it to the set-up at work, or tells that there is none.
    void addSight(const Sight& sight);
    void addPoint(const GivenPoint& point);
    /// Counts a sight that was measured so.
    void addSettings(double prismConstant, double ppm);

    void tell(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments = {});
    /// Tells something that many lines have only once for each argument.
    void tellOnce(ProblemKind kind, Severity severity, qint64 line, const QString& argument);

    /// Whether a limit is reached: nothing more need be read.
    bool isFull() const { return limit.has_value(); }
    /// All that was found. To be called once.
    FieldBookReading finish(formats::LineReader::End end, qint64 lastLine);

private:
    void stopAt(ProblemKind kind, qint64 line, std::size_t largest);

    FieldBookReading reading;
    std::size_t sights = 0;
    QHash<QString, std::size_t> placeOfPoint;
    QSet<QString> toldOnce;
    std::optional<Problem> limit;
};

} // namespace tacheometry
