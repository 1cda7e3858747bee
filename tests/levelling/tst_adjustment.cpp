#include "TestNetworks.h"
#include "levelling/Adjustment.h"
#include "levelling/GkfReader.h"

#include <QtTest>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

using namespace levelling;
using namespace orvel::test;

namespace {

Adjustment adjustSample(const QString& fileName)
{
    return adjust(networks::sample(fileName));
}

QString digits(double number, int decimals)
{
    return QString::number(number, 'f', decimals);
}

QString signedDigits(double number, int decimals)
{
    return (number < 0 ? QString() : QStringLiteral("+")) + digits(number, decimals);
}

const AdjustedPoint& pointOf(const Adjustment& adjustment, const Network& network, const QString& id)
{
    return *adjustment.points[static_cast<std::size_t>(networks::pointIndex(network, id))];
}

/// "id height" of all points that are not fixed, in the order of the file.
QStringList heights(const Network& network, const Adjustment& adjustment, int decimals)
{
    QStringList lines;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (!network.points[i].fixed)
            lines.append(network.points[i].id + QLatin1Char(' ') +
                         digits(adjustment.points[i]->height, decimals));
    }
    return lines;
}

QStringList sigmas(const Network& network, const Adjustment& adjustment, double scale, int decimals)
{
    QStringList lines;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (!network.points[i].fixed)
            lines.append(digits(adjustment.points[i]->sigma * scale, decimals));
    }
    return lines;
}

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

/// The unknown heights, their covariance matrix and the residuals by dense matrices, for networks in which
/// every point can be determined.
struct DenseReference
{
    Eigen::VectorXd heights;
    Eigen::MatrixXd covariance;
    Eigen::VectorXd residuals;
    Eigen::VectorXd residualVariances;
};

DenseReference denseReference(const Network& network)
{
    const auto pointCount = static_cast<Eigen::Index>(network.points.size());
    const auto sectionCount = static_cast<Eigen::Index>(network.sections.size());
    std::vector<Eigen::Index> column(network.points.size(), -1);
    Eigen::VectorXd given = Eigen::VectorXd::Zero(pointCount);
    Eigen::Index unknowns = 0;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (network.points[i].fixed)
            given[static_cast<Eigen::Index>(i)] = *network.points[i].height;
        else
            column[i] = unknowns++;
    }
    Eigen::MatrixXd design = Eigen::MatrixXd::Zero(sectionCount, unknowns);
    Eigen::VectorXd observed(sectionCount);
    Eigen::VectorXd sigma(sectionCount);
    for (Eigen::Index i = 0; i < sectionCount; ++i) {
        const Section& section = network.sections[static_cast<std::size_t>(i)];
        observed[i] = section.difference + given[section.from] - given[section.to];
        sigma[i] = section.sigma / 1000.0;
        if (column[static_cast<std::size_t>(section.from)] >= 0)
            design(i, column[static_cast<std::size_t>(section.from)]) = -1.0;
        if (column[static_cast<std::size_t>(section.to)] >= 0)
            design(i, column[static_cast<std::size_t>(section.to)]) = 1.0;
    }
    const Eigen::MatrixXd scaled = sigma.cwiseInverse().asDiagonal() * design;
    DenseReference reference;
    reference.covariance = (scaled.transpose() * scaled).inverse();
    reference.heights = scaled.colPivHouseholderQr().solve(observed.cwiseQuotient(sigma));
    reference.residuals = design * reference.heights - observed;
    reference.residualVariances =
        sigma.cwiseAbs2() - (design * reference.covariance * design.transpose()).diagonal();
    return reference;
}

} // namespace

class TestAdjustment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoBenchmarksGivePublishedHeights();
    void twoBenchmarksGivePublishedResiduals();
    void twoBenchmarksGivePublishedFit();
    void twoBenchmarksGivePublishedSigmas();
    void twoBenchmarksWithEqualWeights();
    void oneBenchmarkGivesPublishedHeights();
    void oneBenchmarkGivesPublishedFit();
    void oneBenchmarkHasLargestNormalisedResidualAtFirstPoint();
    void grossErrorOfTheSampleHasTheLargestNormalisedResidual();
    void sigmaActChoosesTheScale();
    void withoutRedundancyThereIsNoSigma0();
    void uncheckedSectionHasNoNormalisedResidual();
    void componentsAreAdjustedEachFromItsOwnDatum();
    void undeterminedPointsAreNamedWithTheirReason();
    void freeNetworkHasNothingToAdjust();
    void networkOfBenchmarksOnlyHasNothingToAdjust();
    void emptyNetworkHasNothingToAdjust();
    void absoluteTermsComeFromApproximateHeights();
    void agreesWithDenseMatrices_data();
    void agreesWithDenseMatrices();
};

