#pragma once

#include "levelling/Adjustment.h"

namespace orvel::bench {

/// Results for each point and section, as many different ones as there are after an adjustment.
levelling::Adjustment makeResults(const levelling::Network& network);

} // namespace orvel::bench
