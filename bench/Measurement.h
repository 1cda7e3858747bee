#pragma once

#include "bench/Operations.h"

#include <QByteArray>
#include <QString>

/// Size of the run that goes before a measurement.
constexpr int kWarmUpSize = 100;

/// What one run of a task cost.
struct Measurement
{
    double seconds = 0;
    qint64 peakBytes = 0; ///< most memory in use during the run, less what was in use before it
    QString digest;       ///< of the result; empty unless asked for
};

/// Runs the task once with a few messages, so that everything is loaded, and then measures it.
Measurement measure(const Operation& operation, const TaskRequest& request, bool wantsDigest);

/// One line of JSON; a child process hands its measurement over in it.
QByteArray toLine(const Measurement& measurement);
/// False for a line that holds no measurement.
bool fromLine(const QByteArray& line, Measurement& measurement);
