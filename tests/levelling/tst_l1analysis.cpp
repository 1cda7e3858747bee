#include "SyntheticNetwork.h"
#include "TestNetworks.h"
#include "levelling/GkfReader.h"
#include "levelling/L1Analysis.h"

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <set>

using namespace levelling;
using namespace orvel::test;

namespace {

QStringList heights(const Network& network, const L1Analysis& analysis)
{
    QStringList lines;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (!network.points[i].fixed)
            lines.append(network.points[i].id + QLatin1Char(' ') +
                         QString::number(*analysis.heights[i], 'f', 5));
    }
    return lines;
}

/// "from-to residual" of each section.
QStringList residuals(const Network& network, const L1Analysis& analysis)
{
    QStringList lines;
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        const Section& section = network.sections[i];
        lines.append(QStringLiteral("%1 %2").arg(networks::ids(network, {section.from, section.to}),
                                                 QString::number(analysis.sections[i]->residual)));
    }
    return lines;
}

/// Least sum of |v| / sigma of a small network, and the heights that give it, by trying all sets of sections
/// without residual: one of them is always a solution.
class AllVertices
{
public:
    explicit AllVertices(const Network& triedNetwork) : network(triedNetwork)
    {
        std::vector<double> start(network.points.size(), std::nan(""));
        for (std::size_t i = 0; i < start.size(); ++i) {
            if (network.points[i].fixed)
                start[i] = *network.points[i].height;
        }
        carryOn(start);
    }

    double getLeast() const { return least; }
    /// Count of different solutions among the vertices, heights compared to 0.001 mm.
    std::size_t getSolutionCount() const { return solutions.size(); }

private:
    void carryOn(const std::vector<double>& heights)
    {
        if (!tried.insert(rounded(heights)).second)
            return;
        bool complete = true;
        for (const Section& section : network.sections) {
            const double from = heights[static_cast<std::size_t>(section.from)];
            const double to = heights[static_cast<std::size_t>(section.to)];
            if (std::isnan(from) == std::isnan(to))
                continue;
            complete = false;
            std::vector<double> next = heights;
            if (std::isnan(to))
                next[static_cast<std::size_t>(section.to)] = from + section.difference;
            else
                next[static_cast<std::size_t>(section.from)] = to - section.difference;
            carryOn(next);
        }
        if (complete)
            evaluate(heights);
    }

    void evaluate(const std::vector<double>& heights)
    {
        double sum = 0.0;
        for (const Section& section : network.sections) {
            const double adjusted = heights[static_cast<std::size_t>(section.to)] -
                                    heights[static_cast<std::size_t>(section.from)];
            sum += std::abs(adjusted - section.difference) * 1000.0 / section.sigma;
        }
        if (sum < least - 1e-7) {
            least = sum;
            solutions.clear();
        }
        if (sum < least + 1e-7)
            solutions.insert(rounded(heights));
    }

    static std::vector<qint64> rounded(const std::vector<double>& heights)
    {
        std::vector<qint64> numbers;
        numbers.reserve(heights.size());
        for (const double height : heights)
            numbers.push_back(std::isnan(height) ? -1 : std::llround(height * 1e6));
        return numbers;
    }

    const Network& network;
    double least = 1e99;
    std::set<std::vector<qint64>> solutions;
    std::set<std::vector<qint64>> tried;
};

/// A random network with heights to the millimetre and only few different weights, so that ties are frequent.
Network roundNetwork(unsigned seed, int points, int sections, int fixed)
{
    Network network = networks::random(seed, points, sections, fixed);
    // A chain through all points makes every height determinable.
    for (int i = 1; i < points; ++i) {
        Section section;
        section.from = i - 1;
        section.to = i;
        network.sections.push_back(section);
    }
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        Section& section = network.sections[i];
        section.sigma = i % 3 == 0 ? 2.0 : 1.0;
        section.difference = 0.001 * static_cast<double>((seed + i * i * 13 + i * 5) % 11);
    }
    for (Point& point : network.points) {
        if (point.fixed)
            point.height = 1.0;
    }
    return network;
}

} // namespace

class TestL1Analysis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoBenchmarksGivePublishedSolution();
    void isolatesAGrossError();
    void isolatesTheGrossErrorOfTheSample();
    void oneBenchmarkKeepsSevenSections();
    void twoSectionsOfEqualWeightAreAmbiguous();
    void threeSectionsGiveTheMedian();
    void heavierSectionWins();
    void weightsThatAddUpAreAmbiguous();
    void onlyTheMovablePointsAreAmbiguous();
    void undeterminedPointsAreNamed();
    void withoutDatumThereIsNothingToAdjust();
    void hugeDifferencesAreRefused();
    void extremeWeightsAreOrdered();
    void stopsOnRequest();
    void agreesWithAllVertices();
    void keepsASectionForEachPoint();
};

