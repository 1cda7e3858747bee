#pragma once

#include "levelling/Network.h"

#include <Eigen/Dense>

#include <vector>

namespace orvel::test {

/// The least-squares adjustment of a network by the book, with dense matrices and nothing of the library:
/// what the tests compare it with.
struct DenseOracle
{
    /// Longer numbers than those of the library, since normal equations of very different weights lose
    /// digits.
    using Matrix = Eigen::Matrix<long double, Eigen::Dynamic, Eigen::Dynamic>;
    using Vector = Eigen::Matrix<long double, Eigen::Dynamic, 1>;

    explicit DenseOracle(const levelling::Network& network);

    /// Index of the part of a point: sections and covariances connect.
    std::vector<int> part;
    std::vector<bool> isDetermined; ///< by point
    std::vector<double> heights;    ///< m, by point; those that are determined
    std::vector<double> sigmas;     ///< mm, a priori
    std::vector<int> redundancy;    ///< by part
    std::vector<double> pvv;        ///< by part

    /// By measurement: the sections that take part, in their order.
    std::vector<int> sections;
    Vector residuals; ///< mm
    Matrix cofactors; ///< of the residuals, in units of the sigmas
};

} // namespace orvel::test
