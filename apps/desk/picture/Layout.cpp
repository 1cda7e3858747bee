#include "apps/desk/picture/Layout.h"

#include "apps/desk/document/Document.h"
#include "levelling/DisjointSets.h"

#include <QHash>
#include <QLineF>
#include <QRectF>

#include <Eigen/SparseCholesky>

#include <algorithm>
#include <cmath>
#include <complex>
#include <map>

namespace orvel::desk::picture {

namespace {

using Complex = std::complex<double>;

/// Points that sections join, with numbers of their own.
struct Part
{
    std::vector<int> points; ///< of the whole graph, ascending
    std::vector<Edge> edges; ///< between indices of `points`
};

std::size_t toIndex(int number)
{
    return static_cast<std::size_t>(number);
}

Complex toComplex(const QPointF& place)
{
    return {place.x(), place.y()};
}

QPointF toPoint(const Complex& number)
{
    return {number.real(), number.imag()};
}

std::vector<Part> findParts(const PlanGraph& graph)
{
    const int pointCount = static_cast<int>(graph.known.size());
    levelling::DisjointSets sets(pointCount);
    for (const Edge& edge : graph.edges)
        sets.unite(edge.from, edge.to);
    std::vector<Part> parts;
    std::map<int, std::size_t> partOfRoot;
    std::vector<int> numberInPart(toIndex(pointCount));
    for (int point = 0; point < pointCount; ++point) {
        const auto [place, isNew] = partOfRoot.try_emplace(sets.find(point), parts.size());
        if (isNew)
            parts.emplace_back();
        std::vector<int>& members = parts[place->second].points;
        numberInPart[toIndex(point)] = static_cast<int>(members.size());
        members.push_back(point);
    }
    for (const Edge& edge : graph.edges) {
        Part& part = parts[partOfRoot.at(sets.find(edge.from))];
        part.edges.push_back({numberInPart[toIndex(edge.from)], numberInPart[toIndex(edge.to)]});
    }
    return parts;
}

double findMedian(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// How long an edge is among the points that have coordinates, m.
double findUnit(const PlanGraph& graph)
{
    std::vector<double> lengths;
    for (const Edge& edge : graph.edges) {
        const auto& from = graph.known[toIndex(edge.from)];
        const auto& to = graph.known[toIndex(edge.to)];
        if (from && to && *from != *to)
            lengths.push_back(QLineF(*from, *to).length());
    }
    if (!lengths.empty())
        return findMedian(std::move(lengths));
    std::vector<QPointF> places;
    for (const auto& place : graph.known) {
        if (place)
            places.push_back(*place);
    }
    if (places.size() < 2)
        return 1.0;
    QRectF box(places.front(), places.front());
    for (const QPointF& place : places)
        box = QRectF(QPointF(std::min(box.left(), place.x()), std::min(box.top(), place.y())),
                     QPointF(std::max(box.right(), place.x()), std::max(box.bottom(), place.y())));
    const double extent = std::max(box.width(), box.height());
    return extent > 0.0 ? extent / std::sqrt(static_cast<double>(graph.known.size())) : 1.0;
}

/// Turns a drawing so that it is wider than high.
void turn(std::vector<QPointF>& places)
{
    QPointF sum;
    for (const QPointF& place : places)
        sum += place;
    const Complex middle = toComplex(sum / static_cast<double>(places.size()));
    Complex moment;
    for (const QPointF& place : places)
        moment += (toComplex(place) - middle) * (toComplex(place) - middle);
    const Complex back = std::polar(1.0, -std::arg(moment) / 2);
    for (QPointF& place : places)
        place = toPoint((toComplex(place) - middle) * back);
}

/// Moves a drawing so that it fits the known places of some of its points: by a similarity, reflected or not,
/// and what these are still off then is shared out among their neighbours.
class Fitting
{
public:
    Fitting(const Part& fittedPart, const PlanGraph& graph, double edgeUnit)
        : part(fittedPart)
        , unit(edgeUnit)
    {
        for (const int point : part.points)
            known.push_back(graph.known[toIndex(point)]);
    }

    void fit(std::vector<QPointF>& places) const
    {
        applySimilarity(places);
        shareOut(places);
    }

private:
    void applySimilarity(std::vector<QPointF>& places) const
    {
        Complex drawnMiddle;
        Complex trueMiddle;
        double count = 0;
        for (std::size_t point = 0; point < known.size(); ++point) {
            if (!known[point])
                continue;
            drawnMiddle += toComplex(places[point]);
            trueMiddle += toComplex(*known[point]);
            ++count;
        }
        drawnMiddle /= count;
        trueMiddle /= count;
        Complex plain;
        Complex reflected;
        double squares = 0.0;
        for (std::size_t point = 0; point < known.size(); ++point) {
            if (!known[point])
                continue;
            const Complex drawn = toComplex(places[point]) - drawnMiddle;
            const Complex target = toComplex(*known[point]) - trueMiddle;
            plain += std::conj(drawn) * target;
            reflected += drawn * target;
            squares += std::norm(drawn);
        }
        const bool isReflected = std::abs(reflected) > std::abs(plain) * (1.0 + 1e-9);
        const Complex factor = squares > 0.0 && std::abs(plain) + std::abs(reflected) > 0.0
                                   ? (isReflected ? reflected : plain) / squares
                                   : Complex(unit);
        for (QPointF& place : places) {
            const Complex drawn = toComplex(place) - drawnMiddle;
            place = toPoint(trueMiddle + factor * (isReflected ? std::conj(drawn) : drawn));
        }
    }

    /// Each point without a place is shifted by the mean of its neighbours' shifts.
    void shareOut(std::vector<QPointF>& places) const
    {
        std::vector<int> unknown(known.size(), -1);
        int unknownCount = 0;
        for (std::size_t point = 0; point < known.size(); ++point) {
            if (!known[point])
                unknown[point] = unknownCount++;
        }
        Eigen::VectorXd diagonal = Eigen::VectorXd::Zero(unknownCount);
        Eigen::MatrixXd shifts = Eigen::MatrixXd::Zero(unknownCount, 2);
        std::vector<Eigen::Triplet<double>> elements;
        const auto link = [&](int one, int other) {
            const int row = unknown[toIndex(one)];
            if (row < 0)
                return;
            diagonal[row] += 1.0;
            if (known[toIndex(other)]) {
                const QPointF shift = *known[toIndex(other)] - places[toIndex(other)];
                shifts(row, 0) += shift.x();
                shifts(row, 1) += shift.y();
            } else {
                elements.emplace_back(row, unknown[toIndex(other)], -1.0);
            }
        };
        for (const Edge& edge : part.edges) {
            link(edge.from, edge.to);
            link(edge.to, edge.from);
        }
        for (int row = 0; row < unknownCount; ++row)
            elements.emplace_back(row, row, diagonal[row]);
        Eigen::SparseMatrix<double> matrix(unknownCount, unknownCount);
        matrix.setFromTriplets(elements.begin(), elements.end());
        const Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> solver(matrix);
        shifts = solver.solve(shifts).eval();
        for (std::size_t point = 0; point < known.size(); ++point) {
            if (known[point])
                places[point] = *known[point];
            else
                places[point] += QPointF(shifts(unknown[point], 0), shifts(unknown[point], 1));
        }
    }

    const Part& part;
    double unit;
    std::vector<std::optional<QPointF>> known; ///< by the part's point
};

QRectF findBox(const std::vector<QPointF>& places)
{
    QPointF least = places.front();
    QPointF largest = least;
    for (const QPointF& place : places) {
        least = {std::min(least.x(), place.x()), std::min(least.y(), place.y())};
        largest = {std::max(largest.x(), place.x()), std::max(largest.y(), place.y())};
    }
    return {least, largest};
}

/// Drawings that are to stand in rows, the highest first.
class Shelf
{
public:
    explicit Shelf(double gapBetween) : gap(gapBetween) {}

    void add(const Part& part, std::vector<QPointF> places)
    {
        drawings.push_back({&part, findBox(places), std::move(places)});
    }

    /// Puts the drawings below a box, which may be empty, about as wide as it or as a page.
    void place(const QRectF& above, std::vector<QPointF>& placesOfAll)
    {
        std::stable_sort(drawings.begin(), drawings.end(), [](const Drawing& one, const Drawing& other) {
            return one.box.height() > other.box.height();
        });
        double area = 0.0;
        double widest = above.width();
        for (const Drawing& drawing : drawings) {
            area += (drawing.box.width() + gap) * (drawing.box.height() + gap);
            widest = std::max(widest, drawing.box.width());
        }
        constexpr double shapeOfWindow = 1.6;
        const double width = std::max(widest, shapeOfWindow * std::sqrt(area));
        QPointF corner(above.left(), above.isNull() ? 0.0 : above.bottom() + 2 * gap);
        const double left = corner.x();
        double rowHeight = 0.0;
        for (const Drawing& drawing : drawings) {
            if (corner.x() > left && corner.x() + drawing.box.width() > left + width) {
                corner = {left, corner.y() + rowHeight + gap};
                rowHeight = 0.0;
            }
            const QPointF shift = corner - drawing.box.topLeft();
            for (std::size_t point = 0; point < drawing.places.size(); ++point)
                placesOfAll[toIndex(drawing.part->points[point])] = drawing.places[point] + shift;
            corner.rx() += drawing.box.width() + gap;
            rowHeight = std::max(rowHeight, drawing.box.height());
        }
    }

private:
    struct Drawing
    {
        const Part* part;
        QRectF box;
        std::vector<QPointF> places;
    };

    double gap;
    std::vector<Drawing> drawings;
};

int countKnown(const Part& part, const PlanGraph& graph)
{
    return static_cast<int>(std::count_if(part.points.begin(), part.points.end(), [&](int point) {
        return graph.known[toIndex(point)].has_value();
    }));
}

std::optional<Layout> findPlaces(PlanGraph graph, const std::function<bool()>& isStopped)
{
    Layout layout;
    std::size_t knownCount = 0;
    for (const auto& place : graph.known) {
        layout.places.push_back(place.value_or(QPointF()));
        knownCount += place ? 1U : 0U;
    }
    if (knownCount == graph.known.size())
        return layout;
    layout.source = knownCount == 0 ? PlaceSource::Drawn : PlaceSource::Mixed;

    std::sort(graph.edges.begin(), graph.edges.end());
    graph.edges.erase(std::unique(graph.edges.begin(), graph.edges.end()), graph.edges.end());
    const double unit = findUnit(graph);
    const std::vector<Part> parts = findParts(graph);
    Shelf shelf(unit);
    std::vector<QPointF> fixed;
    for (const Part& part : parts) {
        if (isStopped())
            return std::nullopt;
        const int knownInPart = countKnown(part, graph);
        if (knownInPart < static_cast<int>(part.points.size())) {
            std::optional<std::vector<QPointF>> drawn =
                drawGraph(static_cast<int>(part.points.size()), part.edges, isStopped);
            if (!drawn)
                return std::nullopt;
            if (knownInPart == 0) {
                turn(*drawn);
                for (QPointF& place : *drawn)
                    place *= unit;
                shelf.add(part, std::move(*drawn));
                continue;
            }
            Fitting(part, graph, unit).fit(*drawn);
            for (std::size_t point = 0; point < drawn->size(); ++point)
                layout.places[toIndex(part.points[point])] = (*drawn)[point];
        }
        for (const int point : part.points)
            fixed.push_back(layout.places[toIndex(point)]);
    }
    shelf.place(fixed.empty() ? QRectF() : findBox(fixed), layout.places);
    return layout;
}

/// Lane of the edge that comes as number `count` between two points: 0, 1, -1, 2, -2 …
int getLane(int count)
{
    return count % 2 == 1 ? (count + 1) / 2 : -count / 2;
}

std::vector<int> findLanes(const std::vector<Edge>& edges)
{
    constexpr int half = 32;
    QHash<quint64, int> countOfPair;
    countOfPair.reserve(static_cast<int>(edges.size()));
    std::vector<int> lanes;
    lanes.reserve(edges.size());
    for (const Edge& edge : edges)
        lanes.push_back(
            getLane(countOfPair[static_cast<quint64>(edge.from) << half | static_cast<quint64>(edge.to)]++));
    return lanes;
}

double findSpacing(const std::vector<QPointF>& places, const std::vector<Edge>& edges)
{
    if (!edges.empty()) {
        std::vector<double> lengths;
        lengths.reserve(edges.size());
        for (const Edge& edge : edges)
            lengths.push_back(QLineF(places[toIndex(edge.from)], places[toIndex(edge.to)]).length());
        return findMedian(std::move(lengths));
    }
    if (places.empty())
        return 1.0;
    const QRectF box = findBox(places);
    const double extent = std::max(box.width(), box.height());
    return (extent > 0.0 ? extent : 1.0) / std::sqrt(static_cast<double>(places.size()));
}

} // namespace

PlanGraph PlanGraph::of(const Document& document)
{
    PlanGraph graph;
    const std::vector<LevellingPoint*> points = document.getPoints();
    graph.known.reserve(points.size());
    for (const LevellingPoint* point : points) {
        const tacheometry::Position position = point->getPosition();
        // North is up.
        graph.known.push_back(position.hasPlan() ? std::optional<QPointF>(QPointF(*position.y, -*position.x))
                                                 : std::nullopt);
    }
    const std::vector<LevellingSection*> sections = document.getSections();
    graph.edges.reserve(sections.size());
    for (const LevellingSection* item : sections) {
        const levelling::Section& section = item->getSection();
        graph.edges.push_back({std::min(section.from, section.to), std::max(section.from, section.to)});
    }
    return graph;
}

std::optional<Layout> layOut(const PlanGraph& graph, const std::function<bool()>& isStopped)
{
    std::optional<Layout> layout = findPlaces(graph, isStopped);
    if (layout) {
        layout->lanes = findLanes(graph.edges);
        layout->spacing = findSpacing(layout->places, graph.edges);
    }
    return layout;
}

} // namespace orvel::desk::picture
