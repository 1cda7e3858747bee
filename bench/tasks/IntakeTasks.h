#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The lines of a run taken in, one after another.
std::unique_ptr<Task> makeIntakeTask(const TaskRequest& request);
/// One line of `size` bytes of beginnings of links taken in.
std::unique_ptr<Task> makeHostileTask(const TaskRequest& request);

} // namespace orvel::bench
