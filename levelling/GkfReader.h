#pragma once

#include "levelling/Network.h"
#include "levelling/Problem.h"

#include <QHash>
#include <QSet>
#include <QXmlStreamReader>

#include <optional>
#include <vector>

class QIODevice;

namespace levelling {

/// What a file gave.
struct GkfResult
{
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
/// quantities 1e-9, is taken as unusable. What several tags of one point state is merged: the later wins.
class GkfReader
{
public:
    /// Reads the file of that path.
    static GkfResult readFile(const QString& path);
    /// Reads from a device that is open for reading.
    static GkfResult read(QIODevice& device);

private:
    struct PendingSection
    {
        QString from;
        QString to;
        QString valueText;
        std::optional<double> value;
        std::optional<double> distance;
        std::optional<double> stdev;
        std::optional<double> variance;
        qint64 line = 0;
    };

    explicit GkfReader(QIODevice& device);

    void readDocument();
    void readNetwork();
    void readParameters();
    void readPointsObservations();
    void readPoint();
    void readHeightDifferences();
    PendingSection readSection();
    void readCovariance(std::vector<PendingSection>& sections);
    /// Returns the count of covariances that are not zero.
    qint64 takeVariances(const QVector<QStringRef>& fields, qint64 band,
                         std::vector<PendingSection>& sections);
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
    /// A number of a positive quantity; an attribute that is there but unusable becomes a problem.
    std::optional<double> positiveAttribute(QLatin1String name, ProblemKind kind,
                                            const PendingSection& section);
    std::optional<double> parameter(QLatin1String name);

    QXmlStreamReader xml;
    GkfResult result;
    QHash<QString, int> indexOfPoint;
    QSet<QString> pointsWithRole;
};

} // namespace levelling