void TestAdjustment::twoBenchmarksGivePublishedHeights()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.status, AdjustmentStatus::Ok);
    QCOMPARE(adjustment.unknowns, 3);
    QCOMPARE(heights(network, adjustment, 4),
             QStringList(
                 {QStringLiteral("A 105.1504"), QStringLiteral("B 104.4892"), QStringLiteral("C 106.1972")}));
    QCOMPARE(pointOf(adjustment, network, QStringLiteral("BMX")).height, 100.0);
    QCOMPARE(pointOf(adjustment, network, QStringLiteral("BMX")).sigma, 0.0);
    QVERIFY(adjustment.undetermined.empty());
}

void TestAdjustment::twoBenchmarksGivePublishedResiduals()
{
    const Adjustment adjustment = adjustSample(QStringLiteral("two-benchmarks.gkf"));
    QStringList residuals;
    for (const std::optional<AdjustedSection>& section : adjustment.sections)
        residuals.append(signedDigits(section->residual / 1000.0, 4));
    QCOMPARE(residuals, words("+0.0504 +0.0096 -0.0528 -0.0672 +0.0188 -0.0108 +0.0080"));
}

void TestAdjustment::twoBenchmarksGivePublishedFit()
{
    const Adjustment adjustment = adjustSample(QStringLiteral("two-benchmarks.gkf"));
    QCOMPARE(adjustment.fits[0]->redundancy, 4);
    QCOMPARE(digits(adjustment.fits[0]->pvv, 3), QStringLiteral("3832.000"));
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0(), 3), QStringLiteral("30.952"));
}

void TestAdjustment::twoBenchmarksGivePublishedSigmas()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(sigmas(network, adjustment, 1.0, 3), words("1.058 0.961 0.938"));
    QCOMPARE(sigmas(network, adjustment, *adjustment.fits[0]->getSigma0(), 2), words("32.76 29.76 29.04"));
}

void TestAdjustment::twoBenchmarksWithEqualWeights()
{
    Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    for (Section& section : network.sections)
        section.sigma = 1.0;
    const Adjustment adjustment = adjust(network);
    QCOMPARE(heights(network, adjustment, 5),
             QStringList({QStringLiteral("A 105.14095"), QStringLiteral("B 104.48286"),
                          QStringLiteral("C 106.18762")}));
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0(), 3), QStringLiteral("50.119"));
}

void TestAdjustment::oneBenchmarkGivesPublishedHeights()
{
    const Network network = networks::sample(QStringLiteral("one-benchmark.gkf"));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(heights(network, adjustment, 5),
             QStringList({QStringLiteral("11 249.81063"), QStringLiteral("38 268.29263"),
                          QStringLiteral("1 250.69624"), QStringLiteral("17 244.77698"),
                          QStringLiteral("34 267.91993"), QStringLiteral("32 253.63176"),
                          QStringLiteral("43 236.31859")}));
}

void TestAdjustment::oneBenchmarkGivesPublishedFit()
{
    const Network network = networks::sample(QStringLiteral("one-benchmark.gkf"));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.fits[0]->redundancy, 8);
    QCOMPARE(digits(adjustment.fits[0]->pvv, 5), QStringLiteral("3.74232"));
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0(), 5), QStringLiteral("0.68395"));
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0() * network.parameters.sigmaApriori, 4),
             QStringLiteral("2.0519"));
}

void TestAdjustment::oneBenchmarkHasLargestNormalisedResidualAtFirstPoint()
{
    const Network network = networks::sample(QStringLiteral("one-benchmark.gkf"));
    const Adjustment adjustment = adjust(network);
    const auto smaller = [](const std::optional<AdjustedSection>& a,
                            const std::optional<AdjustedSection>& b) {
        return std::abs(*a->normalisedResidual) < std::abs(*b->normalisedResidual);
    };
    const auto largest = std::max_element(adjustment.sections.begin(), adjustment.sections.end(), smaller);
    const Section& section =
        network.sections[static_cast<std::size_t>(largest - adjustment.sections.begin())];
    QCOMPARE(networks::ids(network, {section.from, section.to}), QStringLiteral("51-1"));
    QCOMPARE(digits(std::abs(*(*largest)->normalisedResidual), 2), QStringLiteral("1.56"));
}

