#include "TestNetworks.h"
#include "levelling/FlowSimplex.h"
#include "levelling/L1Analysis.h"

#include <QtTest>

#include <cmath>
#include <lemon/network_simplex.h>
#include <lemon/smart_graph.h>
#include <random>

using namespace levelling;
using namespace orvel::test;

namespace {

using Arcs = std::vector<FlowSimplex::Arc>;
using Peer = lemon::NetworkSimplex<lemon::SmartDigraph, qint64, qint64>;

/// The least cost of a circulation as LEMON finds it.
qint64 findLeastCost(int nodeCount, const Arcs& arcs)
{
    lemon::SmartDigraph graph;
    for (int node = 0; node < nodeCount; ++node)
        graph.addNode();
    lemon::SmartDigraph::ArcMap<qint64> lowest(graph);
    lemon::SmartDigraph::ArcMap<qint64> highest(graph);
    lemon::SmartDigraph::ArcMap<qint64> cost(graph);
    for (const FlowSimplex::Arc& given : arcs) {
        const auto arc = graph.addArc(lemon::SmartDigraph::nodeFromId(given.from),
                                      lemon::SmartDigraph::nodeFromId(given.to));
        lowest[arc] = -given.capacity;
        highest[arc] = given.capacity;
        cost[arc] = given.cost;
    }
    Peer peer(graph);
    if (peer.lowerMap(lowest).upperMap(highest).costMap(cost).run() != Peer::OPTIMAL)
        qFatal("LEMON finds no optimum");
    return peer.totalCost<qint64>();
}

/// A random connected network without arcs from a node to itself.
Arcs randomArcs(std::mt19937& generator, int nodes, int extraArcs, int variety)
{
    std::uniform_int_distribution<int> node(0, nodes - 1);
    std::uniform_int_distribution<int> number(1, variety);
    Arcs arcs;
    const auto add = [&](int from, int to) {
        if (from != to)
            arcs.push_back({from, to, number(generator), number(generator) - variety / 2});
    };
    for (int i = 1; i < nodes; ++i)
        add(node(generator) % i, i);
    for (int i = 0; i < extraArcs; ++i)
        add(node(generator), node(generator));
    return arcs;
}

} // namespace

/// The network simplex and the L1 analysis against LEMON's network simplex.
class TestFlowPeer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leastCostIsTheSame();
    void leastSumIsTheSame();
};

void TestFlowPeer::leastCostIsTheSame()
{
    std::mt19937 generator(21);
    std::uniform_int_distribution<int> nodes(2, 300);
    std::uniform_int_distribution<int> extra(0, 900);
    for (int trial = 0; trial < 500; ++trial) {
        const int count = nodes(generator);
        // Few different numbers make ties, many make long searches.
        const Arcs arcs = randomArcs(generator, count, extra(generator), trial % 2 == 0 ? 3 : 1000000);
        FlowSimplex simplex(count, arcs);
        QVERIFY(simplex.solve());
        qint64 cost = 0;
        for (std::size_t arc = 0; arc < arcs.size(); ++arc)
            cost += simplex.getFlow(arc) * arcs[arc].cost;
        QCOMPARE(cost, findLeastCost(count, arcs));
    }
}

void TestFlowPeer::leastSumIsTheSame()
{
    // The least sum of |v| / sigma is that of the dual problem: a circulation with flows up to 1 / sigma.
    // Heights shift the costs, not the cost of a circulation: reduced by those of the solution the numbers
    // are small enough for the sums that LEMON makes of them.
    constexpr double weightUnit = 1e-8;
    constexpr double costUnit = 1e-5; // mm
    for (unsigned seed = 0; seed < 100; ++seed) {
        const Network network = networks::random(seed, 60, 110, 1 + static_cast<int>(seed % 4));
        const L1Analysis analysis = analyseL1(network);
        QVERIFY(analysis.status == L1Status::Ok);
        Arcs arcs;
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            if (!analysis.sections[index])
                continue;
            const Section& section = network.sections[index];
            const auto nodeOf = [&](int point) {
                return network.points[static_cast<std::size_t>(point)].fixed ? 0 : point + 1;
            };
            const auto heightOf = [&](int point) {
                return *analysis.heights[static_cast<std::size_t>(point)];
            };
            const double rise = section.difference - heightOf(section.to) + heightOf(section.from);
            if (nodeOf(section.from) != nodeOf(section.to))
                arcs.push_back({nodeOf(section.from), nodeOf(section.to),
                                std::llround(1.0 / section.sigma / weightUnit),
                                std::llround(rise * 1000.0 / costUnit)});
        }
        double sum = -static_cast<double>(findLeastCost(static_cast<int>(network.points.size()) + 1, arcs)) *
                     weightUnit * costUnit;
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            const Section& section = network.sections[index];
            if (network.points[static_cast<std::size_t>(section.from)].fixed &&
                network.points[static_cast<std::size_t>(section.to)].fixed)
                sum += analysis.sections[index]->scaledResidual;
        }
        QVERIFY2(std::abs(sum - analysis.objective) < 1e-6 * (1.0 + sum),
                 qPrintable(QStringLiteral("seed %1: %2, LEMON %3")
                                .arg(QString::number(seed), QString::number(analysis.objective, 'g', 12),
                                     QString::number(sum, 'g', 12))));
    }
}

QTEST_APPLESS_MAIN(TestFlowPeer)
#include "tst_flowpeer.moc"
