#include "levelling/FixedPoints.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/Components.h"
#include "levelling/ConsistentSet.h"
#include "levelling/NormalEquations.h"
#include "levelling/Quantiles.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace levelling {

namespace {

// The matrix of all benchmarks of a part is full.
constexpr std::size_t kMostBenchmarks = 2000;
// Below this share of its diagonal a variance is only rounding.
constexpr double kLeastVariance = 1e-12;

/// The measurements alone: nothing is held or observed.
Network freeOf(const Network& network)
{
    Network freed = network;
    freed.observedHeights.clear();
    for (Point& point : freed.points)
        point.fixed = point.observed = false;
    return freed;
}

std::size_t toIndex(int number)
{
    return static_cast<std::size_t>(number);
}

class Analysis
{
public:
    Analysis(const Network& givenNetwork, const std::function<bool()>& stopQuestion)
        : network(givenNetwork)
        , isStopRequested(stopQuestion)
        , freed(freeOf(givenNetwork))
        , graph(freed)
        , heights(approximateHeights(graph))
        , equations(graph, heights)
    {}

    FixedPoints run()
    {
        collectParts();
        if (components.empty() && result.isolated.empty())
            return finish(FixedPoints::Status::NoBenchmarks);
        if (components.empty())
            return finish(FixedPoints::Status::Ok);
        if (!equations.solve())
            return finish(FixedPoints::Status::Singular);
        if (!findCovariances())
            return finish(FixedPoints::Status::Stopped);
        addObservedHeights();
        for (std::size_t part = 0; part < components.size(); ++part) {
            const FixedPoints::Status status = analyse(part);
            if (status != FixedPoints::Status::Ok)
                return finish(status);
        }
        return finish(FixedPoints::Status::Ok);
    }

private:
    FixedPoints finish(FixedPoints::Status status)
    {
        if (status != FixedPoints::Status::Ok)
            result = FixedPoints();
        result.status = status;
        return std::move(result);
    }

    const Point& getPoint(int index) const { return network.points[toIndex(index)]; }

    void collectParts()
    {
        for (Component& component : findComponents(freed)) {
            std::vector<int> benchmarks;
            for (const int point : component.points) {
                if (getPoint(point).isBenchmark())
                    benchmarks.push_back(point);
            }
            if (component.sections.empty()) {
                result.isolated.insert(result.isolated.end(), benchmarks.begin(), benchmarks.end());
                continue;
            }
            if (benchmarks.empty()) {
                result.withoutBenchmark.push_back(component.points.front());
                continue;
            }
            components.push_back(std::move(component));
            benchmarksOf.push_back(std::move(benchmarks));
        }
    }

    /// Covariances of the heights that the measurements give to the benchmarks. One solution serves a
    /// benchmark of each part: between parts there are none.
    bool findCovariances()
    {
        for (const std::vector<int>& benchmarks : benchmarksOf) {
            const auto size = static_cast<Eigen::Index>(benchmarks.size());
            const bool isTaken = benchmarks.size() <= kMostBenchmarks;
            covariances.emplace_back(isTaken ? size : 0, isTaken ? size : 0);
        }
        std::vector<std::size_t> largestFirst(covariances.size());
        std::iota(largestFirst.begin(), largestFirst.end(), std::size_t{0});
        std::stable_sort(largestFirst.begin(), largestFirst.end(), [&](std::size_t a, std::size_t b) {
            return covariances[a].cols() > covariances[b].cols();
        });
        for (Eigen::Index column = 0; column < covariances[largestFirst.front()].cols(); ++column) {
            if (isStopRequested && isStopRequested())
                return false;
            const auto end = std::find_if(largestFirst.begin(), largestFirst.end(), [&](std::size_t part) {
                return column >= covariances[part].cols();
            });
            takeColumn(column, {largestFirst.begin(), end});
        }
        return true;
    }

    void takeColumn(Eigen::Index column, const std::vector<std::size_t>& parts)
    {
        std::vector<double> unit(network.points.size(), 0.0);
        for (const std::size_t part : parts)
            unit[toIndex(benchmarksOf[part][static_cast<std::size_t>(column)])] = 1.0;
        const std::vector<double> solved = equations.applyInverse(unit);
        for (const std::size_t part : parts) {
            for (std::size_t row = 0; row < benchmarksOf[part].size(); ++row)
                covariances[part](static_cast<Eigen::Index>(row), column) =
                    solved[toIndex(benchmarksOf[part][row])];
        }
    }

    /// Adds the covariances of observed heights. Those with benchmarks of other parts do not matter here.
    void addObservedHeights()
    {
        struct Place
        {
            int part = -1;
            Eigen::Index row = 0;
        };
        std::vector<Place> places(network.points.size());
        for (std::size_t part = 0; part < benchmarksOf.size(); ++part) {
            for (Eigen::Index row = 0; row < covariances[part].rows(); ++row)
                places[toIndex(benchmarksOf[part][static_cast<std::size_t>(row)])] = {static_cast<int>(part),
                                                                                      row};
        }
        for (const ObservedHeights& observed : network.observedHeights) {
            const std::size_t size = observed.points.size();
            for (std::size_t row = 0; row < size; ++row) {
                const Place first = places[toIndex(observed.points[row])];
                for (std::size_t column = 0; column < size; ++column) {
                    const Place second = places[toIndex(observed.points[column])];
                    if (first.part >= 0 && first.part == second.part)
                        covariances[toIndex(first.part)](first.row, second.row) +=
                            observed.covariance[row * size + column];
                }
            }
        }
    }

