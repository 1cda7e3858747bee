#pragma once

#include "levelling/LimitedDevice.h"
#include "levelling/Network.h"
#include "levelling/Problem.h"

#include <QHash>
#include <QSet>
#include <QXmlStreamReader>

#include <functional>
#include <optional>
#include <vector>

class QIODevice;

class QFile;

namespace levelling {

/// What a file gave.
struct GkfResult
{
    /// The reading was ended on request; there is nothing else then.
    bool isStopped = false;
    /// Set if the file could not be read to its end; the network and the problems are empty then.
    std::optional<Problem> fatal;
    Network network;
    /// In the order of their lines.
    std::vector<Problem> problems;
};

/// Reads a levelling network from gama-local XML (.gkf).
///
/// "val" and "z" are in m, "stdev" in mm, "dist" in km, a covariance matrix in mm². A variance wins over
/// "stdev", "stdev" over "dist"; from "dist" sigma = sigma-apr * sqrt(dist). Numbers are read the same way
/// in every locale and may have blanks around them; what is no finite number within 1e9, and for positive
/// quantities 1e-9, is taken as unusable. Heights in "coordinates" are observations with the covariances of
/// their matrix; a capital letter in "adj" marks the points that carry the datum of a free network. What
/// several tags of one point state is merged: the later wins.
///
/// The memory needed is bounded, whatever the file holds: over one of the limits below, reading ends as it
/// does for a file that cannot be read.
class GkfReader
{
public:
    static constexpr qint64 kLargestFile = qint64(256) << 20; ///< bytes
    static constexpr std::size_t kMaxEntries = 3000000;       ///< points and sections together
    static constexpr std::size_t kMaxProblems = 1000000;
    static constexpr int kMaxDepth = 1000;                   ///< elements in each other, the root included
    static constexpr qint64 kLongestPiece = qint64(1) << 18; ///< bytes of a tag, text or comment
    /// Bytes of a piece that holds little but digits and blanks, as covariances do.
    static constexpr qint64 kLongestNumbers = qint64(1) << 24;
    static constexpr int kLongestAttribute = 10000;    ///< characters of its value
    static constexpr int kLongestDescription = 100000; ///< characters
    static constexpr qint64 kMaxCovariances = 2000000; ///< numbers of one matrix

    /// Reads the file of that path. isStopped is asked every few kilobytes and every few thousand sections.
    static GkfResult readFile(const QString& path, const std::function<bool()>& isStopped = {});
    /// The same of a file that is open for reading, or says why it could not be opened.
    static GkfResult readFile(QFile& file, const std::function<bool()>& isStopped = {});
    /// Reads from a device that is open for reading.
    static GkfResult read(QIODevice& device, const std::function<bool()>& isStopped = {});

private:
    struct PendingSection
    {
        QString from;
        QString to;
        QString valueText; ///< if it is unusable
        std::optional<double> value;
        std::optional<double> distance;
        std::optional<double> stdev;
        std::optional<double> variance;
        qint64 line = 0;
    };

    /// A point of a group of observed coordinates.
    struct PendingHeight
    {
        int point = 0;
        std::optional<double> height;
        /// Row of the height in the matrix of the group, which has rows of other coordinates, too.
        qint64 row = 0;
        qint64 line = 0;
    };

    /// A covariance matrix as it was read.
    struct Covariance
    {
        qint64 line = 0;
        QString dimText;
        QString bandText;
        /// The matrix has as many rows as it should, and all numbers of its band.
        bool isComplete = false;
    };

    GkfReader(QIODevice& device, const std::function<bool()>& isStopped);

    void readDocument();
    /// Goes on to the next token and ends the reading at one that is over a limit. All reading is done by it.
    QXmlStreamReader::TokenType readNext();
    bool readNextStartElement();
    void skipCurrentElement();
    /// Goes through the text of the current element and of all elements in it, piece by piece.
    void readText(const std::function<void(const QStringRef&)>& take);
    void checkElement();
    /// Ends the reading because of a limit.
    void stop(ProblemKind kind, const QStringList& arguments);
    void stop(ProblemKind kind, qint64 limit) { stop(kind, {QString::number(limit)}); }
    /// Gives up what was read, as the caller asked.
    void dropAll();
    /// Stops if the points, the sections and what is pending of them are too many.
    void checkEntries(std::size_t pending);
    void readNetwork();
    void readParameters();
    void readPointsObservations();
    void readPoint();
    void readHeightDifferences();
    PendingSection readSection();
    void readDescription();
    /// Reads a matrix for so many measurements; each number of the band is handed out with its row and
    /// column.
    Covariance readMatrix(qint64 size, const std::function<void(qint64, qint64, const QString&)>& take);
    void readCovariance(std::vector<PendingSection>& sections);
    void readCoordinates();
    PendingHeight readObservedPoint(qint64& rows);
    void addObservedHeights(const std::vector<PendingHeight>& heights, const std::vector<double>& covariance);
    void completeObservedHeights();
    void readOtherObservations();
    void skipUnknownElement(const QString& parent);
    /// Skips to the end of an element that should have no child elements.
    void skipContent();

    void addSection(const PendingSection& pending);
    int pointIndex(const QString& id, qint64 line);
    void completeSigmas();
    void checkPoints();
    void addProblem(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments = {});

    /// Value of an attribute without blanks around it; a null string if there is none.
    QString attribute(QLatin1String name) const;
    /// The name of a point; one that is known already takes no memory again.
    QString pointAttribute(QLatin1String name) const;
    /// A number of a positive quantity; an attribute that is there but unusable becomes a problem.
    std::optional<double> positiveAttribute(QLatin1String name, ProblemKind kind,
                                            const PendingSection& section);
    std::optional<double> parameter(QLatin1String name);

    LimitedDevice input;
    QXmlStreamReader xml;
    int depth = 0;
    /// Why reading was ended before the end of the file, if it was.
    std::optional<Problem> limitProblem;
    GkfResult result;
    QHash<QString, int> indexOfPoint;
    QSet<QString> pointsWithRole;
    QHash<int, double> observedValues; ///< by index of the point
};

} // namespace levelling
