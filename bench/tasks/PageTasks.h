#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The page of a run as a file: data file read, page made, data file written back, page written.
std::unique_ptr<Task> makePageTask(const TaskRequest& request);
/// The same for a run in stages.
std::unique_ptr<Task> makeStagedPageTask(const TaskRequest& request);
/// The page of one item, as a text.
std::unique_ptr<Task> makeItemPageTask(const TaskRequest& request);

} // namespace orvel::bench
