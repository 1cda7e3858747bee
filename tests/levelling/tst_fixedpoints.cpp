#include "levelling/Adjustment.h"
#include "levelling/FixedPoints.h"
#include "levelling/Quantiles.h"
#include "tests/levelling/TestNetworks.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <set>

using namespace levelling;
using namespace orvel::test;

namespace {

using Verdict = BenchmarkPart::Verdict;

QString word(const char* text)
{
    return QString::fromLatin1(text);
}

QString digits(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

Point& pointOf(Network& network, int index)
{
    return network.points[static_cast<std::size_t>(index)];
}

/// A square of side * side points with normal errors, and so many benchmarks at random places whose heights
/// are right: 0.
Network makeNetwork(int side, int benchmarks, std::mt19937& generator)
{
    Network network = networks::grid(side);
    std::uniform_real_distribution<double> length(0.5, 2.0);
    std::normal_distribution<double> noise;
    for (Section& section : network.sections) {
        section.distance = length(generator);
        section.sigma = std::sqrt(*section.distance);
        section.difference = section.sigma * noise(generator) / 1000.0;
    }
    std::vector<int> points(network.points.size());
    std::iota(points.begin(), points.end(), 0);
    std::shuffle(points.begin(), points.end(), generator);
    for (int i = 0; i < benchmarks; ++i) {
        Point& point = pointOf(network, points[static_cast<std::size_t>(i)]);
        point.fixed = true;
        point.height = 0.0;
    }
    return network;
}

std::vector<int> listBenchmarks(const Network& network)
{
    std::vector<int> benchmarks;
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        if (network.points[point].isBenchmark())
            benchmarks.push_back(static_cast<int>(point));
    }
    return benchmarks;
}

/// Weighted sum of squared residuals, with those benchmarks held.
double pvvOf(Network network, const std::vector<int>& held)
{
    for (const int point : listBenchmarks(network))
        pointOf(network, point).fixed = std::find(held.begin(), held.end(), point) != held.end();
    return adjust(network).fits[0]->pvv;
}

/// The largest sets of benchmarks that are consistent by the tests of the book, from adjustments with these
/// held.
std::set<std::vector<int>> findLargestSets(const Network& network)
{
    const std::vector<int> all = listBenchmarks(network);
    const double half = quantiles::shareOfEach(1.0 - network.parameters.confidence, 2);
    const double freeSum = pvvOf(network, {all.front()});
    std::set<std::vector<int>> largest;
    std::size_t size = 0;
    for (unsigned mask = 1; mask < 1U << all.size(); ++mask) {
        std::vector<int> set;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if ((mask & (1U << i)) != 0)
                set.push_back(all[i]);
        }
        if (set.size() < std::max<std::size_t>(size, 2))
            continue;
        const double sum = pvvOf(network, set) - freeSum;
        const auto count = static_cast<int>(set.size());
        const double error = count == 2 ? 1.0 - network.parameters.confidence : half;
        bool isConsistent = sum <= quantiles::varianceLimit(count - 1, 0, error) * (count - 1);
        const double limit = quantiles::normalLimit(count == 2 ? error : quantiles::shareOfEach(half, count));
        for (const int freed : set) {
            std::vector<int> others = set;
            others.erase(std::find(others.begin(), others.end(), freed));
            const double gain = sum - (pvvOf(network, others) - freeSum);
            isConsistent = isConsistent && gain <= limit * limit;
        }
        if (!isConsistent)
            continue;
        if (set.size() > size)
            largest.clear();
        size = set.size();
        std::vector<int> excluded;
        std::set_difference(all.begin(), all.end(), set.begin(), set.end(), std::back_inserter(excluded));
        largest.insert(excluded);
    }
    return largest;
}

/// R1, R2 and R3 on a line of sections of 1 km and 1 mm, the last one higher by the given error.
Network makeThree(double error)
{
    return networks::Builder()
        .fixed(word("R1"), 10.0)
        .fixed(word("R2"), 11.0)
        .fixed(word("R3"), 12.0 + error)
        .section(word("R1"), word("A"), 0.5)
        .section(word("A"), word("R2"), 0.5)
        .section(word("R2"), word("R3"), 1.0, 2.0)
        .build();
}

