#pragma once

/// Clocks in seconds from some moment on.
namespace orvel::bench::clocks {

/// Time on the wall.
double getSteady();
/// Processor time of the process, all threads: what the time on the wall would be on an idle machine, but for
/// waiting and for threads side by side.
double getProcessCpu();
/// Processor time of the calling thread.
double getThreadCpu();

} // namespace orvel::bench::clocks
