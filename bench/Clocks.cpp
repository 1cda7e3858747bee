#include "bench/Clocks.h"

#include <chrono>
#include <ctime>

namespace orvel::bench::clocks {

namespace {

double getSeconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

} // namespace

double getSteady()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double getProcessCpu()
{
    return getSeconds(CLOCK_PROCESS_CPUTIME_ID);
}

double getThreadCpu()
{
    return getSeconds(CLOCK_THREAD_CPUTIME_ID);
}

} // namespace orvel::bench::clocks
