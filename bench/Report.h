#pragma once

#include "bench/Rounds.h"

#include <QString>

#include <vector>

namespace orvel::bench {

/// All medians, and the ratios between the programs, as a table.
QString makeTable(const std::vector<Series>& list);

/// The medians as JSON rows with the keys operation, size, program, seconds and peak_bytes. The longest stall
/// of a part is a row of its own, such as "table_stall_sort".
QByteArray makeJson(const std::vector<Series>& list);

} // namespace orvel::bench
