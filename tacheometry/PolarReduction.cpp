#include "tacheometry/PolarReduction.h"

#include <cmath>

namespace tacheometry {

namespace polar {

Reduced reduceSlope(double slope, double zenith)
{
    const double flat = slope * std::sin(zenith);
    const double up = slope * std::cos(zenith);
    return {flat - (1.0 - kRefraction / 2.0) * flat * up / kEarthRadius,
            up + (1.0 - kRefraction) * flat * flat / (2.0 * kEarthRadius)};
}

double riseAt(double horizontal, double zenith)
{
    return horizontal / std::tan(zenith) +
           (1.0 - kRefraction) * horizontal * horizontal / (2.0 * kEarthRadius);
}

} // namespace polar

} // namespace tacheometry
