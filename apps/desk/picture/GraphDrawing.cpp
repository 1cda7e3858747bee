#include "apps/desk/picture/GraphDrawing.h"

#include <QLineF>

#include <Eigen/Dense>
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/breadth_first_search.hpp>
#include <boost/graph/fruchterman_reingold.hpp>
#include <boost/graph/topology.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel::desk::picture {

namespace {

using Graph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;
using Topology = boost::rectangle_topology<>;
using Place = Topology::point_type;

// So many points stand for all others when the drawing is spread out.
constexpr int kPivots = 50;
// So often is every point moved.
constexpr int kRounds = 30;
// So many pairs of points take about as long as one question is to be waited for: 0.1 ms.
constexpr int kPairsBetweenQuestions = 4096;

/// What the points of a path of sections are apart, seen from a few of them far from each other (pivot
/// multidimensional scaling: U. Brandes, C. Pich, Eigensolver methods for progressive multidimensional
/// scaling of large data, Graph Drawing 2006).
class Spreading
{
public:
    Spreading(const Graph& connectedGraph, const std::function<bool()>& isDrawingStopped)
        : graph(connectedGraph)
        , isStopped(isDrawingStopped)
        , pointCount(static_cast<int>(boost::num_vertices(graph)))
    {}

    std::optional<std::vector<QPointF>> compute()
    {
        if (!measureDistances())
            return std::nullopt;
        Eigen::MatrixXd squares = distances.cwiseAbs2();
        const Eigen::RowVectorXd columnMeans = squares.colwise().mean();
        const Eigen::VectorXd rowMeans = squares.rowwise().mean();
        const double mean = columnMeans.mean();
        squares = (squares.rowwise() - columnMeans).eval();
        squares = (squares.colwise() - rowMeans).eval();
        squares.array() += mean;
        if (isStopped())
            return std::nullopt;
        const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(squares.transpose() * squares);
        // Eigenvalues ascend.
        const Eigen::Index last = solver.eigenvectors().cols() - 1;
        const Eigen::VectorXd x = takeSign(squares * solver.eigenvectors().col(last));
        const Eigen::VectorXd y = last > 0 ? takeSign(squares * solver.eigenvectors().col(last - 1))
                                           : Eigen::VectorXd::Zero(pointCount);
        std::vector<QPointF> places;
        places.reserve(static_cast<std::size_t>(pointCount));
        for (Eigen::Index point = 0; point < pointCount; ++point)
            places.emplace_back(x[point], y[point]);
        return places;
    }

private:
    /// An eigenvector's sign is nobody's: the largest component gives it.
    static Eigen::VectorXd takeSign(const Eigen::VectorXd& vector)
    {
        Eigen::Index largest = 0;
        vector.cwiseAbs().maxCoeff(&largest);
        return vector[largest] < 0 ? Eigen::VectorXd(-vector) : vector;
    }

    /// Distances in edges of all points from each pivot; the next pivot is the point farthest from all so
    /// far.
    bool measureDistances()
    {
        const int pivotCount = std::min(kPivots, pointCount);
        distances.resize(pointCount, pivotCount);
        Eigen::VectorXd nearest = Eigen::VectorXd::Constant(pointCount, std::numeric_limits<double>::max());
        Eigen::Index pivot = 0;
        std::vector<double> found(static_cast<std::size_t>(pointCount));
        for (int column = 0; column < pivotCount; ++column) {
            if (isStopped())
                return false;
            std::fill(found.begin(), found.end(), 0.0);
            boost::breadth_first_search(graph, static_cast<std::size_t>(pivot),
                                        boost::visitor(boost::make_bfs_visitor(
                                            boost::record_distances(found.data(), boost::on_tree_edge()))));
            distances.col(column) = Eigen::Map<const Eigen::VectorXd>(found.data(), pointCount);
            nearest = nearest.cwiseMin(distances.col(column));
            nearest.maxCoeff(&pivot);
        }
        return true;
    }