void TestL1Analysis::twoBenchmarksGivePublishedSolution()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    const L1Analysis analysis = analyseL1(network);
    QCOMPARE(analysis.status, L1Status::Ok);
    QVERIFY(analysis.isUnique());
    QCOMPARE(heights(network, analysis),
             QStringList({QStringLiteral("A 105.16000"), QStringLiteral("B 104.50000"),
                          QStringLiteral("C 106.20000")}));
    QCOMPARE(residuals(network, analysis),
             QStringList({QStringLiteral("BMX-A 60"), QStringLiteral("A-BMY 0"), QStringLiteral("BMY-C -50"),
                          QStringLiteral("C-BMX -70"), QStringLiteral("A-B 20"), QStringLiteral("BMY-B 0"),
                          QStringLiteral("B-C 0")}));
    const double objective =
        60 / std::sqrt(4.0) + 50 / std::sqrt(2.0) + 70 / std::sqrt(3.0) + 20 / std::sqrt(2.0);
    QVERIFY(std::abs(analysis.objective - objective) < 1e-9);
    QCOMPARE(analysis.sections[0]->scaledResidual, 30.0);
}

void TestL1Analysis::isolatesAGrossError()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 100.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.001)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.050)
                                .section(QStringLiteral("B"), QStringLiteral("C"), 1.000)
                                .section(QStringLiteral("C"), QStringLiteral("R"), -3.000)
                                .section(QStringLiteral("A"), QStringLiteral("C"), 2.000)
                                .section(QStringLiteral("R"), QStringLiteral("B"), 2.000)
                                .build();
    const L1Analysis analysis = analyseL1(network);
    const QStringList kept = residuals(network, analysis).filter(QRegularExpression(QStringLiteral(" 0$")));
    QCOMPARE(kept.size(), 4);
    QVERIFY(residuals(network, analysis).contains(QStringLiteral("A-B -50")));
}

void TestL1Analysis::isolatesTheGrossErrorOfTheSample()
{
    const Network network = GkfReader::readFile(QStringLiteral(ORVEL_SAMPLES_DIR "/blunder.gkf")).network;
    const L1Analysis analysis = analyseL1(network);
    QCOMPARE(analysis.undetermined.size(), std::size_t(3));
    QStringList gross;
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        if (analysis.sections[i] && analysis.sections[i]->scaledResidual > 3.0)
            gross.append(networks::ids(network, {network.sections[i].from, network.sections[i].to}));
    }
    QCOMPARE(gross, QStringList(QStringLiteral("М2-М5")));
}

void TestL1Analysis::oneBenchmarkKeepsSevenSections()
{
    const Network network = networks::sample(QStringLiteral("one-benchmark.gkf"));
    const L1Analysis analysis = analyseL1(network);
    const auto kept =
        std::count_if(analysis.sections.begin(), analysis.sections.end(),
                      [](const std::optional<L1Section>& section) { return section->residual == 0.0; });
    QCOMPARE(kept, 7);
    QVERIFY(analysis.isUnique());
}

void TestL1Analysis::twoSectionsOfEqualWeightAreAmbiguous()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000)
                                .section(QStringLiteral("A"), QStringLiteral("R"), -1.004)
                                .build();
    const L1Analysis analysis = analyseL1(network);
    QVERIFY(!analysis.isUnique());
    QCOMPARE(analysis.ambiguous, std::vector<int>({1}));
    QCOMPARE(analysis.objective, 4.0);
}

void TestL1Analysis::threeSectionsGiveTheMedian()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.500)
                                .section(QStringLiteral("A"), QStringLiteral("R"), -1.002)
                                .build();
    const L1Analysis analysis = analyseL1(network);
    QVERIFY(analysis.isUnique());
    QCOMPARE(residuals(network, analysis),
             QStringList({QStringLiteral("R-A 2"), QStringLiteral("R-A -498"), QStringLiteral("A-R 0")}));
    QCOMPARE(analysis.objective, 500.0);
}

void TestL1Analysis::heavierSectionWins()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000, 4.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.010, 3.9)
                                .build();
    const L1Analysis analysis = analyseL1(network);
    QVERIFY(analysis.isUnique());
    QCOMPARE(*analysis.heights[1], 11.01);
}

void TestL1Analysis::weightsThatAddUpAreAmbiguous()
{
    // Three sections of weight 1/3 against one of weight 1.
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000, 9.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000, 9.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.000, 9.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.006, 1.0)
                                .build();
    QVERIFY(!analyseL1(network).isUnique());
}

void TestL1Analysis::onlyTheMovablePointsAreAmbiguous()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.0)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.000)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 1.004)
                                .section(QStringLiteral("B"), QStringLiteral("C"), 1.0)
                                .build();
    QCOMPARE(analyseL1(network).ambiguous, std::vector<int>({2, 3}));
}

