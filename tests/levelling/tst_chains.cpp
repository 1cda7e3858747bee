#include "levelling/Adjustment.h"
#include "levelling/Chains.h"
#include "levelling/Components.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/levelling/TestNetworks.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace levelling;
using namespace orvel::test;

namespace {

QString word(const char* text)
{
    return QString::fromLatin1(text);
}

QString nameKind(ChainKind kind)
{
    switch (kind) {
    case ChainKind::BetweenBenchmarks:
        return word("benchmarks");
    case ChainKind::Closed:
        return word("closed");
    case ChainKind::BenchmarkToNode:
        return word("to node");
    case ChainKind::BetweenNodes:
        return word("nodes");
    case ChainKind::Hanging:
        return word("hanging");
    case ChainKind::Isolated:
        return word("isolated");
    case ChainKind::Ring:
        break;
    }
    return word("ring");
}

/// "R1-A-R2 benchmarks +1.0 mm", one for each line.
QStringList describe(const Network& network)
{
    QStringList lines;
    for (const Chain& chain : traceChains(network).chains) {
        QString line = networks::ids(network, chain.points) + QLatin1Char(' ') + nameKind(chain.kind);
        if (chain.misclosure)
            line += QStringLiteral(" %1 mm").arg(QString::number(*chain.misclosure, 'f', 1));
        lines.append(line);
    }
    return lines;
}

networks::Builder& add(networks::Builder& builder, const char* from, const char* to, double difference)
{
    return builder.section(word(from), word(to), difference);
}

} // namespace

/// The network as lines between benchmarks and nodes.
class TestChains : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfLine();
    void benchmarksCutALine();
    void closedAtABenchmarkAndAtANode();
    void ringsHaveNoEnds();
    void twoBenchmarksOnARing();
    void parallelLinesStayApart();
    void lengthAndStationsOfALine();
    void meanOfForwardAndBackwardIsOneSection();
    void nodesGetAHeightFromEveryLine();
    void nodesOfAPartWithoutBenchmarkHaveNone();
    void textbookNetworkWithTwoNodes();
    void everySectionIsInOneLine();
    void isolatedPointsAreListed();
    void hundredThousandPointsInOneLine();
    void stopsOnRequest();
};

void TestChains::everyKindOfLine()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 10.0).fixed(word("R2"), 13.0);
    add(builder, "R1", "A", 1.0);
    add(builder, "A", "B", 1.0);
    add(builder, "R2", "B", -1.002);
    add(builder, "R1", "N", 1.0);
    add(builder, "N", "M", 1.0);
    add(builder, "M", "C", 1.0);
    add(builder, "C", "N", -2.003);
    add(builder, "M", "H", 1.0);
    add(builder, "X", "Y", 1.0);
    add(builder, "Y", "Z", 1.0);
    QCOMPARE(describe(builder.build()),
             QStringList({word("R1-A-B-R2 benchmarks 2.0 mm"), word("R1-N to node"), word("N-M nodes"),
                          word("N-C-M nodes"), word("M-H hanging"), word("X-Y-Z isolated")}));
}

void TestChains::benchmarksCutALine()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 0.0).fixed(word("R2"), 1.0).fixed(word("R3"), 2.0);
    add(builder, "R1", "R2", 1.001);
    add(builder, "R2", "R3", 0.998);
    QCOMPARE(describe(builder.build()),
             QStringList({word("R1-R2 benchmarks 1.0 mm"), word("R2-R3 benchmarks -2.0 mm")}));
}

void TestChains::closedAtABenchmarkAndAtANode()
{
    networks::Builder builder;
    builder.fixed(word("R"), 0.0);
    add(builder, "R", "A", 1.0);
    add(builder, "A", "B", 1.0);
    add(builder, "B", "R", -1.997);
    add(builder, "R", "N", 1.0);
    add(builder, "N", "C", 1.0);
    add(builder, "C", "D", 1.0);
    add(builder, "N", "D", 2.004);
    QCOMPARE(describe(builder.build()), QStringList({word("R-A-B-R closed 3.0 mm"), word("R-N to node"),
                                                     word("N-C-D-N closed -4.0 mm")}));
}

