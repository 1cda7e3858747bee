#include "levelling/ConsistentSet.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace levelling {

namespace {

// What trying all sets of one size may cost, in elements of matrices.
constexpr double kMostWork = 1e8;
// So many alternatives are told.
constexpr std::size_t kMostAlternatives = 10;
constexpr int kSetsBetweenQuestions = 1024;
// Below this share of its first value a pivot is only rounding: nothing checks the value any more.
constexpr double kLeastPivot = 1e-9;

/// The weights and weighted differences of the values that are left when some were excluded: with W and d of
/// all and E the excluded ones, the block of the others is W - W_E W_EE^-1 W_E' and the corner is the
/// weighted sum of squares. Excluding a value is one step of Gauß and Jordan, and so is taking it back (A. E.
/// Beaton, The use of special matrix operators in statistical calculus, 1964).
class SweptWeights
{
public:
    SweptWeights(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences)
        : count(static_cast<int>(differences.size()))
        , matrix(count + 1, count + 1)
        , firstPivots(weights.diagonal())
        , isOut(static_cast<std::size_t>(count), false)
        , left(count)
    {
        const Eigen::VectorXd weighted = weights * differences;
        matrix.topLeftCorner(count, count) = weights;
        matrix.col(count).head(count) = weighted;
        matrix.row(count).head(count) = weighted;
        matrix(count, count) = differences.dot(weighted);
    }

    int getCount() const { return count; }
    int getLeft() const { return left; }
    bool isExcluded(int value) const { return isOut[static_cast<std::size_t>(value)]; }
    double getSum() const { return std::max(0.0, matrix(count, count)); }
    /// Whether the others say anything about the value, so that it can be excluded.
    bool isChecked(int value) const
    {
        return left > 1 && matrix(value, value) > kLeastPivot * firstPivots[value];
    }
    /// The sum of squares if the value were excluded, too.
    double getSumWithout(int value) const
    {
        return isChecked(value) ? std::max(0.0, getSum() - getGain(value)) : getSum();
    }
    /// Of a value that is not excluded: the square of its test against the others.
    double getGain(int value) const
    {
        return matrix(value, count) * matrix(value, count) / matrix(value, value);
    }
    /// Of an excluded value: the square of its test against those that are not.
    double getExcludedGain(int value) const
    {
        return matrix(value, count) * matrix(value, count) / -matrix(value, value);
    }

    /// Excludes the value, or takes it back.
    void sweep(int value)
    {
        const double pivot = matrix(value, value);
        const Eigen::VectorXd column = matrix.col(value);
        matrix.noalias() -= column * (column.transpose() / pivot);
        const double sign = isExcluded(value) ? -1.0 : 1.0;
        matrix.col(value) = sign * column / pivot;
        matrix.row(value) = sign * column.transpose() / pivot;
        matrix(value, value) = -1.0 / pivot;
        isOut[static_cast<std::size_t>(value)] = !isExcluded(value);
        left += isExcluded(value) ? -1 : 1;
    }

private:
    int count;
    Eigen::MatrixXd matrix;
    Eigen::VectorXd firstPivots;
    std::vector<bool> isOut;
    int left;
};

class Finder
{
public:
    Finder(const Eigen::MatrixXd& weights, const Eigen::VectorXd& givenDifferences,
           const SetLimits& testLimits, const std::function<bool()>& stopQuestion)
        : all(weights, givenDifferences)
        , differences(givenDifferences)
        , limits(testLimits)
        , isStopRequested(stopQuestion)
    {}

    ConsistentSet find()
    {
        int tried = 0;
        for (; tried < all.getCount() && mayTryAll(tried); ++tried) {
            SweptWeights start = all;
            found.clear();
            tryAll(start, 0, tried);
            if (result.isStopped)
                return result;
            if (!found.empty()) {
                takeFound();
                return result;
            }
        }
        search();
        result.isLargest = static_cast<int>(result.excluded.size()) <= tried;
        return result;
    }

private:
    struct Found
    {
        std::vector<int> excluded;
        double sum;
    };

    /// Whether all sets without so many can be tried.
    bool mayTryAll(int excluded) const
    {
        const double count = all.getCount();
        double sets = 1.0;
        for (int i = 0; i + 1 < excluded; ++i)
            sets *= (count - i) / (i + 1);
        const double last = sets * count;
        return sets * (count + 1) * (count + 1) + last <= kMostWork;
    }

    bool isConsistent(const SweptWeights& weights) const
    {
        const int left = weights.getLeft();
        if (left < 2)
            return true;
        if (weights.getSum() > limits.sum(left))
            return false;
        const double limit = limits.single(left);
        for (int value = 0; value < weights.getCount(); ++value) {
            if (!weights.isExcluded(value) && weights.isChecked(value) &&
                weights.getGain(value) > limit * limit)
                return false;
        }
        return true;
    }

    bool checkStop()
    {
        if (!result.isStopped && ++questions % kSetsBetweenQuestions == 0 && isStopRequested &&
            isStopRequested())
            result.isStopped = true;
        return result.isStopped;
    }

    static std::vector<int> listExcluded(const SweptWeights& weights)
    {
        std::vector<int> excluded;
        for (int value = 0; value < weights.getCount(); ++value) {
            if (weights.isExcluded(value))
                excluded.push_back(value);
        }
        return excluded;
    }

