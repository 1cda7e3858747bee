#include "levelling/SparseInverse.h"

#include <QtTest>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <random>

using namespace levelling;

namespace {

/// Lower half of a random symmetric positive definite matrix with about so many elements per row.
Eigen::SparseMatrix<double> randomMatrix(unsigned seed, int size, int elementsPerRow)
{
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> index(0, size - 1);
    std::uniform_real_distribution<double> value(0.1, 2.0);
    std::vector<Eigen::Triplet<double>> elements;
    elements.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(3 * elementsPerRow / 2 + 1));
    for (int i = 0; i < size; ++i)
        elements.emplace_back(i, i, 0.01 + value(generator));
    for (int i = 0; i < size * elementsPerRow / 2; ++i) {
        const auto [column, row] = std::minmax({index(generator), index(generator)});
        if (row == column)
            continue;
        const double weight = value(generator);
        elements.emplace_back(row, column, -weight);
        elements.emplace_back(row, row, weight);
        elements.emplace_back(column, column, weight);
    }
    Eigen::SparseMatrix<double> matrix(size, size);
    matrix.setFromTriplets(elements.begin(), elements.end());
    return matrix;
}

} // namespace

class TestSparseInverse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneByOne();
    void agreesWithDenseInverse_data();
    void agreesWithDenseInverse();
};

void TestSparseInverse::oneByOne()
{
    Eigen::SparseMatrix<double> matrix(1, 1);
    matrix.insert(0, 0) = 4.0;
    const SparseCholesky cholesky(matrix);
    QCOMPARE(SparseInverse(cholesky).at(0, 0), 0.25);
}

void TestSparseInverse::agreesWithDenseInverse_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("elementsPerRow");
    QTest::newRow("diagonal") << 10 << 0;
    QTest::newRow("very sparse") << 80 << 2;
    QTest::newRow("sparse") << 120 << 4;
    QTest::newRow("filled") << 60 << 20;
}

void TestSparseInverse::agreesWithDenseInverse()
{
    QFETCH(int, size);
    QFETCH(int, elementsPerRow);
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Eigen::SparseMatrix<double> matrix = randomMatrix(seed, size, elementsPerRow);
        const SparseCholesky cholesky(matrix);
        const SparseInverse inverse(cholesky);
        const Eigen::MatrixXd lower = matrix;
        const Eigen::MatrixXd reference = Eigen::MatrixXd(lower.selfadjointView<Eigen::Lower>()).inverse();
        for (int column = 0; column < size; ++column) {
            for (Eigen::SparseMatrix<double>::InnerIterator it(matrix, column); it; ++it) {
                const double expected = reference(it.row(), column);
                const auto row = static_cast<int>(it.row());
                QVERIFY(std::abs(inverse.at(row, column) - expected) < 1e-10);
                QCOMPARE(inverse.at(column, row), inverse.at(row, column));
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestSparseInverse)
#include "tst_sparseinverse.moc"