    void takeFit(std::size_t part, BenchmarkPart& found) const
    {
        double pvv = 0.0;
        for (const int index : components[part].sections) {
            const Section& section = network.sections[toIndex(index)];
            const double scaled = equations.getResidual(section) / section.sigma;
            pvv += scaled * scaled;
        }
        found.redundancy = static_cast<int>(components[part].sections.size()) -
                           static_cast<int>(components[part].points.size()) + 1;
        if (found.redundancy < 1)
            return;
        const double error = 1.0 - network.parameters.confidence;
        found.sigma0 = std::sqrt(pvv / found.redundancy);
        found.sigma0Limit = quantiles::sigmaRatioLimits(found.redundancy, error).upper;
        // With so few redundant measurements the a posteriori value says nothing.
        found.isScaled = network.parameters.sigmaAct == SigmaAct::Aposteriori &&
                         found.redundancy >= quantiles::kLeastTauRedundancy && *found.sigma0 > 0.0;
        if (found.isScaled)
            found.sigmaScale = *found.sigma0;
    }

    FixedPoints::Status analyse(std::size_t part)
    {
        BenchmarkPart found;
        takeFit(part, found);
        const std::vector<int>& benchmarks = benchmarksOf[part];
        for (const int point : benchmarks) {
            BenchmarkFit fit;
            fit.point = point;
            fit.freeHeight = *heights[toIndex(point)] + equations.getCorrection(point) / 1000.0;
            found.benchmarks.push_back(fit);
        }
        auto status = FixedPoints::Status::Ok;
        if (benchmarks.size() > kMostBenchmarks)
            found.verdict = BenchmarkPart::Verdict::TooMany;
        else if (benchmarks.size() == 1)
            found.benchmarks.front().freeHeight = *getPoint(benchmarks.front()).height;
        else
            status = compare(part, found);
        result.parts.push_back(std::move(found));
        return status;
    }

    FixedPoints::Status compare(std::size_t part, BenchmarkPart& found)
    {
        const auto count = static_cast<Eigen::Index>(found.benchmarks.size());
        Eigen::MatrixXd& covariance = covariances[part];
        covariance = 0.5 * (covariance + covariance.transpose()).eval();
        covariance *= found.sigmaScale * found.sigmaScale;
        // Of one benchmark that is held the variance is 0. What is added to all elements alike changes
        // nothing that counts here.
        covariance.array() += covariance.diagonal().mean();
        Eigen::VectorXd differences(count);
        for (Eigen::Index row = 0; row < count; ++row) {
            const BenchmarkFit& fit = found.benchmarks[static_cast<std::size_t>(row)];
            differences[row] = (*getPoint(fit.point).height - fit.freeHeight) * 1000.0;
        }
        const Eigen::LLT<Eigen::MatrixXd> cholesky(covariance);
        if (cholesky.info() != Eigen::Success)
            return FixedPoints::Status::Singular;
        const Eigen::VectorXd ones = Eigen::VectorXd::Ones(count);
        const Eigen::VectorXd solvedOnes = cholesky.solve(ones);
        Eigen::MatrixXd weights = cholesky.solve(Eigen::MatrixXd::Identity(count, count));
        const Eigen::VectorXd shares = solvedOnes / solvedOnes.sum();
        weights -= solvedOnes * shares.transpose();
        if (!weights.allFinite() || weights.diagonal().minCoeff() <= 0.0)
            return FixedPoints::Status::Singular;
        // What all have in common would cost digits.
        differences.array() -= shares.dot(differences);
        testAll(weights, differences, found);
        if (!exclude(weights, differences, found))
            return FixedPoints::Status::Stopped;
        fitFreeHeights(covariance, differences, found);
        return FixedPoints::Status::Ok;
    }

    void testAll(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences,
                 BenchmarkPart& found) const
    {
        const auto count = static_cast<int>(differences.size());
        const Eigen::VectorXd weighted = weights * differences;
        const SetLimits limits = makeLimits(found);
        found.variance = std::max(0.0, differences.dot(weighted)) / (count - 1);
        found.varianceLimit = limits.sum(count) / (count - 1);
        found.limit = limits.single(count);
        for (int row = 0; row < count; ++row) {
            BenchmarkFit& fit = found.benchmarks[toIndex(row)];
            fit.shift = weighted[row] / weights(row, row);
            fit.shiftSigma = 1.0 / std::sqrt(weights(row, row));
            fit.statistic = *fit.shift / fit.shiftSigma;
        }
    }

