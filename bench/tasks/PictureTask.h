#pragma once

#include "bench/Task.h"

#include <memory>

namespace orvel::bench {

/// The picture of a network of `size` points without coordinates: laid out, painted whole, near and in the
/// sizes between, hovered over, selected in.
std::unique_ptr<Task> makePictureTask(const TaskRequest& request);

} // namespace orvel::bench
