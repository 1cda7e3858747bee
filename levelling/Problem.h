#pragma once

#include <QStringList>

namespace levelling {

/// What is wrong with an input file. The arguments of each kind are given in braces, in their order.
enum class ProblemKind {
    FileNotReadable, ///< {reason}
    MalformedXml,    ///< {reason}
    WrongRoot,       ///< {name of the root element}
    FileTooLarge,    ///< {largest size in MiB}: read up to the line
    TooManyEntries,  ///< {largest count of points and sections together}: read up to the line
    TooManyProblems, ///< {largest count}: read up to the line
    NestedTooDeeply, ///< {largest depth of elements}: read up to the line
    PieceTooLong, ///< {largest size of a tag, text or comment in KiB, of numbers in MiB}: read up to the line
    AttributeTooLong,          ///< {attribute, largest count of characters}: read up to the line
    TextTooLong,               ///< {element, largest count of characters}: read up to the line
    TooManyCovariances,        ///< {largest count of numbers in a matrix}: read up to the line
    UnknownElement,            ///< {element, element around it}: skipped with all its content
    ParameterUnusable,         ///< {attribute, its text}: the default stands
    PointWithoutId,            ///< {}: skipped
    PointRepeated,             ///< {id, line of the earlier declaration}: what the later one states counts
    PointUndeclared,           ///< {id}: taken as a point to be determined
    PointWithoutRole,          ///< {id}: neither fixed nor adjusted in height, taken as to be determined
    PointFixedAndAdjusted,     ///< {id}: taken as fixed
    FixedPointWithoutHeight,   ///< {id}: taken as to be determined
    HeightUnusable,            ///< {id, its text}: taken as not given
    SectionWithoutPoint,       ///< {from, to}, one or both empty: skipped
    SectionSameEnds,           ///< {from, to}: skipped
    SectionWithoutValue,       ///< {from, to, its text}: skipped
    SectionValueMissing,       ///< {from, to}: skipped
    SectionWithoutWeight,      ///< {from, to}: neither length nor standard deviation, skipped
    DistanceUnusable,          ///< {from, to, its text}: taken as not given
    StdevUnusable,             ///< {from, to, its text}: taken as not given
    VarianceUnusable,          ///< {from, to, its text}: taken as not given
    ObservedPointFixed,        ///< {id}: a fixed point is given with covariances, too; it is held
    ObservedPointRepeated,     ///< {id}: given with covariances once more; the first one counts
    ObservedHeightMissing,     ///< {id}: given with covariances but without a height; the group is skipped
    ObservedWithoutCovariance, ///< {dim, band, count of heights}: the group is skipped
    CovarianceUnusable,        ///< {dim, band, count of sections}: the whole matrix is left out
    CorrelationsIgnored,       ///< {count of covariances other than zero}: variances are used alone
    OtherObservation,          ///< {element, from, to}: not a height difference, skipped
    NoSections,                ///< {}: nothing to compute with
    UnknownFormat,             ///< {}
    LineTooLong,               ///< {largest count of bytes, or of characters}: read up to the line
    TooManyStations,           ///< {largest count of stations of a level}: read up to the line
    WordUnreadable,            ///< {text}: skipped
    LineUnreadable,            ///< {}: skipped
    ReadingUnusable,           ///< {point, its text}: skipped
    ReadingOutsideLine,        ///< {point, what kind}: no part of a levelled line, skipped
    RecordMarked,              ///< {point}: the instrument marks it as repeated or faulty, skipped
    LineWithoutStart,          ///< {}: readings without the start of a line, taken as one
    LineWithoutStations,       ///< {}: the start of a line that nothing follows
    MethodUnknown,             ///< {text}: the order of the readings is taken as it comes
    InstrumentCheck,           ///< {}: readings that check the instrument, skipped
    StationWithoutBack,        ///< {fore point}: skipped
    StationWithoutFore,        ///< {back point}: skipped
    StationSameEnds,           ///< {point}: back and fore are one point, skipped
    StationSecondMissing,      ///< {back, fore}: a second reading is missing, the others count
    StationRepeated,           ///< {back, earlier fore, line of the earlier station}: that one is skipped
    LineInterrupted,           ///< {fore, back}: the next station begins at another point
    SightWithoutStation,       ///< {point}: an intermediate sight without a reading back, skipped
    DistancesMissing,          ///< {count, count of stations, metres}: so long each station is taken
    NumberEndsLine,            ///< {point}: a number that is a turning point of several lines, too

    // Of the rows of a text file.
    RowQuoteOpen,     ///< {}: a quotation mark is missing, skipped
    RowCellMissing,   ///< {role}: skipped
    RowCellUnusable,  ///< {role, its text}: skipped
    RowDecimalSign,   ///< {role, its text, the sign that is expected}: skipped
    RowsTooLong,      ///< {count, columns}: what stands behind the last column is left out; line of the first
    RowsUndecoded,    ///< {count, encoding}: with characters that the encoding has not; line of the first
    RowRepeated,      ///< {from, to, line of the first}: the same difference; both count
    RowWithoutWeight, ///< {from, to}: the a priori standard deviation is taken as it is
    StationsUnusable, ///< {from, to, its text}: taken as not given
    SectionTooSteep,  ///< {from, to, difference, largest plausible one, m}: perhaps in another unit
    PointSigmaUnusable, ///< {id, its text}: the height is held
    CoordinateUnusable, ///< {id, role, its text}: the point has no place
    UnitDoubtful,       ///< {role, unit, median of the column}: perhaps in another unit
    EncodingMarked,     ///< {encoding that the file names, that of the template}: the file's counts
    NoRows,             ///< {}: no row could be used
};

enum class Severity {
    Fatal,   ///< the file gives nothing at all
    Error,   ///< a part of the file is left out
    Warning, ///< all is used, but perhaps not as meant
};

/// One thing that could not be used as it stands, as a value; whoever shows it finds the words.
struct Problem
{
    ProblemKind kind = ProblemKind::NoSections;
    Severity severity = Severity::Error;
    /// Line of the file where the tag in question ends; 0 if the file has no such line.
    qint64 line = 0;
    QStringList arguments;
};

} // namespace levelling