struct Rates
{
    int networks = 0;
    int exact = 0; ///< exactly the planted ones were named
    int open = 0;  ///< others could be in their place, or none agreed
    int wrong = 0; ///< others were named, or nothing
};

} // namespace

/// Whether given heights are consistent with the measurements and with each other.
class TestFixedPoints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void threeBenchmarksByHand();
    void shiftsAreThoseOfAdjustmentsWithOneFreed_data();
    void shiftsAreThoseOfAdjustmentsWithOneFreed();
    void correlatedHeightsByDenseMatrices();
    void krummDynamicNetwork();
    void largestSetsAreThoseOfAllAdjustments();
    void singleBenchmarkIsNotCompared();
    void twoThatDisagreeAreTooFew();
    void twoAgainstTwoIsLeftOpen();
    void noTwoOfThreeAgree();
    void falseAlarmsHoldTheLevel_data();
    void falseAlarmsHoldTheLevel();
    void plantedErrorsAreNamed_data();
    void plantedErrorsAreNamed();
    void manyBenchmarksAreSearched_data();
    void manyBenchmarksAreSearched();
    void partsAreComparedEachByItself();
    void groupOfHeightsOverTwoParts();
    void lonelyBenchmarksAndPartsWithoutAreNamed();
    void tooManyBenchmarksAreSaid();
    void networkWithoutBenchmarks();
    void stopsOnRequest();
};

void TestFixedPoints::threeBenchmarksByHand()
{
    Network network = makeThree(0.020);
    network.parameters.sigmaAct = SigmaAct::Apriori;
    const FixedPoints result = analyseFixedPoints(network);
    QCOMPARE(result.status, FixedPoints::Status::Ok);
    QCOMPARE(result.parts.size(), std::size_t(1));
    const BenchmarkPart& part = result.parts[0];
    // d = (0, 0, 20) mm; R1 to R2 and R2 to R3 have 2 mm² each. Freed, R3 is 20 mm too high with 2 mm² from
    // R2; R2 is between R1 and R3 with 1 mm², (0 + 20) / 2 too low; R1 is level with R2 with 2 mm².
    QCOMPARE(part.redundancy, 0);
    QVERIFY(!part.sigma0);
    QVERIFY(std::abs(*part.benchmarks[0].shift) < 1e-9);
    QCOMPARE(digits(part.benchmarks[0].shiftSigma, 6), digits(std::sqrt(2.0), 6));
    QCOMPARE(digits(*part.benchmarks[1].shift, 6), word("-10.000000"));
    QCOMPARE(digits(part.benchmarks[1].shiftSigma, 6), word("1.000000"));
    QCOMPARE(digits(*part.benchmarks[2].shift, 6), word("20.000000"));
    QCOMPARE(digits(part.benchmarks[2].statistic, 6), digits(20.0 / std::sqrt(2.0), 6));
    // (0² / 2 + 20² / 2) / 2 degrees of freedom
    QCOMPARE(digits(part.variance, 6), word("100.000000"));
    QCOMPARE(digits(part.varianceLimit, 3), digits(-std::log(quantiles::shareOfEach(0.05, 2)), 3));
    QCOMPARE(part.verdict, Verdict::Excluded);
    QCOMPARE(networks::ids(network, part.excluded), word("R3"));
    QCOMPARE(digits(*part.benchmarks[2].error, 6), word("20.000000"));
    // The free heights are moved to the two that agree, in their middle.
    QCOMPARE(digits(part.benchmarks[2].freeHeight, 6), word("12.000000"));
    QCOMPARE(digits(part.benchmarks[2].difference, 6), word("20.000000"));
    // Half of the way from R1 to R2, and that to R3.
    QCOMPARE(digits(part.benchmarks[2].differenceSigma, 6), digits(std::sqrt(2.5), 6));
    QCOMPARE(digits(part.benchmarks[0].differenceSigma, 6), digits(std::sqrt(0.5), 6));
}

