#pragma once

#include "levelling/Components.h"
#include "levelling/Network.h"

#include <optional>
#include <vector>

namespace levelling {

/// A point whose height is determined. Standard deviations here are a priori ones.
struct AdjustedPoint
{
    /// Height carried from the fixed points before the adjustment, m.
    double approximateHeight = 0.0;
    /// Adjusted height, m; of a fixed point the given one.
    double height = 0.0;
    /// Standard deviation of the height, mm; 0 for a fixed point.
    double sigma = 0.0;
};

/// A section that took part. Standard deviations here are a priori ones.
struct AdjustedSection
{
    /// Measured difference less that of the approximate heights, mm.
    double absoluteTerm = 0.0;
    /// v = adjusted - observed, mm.
    double residual = 0.0;
    /// Share of the measurement that the others check: 0 (not at all) to 1.
    double redundancy = 0.0;
    /// Standard deviation of the residual, mm, and residual / its standard deviation; none if nothing checks
    /// the measurement.
    std::optional<double> residualSigma;
    std::optional<double> normalisedResidual;
};

/// Fit of the measurements.
struct FitStatistics
{
    /// Degrees of freedom: sections - unknown heights.
    int redundancy = 0;
    /// Weighted sum of squared residuals, weights 1 / sigma²; times sigma-apr² it is in mm².
    double pvv = 0.0;

    /// A posteriori standard deviation of unit weight as a multiple of the a priori one, sqrt(pvv /
    /// redundancy); none without redundancy. Times sigma-apr it is in mm.
    std::optional<double> getSigma0() const;
};

enum class AdjustmentStatus {
    Ok,
    NothingToAdjust, ///< no section leads to a fixed point; the undetermined points are named
    Singular,        ///< weights too different for the arithmetic; there are no results
};

/// Results of the least-squares adjustment.
struct Adjustment
{
    AdjustmentStatus status = AdjustmentStatus::Ok;
    int unknowns = 0;
    /// By index of the point or section; none for those that could not take part.
    std::vector<std::optional<AdjustedPoint>> points;
    std::vector<std::optional<AdjustedSection>> sections;
    std::vector<UndeterminedPoint> undetermined;
    /// Fit of all components together, and of each in the order of findComponents(); none without datum.
    FitStatistics total;
    std::vector<std::optional<FitStatistics>> components;
    /// What an a priori standard deviation is to be multiplied with as the parameter sigma-act asks: 1, or
    /// the a posteriori sigma0 of all components together. Without redundancy it is 1 in either case.
    double sigmaScale = 1.0;
};

/// Adjusts all components that have a datum, by least squares with weights 1 / sigma².
Adjustment adjust(const Network& network);

} // namespace levelling
