#pragma once

#include "levelling/SectionGraph.h"
#include "levelling/SparseInverse.h"

#include <Eigen/Dense>
#include <Eigen/SparseCore>

#include <optional>
#include <vector>

namespace levelling {

/// The normal equations of the heights that are sought: corrections of given approximate heights, in mm, from
/// all sections between points that have one, with weights 1 / sigma², and from observed heights. Points that
/// are held without being observed have no correction.
class NormalEquations
{
public:
    /// Graph and heights must outlive the equations.
    /// @param approximateHeights in m, by index of the point; of benchmarks the given ones
    NormalEquations(const SectionGraph& sectionGraph,
                    const std::vector<std::optional<double>>& approximateHeights);

    int getUnknownCount() const { return unknownCount; }
    /// Whether the section takes part.
    bool contains(int section) const;
    /// Measured difference less that of the approximate heights, mm.
    double getTerm(const Section& section) const;

    /// Solves the equations, at least one unknown given; false if the arithmetic cannot.
    bool solve();
    /// After solve(): correction of the approximate height, mm; 0 for a held point.
    double getCorrection(int point) const;
    /// After solve(): adjusted less measured difference, mm.
    double getResidual(const Section& section) const;
    /// After solve(): weighted sum of the squared residuals of each group of observed heights.
    std::vector<double> getObservedPvv() const;
    /// After solve(): the inverse of the matrix times a vector, both by index of the point; 0 for held
    /// points.
    std::vector<double> applyInverse(const std::vector<double>& vector) const;

    /// Finds the variances, after solve().
    void invert();
    /// After invert(): variance of the height, mm²; 0 for a held point.
    double getVariance(int point) const;
    /// After invert(): covariance of the heights at the ends of a section that takes part, or of two observed
    /// heights of one group, mm².
    double getCovariance(int point, int other) const;
    /// After invert(): variance of the difference between the heights at the ends of a section that takes
    /// part, mm².
    double getDifferenceVariance(const Section& section) const;

private:
    using Triplets = std::vector<Eigen::Triplet<double>>;

    /// Index of the unknown of a point, or -1.
    int getUnknown(int point) const { return unknownOfPoint[static_cast<std::size_t>(point)]; }
    void addSection(const Section& section, Triplets& elements);
    void addObservedHeights(const ObservedHeights& observed, Triplets& elements);
    void refine();

    const SectionGraph& graph;
    const std::vector<std::optional<double>>& heights;
    int unknownCount = 0;
    std::vector<int> unknownOfPoint;
    /// Inverse covariances of each group of observed heights.
    std::vector<Eigen::MatrixXd> observedWeights;
    Eigen::SparseMatrix<double> matrix;
    Eigen::VectorXd rightSide;
    Eigen::VectorXd corrections;
    SparseCholesky cholesky;
    std::optional<SparseInverse> inverse;
};

} // namespace levelling
