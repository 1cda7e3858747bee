#pragma once

#include "tacheometry/FieldBook.h"

#include <QStringList>

#include <vector>

namespace tacheometry {

/// What is wrong with a file of a total station. The arguments of each kind are given in braces, in their
/// order; names of points come first.
enum class ProblemKind {
    FileTooLarge,         ///< {largest size in MiB}: nothing is taken
    LineTooLong,          ///< {largest count of bytes}: nothing is taken
    TooManySights,        ///< {largest count}: nothing is taken
    TooManyProblems,      ///< {largest count}: nothing is taken
    NothingUsable,        ///< {}: neither measurements nor coordinates
    LineUnreadable,       ///< {}: skipped
    WordsUnreadable,      ///< {what is no word}: these are skipped
    RecordMarked,         ///< {point}: marked as faulty by the instrument, skipped
    ValueUnusable,        ///< {type of the value, its text with the unit}: taken as not given
    ValueUnknown,         ///< {type of the value}: not used here nor in all that follows
    RecordUnknown,        ///< {type of the record}: not used here nor in all that follows
    PointWithoutName,     ///< {}: skipped
    SightWithoutStation,  ///< {point}: measured before any station was set up, skipped
    SightWithoutReadings, ///< {point}: neither a direction nor a distance, skipped
    CoordinatesHalf,      ///< {point}: one of x and y is missing, both are taken as not given
    CoordinatesChanged,   ///< {point, line of the earlier ones, difference in m}: the later ones count
    OffsetWithoutSight,   ///< {point}: no measurement follows, skipped
};

enum class Severity {
    Fatal,   ///< the file gives nothing at all
    Error,   ///< a part of the file is left out
    Warning, ///< all is used, but perhaps not as meant
};

/// One thing that could not be used as it stands, as a value; whoever shows it finds the words.
struct Problem
{
    ProblemKind kind = ProblemKind::NothingUsable;
    Severity severity = Severity::Error;
    qint64 line = 0; ///< of the file; 0 if it has no such line
    QStringList arguments;
};

/// How the instrument was set when it measured, as the file tells: it has applied this itself.
struct InstrumentSettings
{
    double prismConstant = 0.0; ///< mm
    double ppm = 0.0;           ///< of the distance, for the air
    std::size_t sights = 0;     ///< measured so
};

/// What a file gave.
struct FieldBookReading
{
    /// The reading was ended on request; there is nothing else then.
    bool isStopped = false;
    /// Set if the file gives nothing; book, points and problems are empty then.
    std::optional<Problem> fatal;
    FieldBook book;
    /// Coordinates of stations and other points, each name once, in the order of the file.
    std::vector<GivenPoint> points;
    /// In the order of their lines.
    std::vector<Problem> problems;
    /// Each setting once, in the order of the file, up to a hundred; empty if the file does not tell.
    std::vector<InstrumentSettings> settings;
};

} // namespace tacheometry
