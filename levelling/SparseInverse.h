#pragma once

#include <Eigen/SparseCholesky>

#include <vector>

namespace levelling {

/// Sparse Cholesky factorisation of a symmetric positive definite matrix whose lower half is stored.
using SparseCholesky =
    Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>, Eigen::Lower, Eigen::AMDOrdering<int>>;

/// Those elements of the inverse of a sparse symmetric matrix that lie in the pattern of its Cholesky factor:
/// the whole diagonal, and all places where the matrix itself is not zero.
///
/// K. Takahashi, J. Fagan, M.-S. Chin, Formation of a sparse bus impedance matrix and its application to
/// short circuit study, 1973; A. M. Erisman, W. F. Tinney, On computing certain elements of the inverse of a
/// sparse matrix, Comm. ACM 18, 1975. With A = L D L^T, Z = D^-1 L^-1 + (I - L^T) Z gives the columns of Z =
/// A^-1 from the last to the first, each from elements that lie in the pattern already.
class SparseInverse
{
public:
    /// From a factorisation that succeeded.
    explicit SparseInverse(const SparseCholesky& factorisation);

    /// Element (row, column) of the inverse, in the numbering of the matrix that was factorised. It must be
    /// in the pattern.
    double at(int row, int column) const;

private:
    void computeColumn(int column, std::vector<double>& sums);

    /// Factor L, strictly lower half.
    const Eigen::SparseMatrix<double>& factor;
    Eigen::VectorXi permutation;
    /// Diagonal of the inverse, first the inverse of D, and its other elements in the order of those of L.
    Eigen::VectorXd diagonal;
    std::vector<double> values;
};

} // namespace levelling
