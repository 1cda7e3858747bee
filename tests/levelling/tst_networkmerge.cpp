#include "TestNetworks.h"
#include "levelling/Adjustment.h"
#include "levelling/NetworkMerge.h"

#include <QtTest>

using namespace levelling;
using namespace orvel::test;

/// One network of several files.
class TestNetworkMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointsOfOneNameAreOnePoint();
    void sourcesAreCountedOn();
    void laterHeightAndRoleCount_data();
    void laterHeightAndRoleCount();
    void pointOfASectionChangesNothing();
    void observedHeightsAreReplaced();
    void heldPointIsObservedNoMore();
    void repeatedSectionsAreTold();
    void parametersOfMeasurementsStay();
    void placesAreTaken();
    void coordinatesMakeNothingOfABenchmark();
    void nothingIsAddedToNothing();
    void partsAdjustAsTheWhole();
};

namespace {

using networks::Builder;

Network withSource(Network network, const char* name)
{
    network.sources = QStringList(QLatin1String(name));
    for (std::size_t i = 0; i < network.points.size(); ++i)
        network.points[i].line = static_cast<qint64>(i) + 1;
    return network;
}

Point makePoint(const char* id, std::optional<double> height, bool fixed)
{
    Point point;
    point.id = QLatin1String(id);
    point.height = height;
    point.fixed = fixed;
    point.declared = true;
    point.line = 7;
    return point;
}

Network pointsOnly(std::vector<Point> points)
{
    Network network;
    network.points = std::move(points);
    return network;
}

} // namespace

void TestNetworkMerge::pointsOfOneNameAreOnePoint()
{
    Network network = Builder()
                          .fixed(QStringLiteral("A"), 10.0)
                          .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                          .build();
    const Network added = Builder()
                              .section(QStringLiteral("C"), QStringLiteral("B"), 2.0)
                              .section(QStringLiteral("A"), QStringLiteral("C"), -1.0)
                              .build();
    const NetworkAddition addition = addNetwork(network, added);
    QCOMPARE(network.points.size(), std::size_t(3));
    QCOMPARE(network.points[2].id, QStringLiteral("C"));
    QCOMPARE(network.sections.size(), std::size_t(3));
    QCOMPARE(network.sections[1].from, 2);
    QCOMPARE(network.sections[1].to, 1);
    QCOMPARE(network.sections[2].from, 0);
    QCOMPARE(network.sections[2].to, 2);
    QCOMPARE(addition.firstPoint, std::size_t(2));
    QCOMPARE(addition.firstSection, std::size_t(1));
    QCOMPARE(addition.commonPoints, std::size_t(2));
}

void TestNetworkMerge::sourcesAreCountedOn()
{
    const Network first = Builder().section(QStringLiteral("A"), QStringLiteral("B"), 1.0).build();
    Network network = withSource(first, "a.gkf");
    addNetwork(network,
               withSource(Builder().section(QStringLiteral("B"), QStringLiteral("C"), 1.0).build(), "b.csv"));
    QCOMPARE(network.sources, QStringList({QStringLiteral("a.gkf"), QStringLiteral("b.csv")}));
    QCOMPARE(network.points[0].source, 0);
    QCOMPARE(network.points[2].source, 1);
    QCOMPARE(network.sections[1].source, 1);

    // A network of which nobody has told where it comes from.
    network = first;
    addNetwork(network, withSource(first, "b.csv"));
    QCOMPARE(network.sources, QStringList({QString(), QStringLiteral("b.csv")}));
    QCOMPARE(network.sections[0].source, 0);
    QCOMPARE(network.sections[1].source, 1);
}

void TestNetworkMerge::laterHeightAndRoleCount_data()
{
    QTest::addColumn<bool>("wasFixed");
    QTest::addColumn<bool>("isFixed");
    QTest::addColumn<double>("height");
    QTest::addColumn<QString>("changes");
    QTest::newRow("the same") << true << true << 10.0 << "";
    QTest::newRow("another height") << true << true << 10.5 << "height 10 10.5 @7";
    QTest::newRow("held now") << false << true << 10.0 << "held 0 0 @7";
    QTest::newRow("released") << true << false << 10.0 << "released 0 0 @7";
    QTest::newRow("both") << true << false << 11.0 << "height 10 11 @7,released 0 0 @7";
}