void TestFixedPoints::shiftsAreThoseOfAdjustmentsWithOneFreed_data()
{
    QTest::addColumn<bool>("isApriori");
    QTest::newRow("a priori") << true;
    QTest::newRow("a posteriori") << false;
}

void TestFixedPoints::shiftsAreThoseOfAdjustmentsWithOneFreed()
{
    QFETCH(bool, isApriori);
    std::mt19937 generator(1);
    for (int trial = 0; trial < 30; ++trial) {
        Network network = makeNetwork(5, 2 + trial % 6, generator);
        network.parameters.sigmaAct = isApriori ? SigmaAct::Apriori : SigmaAct::Aposteriori;
        const std::vector<int> benchmarks = listBenchmarks(network);
        double value = 0.0;
        for (const int point : benchmarks)
            *pointOf(network, point).height = (value += 0.0015);
        // One of them with a variance of its own.
        Point& observed = pointOf(network, benchmarks.front());
        observed.fixed = false;
        observed.observed = true;
        network.observedHeights = {{{benchmarks.front()}, {0.5}}};

        const FixedPoints result = analyseFixedPoints(network);
        const BenchmarkPart& part = result.parts[0];
        QCOMPARE(part.isScaled, !isApriori);
        Network free = network;
        free.observedHeights.clear();
        for (const int point : benchmarks)
            pointOf(free, point).fixed = pointOf(free, point).observed = false;
        const PartFit fit = *adjust(free).fits[0];
        QCOMPARE(part.redundancy, fit.redundancy);
        QVERIFY(std::abs(*part.sigma0 - *fit.getSigma0()) < 1e-9);
        for (const BenchmarkFit& tested : part.benchmarks) {
            Network one = network;
            Point& freed = pointOf(one, tested.point);
            const double own = freed.observed ? 0.5 : 0.0;
            if (freed.observed)
                one.observedHeights.clear();
            freed.fixed = freed.observed = false;
            const Adjustment adjustment = adjust(one);
            const AdjustedPoint& predicted = *adjustment.points[static_cast<std::size_t>(tested.point)];
            QVERIFY(std::abs(*tested.shift - (*freed.height - predicted.height) * 1000.0) < 1e-6);
            const double sigma = part.sigmaScale * std::sqrt(predicted.sigma * predicted.sigma + own);
            QVERIFY(std::abs(tested.shiftSigma - sigma) < 1e-6);
        }
        const double scale = part.sigmaScale * part.sigmaScale;
        const double sum = adjust(network).fits[0]->pvv - fit.pvv;
        QVERIFY(std::abs(part.variance - sum / scale / (static_cast<double>(benchmarks.size()) - 1)) < 1e-6);
    }
}

void TestFixedPoints::correlatedHeightsByDenseMatrices()
{
    // A - B - C with 4 and 9 mm²; the heights have the covariances below.
    Network network = networks::Builder()
                          .section(word("A"), word("B"), 1.0, 4.0)
                          .section(word("B"), word("C"), 1.0, 9.0)
                          .build();
    const std::vector<double> covariance{3.0, 1.0, 0.5, 1.0, 2.0, -0.4, 0.5, -0.4, 1.0};
    const std::vector<double> heights{0.0, 1.004, 1.999};
    for (int point = 0; point < 3; ++point) {
        pointOf(network, point).observed = true;
        pointOf(network, point).height = heights[static_cast<std::size_t>(point)];
    }
    network.observedHeights = {{{0, 1, 2}, covariance}};
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    // Differences u = (B - A, C - A), free of any common shift: covariances D S D' with D = (-1 1 0; -1 0 1)
    // and S = the given ones plus (0 0 0; 0 4 4; 0 4 13).
    const double s[3][3] = {{3.0, 1.0, 0.5}, {1.0, 6.0, 3.6}, {0.5, 3.6, 14.0}};
    const double a = s[1][1] - 2.0 * s[0][1] + s[0][0];
    const double b = s[1][2] - s[0][1] - s[0][2] + s[0][0];
    const double c = s[2][2] - 2.0 * s[0][2] + s[0][0];
    const double u[2] = {4.0, -1.0};
    const double sum = (c * u[0] * u[0] - 2.0 * b * u[0] * u[1] + a * u[1] * u[1]) / (a * c - b * b);
    QCOMPARE(digits(part.variance, 9), digits(sum / 2.0, 9));
    // Freed, C is what A and B leave: u2 - b / a u1.
    QCOMPARE(digits(*part.benchmarks[2].shift, 9), digits(u[1] - b / a * u[0], 9));
    QCOMPARE(digits(part.benchmarks[2].shiftSigma, 9), digits(std::sqrt(c - b * b / a), 9));
}

