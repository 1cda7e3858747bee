#pragma once

#include "bench/Task.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

namespace orvel::bench {

/// What one run of a task cost.
struct Measurement
{
    double seconds = 0;    ///< by the clock on the wall
    double cpuSeconds = 0; ///< of the process, all threads
    qint64 peakBytes = 0;  ///< most memory in use during the run, less what was in use before it
    QString digest;        ///< of the result; empty unless asked for
    std::vector<Stall> stalls;
};

/// Calls the function once and measures that: times and memory.
Measurement measureCall(const std::function<void()>& function);

/// One line of JSON, in which a child process hands its measurement over.
QByteArray toLine(const Measurement& measurement);
/// False for a line that holds no measurement.
bool fromLine(const QByteArray& line, Measurement& measurement);

} // namespace orvel::bench
