#pragma once

#include <Eigen/Dense>

#include <functional>
#include <vector>

namespace levelling {

/// The largest set of given values that agree with each other up to a common shift.
struct ConsistentSet
{
    /// Those that do not belong to it, ascending.
    std::vector<int> excluded;
    /// Others of the same number without which the rest agrees, too, and nearly as well.
    std::vector<std::vector<int>> alternatives;
    bool isLargest = true; ///< no larger one exists
    bool isStopped = false;
};

/// Limits of the tests by the number of the values that they are about, at least 2.
struct SetLimits
{
    /// Of the weighted sum of squares.
    std::function<double(int)> sum;
    /// Of a value against the others, in standard deviations.
    std::function<double(int)> single;
    /// What the weighted sums of two sets must differ by for the smaller one to count, as a square.
    double distinction = 0.0;
};

/// @param weights     symmetric, positive semidefinite, with rows that sum to 0: see analyseFixedPoints()
/// @param differences of the values, any common shift included
ConsistentSet findConsistentSet(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences,
                                const SetLimits& limits, const std::function<bool()>& isStopped = {});

} // namespace levelling
