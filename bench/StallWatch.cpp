#include "bench/StallWatch.h"

#include "bench/Clocks.h"

#include <QCoreApplication>

#include <algorithm>

namespace orvel::bench {

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
    longest = Stall();
    restart();
    timer.start();
}

Stall StallWatch::stop(const QString& part)
{
    note();
    timer.stop();
    longest.part = part;
    return longest;
}

Stall StallWatch::watch(const QString& part, const std::function<void()>& step,
                        const std::function<bool()>& isWorking)
{
    start();
    step();
    while (isWorking())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
    return stop(part);
}

void StallWatch::restart()
{
    lastTick = clocks::getSteady();
    cpuAtLastTick = clocks::getThreadCpu();
}

void StallWatch::note()
{
    longest.seconds = std::max(longest.seconds, clocks::getSteady() - lastTick - 0.001 * kIntervalMs);
    longest.cpuSeconds = std::max(longest.cpuSeconds, clocks::getThreadCpu() - cpuAtLastTick);
    restart();
}

} // namespace orvel::bench