void TestL1Analysis::undeterminedPointsAreNamed()
{
    const Network network = networks::Builder()
                                .unknown(QStringLiteral("alone"))
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.0)
                                .section(QStringLiteral("X"), QStringLiteral("Y"), 1.0)
                                .build();
    const L1Analysis analysis = analyseL1(network);
    QCOMPARE(analysis.status, L1Status::Ok);
    QVERIFY(analysis.isUnique());
    QCOMPARE(analysis.undetermined.size(), std::size_t(3));
    QCOMPARE(analysis.undetermined[0].reason, UndeterminedReason::NoSections);
    QCOMPARE(analysis.undetermined[2].reason, UndeterminedReason::NoDatum);
    QVERIFY(!analysis.heights[0]);
    QVERIFY(!analysis.sections[1]);
}

void TestL1Analysis::withoutDatumThereIsNothingToAdjust()
{
    QCOMPARE(analyseL1(networks::random(1, 5, 10, 0)).status, L1Status::NothingToAdjust);
    QCOMPARE(analyseL1(networks::random(1, 5, 10, 5)).status, L1Status::NothingToAdjust);
    QCOMPARE(analyseL1(Network()).status, L1Status::NothingToAdjust);
}

void TestL1Analysis::hugeDifferencesAreRefused()
{
    const auto network = [](double there, double back) {
        return networks::Builder()
            .fixed(QStringLiteral("R"), 0.0)
            .section(QStringLiteral("R"), QStringLiteral("A"), there)
            .section(QStringLiteral("A"), QStringLiteral("R"), back)
            .section(QStringLiteral("A"), QStringLiteral("B"), there)
            .build();
    };
    QCOMPARE(analyseL1(network(9e8, -9e8)).status, L1Status::TooLarge);
    QCOMPARE(analyseL1(network(4e8, 4e8)).status, L1Status::Ok);
    QCOMPARE(analyseL1(network(4e8, 1e12)).status, L1Status::TooLarge);
}

void TestL1Analysis::extremeWeightsAreOrdered()
{
    Network network = networks::Builder()
                          .fixed(QStringLiteral("R"), 10.0)
                          .section(QStringLiteral("R"), QStringLiteral("A"), 1.000)
                          .section(QStringLiteral("R"), QStringLiteral("A"), 2.000)
                          .build();
    network.sections[0].sigma = 1e-9;
    network.sections[1].sigma = 1e9;
    const L1Analysis analysis = analyseL1(network);
    QVERIFY(analysis.isUnique());
    QCOMPARE(*analysis.heights[1], 11.0);
}

void TestL1Analysis::stopsOnRequest()
{
    const Network network = networks::synthetic(1000, 2500);
    int questions = 0;
    const L1Analysis stopped = analyseL1(network, [&] { return ++questions == 3; });
    QCOMPARE(stopped.status, L1Status::Stopped);
    QCOMPARE(questions, 3);
    QVERIFY(!stopped.heights[0]);
    QCOMPARE(analyseL1(network, [] { return false; }).status, L1Status::Ok);
}

void TestL1Analysis::agreesWithAllVertices()
{
    int ambiguous = 0;
    for (unsigned seed = 1; seed <= 300; ++seed) {
        const Network network = roundNetwork(seed, 3 + static_cast<int>(seed % 3),
                                             3 + static_cast<int>(seed % 5), 1 + static_cast<int>(seed % 2));
        const AllVertices vertices(network);
        const L1Analysis analysis = analyseL1(network);
        QVERIFY(std::abs(analysis.objective - vertices.getLeast()) < 1e-6);
        QCOMPARE(analysis.isUnique(), vertices.getSolutionCount() == 1);
        ambiguous += analysis.isUnique() ? 0 : 1;
    }
    // Both outcomes must have been put to the test.
    QVERIFY(ambiguous > 30 && ambiguous < 270);
}

void TestL1Analysis::keepsASectionForEachPoint()
{
    // A line of sections of equal weight: any of them may take the whole misclosure, or all a share.
    networks::Builder line;
    line.fixed(QStringLiteral("R"), 10.0);
    for (int i = 1; i <= 1000; ++i)
        line.section(i == 1 ? QStringLiteral("R") : QString::number(i - 1), QString::number(i), 0.001);
    const Network network = line.section(QStringLiteral("1000"), QStringLiteral("R"), -1.007).build();
    const L1Analysis analysis = analyseL1(network);
    QVERIFY(!analysis.isUnique());
    QCOMPARE(analysis.objective, 7.0);
    const auto kept = std::count_if(analysis.sections.begin(), analysis.sections.end(),
                                    [](const auto& section) { return section->residual == 0.0; });
    QCOMPARE(kept, 1000);
}

QTEST_APPLESS_MAIN(TestL1Analysis)
#include "tst_l1analysis.moc"
