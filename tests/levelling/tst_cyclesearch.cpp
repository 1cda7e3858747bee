#include "SyntheticNetwork.h"
#include "TestNetworks.h"
#include "levelling/Components.h"
#include "levelling/CycleElimination.h"
#include "levelling/CycleSearch.h"

#include <QtTest>

#include <numeric>
#include <set>

using namespace levelling;
using namespace orvel::test;

namespace {

std::size_t redundancyOf(const Network& network)
{
    const std::vector<Component> components = findComponents(network);
    return std::accumulate(components.begin(), components.end(), std::size_t(0),
                           [](std::size_t sum, const Component& component) {
                               return sum + static_cast<std::size_t>(component.getRedundancy());
                           });
}

/// The needed candidates must be a basis by themselves.
void verifyNeededAreABasis(const Network& network)
{
    const SectionGraph graph(network);
    CycleElimination elimination(static_cast<int>(network.sections.size()));
    std::size_t needed = 0;
    for (const CycleSearch::Candidate& candidate : CycleSearch(graph).findCandidates()) {
        if (!candidate.isNeeded)
            continue;
        QVERIFY(elimination.add(candidate.sections));
        ++needed;
    }
    QCOMPARE(needed, redundancyOf(network));
}

} // namespace

class TestCycleSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void neededCandidatesAreABasis();
    void neededCandidatesOfALargeNetworkAreABasis();
    void candidatesComeShortestFirst();
    void ranksAreAnOrderOfTheSections();
};

void TestCycleSearch::neededCandidatesAreABasis()
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const int points = 5 + static_cast<int>(seed * 7 % 200);
        verifyNeededAreABasis(networks::random(seed, points, points + static_cast<int>(seed * 13 % 300),
                                               static_cast<int>(seed % 6)));
    }
}

void TestCycleSearch::neededCandidatesOfALargeNetworkAreABasis()
{
    verifyNeededAreABasis(networks::synthetic(5000, 9000));
}

void TestCycleSearch::candidatesComeShortestFirst()
{
    const Network network = networks::random(1, 50, 100, 2);
    const SectionGraph graph(network);
    const std::vector<CycleSearch::Candidate> candidates = CycleSearch(graph).findCandidates();
    QVERIFY(candidates.size() > 50);
    for (std::size_t i = 1; i < candidates.size(); ++i) {
        const CycleSearch::Candidate& shorter = candidates[i - 1];
        const CycleSearch::Candidate& longer = candidates[i];
        QVERIFY(shorter.sections.size() < longer.sections.size() ||
                (shorter.sections.size() == longer.sections.size() && shorter.length <= longer.length));
    }
}

void TestCycleSearch::ranksAreAnOrderOfTheSections()
{
    const Network network = networks::random(2, 50, 100, 2);
    const SectionGraph graph(network);
    const CycleSearch search(graph);
    std::set<int> ranks;
    for (int section = 0; section < 100; ++section)
        ranks.insert(search.getRank(section));
    QCOMPARE(ranks.size(), std::size_t(100));
    QCOMPARE(*ranks.begin(), 0);
    QCOMPARE(*ranks.rbegin(), 99);
}

QTEST_APPLESS_MAIN(TestCycleSearch)
#include "tst_cyclesearch.moc"
