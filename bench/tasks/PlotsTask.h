#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The plots of an adjusted network of `size` points, opened, gone through, made anew and left while they are
/// made.
std::unique_ptr<Task> makePlotsTask(const TaskRequest& request);

} // namespace orvel::bench