void TestAdjustment::grossErrorOfTheSampleHasTheLargestNormalisedResidual()
{
    const Network network = GkfReader::readFile(QStringLiteral(ORVEL_SAMPLES_DIR "/blunder.gkf")).network;
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.status, AdjustmentStatus::Ok);
    QCOMPARE(adjustment.undetermined.size(), std::size_t(3));
    QString worst;
    double largest = 0.0;
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        const std::optional<AdjustedSection>& section = adjustment.sections[i];
        if (!section || std::abs(section->normalisedResidual.value_or(0.0)) <= largest)
            continue;
        largest = std::abs(*section->normalisedResidual);
        worst = networks::ids(network, {network.sections[i].from, network.sections[i].to});
    }
    QCOMPARE(worst, QStringLiteral("М2-М5"));
    QVERIFY(largest > 10.0);
}

void TestAdjustment::sigmaActChoosesTheScale()
{
    QCOMPARE(digits(adjustSample(QStringLiteral("two-benchmarks.gkf")).fits[0]->sigmaScale, 3),
             QStringLiteral("30.952"));
    QCOMPARE(adjustSample(QStringLiteral("one-benchmark.gkf")).fits[0]->sigmaScale, 1.0);
}

void TestAdjustment::withoutRedundancyThereIsNoSigma0()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.5, 4.0)
                                .build();
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.status, AdjustmentStatus::Ok);
    QCOMPARE(adjustment.fits[0]->redundancy, 0);
    QVERIFY(!adjustment.fits[0]->getSigma0());
    QCOMPARE(adjustment.fits[0]->sigmaScale, 1.0);
    QCOMPARE(adjustment.points[1]->height, 11.5);
    QCOMPARE(adjustment.points[1]->sigma, 2.0);
}

void TestAdjustment::uncheckedSectionHasNoNormalisedResidual()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.500)
                                .section(QStringLiteral("A"), QStringLiteral("R"), -1.504)
                                .section(QStringLiteral("A"), QStringLiteral("B"), 2.0)
                                .build();
    const Adjustment adjustment = adjust(network);
    QCOMPARE(digits(adjustment.sections[0]->redundancy, 6), QStringLiteral("0.500000"));
    QCOMPARE(digits(*adjustment.sections[0]->normalisedResidual, 4), digits(2.0 / std::sqrt(0.5), 4));
    QCOMPARE(digits(*adjustment.sections[0]->residualSigma, 6), digits(std::sqrt(0.5), 6));
    QVERIFY(!adjustment.sections[2]->normalisedResidual);
    QVERIFY(!adjustment.sections[2]->residualSigma);
}

void TestAdjustment::componentsAreAdjustedEachFromItsOwnDatum()
{
    const Network network = networks::Builder()
                                .fixed(QStringLiteral("R1"), 10.0)
                                .section(QStringLiteral("R1"), QStringLiteral("A"), 1.000)
                                .section(QStringLiteral("A"), QStringLiteral("R1"), -1.002)
                                .fixed(QStringLiteral("R2"), 50.0)
                                .section(QStringLiteral("B"), QStringLiteral("R2"), 5.000)
                                .section(QStringLiteral("B"), QStringLiteral("R2"), 5.010)
                                .build();
    const Adjustment adjustment = adjust(network);
    QCOMPARE(digits(pointOf(adjustment, network, QStringLiteral("A")).height, 6),
             QStringLiteral("11.001000"));
    QCOMPARE(digits(pointOf(adjustment, network, QStringLiteral("B")).height, 6),
             QStringLiteral("44.995000"));
    QCOMPARE(adjustment.components.size(), std::size_t(2));
    QCOMPARE(digits(adjustment.fits[0]->pvv, 6), QStringLiteral("2.000000"));
    QCOMPARE(digits(adjustment.fits[1]->pvv, 6), QStringLiteral("50.000000"));
    QCOMPARE(adjustment.fits[1]->redundancy, 1);
    QCOMPARE(adjustment.countRedundant(), 2);
}

