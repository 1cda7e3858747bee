#pragma once

#include "bench/Task.h"

#include <QTimer>

#include <functional>

namespace orvel::bench {

/// Watches the event loop by a timer of 5 ms: how much too late it comes is how long the loop was away.
class StallWatch
{
public:
    StallWatch();

    void start();
    /// The longest stall since start(), and the most work between two ticks.
    Stall stop(const QString& part);
    /// The longest stall of a step: of what the user does, and of all that follows of it, in the event loop,
    /// until nothing is working for it any more.
    Stall watch(const QString& part, const std::function<void()>& step,
                const std::function<bool()>& isWorking);

private:
    void restart();
    void note();

    QTimer timer;
    double lastTick = 0;
    double cpuAtLastTick = 0;
    Stall longest;
};

} // namespace orvel::bench