void TestNetworkMerge::laterHeightAndRoleCount()
{
    QFETCH(bool, wasFixed);
    QFETCH(bool, isFixed);
    QFETCH(double, height);
    QFETCH(QString, changes);
    Network network = pointsOnly({makePoint("A", 10.0, wasFixed)});
    const NetworkAddition addition = addNetwork(network, pointsOnly({makePoint("A", height, isFixed)}));
    const QStringList kinds{QStringLiteral("height"), QStringLiteral("held"), QStringLiteral("observed"),
                            QStringLiteral("released"), QStringLiteral("place")};
    QStringList texts;
    for (const PointChange& change : addition.changes)
        texts.append(QStringLiteral("%1 %2 %3 @%4")
                         .arg(kinds[static_cast<int>(change.kind)])
                         .arg(change.before)
                         .arg(change.after)
                         .arg(change.line));
    QCOMPARE(texts.join(QLatin1Char(',')), changes);
    QCOMPARE(*network.points[0].height, height);
    QCOMPARE(network.points[0].fixed, isFixed);
}

void TestNetworkMerge::pointOfASectionChangesNothing()
{
    Network network = pointsOnly({makePoint("A", 10.0, true)});
    Network added = Builder().section(QStringLiteral("A"), QStringLiteral("B"), 1.0).build();
    for (Point& point : added.points)
        point.declared = false;
    QVERIFY(addNetwork(network, added).changes.empty());
    QVERIFY(network.points[0].fixed);
    QCOMPARE(*network.points[0].height, 10.0);
    // What nobody has declared has no role that could change.
    QVERIFY(addNetwork(added, pointsOnly({makePoint("B", 11.0, true)})).changes.empty());
    QVERIFY(added.points[1].fixed);
}

void TestNetworkMerge::observedHeightsAreReplaced()
{
    const auto observed = [](const char* id, double height) {
        Point point = makePoint(id, height, false);
        point.observed = true;
        return point;
    };
    Network network = pointsOnly({observed("A", 10.0), observed("B", 11.0), observed("C", 12.0)});
    network.observedHeights = {{{0, 1, 2}, {4, 1, 0, 1, 5, 2, 0, 2, 6}}};
    Network added = pointsOnly({observed("D", 13.0), observed("B", 11.0)});
    added.observedHeights = {{{1}, {9}}, {{0}, {16}}};
    QVERIFY(addNetwork(network, added).changes.empty());
    QCOMPARE(network.observedHeights.size(), std::size_t(3));
    QCOMPARE(network.observedHeights[0].points, (std::vector<int>{0, 2}));
    QCOMPARE(network.observedHeights[0].covariance, (std::vector<double>{4, 0, 0, 6}));
    QCOMPARE(network.observedHeights[1].points, std::vector<int>{1});
    QCOMPARE(network.observedHeights[1].covariance, std::vector<double>{9});
    QCOMPARE(network.observedHeights[2].points, std::vector<int>{3});
}

void TestNetworkMerge::heldPointIsObservedNoMore()
{
    Point point = makePoint("A", 10.0, false);
    point.observed = true;
    Network network = pointsOnly({point});
    network.observedHeights = {{{0}, {4}}};
    const NetworkAddition addition = addNetwork(network, pointsOnly({makePoint("A", 10.0, true)}));
    QCOMPARE(addition.changes.size(), std::size_t(1));
    QVERIFY(addition.changes[0].kind == PointChange::Kind::Held);
    QVERIFY(network.observedHeights.empty());
    QVERIFY(network.points[0].fixed && !network.points[0].observed);

    Network back = pointsOnly({point});
    back.observedHeights = {{{0}, {4}}};
    const NetworkAddition second = addNetwork(network, back);
    QVERIFY(second.changes[0].kind == PointChange::Kind::Observed);
    QVERIFY(network.points[0].observed && !network.points[0].fixed);
    QCOMPARE(network.observedHeights.size(), std::size_t(1));
}

void TestNetworkMerge::repeatedSectionsAreTold()
{
    const Network once = Builder()
                             .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                             .section(QStringLiteral("B"), QStringLiteral("C"), 2.0)
                             .build();
    Network network = once;
    const Network added = Builder()
                              .section(QStringLiteral("B"), QStringLiteral("C"), 2.0)
                              .section(QStringLiteral("C"), QStringLiteral("B"), -2.0)
                              .section(QStringLiteral("A"), QStringLiteral("B"), 1.001)
                              .section(QStringLiteral("C"), QStringLiteral("B"), -2.0)
                              .build();
    QCOMPARE(addNetwork(network, added).repeatedSections, std::vector<std::size_t>{2});
}