    /// Leaves out so many more values in all ways, those from that one on.
    void tryAll(const SweptWeights& weights, int first, int more)
    {
        if (more == 0) {
            if (isConsistent(weights))
                found.push_back({listExcluded(weights), weights.getSum()});
            return;
        }
        for (int value = first; value + more <= weights.getCount() && !checkStop(); ++value) {
            if (!weights.isChecked(value))
                continue;
            const int left = weights.getLeft() - 1;
            if (more == 1 && left > 1 && weights.getSumWithout(value) > limits.sum(left))
                continue;
            SweptWeights without = weights;
            without.sweep(value);
            tryAll(without, value + 1, more - 1);
        }
    }

    /// Of sets of one size the one with the smallest sum.
    void takeFound()
    {
        std::stable_sort(found.begin(), found.end(),
                         [](const Found& a, const Found& b) { return a.sum < b.sum; });
        const Found& best = found.front();
        result.excluded = best.excluded;
        const int left = all.getCount() - static_cast<int>(best.excluded.size());
        const bool isMajority = left > static_cast<int>(best.excluded.size());
        for (auto other = found.begin() + 1; other != found.end(); ++other) {
            const bool isAsGood = other->sum - best.sum <= limits.distinction;
            if ((isAsGood || !isMajority) && result.alternatives.size() < kMostAlternatives)
                result.alternatives.push_back(other->excluded);
        }
    }

    void search()
    {
        SweptWeights worstFirst = all;
        excludeWorst(worstFirst);
        takeBack(worstFirst);
        SweptWeights aroundBest = gatherAroundBest();
        takeBack(aroundBest);
        if (result.isStopped)
            return;
        const bool isAroundBetter = std::make_pair(-aroundBest.getLeft(), aroundBest.getSum()) <
                                    std::make_pair(-worstFirst.getLeft(), worstFirst.getSum());
        const SweptWeights& best = isAroundBetter ? aroundBest : worstFirst;
        found = {{listExcluded(best), best.getSum()}};
        findExchanges(best);
        takeFound();
    }

    void excludeWorst(SweptWeights& weights)
    {
        while (!isConsistent(weights) && !checkStop()) {
            int worst = -1;
            for (int value = 0; value < weights.getCount(); ++value) {
                if (!weights.isExcluded(value) && weights.isChecked(value) &&
                    (worst < 0 || weights.getGain(value) > weights.getGain(worst)))
                    worst = value;
            }
            if (worst < 0)
                return;
            weights.sweep(worst);
        }
    }

    /// Leaves only the half of the values whose differences lie closest together, and of these what agrees.
    SweptWeights gatherAroundBest()
    {
        const int count = all.getCount();
        std::vector<int> order(static_cast<std::size_t>(count));
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return differences[a] < differences[b]; });
        const int half = count / 2 + 1;
        int first = 0;
        for (int i = 1; i + half <= count; ++i) {
            if (span(order, i, half) < span(order, first, half))
                first = i;
        }
        SweptWeights weights = all;
        for (int i = 0; i < count && !checkStop(); ++i) {
            if (i < first || i >= first + half)
                weights.sweep(order[static_cast<std::size_t>(i)]);
        }
        excludeWorst(weights);
        return weights;
    }

    double span(const std::vector<int>& order, int first, int count) const
    {
        return differences[order[static_cast<std::size_t>(first + count - 1)]] -
               differences[order[static_cast<std::size_t>(first)]];
    }

    /// Takes back what agrees with the rest, the closest first.
    void takeBack(SweptWeights& weights)
    {
        while (!result.isStopped) {
            int closest = -1;
            for (int value = 0; value < weights.getCount(); ++value) {
                if (weights.isExcluded(value) &&
                    (closest < 0 || weights.getExcludedGain(value) < weights.getExcludedGain(closest)))
                    closest = value;
            }
            if (closest < 0 || checkStop())
                return;
            weights.sweep(closest);
            if (!isConsistent(weights)) {
                weights.sweep(closest);
                return;
            }
        }
    }

    /// Sets in which one excluded value has changed places with another one.
    void findExchanges(const SweptWeights& best)
    {
        for (const int excluded : listExcluded(best)) {
            SweptWeights with = best;
            with.sweep(excluded);
            for (int value = 0; value < with.getCount() && !checkStop(); ++value) {
                if (value == excluded || with.isExcluded(value) || !with.isChecked(value) ||
                    with.getSumWithout(value) > limits.sum(best.getLeft()))
                    continue;
                SweptWeights exchanged = with;
                exchanged.sweep(value);
                if (isConsistent(exchanged))
                    found.push_back({listExcluded(exchanged), exchanged.getSum()});
                if (found.size() > kMostAlternatives)
                    return;
            }
        }
    }

    const SweptWeights all;
    const Eigen::VectorXd& differences;
    const SetLimits& limits;
    const std::function<bool()>& isStopRequested;
    std::vector<Found> found;
    ConsistentSet result;
    int questions = 0;
};

} // namespace

ConsistentSet findConsistentSet(const Eigen::MatrixXd& weights, const Eigen::VectorXd& differences,
                                const SetLimits& limits, const std::function<bool()>& isStopped)
{
    return Finder(weights, differences, limits, isStopped).find();
}

} // namespace levelling
