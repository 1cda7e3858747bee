#pragma once

#include "bench/Measurement.h"
#include "bench/Operations.h"

#include <vector>

/// What one program took for one operation at one size, once per round.
struct Series
{
    QString operation;
    int size = 0;
    QString program;
    std::vector<Measurement> measurements;

    double getMedianSeconds() const;
    qint64 getMedianPeakBytes() const;
};

/// Measures an operation at one size: all programs in turn, round after round, each measurement in a process
/// of its own. Ends the program when a measurement fails or when two programs did not do the same.
std::vector<Series> measureInRounds(const Operation& operation, int size, int rounds, const QString& folder);
