#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// A table of `size` items with sorting and filtering, opened, sorted and filtered.
std::unique_ptr<Task> makeTableTask(const TaskRequest& request);

} // namespace orvel::bench
