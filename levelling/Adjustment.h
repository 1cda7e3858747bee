#pragma once

#include "levelling/Components.h"
#include "levelling/Network.h"

#include <optional>
#include <vector>

namespace levelling {

/// A point whose height is determined.
struct AdjustedPoint
{
    /// Height carried from the held points before the adjustment, m.
    double approximateHeight = 0.0;
    /// Adjusted height, m; of a fixed point the given one.
    double height = 0.0;
    /// A priori standard deviation of the height, mm; 0 for a fixed point.
    double sigma = 0.0;
    /// What sigma is to be multiplied with as the parameter sigma-act asks, see PartFit.
    double sigmaScale = 1.0;
    bool isScaled = false; ///< by the a posteriori sigma0
};

/// A measurement that took part: a section, or the observed height of a benchmark.
struct AdjustedMeasurement
{
    /// v = adjusted - observed, mm.
    double residual = 0.0;
    /// Share of a gross error that the residual shows, r: 0 (nothing checks the measurement) to 1.
    double redundancy = 0.0;
    /// A priori standard deviation of the residual, mm, and residual / this; none if nothing checks the
    /// measurement.
    std::optional<double> residualSigma;
    std::optional<double> normalisedResidual;
    /// What the test takes: the normalised residual, or that over the a posteriori sigma0 of the part (Pope's
    /// tau), see PartFit.
    std::optional<double> statistic;
};

/// A section that took part.
struct AdjustedSection : AdjustedMeasurement
{
    /// Measured difference less that of the approximate heights, mm.
    double absoluteTerm = 0.0;
    /// The gross error that would explain the residual best, mm, and the least one that the test finds with a
    /// probability of 80 %, mm; none if nothing checks the section.
    std::optional<double> grossError;
    std::optional<double> detectableError;
};

/// An observed height, see Network::observedHeights.
struct AdjustedHeight : AdjustedMeasurement
{
    int point = 0;
};

/// A measurement with its a priori standard deviation, mm: a section, or the observed height of a point.
struct MeasurementSigma
{
    int section = -1;
    int point = -1;
    double sigma = 1.0;
};

/// How the measurements of a part fit together.
struct PartFit
{
    /// Heights that are sought, and how many of them the measurements leave open (1 in a free network).
    int unknowns = 0;
    int defect = 0;
    /// Degrees of freedom.
    int redundancy = 0;
    /// Weighted sum of squared residuals, weights 1 / sigma²; times sigma-apr² it is in mm².
    double pvv = 0.0;
    /// Two-sided limits of sigma0 over the a priori one; none without redundancy.
    std::optional<double> lowerRatio;
    std::optional<double> upperRatio;
    /// What a priori standard deviations are to be multiplied with as the parameter sigma-act asks: 1, or the
    /// a posteriori sigma0. Without redundancy it is 1 in either case.
    double sigmaScale = 1.0;
    bool isScaled = false; ///< by the a posteriori sigma0
    /// Residuals are tested by Pope's tau. With a single degree of freedom tau is always 1, and the
    /// normalised residual is tested though the parameter sigma-act asks for the other.
    bool isStudentised = false;
    /// Limits of the test statistic: the one that the largest of all residuals of the network exceeds with
    /// the error probability, and the one that a single residual exceeds with it.
    double errorLimit = 0.0;
    double warningLimit = 0.0;
    /// The measurements with the smallest and the largest standard deviation.
    MeasurementSigma leastSigma;
    MeasurementSigma largestSigma;

    /// A posteriori standard deviation of unit weight as a multiple of the a priori one, sqrt(pvv /
    /// redundancy); none without redundancy. Times sigma-apr it is in mm.
    std::optional<double> getSigma0() const;
    double getSigmaRatio() const { return largestSigma.sigma / leastSigma.sigma; }
    /// So different weights cost digits of heights and standard deviations.
    bool isIllConditioned() const;
};

/// What the parameter tol-abs finds too far from the approximate heights.
struct ImplausibleSections
{
    /// One of these; the likeliest first. More than one cannot be told apart.
    std::vector<int> sections;
    /// Difference of the first from what all others say, mm.
    double difference = 0.0;
};

enum class AdjustmentStatus {
    Ok,
    NothingToAdjust, ///< no section leads to a held point; the undetermined points are named
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
    std::vector<AdjustedHeight> observedHeights;
    std::vector<UndeterminedPoint> undetermined;
    std::vector<Component> components;
    /// By index of the component; none without datum.
    std::vector<std::optional<PartFit>> fits;
    /// By index of the point or section: its component.
    std::vector<int> componentOfPoint;
    /// See SectionSeries.
    std::vector<int> seriesOfSection;
    /// Count of the tests that share the error probability.
    int testCount = 0;
    std::vector<ImplausibleSections> implausible;

    /// The fit of the part that the point belongs to, which must have one.
    const PartFit& getFit(int point) const;
    int countRedundant() const;
};

/// Adjusts all components that have a datum, by least squares with weights 1 / sigma².
Adjustment adjust(const Network& network);

} // namespace levelling
