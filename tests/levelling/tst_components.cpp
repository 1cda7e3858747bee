#include "TestNetworks.h"
#include "levelling/Components.h"

#include <QtTest>

using namespace levelling;
using namespace orvel::test;

namespace {

QString describe(const Network& network, const Component& component)
{
    QStringList sections;
    for (const int section : component.sections)
        sections.append(QString::number(section));
    return QStringLiteral("%1 | %2 | fixed %3 | redundancy %4")
        .arg(networks::ids(network, component.points), sections.join(QLatin1Char(',')))
        .arg(component.fixedPoints)
        .arg(component.getRedundancy());
}

QStringList describeAll(const Network& network)
{
    QStringList lines;
    for (const Component& component : findComponents(network))
        lines.append(describe(network, component));
    return lines;
}

} // namespace

class TestComponents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesAreOneComponent();
    void componentsComeInTheOrderOfTheirFirstPoints();
    void componentWithoutDatumCountsOneUnknownLess();
    void everyBenchmarkMoreAddsRedundancy();
    void pointWithoutSectionsIsAComponent();
    void longChainsAreOneComponent();
    void forwardAndBackAreGrouped();
    void repeatedSectionsAreGrouped();
    void meanExtentNeedsAll();
    void singleSectionsAreNotGrouped();
};

void TestComponents::samplesAreOneComponent()
{
    QCOMPARE(describeAll(networks::sample(QStringLiteral("two-benchmarks.gkf"))),
             QStringList(QStringLiteral("BMX-BMY-A-B-C | 0,1,2,3,4,5,6 | fixed 2 | redundancy 4")));
    QCOMPARE(describeAll(networks::sample(QStringLiteral("one-benchmark.gkf"))),
             QStringList(QStringLiteral(
                 "51-11-38-1-17-34-32-43 | 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14 | fixed 1 | redundancy 8")));
}

void TestComponents::componentsComeInTheOrderOfTheirFirstPoints()
{
    const Network network = networks::Builder()
                                .unknown(QStringLiteral("A"))
                                .unknown(QStringLiteral("B"))
                                .unknown(QStringLiteral("C"))
                                .fixed(QStringLiteral("D"), 1.0)
                                .section(QStringLiteral("D"), QStringLiteral("B"), 1.0)
                                .section(QStringLiteral("C"), QStringLiteral("A"), 1.0)
                                .build();
    QCOMPARE(describeAll(network), QStringList({QStringLiteral("A-C | 1 | fixed 0 | redundancy 0"),
                                                QStringLiteral("B-D | 0 | fixed 1 | redundancy 0")}));
}

void TestComponents::componentWithoutDatumCountsOneUnknownLess()
{
    const Network network = networks::Builder()
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                                .section(QStringLiteral("B"), QStringLiteral("C"), 1.0)
                                .section(QStringLiteral("C"), QStringLiteral("A"), -2.0)
                                .build();
    const Component component = findComponents(network).front();
    QVERIFY(!component.hasDatum());
    QCOMPARE(component.getRedundancy(), 1);
}

void TestComponents::everyBenchmarkMoreAddsRedundancy()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("A"), 0.0)
                                .fixed(QStringLiteral("B"), 1.0)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                                .build();
    const Component component = findComponents(network).front();
    QVERIFY(component.hasDatum());
    QCOMPARE(component.getRedundancy(), 1);
}

void TestComponents::pointWithoutSectionsIsAComponent()
{
    const Network network = networks::Builder().unknown(QStringLiteral("A")).build();
    QCOMPARE(describeAll(network), QStringList(QStringLiteral("A |  | fixed 0 | redundancy 0")));
}

void TestComponents::longChainsAreOneComponent()
{
    Network network;
    network.points.resize(100000);
    for (int i = 99999; i > 0; --i) {
        Section section;
        section.from = i;
        section.to = i - 1;
        network.sections.push_back(section);
    }
    QCOMPARE(findComponents(network).size(), std::size_t(1));
}

void TestComponents::forwardAndBackAreGrouped()
{
    Network network = networks::Builder()
                          .section(QStringLiteral("A"), QStringLiteral("B"), 1.250, 2.0)
                          .section(QStringLiteral("B"), QStringLiteral("C"), 1.0)
                          .section(QStringLiteral("B"), QStringLiteral("A"), -1.254, 3.0)
                          .build();
    network.sections[0].stations = 16;
    network.sections[2].stations = 19;
    const std::vector<RepeatedSections> repeated = findRepeatedSections(network);
    QCOMPARE(repeated.size(), std::size_t(1));
    QCOMPARE(networks::ids(network, {repeated[0].from, repeated[0].to}), QStringLiteral("A-B"));
    QCOMPARE(repeated[0].forward, std::vector<int>({0}));
    QCOMPARE(repeated[0].back, std::vector<int>({2}));
    QCOMPARE(QString::number(repeated[0].discrepancy, 'f', 6), QStringLiteral("4.000000"));
    QCOMPARE(*repeated[0].length, 2.5);
    QCOMPARE(*repeated[0].stations, 17.5);
}

void TestComponents::repeatedSectionsAreGrouped()
{
    const Network network = networks::Builder()
                                .section(QStringLiteral("B"), QStringLiteral("A"), -1.250)
                                .section(QStringLiteral("B"), QStringLiteral("A"), -1.247)
                                .section(QStringLiteral("C"), QStringLiteral("D"), 1.0)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.251)
                                .section(QStringLiteral("D"), QStringLiteral("C"), -1.0)
                                .build();
    const std::vector<RepeatedSections> repeated = findRepeatedSections(network);
    QCOMPARE(repeated.size(), std::size_t(2));
    QCOMPARE(networks::ids(network, {repeated[0].from, repeated[0].to}), QStringLiteral("B-A"));
    QCOMPARE(repeated[0].forward, std::vector<int>({0, 1}));
    QCOMPARE(repeated[0].back, std::vector<int>({3}));
    QCOMPARE(QString::number(repeated[0].discrepancy, 'f', 6), QStringLiteral("4.000000"));
    QCOMPARE(repeated[1].discrepancy, 0.0);
}

void TestComponents::meanExtentNeedsAll()
{
    Network network = networks::Builder()
                          .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                          .section(QStringLiteral("A"), QStringLiteral("B"), 1.0)
                          .build();
    network.sections[1].distance.reset();
    network.sections[0].stations = 5;
    QVERIFY(!findRepeatedSections(network).front().length);
    QVERIFY(!findRepeatedSections(network).front().stations);
}

void TestComponents::singleSectionsAreNotGrouped()
{
    QVERIFY(findRepeatedSections(networks::sample(QStringLiteral("one-benchmark.gkf"))).empty());
}

QTEST_APPLESS_MAIN(TestComponents)
#include "tst_components.moc"