/// F. Krumm, Geodetic Network Adjustment Examples, Stuttgart 2020: the points 2 and 3 have heights with
/// covariances, and 6, 7 and 8 become 105.63640, 115.70723 and 112.88263.
void TestFixedPoints::krummDynamicNetwork()
{
    Network network;
    network.parameters.sigmaApriori = 1000.0;
    for (const char* id : {"2", "3", "6", "7", "8"}) {
        network.points.emplace_back();
        network.points.back().id = word(id);
    }
    const auto add = [&](int from, int to, double difference, double sigma) {
        network.sections.emplace_back();
        network.sections.back().from = from;
        network.sections.back().to = to;
        network.sections.back().difference = difference;
        network.sections.back().stdev = network.sections.back().sigma = sigma;
    };
    add(0, 4, 5.128, 836.660027);
    add(1, 2, 2.183, 707.106781);
    add(1, 3, 12.254, 707.106781);
    add(2, 3, 10.071, 894.427191);
    add(4, 3, 2.824, 894.427191);
    network.points[0].height = 107.7541;
    network.points[1].height = 103.4535;
    network.points[0].observed = network.points[1].observed = true;
    network.observedHeights = {{{0, 1}, {2500.0, -1500.0, -1500.0, 3600.0}}};
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    QCOMPARE(part.verdict, Verdict::Consistent);
    QCOMPARE(part.redundancy, 1);
    QVERIFY(!part.isScaled);
    // By way of 6 or straight to 7, then over 8 to 2: the loop 3-6-7 closes to 0 mm, so 7 is 12.254 m above
    // 3, and 2 is 12.254 - 2.824 - 5.128 = 4.302 m above it; given are 4.3006 m.
    QCOMPARE(digits(*part.benchmarks[0].shift, 4), word("-1.4000"));
    QCOMPARE(digits(*part.benchmarks[1].shift, 4), word("1.4000"));
    // 3-7 measured straight and over 6: 1 / (1 / 0.5 + 1 / 1.3) m²; then 0.8 and 0.7 m²; the heights add
    // 2500 + 3600 + 2 * 1500 mm².
    const double variance = 1e6 * (1.0 / (1.0 / 0.5 + 1.0 / 1.3) + 0.8 + 0.7) + 9100.0;
    QCOMPARE(digits(part.benchmarks[0].shiftSigma, 3), digits(std::sqrt(variance), 3));

    // The published heights are those of the adjustment that takes both benchmarks.
    const Adjustment adjustment = adjust(network);
    QCOMPARE(digits(adjustment.points[3]->height, 5), word("115.70723"));
    QCOMPARE(digits(adjustment.points[4]->height, 5), word("112.88263"));
    // What the given heights differ by from each other has gone into them.
    QCOMPARE(digits(adjustment.fits[0]->pvv, 9),
             digits(*part.benchmarks[0].shift * *part.benchmarks[0].shift / variance, 9));
}

