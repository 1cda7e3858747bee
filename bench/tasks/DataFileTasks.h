#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The data file read into an empty store.
std::unique_ptr<Task> makeReadTask(const TaskRequest& request);
/// The data file written, the store emptied.
std::unique_ptr<Task> makeWriteTask(const TaskRequest& request);

} // namespace orvel::bench
