#pragma once

#include <QStringList>

#include <optional>
#include <vector>

namespace levelling {

/// A point of the network.
struct Point
{
    QString id;
    /// Given height, m: the datum of a fixed point, otherwise at most an approximation.
    std::optional<double> height;
    /// Given coordinates, m: x runs north, y east. They are there together or not at all.
    std::optional<double> x;
    std::optional<double> y;
    /// The height is held. A fixed point always has a height.
    bool fixed = false;
    /// The height is an observation of its own, see ObservedHeights. It is there then, and not held.
    bool observed = false;
    /// The point carries the datum of a free network: one of those whose mean height stays.
    bool constrained = false;
    /// False if the point is known from sections only.
    bool declared = false;
    /// The file that declares the point, or that uses it first, as index into Network::sources.
    int source = 0;
    /// Line of that file.
    qint64 line = 0;

    /// The point belongs to a tacheometric survey or a list of coordinates: no section need lead to it.
    bool surveyed = false;

    bool isBenchmark() const { return fixed || observed; }
    bool hasPlan() const { return x && y; }
};

/// Heights of benchmarks that are known with their covariances, as an earlier adjustment gives them.
struct ObservedHeights
{
    /// Indices of the points, which have the heights; each point is in one of the groups.
    std::vector<int> points;
    /// Covariances of the heights, mm², row by row: symmetric and positive definite.
    std::vector<double> covariance;
};

/// A measured height difference.
struct Section
{
    /// Indices of the two points in Network::points; they differ.
    int from = 0;
    int to = 0;
    /// Height of "to" above "from", m.
    double difference = 0.0;
    /// Length of the levelled line, km, positive.
    std::optional<double> distance;
    /// Standard deviation as stated in the file, mm, positive.
    std::optional<double> stdev;
    /// A priori standard deviation that the computations use, mm, positive.
    double sigma = 0.0;
    /// Count of the set-ups of the instrument, positive.
    std::optional<int> stations;
    /// Sum of the differences of the two readings of each station, first minus second, mm.
    std::optional<double> readingDifference;
    /// When it was measured and what was noted, as the file has it; empty if it has nothing.
    QString date;
    QString note;
    /// The file that the section comes from, as index into Network::sources.
    int source = 0;
    /// Line of that file.
    qint64 line = 0;
};

/// Which reference standard deviation scales the results.
enum class SigmaAct { Apriori, Aposteriori };

/// Parameters of the adjustment. The initial values are the defaults of the gama-local format.
struct Parameters
{
    /// A priori standard deviation of 1 km of levelling, mm.
    double sigmaApriori = 10.0;
    SigmaAct sigmaAct = SigmaAct::Aposteriori;
    /// Largest plausible difference of a measurement from the approximate heights, mm.
    double toleranceAbsolute = 1000.0;
    /// Probability with which statistical tests pass what is free of gross errors, between 0 and 1.
    double confidence = 0.95;
};

/// A levelling network: plain data, in the order of the file.
struct Network
{
    QString description;
    /// Names of the files that it was read from; empty if nobody has told them, and all sources are 0 then.
    QStringList sources;
    Parameters parameters;
    std::vector<Point> points;
    std::vector<Section> sections;
    std::vector<ObservedHeights> observedHeights;
};

} // namespace levelling
