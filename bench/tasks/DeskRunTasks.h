#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// Import, Compile, Adjust and L1 analysis of a network with as many points; "bare" computes the same and
/// puts the lines straight into the protocol, "window" shows the progress window, "busy" works beside other
/// programs.
std::unique_ptr<Task> makeDeskRunTask(const TaskRequest& request);
/// The import of a network alone, with the item table and the progress window or without a window.
std::unique_ptr<Task> makeImportTask(const TaskRequest& request);

} // namespace orvel::bench
