#pragma once

#include "host/host_export.h"

namespace qor {

/// The bare progress bar, for computations that have no lines to write. Used in the GUI thread.
struct HOST_EXPORT ProgressImplementation
{
    virtual ~ProgressImplementation() = default;

    /// Shows how far the work is, 0 to 100; values outside are clamped.
    virtual void setPercentage(int percentage) = 0;
    /// The work is done: the bar is full.
    virtual void finish() = 0;
    /// A stage with a percentage of its own begins: the bar starts again from empty.
    virtual void startDetailedStage() = 0;
};

} // namespace qor
