#pragma once

#include "bench/Measurement.h"
#include "bench/Operations.h"

#include <vector>

namespace orvel::bench {

/// What one program took for one operation at one size, once per round.
struct Series
{
    QString operation;
    int size = 0;
    QString program;
    qint64 dataFileBytes = 0; ///< size of the data file that the operation works on; 0 without one
    std::vector<Measurement> measurements;

    double getMedianSeconds() const;
    double getMedianCpuSeconds() const;
    qint64 getMedianPeakBytes() const;
    /// The median of each part's longest stalls.
    std::vector<Stall> getMedianStalls() const;
};

/// Measures an operation at one size: all programs in turn, round after round, each measurement in a process
/// of its own.
/// @throws std::runtime_error when a measurement fails or when two programs did not come to the same result
std::vector<Series> measureInRounds(const Operation& operation, int size, int rounds, const QString& folder);

} // namespace orvel::bench