void TestNetworkMerge::parametersOfMeasurementsStay()
{
    Network network = pointsOnly({makePoint("A", 10.0, true)});
    Network added = Builder().section(QStringLiteral("A"), QStringLiteral("B"), 1.0).build();
    added.parameters.sigmaApriori = 3.0;
    QVERIFY(!addNetwork(network, added).areParametersKept);
    QCOMPARE(network.parameters.sigmaApriori, 3.0);

    added.parameters.sigmaApriori = 5.0;
    QVERIFY(addNetwork(network, added).areParametersKept);
    QCOMPARE(network.parameters.sigmaApriori, 3.0);
    // Points have no weights that the parameters would be those of.
    QVERIFY(!addNetwork(network, pointsOnly({makePoint("B", 11.0, true)})).areParametersKept);
}

void TestNetworkMerge::placesAreTaken()
{
    Network network = pointsOnly({makePoint("A", 10.0, true)});
    Network places = pointsOnly({makePoint("A", std::nullopt, false)});
    places.points[0].declared = false;
    places.points[0].x = 1.5;
    places.points[0].y = 2.5;
    QVERIFY(addNetwork(network, places).changes.empty());
    QCOMPARE(*network.points[0].x, 1.5);
    QVERIFY(network.points[0].fixed);
    places.points[0].y = 2.6;
    const NetworkAddition moved = addNetwork(network, places);
    QCOMPARE(moved.changes.size(), std::size_t(1));
    QVERIFY(moved.changes[0].kind == PointChange::Kind::Place);
    QCOMPARE(*network.points[0].y, 2.6);
}

void TestNetworkMerge::coordinatesMakeNothingOfABenchmark()
{
    Network network = pointsOnly({makePoint("A", 10.0, true), makePoint("B", 20.0, false)});
    Point a = makePoint("A", 10.5, false);
    Point b = makePoint("B", 20.5, false);
    Point c = makePoint("C", 30.5, false);
    for (Point* point : {&a, &b, &c}) {
        point->declared = false;
        point->surveyed = true;
        point->x = 1.0;
        point->y = 2.0;
    }
    const NetworkAddition addition = addNetwork(network, pointsOnly({a, b, c}));
    QVERIFY(network.points[0].fixed);
    QCOMPARE(*network.points[0].height, 10.0);
    QCOMPARE(*network.points[0].x, 1.0);
    QVERIFY(network.points[0].surveyed);
    QCOMPARE(*network.points[1].height, 20.5);
    QCOMPARE(*network.points[2].height, 30.5);
    QCOMPARE(addition.changes.size(), std::size_t(1));
    QCOMPARE(addition.changes[0].kind, PointChange::Kind::Height);
    QCOMPARE(addition.changes[0].point, 1);
}

void TestNetworkMerge::nothingIsAddedToNothing()
{
    Network network;
    const NetworkAddition addition = addNetwork(network, Network());
    QVERIFY(network.points.empty() && network.sections.empty() && addition.changes.empty());
    QVERIFY(!addition.areParametersKept);
}

void TestNetworkMerge::partsAdjustAsTheWhole()
{
    const Network whole = networks::random(3, 40, 120, 4);
    // Every section with its two points by itself, and the benchmarks in another file.
    Network heights;
    for (const Point& point : whole.points) {
        if (point.fixed)
            heights.points.push_back(point);
    }
    for (Point& point : heights.points)
        point.declared = true;
    Network network;
    for (const Section& section : whole.sections) {
        Network part;
        for (const int end : {section.from, section.to}) {
            Point point;
            point.id = whole.points[static_cast<std::size_t>(end)].id;
            part.points.push_back(point);
        }
        Section only = section;
        only.from = 0;
        only.to = 1;
        part.sections.push_back(only);
        part.parameters = whole.parameters;
        addNetwork(network, part);
    }
    addNetwork(network, heights);
    const Adjustment expected = adjust(whole);
    const Adjustment actual = adjust(network);
    QVERIFY(expected.status == AdjustmentStatus::Ok && actual.status == AdjustmentStatus::Ok);
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        const auto index = static_cast<std::size_t>(networks::pointIndex(whole, network.points[i].id));
        QCOMPARE(actual.points[i].has_value(), expected.points[index].has_value());
        if (actual.points[i])
            QVERIFY(std::abs(actual.points[i]->height - expected.points[index]->height) < 1e-9);
    }
}

QTEST_GUILESS_MAIN(TestNetworkMerge)
#include "tst_networkmerge.moc"