void TestFixedPoints::largestSetsAreThoseOfAllAdjustments()
{
    std::mt19937 generator(8);
    std::uniform_real_distribution<double> size(2.0, 12.0);
    int ambiguous = 0;
    for (int trial = 0; trial < 60; ++trial) {
        Network network = makeNetwork(4, 3 + trial % 4, generator);
        network.parameters.sigmaAct = SigmaAct::Apriori;
        const std::vector<int> benchmarks = listBenchmarks(network);
        for (int wrong = 0; wrong < 1 + trial % 3; ++wrong)
            *pointOf(network, benchmarks[static_cast<std::size_t>(wrong)]).height +=
                (wrong % 2 == 0 ? 1.0 : -1.0) * size(generator) / 1000.0;
        const std::set<std::vector<int>> sets = findLargestSets(network);
        const BenchmarkPart part = analyseFixedPoints(network).parts[0];
        QVERIFY(part.isLargest);
        if (sets.empty()) {
            QCOMPARE(part.verdict, Verdict::NoneAgree);
            continue;
        }
        QVERIFY(sets.count(part.excluded) == 1);
        for (const std::vector<int>& alternative : part.alternatives)
            QVERIFY(sets.count(alternative) == 1);
        if (sets.size() == 1)
            QVERIFY(part.alternatives.empty());
        ambiguous += part.verdict == Verdict::Ambiguous ? 1 : 0;
        if (sets.begin()->empty())
            QCOMPARE(part.verdict, Verdict::Consistent);
    }
    qInfo("%d of 60 left open", ambiguous);
}

void TestFixedPoints::singleBenchmarkIsNotCompared()
{
    const Network network =
        networks::Builder().fixed(word("R"), 1.0).section(word("R"), word("A"), 1.0).build();
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    QCOMPARE(part.verdict, Verdict::SingleBenchmark);
    QCOMPARE(part.benchmarks.size(), std::size_t(1));
    QCOMPARE(part.benchmarks[0].freeHeight, 1.0);
    QVERIFY(!part.benchmarks[0].shift);
}

void TestFixedPoints::twoThatDisagreeAreTooFew()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 1.0).fixed(word("R2"), 2.02).section(word("R1"), word("R2"), 1.0);
    const BenchmarkPart part = analyseFixedPoints(builder.build()).parts[0];
    QCOMPARE(part.verdict, Verdict::NoneAgree);
    QVERIFY(part.excluded.empty());
    QCOMPARE(digits(*part.benchmarks[0].shift, 6), word("-20.000000"));
    QCOMPARE(digits(*part.benchmarks[1].shift, 6), word("20.000000"));
    QCOMPARE(digits(part.benchmarks[1].difference, 6), word("10.000000"));
}

void TestFixedPoints::twoAgainstTwoIsLeftOpen()
{
    networks::Builder builder;
    for (const char* id : {"R1", "R2", "R3", "R4"})
        builder.fixed(word(id), id[1] > '2' ? 0.05 : 0.0).section(word("A"), word(id), 0.0);
    const Network network = builder.build();
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    QCOMPARE(part.verdict, Verdict::Ambiguous);
    QCOMPARE(part.alternatives.size(), std::size_t(1));
    const std::set<QString> sets{networks::ids(network, part.excluded),
                                 networks::ids(network, part.alternatives[0])};
    QCOMPARE(sets, (std::set<QString>{word("R1-R2"), word("R3-R4")}));
}

void TestFixedPoints::noTwoOfThreeAgree()
{
    Network network = makeThree(0.05);
    *network.points[1].height += 0.02;
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    QCOMPARE(part.verdict, Verdict::NoneAgree);
}

void TestFixedPoints::falseAlarmsHoldTheLevel_data()
{
    QTest::addColumn<bool>("isApriori");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("most");
    // Of 400 networks: 5 % and what chance may add.
    for (const int count : {2, 5, 20}) {
        QTest::addRow("%d, a priori", count) << true << count << 33;
        QTest::addRow("%d, a posteriori", count) << false << count << 33;
    }
}

void TestFixedPoints::falseAlarmsHoldTheLevel()
{
    QFETCH(bool, isApriori);
    QFETCH(int, count);
    QFETCH(int, most);
    std::mt19937 generator(21);
    int alarms = 0;
    for (int trial = 0; trial < 400; ++trial) {
        Network network = makeNetwork(7, count, generator);
        network.parameters.sigmaAct = isApriori ? SigmaAct::Apriori : SigmaAct::Aposteriori;
        alarms += analyseFixedPoints(network).parts[0].verdict == Verdict::Consistent ? 0 : 1;
    }
    qInfo("of 400 networks with %d right benchmarks: false alarms in %d", count, alarms);
    QVERIFY(alarms <= most);
}