    SetLimits makeLimits(const BenchmarkPart& found) const
    {
        const int redundancy = found.isScaled ? found.redundancy : 0;
        const double error = 1.0 - network.parameters.confidence;
        const double half = quantiles::shareOfEach(error, 2);
        const auto single = [redundancy](double share) {
            return redundancy > 0 ? quantiles::studentLimit(redundancy, share)
                                  : quantiles::normalLimit(share);
        };
        SetLimits limits;
        // Of two benchmarks both tests are one.
        limits.sum = [redundancy, error, half](int count) {
            return quantiles::varianceLimit(count - 1, redundancy, count == 2 ? error : half) * (count - 1);
        };
        limits.single = [single, error, half](int count) {
            return single(count == 2 ? error : quantiles::shareOfEach(half, count));
        };
        limits.distinction = single(error) * single(error);
        return limits;
    }

    /// False if it was stopped.
    bool exclude(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences, BenchmarkPart& found)
    {
        const ConsistentSet set = findConsistentSet(weights, differences, makeLimits(found), isStopRequested);
        if (set.isStopped)
            return false;
        const auto toPoints = [&](const std::vector<int>& numbers) {
            std::vector<int> points;
            points.reserve(numbers.size());
            for (const int number : numbers)
                points.push_back(found.benchmarks[toIndex(number)].point);
            return points;
        };
        found.isLargest = set.isLargest;
        const std::size_t left = found.benchmarks.size() - set.excluded.size();
        if (set.excluded.empty()) {
            found.verdict = BenchmarkPart::Verdict::Consistent;
            return true;
        }
        if (left < 2) {
            found.verdict = BenchmarkPart::Verdict::NoneAgree;
            return true;
        }
        found.excluded = toPoints(set.excluded);
        for (const std::vector<int>& alternative : set.alternatives)
            found.alternatives.push_back(toPoints(alternative));
        found.verdict =
            set.alternatives.empty() ? BenchmarkPart::Verdict::Excluded : BenchmarkPart::Verdict::Ambiguous;
        if (found.verdict == BenchmarkPart::Verdict::Excluded)
            estimateErrors(weights, differences, set.excluded, found);
        return true;
    }

    /// Errors of the excluded benchmarks that explain everything: W_EE^-1 (Wd)_E.
    static void estimateErrors(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences,
                               const std::vector<int>& excluded, BenchmarkPart& found)
    {
        const auto size = static_cast<Eigen::Index>(excluded.size());
        const Eigen::VectorXd weighted = weights * differences;
        Eigen::MatrixXd block(size, size);
        Eigen::VectorXd right(size);
        for (Eigen::Index row = 0; row < size; ++row) {
            right[row] = weighted[excluded[static_cast<std::size_t>(row)]];
            for (Eigen::Index column = 0; column < size; ++column)
                block(row, column) = weights(excluded[static_cast<std::size_t>(row)],
                                             excluded[static_cast<std::size_t>(column)]);
        }
        const Eigen::MatrixXd inverse =
            Eigen::LLT<Eigen::MatrixXd>(block).solve(Eigen::MatrixXd::Identity(size, size));
        const Eigen::VectorXd errors = inverse * right;
        for (Eigen::Index row = 0; row < size; ++row) {
            BenchmarkFit& fit = found.benchmarks[toIndex(excluded[static_cast<std::size_t>(row)])];
            fit.error = errors[row];
            fit.errorSigma = std::sqrt(std::max(0.0, inverse(row, row)));
        }
    }

    /// Moves the free heights so that the given ones of the set differ from them by 0 in the mean.
    void fitFreeHeights(const Eigen::MatrixXd& covariance, const Eigen::VectorXd& differences,
                        BenchmarkPart& found) const
    {
        const Eigen::Index count = differences.size();
        Eigen::VectorXd shares(count);
        for (Eigen::Index row = 0; row < count; ++row)
            shares[row] = found.benchmarks[static_cast<std::size_t>(row)].error ? 0.0 : 1.0;
        shares /= shares.sum();
        const Eigen::VectorXd withMean = covariance * shares;
        const double shift = shares.dot(differences);
        const double variance = shares.dot(withMean);
        for (Eigen::Index row = 0; row < count; ++row) {
            BenchmarkFit& fit = found.benchmarks[static_cast<std::size_t>(row)];
            fit.difference = differences[row] - shift;
            fit.freeHeight = *getPoint(fit.point).height - fit.difference / 1000.0;
            const double moved = covariance(row, row) - 2.0 * withMean[row] + variance;
            fit.differenceSigma = moved > kLeastVariance * covariance(row, row) ? std::sqrt(moved) : 0.0;
        }
    }

    const Network& network;
    const std::function<bool()>& isStopRequested;
    const Network freed;
    const SectionGraph graph;
    const std::vector<std::optional<double>> heights;
    NormalEquations equations;
    FixedPoints result;
    std::vector<Component> components;
    std::vector<std::vector<int>> benchmarksOf;
    std::vector<Eigen::MatrixXd> covariances;
};

} // namespace

FixedPoints analyseFixedPoints(const Network& network, const std::function<bool()>& isStopped)
{
    return Analysis(network, isStopped).run();
}

} // namespace levelling
