#include "levelling/FlowSimplex.h"

#include <QtTest>

#include <random>

using namespace levelling;

namespace {

using Arcs = std::vector<FlowSimplex::Arc>;

/// A random connected network; few different costs and capacities make degenerate trees frequent.
Arcs randomArcs(unsigned seed, int nodes, int extraArcs, int variety)
{
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> node(0, nodes - 1);
    std::uniform_int_distribution<int> number(1, variety);
    Arcs arcs;
    for (int i = 1; i < nodes; ++i)
        arcs.push_back({node(generator) % i, i, number(generator), number(generator) - variety / 2});
    for (int i = 0; i < extraArcs; ++i)
        arcs.push_back(
            {node(generator), node(generator), number(generator), number(generator) - variety / 2});
    return arcs;
}

/// The conditions that prove a flow to be of least cost.
void verifyOptimal(const Arcs& arcs, const FlowSimplex& simplex, int nodes)
{
    std::vector<qint64> balance(static_cast<std::size_t>(nodes), 0);
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        const qint64 flow = simplex.getFlow(i);
        QVERIFY(flow >= -arcs[i].capacity && flow <= arcs[i].capacity);
        balance[static_cast<std::size_t>(arcs[i].from)] -= flow;
        balance[static_cast<std::size_t>(arcs[i].to)] += flow;
        const qint64 rise = simplex.getPotential(arcs[i].to) - simplex.getPotential(arcs[i].from);
        if (rise > arcs[i].cost)
            QCOMPARE(flow, arcs[i].capacity);
        if (rise < arcs[i].cost)
            QCOMPARE(flow, -arcs[i].capacity);
    }
    for (const qint64 rest : balance)
        QCOMPARE(rest, 0);
}

} // namespace

class TestFlowSimplex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutArcs();
    void singleArcCarriesNothing();
    void cheapRingIsFull();
    void tighterArcLimitsTheRing();
    void loopAtOneNodeIsFull();
    void randomNetworksAreProvenOptimal_data();
    void randomNetworksAreProvenOptimal();
};

void TestFlowSimplex::withoutArcs()
{
    FlowSimplex simplex(3, {});
    simplex.solve();
    FlowSimplex empty(0, {});
    empty.solve();
}

void TestFlowSimplex::singleArcCarriesNothing()
{
    const Arcs arcs{{0, 1, 5, -7}};
    FlowSimplex simplex(2, arcs);
    simplex.solve();
    QCOMPARE(simplex.getFlow(0), 0);
    QCOMPARE(simplex.getPotential(1) - simplex.getPotential(0), -7);
}

void TestFlowSimplex::cheapRingIsFull()
{
    const Arcs arcs{{0, 1, 5, -1}, {1, 2, 5, -1}, {2, 0, 5, 1}};
    FlowSimplex simplex(3, arcs);
    simplex.solve();
    for (std::size_t i = 0; i < 3; ++i)
        QCOMPARE(simplex.getFlow(i), 5);
}

void TestFlowSimplex::tighterArcLimitsTheRing()
{
    const Arcs arcs{{0, 1, 5, 1}, {1, 2, 3, 1}, {2, 0, 4, 1}};
    FlowSimplex simplex(3, arcs);
    simplex.solve();
    for (std::size_t i = 0; i < 3; ++i)
        QCOMPARE(simplex.getFlow(i), -3);
    verifyOptimal(arcs, simplex, 3);
}

void TestFlowSimplex::loopAtOneNodeIsFull()
{
    const Arcs arcs{{0, 0, 5, -1}, {0, 0, 6, 1}, {0, 1, 1, 1}};
    FlowSimplex simplex(2, arcs);
    simplex.solve();
    QCOMPARE(simplex.getFlow(0), 5);
    QCOMPARE(simplex.getFlow(1), -6);
}

void TestFlowSimplex::randomNetworksAreProvenOptimal_data()
{
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("extraArcs");
    QTest::addColumn<int>("variety");
    QTest::newRow("small, many ties") << 6 << 10 << 2;
    QTest::newRow("small") << 8 << 12 << 1000;
    QTest::newRow("many ties") << 60 << 150 << 3;
    QTest::newRow("few ties") << 60 << 150 << 1000000;
    QTest::newRow("dense") << 20 << 300 << 5;
    QTest::newRow("large") << 500 << 1000 << 50;
}

void TestFlowSimplex::randomNetworksAreProvenOptimal()
{
    QFETCH(int, nodes);
    QFETCH(int, extraArcs);
    QFETCH(int, variety);
    for (unsigned seed = 1; seed <= 30; ++seed) {
        const Arcs arcs = randomArcs(seed, nodes, extraArcs, variety);
        FlowSimplex simplex(nodes, arcs);
        simplex.solve();
        verifyOptimal(arcs, simplex, nodes);
    }
}

QTEST_APPLESS_MAIN(TestFlowSimplex)
#include "tst_flowsimplex.moc"