    const Graph& graph;
    const std::function<bool()>& isStopped;
    int pointCount;
    Eigen::MatrixXd distances;
};

/// Makes the edges one unit long, half of them less and half more.
void scaleToUnit(std::vector<QPointF>& places, const std::vector<Edge>& edges)
{
    std::vector<double> lengths;
    lengths.reserve(edges.size());
    for (const Edge& edge : edges)
        lengths.push_back(
            QLineF(places[static_cast<std::size_t>(edge.from)], places[static_cast<std::size_t>(edge.to)])
                .length());
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    if (*middle <= 0.0)
        return;
    for (QPointF& place : places)
        place /= *middle;
}

/// Points that all pivots see alike lie on one another: each gets a small way of its own.
void separate(std::vector<QPointF>& places)
{
    constexpr double goldenAngle = 2.399963229728653;
    constexpr double way = 0.05;
    double angle = 0.0;
    for (QPointF& place : places) {
        place += way * QPointF(std::cos(angle), std::sin(angle));
        angle += goldenAngle;
    }
}

std::vector<Place> toBoost(const std::vector<QPointF>& places, double scale)
{
    std::vector<Place> result(places.size());
    for (std::size_t point = 0; point < places.size(); ++point) {
        result[point][0] = places[point].x() * scale;
        result[point][1] = places[point].y() * scale;
    }
    return result;
}

std::vector<QPointF> fromBoost(const std::vector<Place>& places, double scale)
{
    std::vector<QPointF> result;
    result.reserve(places.size());
    for (const Place& place : places)
        result.emplace_back(place[0] * scale, place[1] * scale);
    return result;
}

/// Thrown out of the library's rounds, of which one takes long in a large graph.
struct Stopped
{};

/// Has neighbours keep their distance.
/// @throws Stopped
void refine(const Graph& graph, std::vector<QPointF>& places, const std::function<bool()>& isStopped)
{
    double left = places.front().x();
    double right = left;
    double top = places.front().y();
    double bottom = top;
    for (const QPointF& place : places) {
        left = std::min(left, place.x());
        right = std::max(right, place.x());
        top = std::min(top, place.y());
        bottom = std::max(bottom, place.y());
    }
    // The library's cells are right in a box of area 1 whose middle is the origin.
    const double width = right - left + 2.0;
    const double height = bottom - top + 2.0;
    const double unit = 1.0 / std::sqrt(width * height);
    const QPointF middle((left + right) / 2, (top + bottom) / 2);
    for (QPointF& place : places)
        place -= middle;
    std::vector<Place> moved = toBoost(places, unit);
    const auto position =
        boost::make_iterator_property_map(moved.begin(), boost::get(boost::vertex_index, graph));
    const Topology box(-width * unit / 2, -height * unit / 2, width * unit / 2, height * unit / 2);

    const auto attract = [unit](const auto& /*edge*/, double /*k*/, double distance, const Graph& /*graph*/) {
        return distance * distance / unit;
    };
    // So a straight line of points is at rest where its points are one unit apart; stronger, it would buckle.
    constexpr double reach = 3.0;
    constexpr double strength = 0.35;
    int pairCount = 0;
    const auto repel = [&](std::size_t /*one*/, std::size_t /*other*/, double /*k*/, double distance,
                           const Graph& /*graph*/) {
        if (++pairCount % kPairsBetweenQuestions == 0 && isStopped())
            throw Stopped();
        return distance < reach * unit ? strength * unit * unit / distance : 0.0;
    };
    int round = 0;
    const auto cool = [&] {
        if (isStopped())
            throw Stopped();
        const double heat = 1.0 - static_cast<double>(++round) / kRounds;
        return std::max(0.0, 0.4 * unit * heat);
    };
    boost::fruchterman_reingold_force_directed_layout(
        graph, position, box,
        boost::attractive_force(attract)
            .repulsive_force(repel)
            .force_pairs(boost::make_grid_force_pairs(box, position, graph))
            .cooling(cool));
    places = fromBoost(moved, 1.0 / unit);
}

} // namespace

std::optional<std::vector<QPointF>> drawGraph(int pointCount, const std::vector<Edge>& edges,
                                              const std::function<bool()>& isStopped)
{
    if (pointCount == 1)
        return std::vector<QPointF>{QPointF()};
    Graph graph(static_cast<std::size_t>(pointCount));
    for (const Edge& edge : edges)
        boost::add_edge(static_cast<std::size_t>(edge.from), static_cast<std::size_t>(edge.to), graph);

    std::optional<std::vector<QPointF>> places = Spreading(graph, isStopped).compute();
    if (!places)
        return std::nullopt;
    scaleToUnit(*places, edges);
    separate(*places);
    try {
        refine(graph, *places, isStopped);
    } catch (const Stopped&) {
        return std::nullopt;
    }
    scaleToUnit(*places, edges);
    return places;
}

} // namespace orvel::desk::picture