void TestFixedPoints::plantedErrorsAreNamed_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("wrong");
    QTest::addColumn<int>("leastExact");
    QTest::addColumn<int>("mostWrong");
    const auto row = [](int count, int wrong, int leastExact, int mostWrong) {
        QTest::addRow("%d wrong of %d", wrong, count) << count << wrong << leastExact << mostWrong;
    };
    row(5, 1, 185, 12);
    row(5, 2, 185, 12);
    row(10, 1, 185, 12);
    row(10, 2, 185, 12);
    row(10, 3, 185, 12);
    row(20, 1, 185, 12);
    row(20, 2, 185, 12);
    row(20, 3, 185, 12);
}

void TestFixedPoints::plantedErrorsAreNamed()
{
    QFETCH(int, count);
    QFETCH(int, wrong);
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> size(10.0, 40.0);
    Rates rates;
    for (int trial = 0; trial < 200; ++trial) {
        Network network = makeNetwork(7, count, generator);
        network.parameters.sigmaAct = trial % 2 == 0 ? SigmaAct::Apriori : SigmaAct::Aposteriori;
        std::vector<int> planted = listBenchmarks(network);
        std::shuffle(planted.begin(), planted.end(), generator);
        planted.resize(static_cast<std::size_t>(wrong));
        std::sort(planted.begin(), planted.end());
        double sign = 1.0;
        for (const int point : planted) {
            *pointOf(network, point).height += sign * size(generator) / 1000.0;
            sign = -sign;
        }
        const BenchmarkPart part = analyseFixedPoints(network).parts[0];
        if (part.verdict == Verdict::Excluded && part.excluded == planted)
            ++rates.exact;
        else if (part.verdict == Verdict::Ambiguous || part.verdict == Verdict::NoneAgree)
            ++rates.open;
        else
            ++rates.wrong;
    }
    qInfo("of 200 networks with %d of %d wrong: exactly these named in %d, left open in %d, otherwise in %d",
          wrong, count, rates.exact, rates.open, rates.wrong);
    QFETCH(int, leastExact);
    QFETCH(int, mostWrong);
    QVERIFY(rates.exact >= leastExact);
    QVERIFY(rates.wrong <= mostWrong);
}

void TestFixedPoints::manyBenchmarksAreSearched_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("wrong");
    QTest::newRow("12 of 60") << 12 << 60 << 12;
    QTest::newRow("20 of 300") << 25 << 300 << 20;
    QTest::newRow("30 of 1000") << 40 << 1000 << 30;
}

void TestFixedPoints::manyBenchmarksAreSearched()
{
    QFETCH(int, side);
    QFETCH(int, count);
    QFETCH(int, wrong);
    std::mt19937 generator(17);
    std::uniform_real_distribution<double> size(20.0, 60.0);
    Network network = makeNetwork(side, count, generator);
    network.parameters.confidence = 0.99;
    std::vector<int> planted = listBenchmarks(network);
    std::shuffle(planted.begin(), planted.end(), generator);
    planted.resize(static_cast<std::size_t>(wrong));
    std::sort(planted.begin(), planted.end());
    for (const int point : planted)
        *pointOf(network, point).height += size(generator) / 1000.0;
    const BenchmarkPart part = analyseFixedPoints(network).parts[0];
    QCOMPARE(part.verdict, Verdict::Excluded);
    QCOMPARE(networks::ids(network, part.excluded), networks::ids(network, planted));
    QVERIFY(!part.isLargest);
}