void TestChains::ringsHaveNoEnds()
{
    networks::Builder builder;
    add(builder, "A", "B", 1.0);
    add(builder, "B", "C", 1.0);
    add(builder, "C", "A", -2.001);
    const Network network = builder.build();
    QCOMPARE(describe(network), QStringList(word("A-B-C-A ring -1.0 mm")));
    QVERIFY(traceChains(network).nodes.empty());
}

void TestChains::twoBenchmarksOnARing()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 0.0).fixed(word("R2"), 0.0);
    add(builder, "R1", "A", 0.0);
    add(builder, "A", "R2", 0.001);
    add(builder, "R2", "B", 0.0);
    add(builder, "B", "R1", 0.002);
    QCOMPARE(describe(builder.build()),
             QStringList({word("R1-A-R2 benchmarks 1.0 mm"), word("R1-B-R2 benchmarks -2.0 mm")}));
}

void TestChains::parallelLinesStayApart()
{
    networks::Builder builder;
    builder.fixed(word("R"), 0.0);
    for (const char* middle : {"A", "B", "C"}) {
        add(builder, "R", middle, 0.0);
        add(builder, middle, "N", 0.0);
    }
    QCOMPARE(describe(builder.build()),
             QStringList({word("R-A-N to node"), word("R-B-N to node"), word("R-C-N to node")}));
}

void TestChains::lengthAndStationsOfALine()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 0.0).fixed(word("R2"), 1.0);
    builder.section(word("R1"), word("A"), 0.5, 1.5).section(word("R2"), word("A"), -0.5, 0.75);
    Network network = builder.build();
    network.sections[0].stations = 20;
    network.sections[1].stations = 11;
    const Chain chain = traceChains(network).chains.front();
    QCOMPARE(*chain.length, 2.25);
    QCOMPARE(chain.sigma, 1.5);
    QCOMPARE(*chain.stations, 31);
    QCOMPARE(chain.sum, 1.0);
    QVERIFY(!chain.sections[1].forward);
    network.sections[1].stations.reset();
    network.sections[0].distance.reset();
    QVERIFY(!traceChains(network).chains.front().stations);
    QVERIFY(!traceChains(network).chains.front().length);
}

void TestChains::meanOfForwardAndBackwardIsOneSection()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 0.0).fixed(word("R2"), 2.0);
    add(builder, "R1", "A", 1.000);
    add(builder, "A", "R1", -1.002);
    add(builder, "A", "R2", 1.003);
    Network network = builder.build();
    network.sections[0].stations = 10;
    network.sections[1].stations = 13;
    network.sections[2].stations = 7;
    const Network merged = mergeRepeatedSections(network).network;
    QCOMPARE(describe(merged), QStringList(word("R1-A-R2 benchmarks 4.0 mm")));
    // 11.5 is rounded up.
    QCOMPARE(*traceChains(merged).chains.front().stations, 19);
}

void TestChains::nodesGetAHeightFromEveryLine()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 10.0).fixed(word("R2"), 10.0).fixed(word("R3"), 10.0);
    add(builder, "R1", "N", 1.000);
    add(builder, "N", "R2", -1.002);
    add(builder, "R3", "N", 1.006);
    const Network network = builder.build();
    const Node node = traceChains(network).nodes.front();
    QCOMPARE(networks::ids(network, {node.point}), word("N"));
    QVERIFY(std::abs(*node.height - 33.008 / 3.0) < 1e-9);
    QStringList heights;
    for (const NodeHeight& height : node.heights)
        heights.append(QStringLiteral("%1 %2 %3")
                           .arg(networks::ids(network, {height.from}), QString::number(height.height, 'f', 4),
                                QString::number(height.deviation, 'f', 1)));
    QCOMPARE(heights,
             QStringList({word("R1 11.0000 -2.7"), word("R2 11.0020 -0.7"), word("R3 11.0060 3.3")}));
}

