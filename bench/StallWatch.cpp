#include "bench/StallWatch.h"

#include <algorithm>

namespace {

constexpr int kIntervalMs = 5;

} // namespace

StallWatch::StallWatch()
{
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(kIntervalMs);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { note(); });
}

void StallWatch::start()
{
    longestStall = 0;
    sinceTick.start();
    timer.start();
}

double StallWatch::stop()
{
    note();
    timer.stop();
    return static_cast<double>(longestStall) * 1e-9;
}

void StallWatch::note()
{
    longestStall = std::max(longestStall, sinceTick.nsecsElapsed() - kIntervalMs * qint64{1000000});
    sinceTick.start();
}
