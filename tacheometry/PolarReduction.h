#pragma once

namespace tacheometry {

/// From a measured slope distance to what coordinates and heights need.
///
/// The Earth is a sphere, and the line of sight an arc whose curvature is k times that of the Earth; with a
/// zenith angle z at the instrument and a slope distance s, up to terms of third order in s/R
///
///     D = s sin z - (1 - k/2) s² sin z cos z / R
///     h = s cos z + (1 - k) (s sin z)² / (2 R)
///
/// (trigonometric levelling with one-sided zenith angles; docs/tacheometry.md derives them).
namespace polar {

/// Mean radius of the Earth, m.
constexpr double kEarthRadius = 6371000.0;
/// Mean coefficient of refraction, found by Gauss in the triangulation of Hannover.
constexpr double kRefraction = 0.13;

struct Reduced
{
    double horizontal = 0.0; ///< D, at the height of the instrument's axis, m
    double rise = 0.0;       ///< h, of the target over the instrument's axis, m
};

/// @param slope s, m
/// @param zenith z, rad
Reduced reduceSlope(double slope, double zenith);

/// Rise to a target at a horizontal distance that is reduced already: D cot z + (1 - k) D² / (2 R).
/// @param horizontal D, m
/// @param zenith z, rad; not upwards or downwards
double riseAt(double horizontal, double zenith);

} // namespace polar

} // namespace tacheometry
