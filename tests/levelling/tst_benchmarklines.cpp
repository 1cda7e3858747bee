#include "levelling/BenchmarkLines.h"
#include "levelling/Components.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/levelling/TestNetworks.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

using namespace levelling;
using namespace orvel::test;

namespace {

QString word(const char* text)
{
    return QString::fromLatin1(text);
}

QStringList describe(const Network& network, const BenchmarkLines& found)
{
    QStringList lines;
    for (const BenchmarkLine& line : found.lines)
        lines.append(QStringLiteral("%1 %2 mm")
                         .arg(networks::ids(network, line.points), QString::number(line.misclosure, 'f', 1)));
    return lines;
}

/// Shortest lengths between benchmarks with no other one between, by R. W. Floyd's algorithm.
std::map<std::pair<int, int>, double> findLengths(const Network& network)
{
    const std::size_t count = network.points.size();
    const double none = std::numeric_limits<double>::infinity();
    std::vector<std::vector<double>> length(count, std::vector<double>(count, none));
    for (const Section& section : network.sections) {
        const auto from = static_cast<std::size_t>(section.from);
        const auto to = static_cast<std::size_t>(section.to);
        length[from][to] = length[to][from] = std::min(length[from][to], *section.distance);
    }
    for (std::size_t middle = 0; middle < count; ++middle) {
        if (network.points[middle].isBenchmark())
            continue;
        for (std::size_t from = 0; from < count; ++from) {
            for (std::size_t to = 0; to < count; ++to)
                length[from][to] = std::min(length[from][to], length[from][middle] + length[middle][to]);
        }
    }
    std::map<std::pair<int, int>, double> lengths;
    for (std::size_t from = 0; from < count; ++from) {
        for (std::size_t to = from + 1; to < count; ++to) {
            if (network.points[from].isBenchmark() && network.points[to].isBenchmark() &&
                length[from][to] < none)
                lengths[{static_cast<int>(from), static_cast<int>(to)}] = length[from][to];
        }
    }
    return lengths;
}

bool isWhole(const Network& network, const BenchmarkLine& line)
{
    const auto isBenchmark = [&](int point) {
        return network.points[static_cast<std::size_t>(point)].isBenchmark();
    };
    bool isWhole = line.points.size() == line.sections.size() + 1 && isBenchmark(line.points.front()) &&
                   isBenchmark(line.points.back()) &&
                   std::none_of(line.points.begin() + 1, line.points.end() - 1, isBenchmark);
    for (std::size_t step = 0; step < line.sections.size(); ++step) {
        const Section& section = network.sections[static_cast<std::size_t>(line.sections[step].section)];
        const bool forward = line.sections[step].forward;
        isWhole = isWhole && line.points[step] == (forward ? section.from : section.to) &&
                  line.points[step + 1] == (forward ? section.to : section.from);
    }
    return isWhole;
}

} // namespace

/// Lines between two benchmarks that pass no other one.
class TestBenchmarkLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortestLineOfEachPair();
    void noLineLeadsOverABenchmark();
    void withoutLengthsTheVarianceCounts();
    void lengthsAreThoseOfAllWays();
    void neighboursOfALargeNetwork();
    void partsHaveNoLinesBetween();
    void stopsOnRequest();
};

void TestBenchmarkLines::shortestLineOfEachPair()
{
    const Network network = networks::Builder()
                                .fixed(word("R1"), 10.0)
                                .fixed(word("R2"), 12.0)
                                .section(word("R1"), word("A"), 1.0)
                                .section(word("R2"), word("A"), -1.002)
                                .section(word("A"), word("B"), 1.0, 0.5)
                                .section(word("B"), word("R2"), 0.1, 0.6)
                                .build();
    const BenchmarkLines found = findBenchmarkLines(network);
    QVERIFY(found.areAllPairs);
    QCOMPARE(describe(network, found), QStringList(word("R1-A-R2 2.0 mm")));
    QCOMPARE(found.lines[0].sum, 2.002);
    QCOMPARE(*found.lines[0].length, 2.0);
    QCOMPARE(found.lines[0].sigma, std::sqrt(2.0));
    QVERIFY(!found.lines[0].sections[1].forward);
}

