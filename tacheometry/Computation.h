#pragma once

#include "tacheometry/FieldBook.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

namespace tacheometry {

/// What a survey must keep to: conventions for a topographic survey at 1:2000.
struct Limits
{
    /// Longest distance to a point, m.
    double distance = 250.0;
    /// Largest difference of a direction to a known point from the orientation, rad: 1.5'.
    double orientation = 1.5 / 60.0 * 3.14159265358979323846 / 180.0;
    /// Largest collimation and index error, and difference between the faces from their mean, rad: 1'.
    double collimation = 1.0 / 60.0 * 3.14159265358979323846 / 180.0;
    /// Largest difference of the distances of the two faces, m.
    double faceDistance = 0.01;
    /// Largest differences in plan and height between two measurements of one point, or between a
    /// measurement and the given coordinates, m.
    double plan = 0.10;
    double height = 0.05;
    /// Largest difference from the coordinates that the instrument itself has computed, m.
    double recorded = 0.002;
};

/// Why a set-up gives no coordinates.
enum class SetupFailure {
    None,
    NoCoordinates, ///< of its station
    NoOrientation  ///< no direction leads to a point with coordinates
};

/// What the azimuth of the circle's zero comes from.
enum class OrientationSource {
    None,
    Instrument,      ///< it has set its circle
    GivenPoints,     ///< directions to points whose coordinates are given
    ComputedPoints,  ///< directions to points that other set-ups have determined
    RecordedTargets, ///< coordinates that the instrument has computed for its targets
};

/// A direction to a point with coordinates.
struct OrientationSight
{
    int sight = 0;            ///< of the set-up
    double orientation = 0.0; ///< azimuth less direction, rad
    double deviation = 0.0;   ///< from the orientation of the set-up, rad, -π to π
    double distance = 0.0;    ///< between the points by their coordinates, m
    bool isExcluded = false;  ///< from the mean: it contradicts the others
};

/// A target that was measured in both faces: mean and errors.
struct FacePair
{
    int first = 0; ///< sights of the set-up, one in each face
    int second = 0;
    /// c = (second direction ∓ 180° - first direction) / 2, rad.
    double collimation = 0.0;
    /// i = (both zenith angles - 360°) / 2, rad.
    double index = 0.0;
    /// Second distance less first, m; none if one of them is missing.
    std::optional<double> distanceDifference;
};

/// What came of one set-up.
struct SetupResult
{
    SetupFailure failure = SetupFailure::None;
    Position station;
    /// The station's coordinates were determined by an earlier set-up.
    bool isStationComputed = false;
    OrientationSource source = OrientationSource::None;
    double orientation = 0.0; ///< azimuth of the circle's zero, rad, 0 to 2π
    /// Directions to points with coordinates: those that give the orientation, or check it.
    std::vector<OrientationSight> orientationSights;
    /// Standard deviation of the orientation from directions, rad: of the mean of two or more.
    std::optional<double> orientationSigma;
    std::vector<FacePair> pairs;
    double collimation = 0.0; ///< mean of the pairs, rad
    double index = 0.0;       ///< mean of the pairs, rad

    /// Of the directions that are not excluded the farthest from the orientation; null if there is none.
    const OrientationSight* findWorst() const;
};

/// Where a measurement comes from.
struct SightKey
{
    int setup = 0;
    int sight = 0;
};

/// A point that was determined.
struct ComputedPoint
{
    QString name;
    QString code;
    Position position;
    SightKey origin;       ///< the first measurement, whose coordinates these are
    double distance = 0.0; ///< horizontal, m
};

/// A measurement of a point that has coordinates already, or a given height: measured less these.
struct Check
{
    SightKey sight;
    QString name;
    bool isGiven = false; ///< the coordinates are given
    SightKey origin;      ///< otherwise the measurement that they come from
    double dx = 0.0;
    double dy = 0.0;
    std::optional<double> dh;

    double getPlan() const;
};

/// Difference from the coordinates that the instrument has computed itself: ours less its, m.
struct RecordedDifference
{
    SightKey sight;
    double dx = 0.0;
    double dy = 0.0;
    std::optional<double> dh;

    /// The largest of them, as absolute value.
    double getLargest() const;
};

/// Why a sight gives no coordinates though its set-up has an orientation.
enum class SightFailure {
    NoDistance, ///< and the direction is not needed for an orientation
    NoDirection,
    NoZenith, ///< a slope distance cannot be reduced without it
};

struct UnusedSight
{
    SightKey sight;
    SightFailure failure = SightFailure::NoDistance;
};

/// A distance over the limit.
struct LongDistance
{
    SightKey sight;
    double distance = 0.0; ///< horizontal, m
};

/// What a field book gives.
struct Computation
{
    bool isStopped = false;
    std::vector<SetupResult> setups; ///< as in the field book
    /// In the order of the set-ups as they could be computed.
    std::vector<ComputedPoint> points;
    std::vector<Check> checks;
    std::vector<RecordedDifference> recorded;
    std::vector<UnusedSight> unused;
    std::vector<LongDistance> longDistances;
};

/// Coordinates of all points that the field book determines.
///
/// Set-ups are computed in the order of the field book; one whose station or orientation needs points of
/// later ones waits for these. Two faces of one target are one measurement, their mean. The first
/// measurement of a point determines it, further ones are checks. From station (x, y, H), azimuth t =
/// orientation + direction, horizontal distance D and rise h (see PolarReduction.h), instrument height i and
/// target height v
///
///     x' = x + m (D + b) cos t - m r sin t,  y' = y + m (D + b) sin t + m r cos t,  H' = H + i + h - v
///
/// with the scale m, and b and r how far the point lies beyond and to the right of its target. The
/// orientation is the instrument's own where it has one, otherwise the mean of azimuth less direction over
/// the points with given coordinates, without such over those that are computed by then. Of three and more,
/// those over the limit are excluded one by one, the farthest first, while two remain.
///
/// @param given  what is known of points, by name
/// @param isStopped  asked every few thousand sights; may be empty
Computation compute(const FieldBook& book, const QHash<QString, Position>& given, const Limits& limits = {},
                    const std::function<bool()>& isStopped = {});

} // namespace tacheometry