void TestChains::nodesOfAPartWithoutBenchmarkHaveNone()
{
    networks::Builder builder;
    for (const char* end : {"A", "B", "C"})
        add(builder, "N", end, 1.0);
    const Chains chains = traceChains(builder.build());
    QCOMPARE(chains.nodes.size(), std::size_t(1));
    QVERIFY(!chains.nodes[0].height);
    QVERIFY(chains.nodes[0].heights.empty());
    QVERIFY(chains.hasHeights);
}

/// The network of C. D. Ghilani, Adjustment Computations, section 12.6 (heights in feet there): two
/// benchmarks, three new points of which all are nodes.
void TestChains::textbookNetworkWithTwoNodes()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    const Chains chains = traceChains(network);
    QCOMPARE(chains.nodes.size(), std::size_t(3));
    QCOMPARE(chains.chains.size(), std::size_t(7));
    const Adjustment adjustment = adjust(network);
    for (const Node& node : chains.nodes) {
        QVERIFY(std::abs(*node.height - adjustment.points[static_cast<std::size_t>(node.point)]->height) <
                1e-9);
        for (const NodeHeight& height : node.heights) {
            // A line of one section deviates by its residual, from whichever end.
            const int section =
                chains.chains[static_cast<std::size_t>(height.chain)].sections.front().section;
            const double residual = adjustment.sections[static_cast<std::size_t>(section)]->residual;
            QVERIFY(std::abs(std::abs(height.deviation) - std::abs(residual)) < 1e-6);
        }
    }
}

void TestChains::everySectionIsInOneLine()
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Network network =
            mergeRepeatedSections(networks::random(seed, 30, 34, static_cast<int>(seed % 4))).network;
        std::vector<int> count(network.sections.size(), 0);
        for (const Chain& chain : traceChains(network).chains) {
            for (std::size_t step = 0; step < chain.sections.size(); ++step) {
                const RouteSection& walked = chain.sections[step];
                const Section& section = network.sections[static_cast<std::size_t>(walked.section)];
                ++count[static_cast<std::size_t>(walked.section)];
                QCOMPARE(chain.points[step], walked.forward ? section.from : section.to);
                QCOMPARE(chain.points[step + 1], walked.forward ? section.to : section.from);
            }
        }
        QCOMPARE(count, std::vector<int>(network.sections.size(), 1));
    }
}

void TestChains::isolatedPointsAreListed()
{
    networks::Builder builder;
    builder.fixed(word("R1"), 0.0).unknown(word("A"));
    add(builder, "B", "C", 1.0);
    const Network network = builder.build();
    QCOMPARE(networks::ids(network, traceChains(network).isolated), word("R1-A"));
}

void TestChains::hundredThousandPointsInOneLine()
{
    Network network;
    network.points.resize(100000);
    network.points.front().fixed = network.points.back().fixed = true;
    network.points.front().height = network.points.back().height = 0.0;
    for (int index = 1; index < 100000; ++index) {
        Section section;
        section.from = index;
        section.to = index - 1;
        section.distance = 1.0;
        section.sigma = 1.0;
        network.sections.push_back(section);
    }
    const Chains chains = traceChains(network);
    QCOMPARE(chains.chains.size(), std::size_t(1));
    QCOMPARE(chains.chains[0].points.size(), std::size_t(100000));
    QCOMPARE(*chains.chains[0].length, 99999.0);
}

void TestChains::stopsOnRequest()
{
    const Network network = mergeRepeatedSections(networks::synthetic(20000, 40000)).network;
    for (int stopAt = 1; stopAt <= 3; ++stopAt) {
        int questions = 0;
        const Chains chains = traceChains(network, [&] { return ++questions == stopAt; });
        QCOMPARE(chains.status, Chains::Status::Stopped);
        QVERIFY(chains.chains.empty());
        QCOMPARE(questions, stopAt);
    }
}

QTEST_APPLESS_MAIN(TestChains)
#include "tst_chains.moc"
