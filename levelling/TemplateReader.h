#pragma once

#include "levelling/NameIndex.h"
#include "levelling/Network.h"
#include "levelling/Problem.h"
#include "levelling/TableTemplate.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

class QFile;
class QIODevice;

namespace levelling {

/// What became of the rows of a table.
struct TableCounts
{
    qint64 used = 0;
    qint64 refused = 0; ///< each has a problem that says why
    qint64 headings = 0;
    qint64 empty = 0;
    qint64 comments = 0;
    /// The first lines of the empty rows and of the comments.
    std::vector<qint64> emptyLines;
    std::vector<qint64> commentLines;
    /// Sections whose weight follows from the number of stations.
    qint64 weighedByStations = 0;
};

/// What a text file gave.
struct TableResult
{
    /// The reading was ended on request; there is nothing else then.
    bool isStopped = false;
    /// Set if the file could not be read to its end; the network and the problems are empty then.
    std::optional<Problem> fatal;
    Network network;
    /// In the order of their lines.
    std::vector<Problem> problems;
    TableCounts counts;
};

/// Reads a levelling network from the rows of a text file.
///
/// A row of a table of sections is one section. Its a priori standard deviation is what the row states, else
/// sigma-apr * sqrt(length), else sigma-apr * sqrt(stations / 10), since ten stations with sights of 50 m
/// make a kilometre; without any of them sigma-apr. A row of a table of points is a benchmark, whose height
/// is held or, with a standard deviation other than zero, an observation of its own; without a height only
/// its place is known.
///
/// The memory needed is bounded, as that of GkfReader.
class TemplateReader
{
public:
    /// Length of a levelling line per station, km.
    static constexpr double kStationLength = 0.1;
    /// So many lines of skipped rows of a kind are told one by one.
    static constexpr std::size_t kListedLines = 20;

    /// @param device  open for reading
    /// @param format  without a fault
    /// @param parameters  of the network, among them sigma-apr
    /// @param isStopped  asked every few kilobytes
    static TableResult read(QIODevice& device, const TableTemplate& format, const Parameters& parameters = {},
                            const std::function<bool()>& isStopped = {});
    /// The same of a file that is open for reading, or says why it could not be opened.
    static TableResult readFile(QFile& file, const TableTemplate& format, const Parameters& parameters = {},
                                const std::function<bool()>& isStopped = {});
    /// The standard deviation of a section, mm: as it is stated, otherwise by its length, or by its stations.
    /// @param sigmaApriori  of 1 km, which is taken where nothing of it is known
    static double findSigma(const Section& section, double sigmaApriori);

private:
    TemplateReader(QIODevice& device, const TableTemplate& tableFormat, const Parameters& parameters,
                   const std::function<bool()>& isStopped);

    void readTable();
    void takeRow(const formats::TableRow& row);
    void refuse(qint64 line, const CellFault& fault);
    void addSection(qint64 line, const TableValues& values);
    void setWeight(Section& section, const QStringList& ends);
    void checkSlope(const Section& section, const QStringList& ends);
    void addPoint(qint64 line, const TableValues& values);
    int findPoint(const QString& id, qint64 line);
    void tellOfFaults(qint64 line, const TableValues& values, const QStringList& names);
    void completeObservedHeights();
    void tellOfRepeatedRows();
    void checkUnits();
    void tellOfText();
    void checkLimits();
    void fail(ProblemKind kind, qint64 line, qint64 limit);
    void addProblem(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments = {});

    const TableTemplate& format;
    formats::TextTable table;
    TableResult result;
    NameIndex pointNames;            ///< numbered as the points of the network
    QHash<int, double> sigmaOfPoint; ///< of those that are observed, by index of the point
    std::vector<Problem> steepSections;
    qint64 longRows = 0;
    qint64 longRowLine = 0;
};

} // namespace levelling
