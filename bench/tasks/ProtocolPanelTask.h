#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The lines of a protocol of `size` lines inside the desk, opened, searched and gone through.
std::unique_ptr<Task> makeProtocolPanelTask(const TaskRequest& request);

} // namespace orvel::bench
