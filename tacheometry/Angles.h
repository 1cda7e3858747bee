#pragma once

#include <optional>

namespace tacheometry {

/// Angles in rad, and what instruments write for them.
namespace angles {

constexpr double kPi = 3.14159265358979323846;
constexpr double kFullCircle = 2.0 * kPi;
constexpr double kSecondsPerRadian = 180.0 * 3600.0 / kPi;

enum class Unit {
    Gon,
    Degrees,
    Sexagesimal, ///< DDD.MMSSs: degrees, two digits for minutes, two for seconds and their decimals
    Mil          ///< 6400 of them are a full circle
};

/// The angle that a number stands for; none if it has minutes or seconds over 59.
std::optional<double> fromNumber(double number, Unit unit);

/// The same angle from 0 up to and without 2π.
double normalise(double angle);
/// The same angle from -π to π, as differences of directions are meant.
double normaliseDifference(double angle);

} // namespace angles

} // namespace tacheometry
