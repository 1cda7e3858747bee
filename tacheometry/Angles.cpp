#include "tacheometry/Angles.h"

#include <cmath>
#include <cstdint>

namespace tacheometry {

namespace angles {

namespace {

std::optional<double> fromSexagesimal(double number)
{
    // In whole millionths, which are hundredths of a second: the digits are what counts.
    constexpr std::int64_t perDegree = 1000000;
    constexpr std::int64_t perMinute = 10000;
    constexpr std::int64_t sixtySeconds = 6000;
    const std::int64_t digits = std::llround(std::abs(number) * static_cast<double>(perDegree));
    const std::int64_t minutes = digits % perDegree / perMinute;
    const std::int64_t seconds = digits % perMinute;
    if (minutes >= 60 || seconds >= sixtySeconds)
        return std::nullopt;
    const double degrees = static_cast<double>(digits / perDegree) + static_cast<double>(minutes) / 60.0 +
                           static_cast<double>(seconds) / (60.0 * sixtySeconds);
    return std::copysign(degrees, number) * kPi / 180.0;
}

} // namespace

std::optional<double> fromNumber(double number, Unit unit)
{
    switch (unit) {
    case Unit::Gon:
        return number * kPi / 200.0;
    case Unit::Degrees:
        return number * kPi / 180.0;
    case Unit::Mil:
        return number * kPi / 3200.0;
    case Unit::Sexagesimal:
        break;
    }
    return fromSexagesimal(number);
}

double normalise(double angle)
{
    const double rest = std::fmod(angle, kFullCircle);
    const double positive = rest < 0.0 ? rest + kFullCircle : rest;
    return positive < kFullCircle ? positive : 0.0;
}

double normaliseDifference(double angle)
{
    return std::remainder(angle, kFullCircle);
}

} // namespace angles

} // namespace tacheometry