void TestBenchmarkLines::noLineLeadsOverABenchmark()
{
    const Network network = networks::Builder()
                                .fixed(word("R1"), 0.0)
                                .fixed(word("R2"), 0.0)
                                .fixed(word("R3"), 0.0)
                                .section(word("R1"), word("R2"), 0.001)
                                .section(word("R2"), word("R3"), 0.002)
                                .section(word("R1"), word("A"), 0.0, 50.0)
                                .section(word("A"), word("R3"), 0.004, 50.0)
                                .build();
    QCOMPARE(describe(network, findBenchmarkLines(network)),
             QStringList({word("R1-R2 1.0 mm"), word("R1-A-R3 4.0 mm"), word("R2-R3 2.0 mm")}));
}

void TestBenchmarkLines::withoutLengthsTheVarianceCounts()
{
    Network network = networks::Builder()
                          .fixed(word("R1"), 0.0)
                          .fixed(word("R2"), 0.0)
                          .section(word("R1"), word("A"), 0.001, 1.0)
                          .section(word("A"), word("R2"), 0.001, 1.0)
                          .section(word("R1"), word("R2"), 0.005, 9.0)
                          .build();
    network.sections[0].distance.reset();
    network.sections[2].sigma = 1.0;
    QCOMPARE(describe(network, findBenchmarkLines(network)), QStringList(word("R1-R2 5.0 mm")));
    network.sections[2].sigma = 2.0;
    QCOMPARE(describe(network, findBenchmarkLines(network)), QStringList(word("R1-A-R2 2.0 mm")));
    QVERIFY(!findBenchmarkLines(network).lines[0].length);
}

void TestBenchmarkLines::lengthsAreThoseOfAllWays()
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Network network =
            mergeRepeatedSections(networks::random(seed, 16, 24, 2 + static_cast<int>(seed % 5))).network;
        const BenchmarkLines found = findBenchmarkLines(network);
        const auto lengths = findLengths(network);
        QCOMPARE(found.lines.size(), lengths.size());
        for (const BenchmarkLine& line : found.lines) {
            QVERIFY(isWhole(network, line));
            const auto expected = lengths.find({line.points.front(), line.points.back()});
            QVERIFY(expected != lengths.end());
            QVERIFY(std::abs(*line.length - expected->second) < 1e-9);
        }
    }
}

void TestBenchmarkLines::neighboursOfALargeNetwork()
{
    const Network network = mergeRepeatedSections(networks::synthetic(100000, 200000)).network;
    const BenchmarkLines found = findBenchmarkLines(network);
    QVERIFY(!found.areAllPairs);
    // Of 100 benchmarks in the plane: more lines than a tree has, fewer than three for each.
    QVERIFY(found.lines.size() >= 99);
    QVERIFY(found.lines.size() < 300);
    std::pair<int, int> last{-1, -1};
    for (const BenchmarkLine& line : found.lines) {
        QVERIFY(isWhole(network, line));
        const std::pair<int, int> ends{line.points.front(), line.points.back()};
        QVERIFY(last < ends);
        QVERIFY(ends.first < ends.second);
        last = ends;
    }
}

void TestBenchmarkLines::partsHaveNoLinesBetween()
{
    const Network network = networks::Builder()
                                .fixed(word("R1"), 0.0)
                                .fixed(word("R2"), 0.0)
                                .fixed(word("R3"), 0.0)
                                .section(word("R1"), word("A"), 0.0)
                                .section(word("R2"), word("R3"), 0.0)
                                .build();
    QCOMPARE(describe(network, findBenchmarkLines(network)), QStringList(word("R2-R3 0.0 mm")));
    QVERIFY(findBenchmarkLines(Network()).lines.empty());
}

void TestBenchmarkLines::stopsOnRequest()
{
    for (const int size : {20000, 100000}) {
        const Network network = mergeRepeatedSections(networks::synthetic(size, 2 * size)).network;
        for (int stopAt = 1; stopAt <= 3; ++stopAt) {
            int questions = 0;
            const BenchmarkLines found = findBenchmarkLines(network, [&] { return ++questions == stopAt; });
            QVERIFY(found.isStopped);
            QVERIFY(found.lines.empty());
            QCOMPARE(questions, stopAt);
        }
    }
}

QTEST_APPLESS_MAIN(TestBenchmarkLines)
#include "tst_benchmarklines.moc"
