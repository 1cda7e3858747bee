#pragma once

#include "bench/Rounds.h"

#include <QString>

#include <vector>

/// All medians, and the ratios between the programs, as a table.
QString makeTable(const std::vector<Series>& list);

/// The medians as JSON rows with the keys operation, size, program, seconds and peak_bytes.
QByteArray makeJson(const std::vector<Series>& list);
