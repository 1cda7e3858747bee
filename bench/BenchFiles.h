#pragma once

#include "bench/Task.h"

#include <QString>

namespace orvel::bench {

// All functions here throw qor::CFileException when a file can't be read or written.

/// Where the task may write a file of its own; it ends in a dot and `suffix`.
QString getWorkPath(const TaskRequest& request, const QString& suffix);

/// Where the data file of a run of `size` messages lies in the folder of the benchmark's files.
QString getDataFilePath(const QString& folder, int protocolType, int size);
/// Makes the data file unless it is there.
void prepareDataFile(const QString& folder, int protocolType, int size);

} // namespace orvel::bench
