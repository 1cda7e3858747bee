#pragma once

#include "levelling/Network.h"

#include <QByteArray>

namespace orvel::test::networks {

/// A large network as levelling makes them: points spread over a square, each measured to its neighbours, so
/// many sections per point that there are sectionCount in all (at most about three times pointCount). Every
/// thousandth point is a benchmark. Heights are hilly, lengths about 1 km, errors of 3 mm * sqrt(km); the
/// same arguments give the same network.
levelling::Network synthetic(int pointCount, int sectionCount);

/// The network as a gama-local file.
QByteArray toGkf(const levelling::Network& network);

} // namespace orvel::test::networks