void TestAdjustment::undeterminedPointsAreNamedWithTheirReason()
{
    const Network network = networks::Builder()
                                .unknown(QStringLiteral("alone"))
                                .fixed(QStringLiteral("R"), 10.0)
                                .section(QStringLiteral("R"), QStringLiteral("A"), 1.0)
                                .section(QStringLiteral("X"), QStringLiteral("Y"), 1.0)
                                .build();
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.status, AdjustmentStatus::Ok);
    QStringList undetermined;
    for (const UndeterminedPoint& point : adjustment.undetermined) {
        const bool alone = point.reason == UndeterminedReason::NoSections;
        undetermined.append(network.points[static_cast<std::size_t>(point.point)].id +
                            (alone ? QStringLiteral(": no sections") : QStringLiteral(": no datum")));
    }
    QCOMPARE(undetermined, QStringList({QStringLiteral("alone: no sections"), QStringLiteral("X: no datum"),
                                        QStringLiteral("Y: no datum")}));
    QVERIFY(!adjustment.points[0]);
    QVERIFY(!adjustment.sections[1]);
    QVERIFY(!adjustment.fits[2]);
}

void TestAdjustment::freeNetworkHasNothingToAdjust()
{
    const Adjustment adjustment = adjust(networks::random(1, 5, 10, 0));
    QCOMPARE(adjustment.status, AdjustmentStatus::NothingToAdjust);
    QCOMPARE(adjustment.undetermined.size(), std::size_t(5));
}

void TestAdjustment::networkOfBenchmarksOnlyHasNothingToAdjust()
{
    const Adjustment adjustment = adjust(networks::random(1, 5, 10, 5));
    QCOMPARE(adjustment.status, AdjustmentStatus::NothingToAdjust);
    QVERIFY(adjustment.undetermined.empty());
}

void TestAdjustment::emptyNetworkHasNothingToAdjust()
{
    QCOMPARE(adjust(Network()).status, AdjustmentStatus::NothingToAdjust);
}

void TestAdjustment::absoluteTermsComeFromApproximateHeights()
{
    const Adjustment adjustment = adjustSample(QStringLiteral("two-benchmarks.gkf"));
    QStringList terms;
    for (const std::optional<AdjustedSection>& section : adjustment.sections)
        terms.append(QString::number(qRound(section->absoluteTerm)));
    QCOMPARE(terms, words("0 -60 0 120 -80 0 -50"));
}

void TestAdjustment::agreesWithDenseMatrices_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("sections");
    QTest::addColumn<int>("fixed");
    QTest::newRow("sparse") << 1U << 60 << 130 << 1;
    QTest::newRow("several benchmarks") << 2U << 60 << 150 << 7;
    QTest::newRow("dense") << 3U << 20 << 150 << 2;
    QTest::newRow("small") << 4U << 4 << 12 << 1;
}

void TestAdjustment::agreesWithDenseMatrices()
{
    QFETCH(unsigned, seed);
    QFETCH(int, points);
    QFETCH(int, sections);
    QFETCH(int, fixed);
    Network network = networks::random(seed, points, sections, fixed);
    // A chain through all points makes every height determinable.
    for (int i = 1; i < points; ++i) {
        Section section = network.sections.front();
        section.from = i - 1;
        section.to = i;
        network.sections.push_back(section);
    }
    const Adjustment adjustment = adjust(network);
    const DenseReference reference = denseReference(network);

    Eigen::Index unknown = 0;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (network.points[i].fixed)
            continue;
        QVERIFY(std::abs(adjustment.points[i]->height - reference.heights[unknown]) < 1e-9);
        const double sigma = std::sqrt(reference.covariance(unknown, unknown)) * 1000.0;
        QVERIFY(std::abs(adjustment.points[i]->sigma - sigma) < 1e-9 * sigma);
        ++unknown;
    }
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        const auto row = static_cast<Eigen::Index>(i);
        QVERIFY(std::abs(adjustment.sections[i]->residual - reference.residuals[row] * 1000.0) < 1e-6);
        const double redundancy =
            reference.residualVariances[row] * 1e6 / (network.sections[i].sigma * network.sections[i].sigma);
        QVERIFY(std::abs(adjustment.sections[i]->redundancy - redundancy) < 1e-9);
    }
}

QTEST_APPLESS_MAIN(TestAdjustment)
#include "tst_adjustment.moc"
