#pragma once

#include "levelling/SectionGraph.h"
#include "levelling/SparseInverse.h"

#include <Eigen/SparseCore>

#include <optional>
#include <vector>

namespace levelling {

/// The normal equations of the heights that are not fixed: corrections of given approximate heights, in mm,
/// from all sections between points that have one, with weights 1 / sigma².
class NormalEquations
{
public:
    /// Heights in m by index of the point. Graph and heights must outlive the equations.
    NormalEquations(const SectionGraph& sectionGraph,
                    const std::vector<std::optional<double>>& approximateHeights);

    int getUnknownCount() const { return unknownCount; }
    /// Measured difference less that of the approximate heights, mm.
    double getTerm(const Section& section) const;

    /// Solves the equations, at least one unknown given; false if the arithmetic cannot.
    bool solve();
    /// After solve(): correction of the approximate height, mm; 0 for a fixed point.
    double getCorrection(int point) const;

    /// Finds the variances, after solve().
    void invert();
    /// After invert(): variance of the height, mm²; 0 for a fixed point.
    double getVariance(int point) const;
    /// After invert(): variance of the difference between the heights at the ends of a section, mm².
    double getDifferenceVariance(const Section& section) const;

private:
    /// Index of the unknown of a point, or -1.
    int getUnknown(int point) const { return unknownOfNode[static_cast<std::size_t>(graph.getNode(point))]; }
    void addSection(const Section& section, std::vector<Eigen::Triplet<double>>& elements);

    const SectionGraph& graph;
    const std::vector<std::optional<double>>& heights;
    int unknownCount = 0;
    std::vector<int> unknownOfNode;
    Eigen::SparseMatrix<double> matrix;
    Eigen::VectorXd rightSide;
    Eigen::VectorXd corrections;
    SparseCholesky cholesky;
    std::optional<SparseInverse> inverse;
};

} // namespace levelling
