#pragma once

#include "levelling/Network.h"

#include <QString>

#include <vector>

/// Networks that the tests of several classes use.
namespace orvel::test::networks {

/// Reads a network of the samples folder; the test fails if it has any problem.
levelling::Network sample(const QString& fileName);

/// Builds a network from points and sections.
class Builder
{
public:
    Builder& fixed(const QString& id, double height);
    Builder& unknown(const QString& id);
    /// Points that are not there yet become free ones. Sigma is 1 mm * sqrt(distance).
    Builder& section(const QString& from, const QString& to, double difference, double distance = 1.0);
    levelling::Network build() const { return network; }

private:
    int index(const QString& id);

    levelling::Network network;
};

/// Index of the point with that id; -1 if there is none.
int pointIndex(const levelling::Network& network, const QString& id);

/// Ids of points, joined by hyphens.
QString ids(const levelling::Network& network, const std::vector<int>& points);

/// A network of random sections with random lengths and misclosures of some mm, with parallel sections and
/// spurs, in as many connected parts as chance makes; the first fixedCount points are fixed.
levelling::Network random(unsigned seed, int pointCount, int sectionCount, int fixedCount);

/// A square of side * side free points, each connected with its neighbours in the row and the column.
levelling::Network grid(int side);

/// The same with one diagonal in every square, and with the first fixedCount points fixed.
levelling::Network triangulation(int side, int fixedCount);

} // namespace orvel::test::networks
