#include "TestNetworks.h"
#include "levelling/Components.h"
#include "levelling/CycleElimination.h"
#include "levelling/LoopBasis.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>

using namespace levelling;
using namespace orvel::test;

namespace {

/// "A-B-C +1.0 mm" of each loop.
QStringList describe(const Network& network, const std::vector<Loop>& loops)
{
    QStringList lines;
    for (const Loop& loop : loops) {
        lines.append(QStringLiteral("%1 %2%3").arg(networks::ids(network, loop.points),
                                                   loop.misclosure < 0 ? QString() : QStringLiteral("+"),
                                                   QString::number(loop.misclosure, 'f', 1)));
    }
    return lines;
}

QStringList describeSorted(const Network& network)
{
    QStringList lines = describe(network, findLoopBasis(SectionGraph(network)));
    lines.sort();
    return lines;
}

int redundancyOf(const Network& network)
{
    int redundancy = 0;
    for (const Component& component : findComponents(network))
        redundancy += component.getRedundancy();
    return redundancy;
}

/// Finds all simple cycles of a small network as sets of sections, by trying all ways.
class AllCycles
{
public:
    explicit AllCycles(const SectionGraph& searchedGraph)
        : graph(searchedGraph)
        , passed(static_cast<std::size_t>(searchedGraph.getNodeCount()), false)
    {
        for (start = 0; start < graph.getNodeCount(); ++start)
            walk(start);
    }

    /// Sorted by count of sections, then by length.
    std::vector<std::vector<int>> sorted() const
    {
        std::vector<std::vector<int>> all(cycles.begin(), cycles.end());
        std::stable_sort(all.begin(), all.end(), [this](const auto& a, const auto& b) {
            return a.size() != b.size() ? a.size() < b.size() : lengthOf(a) < lengthOf(b);
        });
        return all;
    }

    double lengthOf(const std::vector<int>& cycle) const
    {
        return std::accumulate(cycle.begin(), cycle.end(), 0.0, [this](double sum, int section) {
            return sum + *graph.getNetwork().sections[static_cast<std::size_t>(section)].distance;
        });
    }

private:
    void walk(int node)
    {
        passed[static_cast<std::size_t>(node)] = true;
        for (const SectionGraph::Link& link : graph.getLinks(node)) {
            if (std::find(way.begin(), way.end(), link.section) != way.end())
                continue;
            way.push_back(link.section);
            if (link.node == start) {
                std::vector<int> cycle = way;
                std::sort(cycle.begin(), cycle.end());
                cycles.insert(cycle);
            } else if (link.node > start && !passed[static_cast<std::size_t>(link.node)]) {
                walk(link.node);
            }
            way.pop_back();
        }
        passed[static_cast<std::size_t>(node)] = false;
    }

    const SectionGraph& graph;
    int start = 0;
    std::vector<bool> passed;
    std::vector<int> way;
    std::set<std::vector<int>> cycles;
};

/// Sections and kilometres of all loops together.
struct BasisSize
{
    std::size_t sections = 0;
    double length = 0.0;
};

BasisSize sizeOf(const std::vector<Loop>& loops)
{
    BasisSize size;
    for (const Loop& loop : loops) {
        size.sections += loop.sections.size();
        size.length += *loop.length;
    }
    return size;
}

/// Size of a minimum basis, chosen from all cycles there are.
BasisSize minimumSize(const SectionGraph& graph)
{
    const AllCycles cycles(graph);
    CycleElimination elimination(static_cast<int>(graph.getNetwork().sections.size()));
    BasisSize size;
    for (const std::vector<int>& cycle : cycles.sorted()) {
        if (!elimination.add(cycle))
            continue;
        size.sections += cycle.size();
        size.length += cycles.lengthOf(cycle);
    }
    return size;
}

/// Each section must lead from one point of the loop to the next.
void verifyWay(const Network& network, const Loop& loop)
{
    QCOMPARE(loop.points.size(), loop.sections.size() + 1);
    for (std::size_t i = 0; i < loop.sections.size(); ++i) {
        const Section& section = network.sections[static_cast<std::size_t>(loop.sections[i].section)];
        const bool forward = loop.sections[i].forward;
        QCOMPARE(forward ? section.from : section.to, loop.points[i]);
        QCOMPARE(forward ? section.to : section.from, loop.points[i + 1]);
    }
    const auto lower = [](const RouteSection& a, const RouteSection& b) { return a.section < b.section; };
    QVERIFY(std::min_element(loop.sections.begin(), loop.sections.end(), lower)->forward);
}

void verifySums(const Network& network, const Loop& loop)
{
    double sum = 0.0;
    double length = 0.0;
    double variance = 0.0;
    for (const RouteSection& step : loop.sections) {
        const Section& section = network.sections[static_cast<std::size_t>(step.section)];
        sum += step.forward ? section.difference : -section.difference;
        length += *section.distance;
        variance += section.sigma * section.sigma;
    }
    const Point& first = network.points[static_cast<std::size_t>(loop.points.front())];
    const Point& last = network.points[static_cast<std::size_t>(loop.points.back())];
    const double given = first.fixed ? *last.height - *first.height : 0.0;
    QVERIFY(first.fixed || loop.points.front() == loop.points.back());
    QVERIFY(std::abs(loop.misclosure - (sum - given) * 1000.0) < 1e-6);
    QVERIFY(std::abs(*loop.length - length) < 1e-9);
    QVERIFY(std::abs(loop.sigma - std::sqrt(variance)) < 1e-9);
}

void verifyIndependent(const Network& network, const std::vector<Loop>& loops)
{
    CycleElimination elimination(static_cast<int>(network.sections.size()));
    for (const Loop& loop : loops) {
        std::vector<int> sections;
        for (const RouteSection& step : loop.sections)
            sections.push_back(step.section);
        QVERIFY(elimination.add(sections));
    }
}

} // namespace

