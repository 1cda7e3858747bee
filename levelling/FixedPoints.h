#pragma once

#include "levelling/Network.h"

#include <functional>
#include <optional>
#include <vector>

namespace levelling {

/// How the given height of a benchmark fits to the measurements and the other given heights.
struct BenchmarkFit
{
    int point = 0;
    /// Height of the free adjustment, m. It is moved as a whole so that the mean of the differences is 0: of
    /// the benchmarks that are not excluded, where that is decided, else of all.
    double freeHeight = 0.0;
    /// Given less free height, mm, and its standard deviation, which is 0 where there is no other benchmark.
    double difference = 0.0;
    double differenceSigma = 0.0;
    /// Given height less the one that all other benchmarks and the measurements give, mm, with its standard
    /// deviation and the quotient of both; none without another benchmark.
    std::optional<double> shift;
    double shiftSigma = 0.0;
    double statistic = 0.0;
    /// The benchmark is not in the largest consistent set: the estimate of its error, mm, from that set.
    std::optional<double> error;
    double errorSigma = 0.0;
};

/// The benchmarks of a part of the network that sections connect.
struct BenchmarkPart
{
    enum class Verdict {
        SingleBenchmark, ///< nothing to compare
        TooMany,         ///< more than are tested together; the benchmarks have no results
        Consistent,
        Excluded,  ///< without the excluded ones the others are consistent
        Ambiguous, ///< so they are, but without others in their place, too
        NoneAgree, ///< no two of them fit to each other
    };

    Verdict verdict = Verdict::SingleBenchmark;
    /// In the order of the points.
    std::vector<BenchmarkFit> benchmarks;
    /// Free adjustment: redundant measurements, and the a posteriori standard deviation of unit weight as a
    /// multiple of the a priori one, with the upper limit of its test; none without redundancy.
    int redundancy = 0;
    std::optional<double> sigma0;
    double sigma0Limit = 0.0;
    /// What a priori standard deviations were multiplied with as the parameter sigma-act asks: 1, or sigma0.
    double sigmaScale = 1.0;
    bool isScaled = false; ///< by sigma0
    /// Weighted sum of squares of the differences over their number less one (over sigma0², if scaled), and
    /// the limit of its test.
    double variance = 0.0;
    double varianceLimit = 0.0;
    /// Limit of BenchmarkFit::statistic, as a size.
    double limit = 0.0;
    /// Points to be excluded, ascending: with them left out the rest is the largest consistent set.
    std::vector<int> excluded;
    /// Other points of the same number that could be excluded instead.
    std::vector<std::vector<int>> alternatives;
    /// Whether no larger set can be consistent: all were tried.
    bool isLargest = true;
};

struct FixedPoints
{
    enum class Status {
        Ok,
        Stopped,      ///< on request; there are no results
        NoBenchmarks, ///< no point has a given height
        Singular,     ///< weights too different for the arithmetic; there are no results
    };

    Status status = Status::Ok;
    /// In the order of their first benchmarks.
    std::vector<BenchmarkPart> parts;
    /// Benchmarks that no section leads to, ascending.
    std::vector<int> isolated;
    /// Points of which one stands for each part without a benchmark, ascending; isolated ones are not there.
    std::vector<int> withoutBenchmark;
};

/// Compares the heights of benchmarks with the measurements and with each other.
///
/// The measurements alone are adjusted, with one benchmark held, by least squares with weights 1 / sigma². Of
/// the benchmarks x are the heights and Q the covariances that this gives, H the given heights and C their
/// covariances (0 of held ones). If all are right, d = H - x is the same number everywhere but for errors
/// with covariances S = C + Q. With W = S^-1 - S^-1 11' S^-1 / (1' S^-1 1), in which neither that number nor
/// the choice of the held benchmark is left:
/// - d'Wd over m - 1 is tested against chi² / (m - 1), or F with the redundancy of the free adjustment if it
///   scales the standard deviations;
/// - the shift of one benchmark that is freed is (Wd)_i / W_ii with the standard deviation W_ii^-1/2, tested
///   against the normal distribution or Student's t (W. Baarda, A testing procedure for use in geodetic
///   networks, 1968), with the share of the error probability that each of m tests has;
/// - without the benchmarks E the sum is d'Wd - (Wd)_E' W_EE^-1 (Wd)_E.
///
/// A set of benchmarks is consistent if it passes both tests, each with half of the error probability; of two
/// they are one test with the whole of it. The
/// largest such set is looked for by leaving out 0, 1, 2 … benchmarks in all ways; where these are too many,
/// by leaving out the worst one after the other, and by collecting them around those that agree best.
/// @param isStopped asked now and then
FixedPoints analyseFixedPoints(const Network& network, const std::function<bool()>& isStopped = {});

} // namespace levelling
