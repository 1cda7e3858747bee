#include "levelling/SparseInverse.h"

#include <algorithm>

namespace levelling {

SparseInverse::SparseInverse(const SparseCholesky& factorisation)
    : factor(factorisation.matrixL().nestedExpression())
    , permutation(factorisation.permutationP().indices())
    , diagonal(factorisation.vectorD().cwiseInverse())
    , values(static_cast<std::size_t>(factor.nonZeros()))
{
    std::vector<double> sums(static_cast<std::size_t>(factor.cols()), 0.0);
    for (auto column = static_cast<int>(factor.cols()) - 1; column >= 0; --column)
        computeColumn(column, sums);
}

double SparseInverse::at(int row, int column) const
{
    const auto [low, high] = std::minmax({permutation[row], permutation[column]});
    if (low == high)
        return diagonal[low];
    const int* rows = factor.innerIndexPtr();
    const int* place =
        std::lower_bound(rows + factor.outerIndexPtr()[low], rows + factor.outerIndexPtr()[low + 1], high);
    return values[static_cast<std::size_t>(place - rows)];
}

void SparseInverse::computeColumn(int column, std::vector<double>& sums)
{
    const int* outer = factor.outerIndexPtr();
    const int* rows = factor.innerIndexPtr();
    const double* l = factor.valuePtr();
    const int begin = outer[column];
    const int end = outer[column + 1];

    std::fill_n(sums.begin(), end - begin, 0.0);
    const auto sum = [&sums, begin](int i) -> double& { return sums[static_cast<std::size_t>(i - begin)]; };
    for (int i = begin; i < end; ++i) {
        sum(i) += l[i] * diagonal[rows[i]];
        // The rows of this column below row i are among the rows of column i of the factor, both ascending.
        int inner = outer[rows[i]];
        for (int k = i + 1; k < end; ++k) {
            while (rows[inner] != rows[k])
                ++inner;
            const double z = values[static_cast<std::size_t>(inner)];
            sum(k) += l[i] * z;
            sum(i) += l[k] * z;
        }
    }
    for (int i = begin; i < end; ++i) {
        values[static_cast<std::size_t>(i)] = -sum(i);
        diagonal[column] += l[i] * sum(i);
    }
}

} // namespace levelling