class TestLoopBasis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoBenchmarksAreCountedAsJoined();
    void loopsOfTwoBenchmarksSpanThePublishedOnes();
    void oneBenchmarkGivesTriangles();
    void lengthAndSigmaOfALoop();
    void loopOfASectionWithoutLengthHasNone();
    void lineBetweenTwoBenchmarksIsALoop();
    void forwardAndBackAreALoop();
    void freeNetworkHasLoops();
    void treeHasNoLoops();
    void randomNetworksGiveIndependentLoops();
    void smallNetworksGiveMinimumBasis();
    void triangulationGivesTriangles();
    void gridGivesSquares();
    void ringRoundALakeIsOneLongLoop();
    void searchCanBeStopped();
};

void TestLoopBasis::twoBenchmarksAreCountedAsJoined()
{
    QCOMPARE(describeSorted(networks::sample(QStringLiteral("two-benchmarks.gkf"))),
             QStringList({QStringLiteral("BMX-A-BMY -60.0"), QStringLiteral("BMY-B-A-BMY +20.0"),
                          QStringLiteral("BMY-C-B-BMY +50.0"), QStringLiteral("BMY-C-BMX +120.0")}));
}

void TestLoopBasis::loopsOfTwoBenchmarksSpanThePublishedOnes()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    CycleElimination elimination(7);
    for (const Loop& loop : findLoopBasis(SectionGraph(network))) {
        std::vector<int> sections;
        for (const RouteSection& step : loop.sections)
            sections.push_back(step.section);
        QVERIFY(elimination.add(sections));
    }
    QVERIFY(!elimination.add({0, 1}));
    QVERIFY(!elimination.add({2, 3}));
    QVERIFY(!elimination.add({0, 4, 5}));
    QVERIFY(!elimination.add({5, 6, 2}));
}

void TestLoopBasis::oneBenchmarkGivesTriangles()
{
    QCOMPARE(describeSorted(networks::sample(QStringLiteral("one-benchmark.gkf"))),
             QStringList({QStringLiteral("51-1-17-51 -8.6"), QStringLiteral("51-11-17-51 -0.2"),
                          QStringLiteral("51-11-38-51 +1.4"), QStringLiteral("51-17-34-51 +1.2"),
                          QStringLiteral("51-17-43-51 +3.3"), QStringLiteral("51-32-43-51 -2.4"),
                          QStringLiteral("51-34-32-51 -0.4"), QStringLiteral("51-38-1-51 +5.8")}));
}

void TestLoopBasis::lengthAndSigmaOfALoop()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.0, 1.5)
                                .section(QStringLiteral("A"), QStringLiteral("R"), -1.0, 2.5)
                                .build();
    const Loop loop = findLoopBasis(SectionGraph(network)).front();
    QCOMPARE(*loop.length, 4.0);
    QCOMPARE(loop.sigma, 2.0);
}

void TestLoopBasis::loopOfASectionWithoutLengthHasNone()
{
    for (const std::size_t without : {std::size_t(0), std::size_t(1)}) {
        Network network = networks::Builder()
                              .section(QStringLiteral("R"), QStringLiteral("A"), 1.0)
                              .section(QStringLiteral("A"), QStringLiteral("R"), -1.0)
                              .build();
        network.sections[without].distance.reset();
        const Loop loop = findLoopBasis(SectionGraph(network)).front();
        QVERIFY(!loop.length);
    }
}

void TestLoopBasis::lineBetweenTwoBenchmarksIsALoop()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R1"), 10.0)
                                .fixed(QStringLiteral("R2"), 12.0)
                                .section(QStringLiteral("R2"), QStringLiteral("R1"), -1.990)
                                .section(QStringLiteral("R1"), QStringLiteral("R2"), 2.004)
                                .build();
    QCOMPARE(describeSorted(network),
             QStringList({QStringLiteral("R1-R2 +4.0"), QStringLiteral("R2-R1 +10.0")}));
}

