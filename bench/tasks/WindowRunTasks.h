#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// A run that writes its lines as fast as it can: with the progress window open, and for the program "bare"
/// straight into the protocol.
std::unique_ptr<Task> makeWindowRunTask(const TaskRequest& request);

} // namespace orvel::bench
