#pragma once

#include <QElapsedTimer>
#include <QTimer>

/// Watches the event loop by a timer of 5 ms: how much too late it comes is how long the loop was away.
class StallWatch
{
public:
    StallWatch();

    void start();
    /// @return the longest stall since start(), in seconds
    double stop();

private:
    void note();

    QTimer timer;
    QElapsedTimer sinceTick;
    qint64 longestStall = 0; // ns
};