void TestLoopBasis::forwardAndBackAreALoop()
{
    const Network network = networks::Builder()
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.250)
                                .section(QStringLiteral("B"), QStringLiteral("A"), -1.246)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.249)
                                .build();
    const std::vector<Loop> loops = findLoopBasis(SectionGraph(network));
    QCOMPARE(describe(network, loops),
             QStringList({QStringLiteral("A-B-A +4.0"), QStringLiteral("A-B-A +1.0")}));
    verifyIndependent(network, loops);
}

void TestLoopBasis::freeNetworkHasLoops()
{
    const Network network = networks::Builder()
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                                .section(QStringLiteral("C"), QStringLiteral("B"), -1.0)
                                .section(QStringLiteral("C"), QStringLiteral("A"), -2.003)
                                .build();
    QCOMPARE(describeSorted(network), QStringList(QStringLiteral("A-B-C-A -3.0")));
}

void TestLoopBasis::treeHasNoLoops()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 1.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.0)
                                .section(QStringLiteral("R"), QStringLiteral("B"), 1.0)
                                .section(QStringLiteral("B"), QStringLiteral("C"), 1.0)
                                .build();
    QVERIFY(findLoopBasis(SectionGraph(network)).empty());
    QVERIFY(findLoopBasis(SectionGraph(Network())).empty());
}

void TestLoopBasis::randomNetworksGiveIndependentLoops()
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const int points = 5 + static_cast<int>(seed * 7 % 200);
        const int sections = points + static_cast<int>(seed * 13 % 300);
        const Network network = networks::random(seed, points, sections, static_cast<int>(seed % 6));
        const std::vector<Loop> loops = findLoopBasis(SectionGraph(network));
        QCOMPARE(static_cast<int>(loops.size()), redundancyOf(network));
        verifyIndependent(network, loops);
        for (const Loop& loop : loops) {
            verifyWay(network, loop);
            verifySums(network, loop);
        }
    }
}

void TestLoopBasis::smallNetworksGiveMinimumBasis()
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        const int points = 4 + static_cast<int>(seed % 7);
        const int sections = points + static_cast<int>(seed % 5);
        const Network network = networks::random(seed, points, sections, static_cast<int>(seed % 3));
        const SectionGraph graph(network);
        const BasisSize size = sizeOf(findLoopBasis(graph));
        const BasisSize minimum = minimumSize(graph);
        QCOMPARE(size.sections, minimum.sections);
        QVERIFY(std::abs(size.length - minimum.length) < 1e-9);
    }
}

void TestLoopBasis::triangulationGivesTriangles()
{
    const Network network = networks::triangulation(25, 1);
    const std::vector<Loop> loops = findLoopBasis(SectionGraph(network));
    QCOMPARE(loops.size(), std::size_t(2 * 24 * 24));
    QCOMPARE(sizeOf(loops).sections, 3 * loops.size());
}

void TestLoopBasis::gridGivesSquares()
{
    const Network network = networks::grid(30);
    const std::vector<Loop> loops = findLoopBasis(SectionGraph(network));
    QCOMPARE(loops.size(), std::size_t(29 * 29));
    QCOMPARE(sizeOf(loops).sections, 4 * loops.size());
}

void TestLoopBasis::ringRoundALakeIsOneLongLoop()
{
    // A band of squares closed to a ring of 20: twenty squares, and one way round.
    networks::Builder builder;
    for (int i = 0; i < 20; ++i) {
        const auto inner = [](int k) { return QStringLiteral("i%1").arg(k % 20); };
        const auto outer = [](int k) { return QStringLiteral("o%1").arg(k % 20); };
        builder.section(inner(i), outer(i), 0.0);
        builder.section(inner(i), inner(i + 1), 0.0);
        builder.section(outer(i), outer(i + 1), 0.0);
    }
    const std::vector<Loop> loops = findLoopBasis(SectionGraph(builder.build()));
    QCOMPARE(loops.size(), std::size_t(21));
    QCOMPARE(loops.back().sections.size(), std::size_t(20));
    QCOMPARE(sizeOf(loops).sections, std::size_t(20 * 4 + 20));
}

void TestLoopBasis::searchCanBeStopped()
{
    const Network network = networks::triangulation(12, 1);
    const SectionGraph graph(network);
    int asked = 0;
    int stopAt = std::numeric_limits<int>::max();
    const auto isStopped = [&] { return ++asked >= stopAt; };
    const std::size_t loopCount = findLoopBasis(graph, isStopped).size();
    const int all = asked;
    QCOMPARE(loopCount, findLoopBasis(graph).size());
    // For each point that may be the last of a loop, each loop that is tried, and each that is told.
    QVERIFY(all > static_cast<int>(network.points.size() / 2 + 2 * loopCount));
    for (stopAt = 1; stopAt < all; stopAt += all / 20) {
        asked = 0;
        QVERIFY(findLoopBasis(graph, isStopped).empty());
        QVERIFY(asked <= stopAt + 1);
    }
}

QTEST_APPLESS_MAIN(TestLoopBasis)
#include "tst_loopbasis.moc"
