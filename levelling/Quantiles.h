#pragma once

namespace levelling {

/// Limits of statistical tests. Each is two-sided: what is tested lies beyond it with the error probability,
/// which is between 0 and 1, if there is no gross error.
namespace quantiles {

/// Error probability of each of so many tests that together have the given one (Z. Šidák, Rectangular
/// confidence regions for the means of multivariate normal distributions, J. Am. Stat. Assoc. 62, 1967):
/// 1 - (1 - error)^(1 / count).
double shareOfEach(double error, int count);

/// Of the absolute value of what is normally distributed with standard deviation 1.
double normalLimit(double error);

/// Of the absolute value of a residual over its a posteriori standard deviation (A. J. Pope, The statistics
/// of residuals and the detection of outliers, NOAA Technical Report NOS 65 NGS 1, 1976): with Student's t of
/// one degree of freedom less, t * sqrt(f) / sqrt(f - 1 + t²).
/// @param redundancy f, at least 2
double tauLimit(int redundancy, double error);

/// Of the absolute value of what is normally distributed over an independent a posteriori standard deviation
/// (Student's t).
/// @param redundancy of the standard deviation, at least 1
double studentLimit(int redundancy, double error);

/// Of a variance over the one that it should be, from above only: chi² / freedom, or Fisher's F where the
/// latter is an independent a posteriori one.
/// @param freedom    degrees of freedom of the variance, at least 1
/// @param redundancy of the a posteriori one; 0 if it is known a priori
double varianceLimit(int freedom, int redundancy, double error);

/// With fewer degrees of freedom tau says nothing: with one it is always 1, with two it cannot be more than
/// √2, and the limits of usual levels are that, too, but for the fourth digit.
constexpr int kLeastTauRedundancy = 3;

/// Of the a posteriori sigma0 over the a priori one: sqrt(chi² / f) at both ends.
struct RatioLimits
{
    double lower;
    double upper;
};

/// @param redundancy f, at least 1
RatioLimits sigmaRatioLimits(int redundancy, double error);

/// What must be added to the limit of a normally distributed test for a gross error to exceed it with that
/// probability.
double normalQuantile(double probability);

} // namespace quantiles

} // namespace levelling
