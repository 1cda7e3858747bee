#pragma once

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

/// Polar surveying with a total station: what was measured, and what follows from it.
///
/// x runs north, y east, heights up; all in m. Angles are in rad, horizontal ones clockwise.
namespace tacheometry {

/// Where a point is, as far as it is known. x and y are there together or not at all.
struct Position
{
    std::optional<double> x;
    std::optional<double> y;
    std::optional<double> height;

    bool hasPlan() const { return x && y; }
};

/// A point whose coordinates a file gives.
struct GivenPoint
{
    QString name;
    QString code; ///< what it is, as the surveyor has coded it
    Position position;
    qint64 line = 0; ///< of the file
};

/// One pointing at a target.
struct Sight
{
    QString point;
    QString code; ///< what the point is, as the surveyor has coded it
    /// Reading of the horizontal circle, from 0 to 2π.
    std::optional<double> direction;
    /// Reading of the vertical circle, 0 upwards, from 0 to 2π: beyond π in the second face.
    std::optional<double> zenith;
    /// To the target, positive, as the instrument has recorded it: with its corrections for prism and air.
    std::optional<double> slopeDistance;
    /// Instead of a slope distance, if the instrument has reduced it.
    std::optional<double> horizontalDistance;
    double targetHeight = 0.0; ///< of the target over the point
    /// How far the point lies behind the target and to the right of it, seen from the instrument.
    double beyond = 0.0;
    double right = 0.0;
    /// The point's coordinates as the instrument itself has computed them.
    Position recorded;
    qint64 line = 0; ///< of the file

    bool hasDistance() const { return slopeDistance || horizontalDistance; }
};

/// The instrument stands on a point, at one height and with its circle as it is.
struct Setup
{
    QString station;
    std::optional<double> instrumentHeight;
    /// Azimuth of the circle's zero, if the instrument has set it.
    std::optional<double> orientation;
    /// What distances are multiplied with for the coordinates.
    double scale = 1.0;
    std::vector<Sight> sights; ///< in the order of the file
    int source = 0;            ///< which of the files that were imported
    qint64 line = 0;           ///< of the file
};

/// All set-ups, in the order in which they were measured.
struct FieldBook
{
    /// Nobody has more sights, or set-ups, in one book.
    static constexpr std::size_t kMostSights = 3000000;

    std::vector<Setup> setups;

    bool isEmpty() const { return setups.empty(); }
    std::size_t countSights() const;
};

} // namespace tacheometry