void TestFixedPoints::partsAreComparedEachByItself()
{
    networks::Builder builder;
    for (const char* part : {"A", "B"}) {
        for (int number = 1; number <= 3; ++number) {
            const QString id = word(part) + QString::number(number);
            builder.fixed(id, part[0] == 'B' && number == 2 ? 0.1 : 0.0)
                .section(word(part), id, 0.0, 1.0 + number);
        }
    }
    const Network network = builder.build();
    const FixedPoints result = analyseFixedPoints(network);
    QCOMPARE(result.parts.size(), std::size_t(2));
    QCOMPARE(result.parts[0].verdict, Verdict::Consistent);
    QCOMPARE(result.parts[1].verdict, Verdict::Excluded);
    QCOMPARE(networks::ids(network, result.parts[1].excluded), word("B2"));
    QCOMPARE(digits(*result.parts[1].benchmarks[1].error, 6), word("100.000000"));
}

void TestFixedPoints::groupOfHeightsOverTwoParts()
{
    // A1 and B1 hang together by their covariance only; each part is compared with the variances of its own.
    networks::Builder builder;
    builder.section(word("A1"), word("A2"), 0.0, 2.0).section(word("B1"), word("B2"), 0.0, 2.0);
    Network network = builder.build();
    for (Point& point : network.points) {
        point.height = 0.0;
        point.observed = true;
    }
    network.observedHeights = {{{0, 2}, {4.0, 1.0, 1.0, 9.0}}, {{1, 3}, {1.0, 0.5, 0.5, 1.0}}};
    const FixedPoints result = analyseFixedPoints(network);
    QCOMPARE(result.parts.size(), std::size_t(2));
    QCOMPARE(digits(result.parts[0].benchmarks[0].shiftSigma, 6), digits(std::sqrt(7.0), 6));
    QCOMPARE(digits(result.parts[1].benchmarks[1].shiftSigma, 6), digits(std::sqrt(12.0), 6));
}

void TestFixedPoints::lonelyBenchmarksAndPartsWithoutAreNamed()
{
    const Network network = networks::Builder()
                                .fixed(word("R1"), 1.0)
                                .fixed(word("R2"), 1.0)
                                .section(word("A"), word("B"), 1.0)
                                .section(word("R1"), word("C"), 1.0)
                                .unknown(word("D"))
                                .build();
    const FixedPoints result = analyseFixedPoints(network);
    QCOMPARE(networks::ids(network, result.isolated), word("R2"));
    QCOMPARE(networks::ids(network, result.withoutBenchmark), word("A"));
    QCOMPARE(result.parts.size(), std::size_t(1));
}

void TestFixedPoints::tooManyBenchmarksAreSaid()
{
    networks::Builder builder;
    Network network;
    network.points.resize(2002);
    for (int index = 0; index < 2002; ++index) {
        Point& point = pointOf(network, index);
        point.fixed = true;
        point.height = 0.0;
        if (index == 0)
            continue;
        Section section;
        section.from = index - 1;
        section.to = index;
        section.sigma = 1.0;
        network.sections.push_back(section);
    }
    QCOMPARE(analyseFixedPoints(network).parts[0].verdict, Verdict::TooMany);
}

void TestFixedPoints::networkWithoutBenchmarks()
{
    const Network network = networks::Builder().section(word("A"), word("B"), 1.0).build();
    QCOMPARE(analyseFixedPoints(network).status, FixedPoints::Status::NoBenchmarks);
    QCOMPARE(analyseFixedPoints(Network()).status, FixedPoints::Status::NoBenchmarks);
}

void TestFixedPoints::stopsOnRequest()
{
    std::mt19937 generator(2);
    Network network = makeNetwork(12, 60, generator);
    for (const int point : listBenchmarks(network))
        *pointOf(network, point).height += 0.05 * (point % 7);
    int questions = 0;
    QCOMPARE(analyseFixedPoints(network, [&] { return ++questions == 0; }).status, FixedPoints::Status::Ok);
    const int all = questions;
    QVERIFY(all > 60);
    for (const int stopAt : {1, 30, 60, 61, all}) {
        questions = 0;
        QCOMPARE(analyseFixedPoints(network, [&] { return ++questions == stopAt; }).status,
                 FixedPoints::Status::Stopped);
        QCOMPARE(questions, stopAt);
    }
}

QTEST_APPLESS_MAIN(TestFixedPoints)
#include "tst_fixedpoints.moc"
