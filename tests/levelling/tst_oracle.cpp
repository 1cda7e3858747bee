#include "DenseOracle.h"
#include "TestNetworks.h"
#include "levelling/Adjustment.h"

#include <QtTest>

#include <cmath>
#include <random>

using namespace levelling;
using namespace orvel::test;

namespace {

/// A network of any shape: with parallel sections and spurs, benchmarks held or observed, parts without, some
/// of them free, weights that differ by up to the exponent given.
Network anyNetwork(unsigned seed, double exponent)
{
    std::mt19937 generator(seed);
    const auto pick = [&](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(generator);
    };
    const int pointCount = pick(3, 25);
    Network network =
        networks::random(seed, pointCount, pick(2, 3 * pointCount), pick(0, 3) == 0 ? 0 : pick(1, 3));
    network.parameters.sigmaAct = pick(0, 1) == 0 ? SigmaAct::Apriori : SigmaAct::Aposteriori;
    std::uniform_real_distribution<double> magnitude(-exponent / 2.0, exponent / 2.0);
    for (Section& section : network.sections)
        section.sigma *= std::pow(10.0, magnitude(generator));
    std::uniform_real_distribution<double> height(100.0, 200.0);
    for (Point& point : network.points) {
        if (!point.fixed && pick(0, 2) == 0) {
            point.height = height(generator);
            point.constrained = pick(0, 2) == 0;
        }
    }
    if (pick(0, 2) == 0) {
        ObservedHeights observed;
        for (std::size_t point = 0; point < network.points.size(); ++point) {
            if (network.points[point].fixed || !network.points[point].height || pick(0, 1) == 0)
                continue;
            network.points[point].observed = true;
            observed.points.push_back(static_cast<int>(point));
        }
        const auto size = static_cast<Eigen::Index>(observed.points.size());
        const Eigen::MatrixXd root = Eigen::MatrixXd::NullaryExpr(
            size, size, [&] { return std::uniform_real_distribution<double>(-2.0, 2.0)(generator); });
        const Eigen::MatrixXd covariance = root * root.transpose() + Eigen::MatrixXd::Identity(size, size);
        observed.covariance.assign(covariance.data(), covariance.data() + covariance.size());
        if (size > 0)
            network.observedHeights.push_back(observed);
    }
    return network;
}

bool isNear(double value, double expected, double tolerance)
{
    return std::abs(value - expected) <= tolerance * std::max(1.0, std::abs(expected));
}

/// What differs, or an empty text.
QString compareSections(const Network& network, const Adjustment& adjustment, const DenseOracle& oracle)
{
    for (std::size_t row = 0; row < oracle.sections.size(); ++row) {
        const auto index = static_cast<std::size_t>(oracle.sections[row]);
        const auto place = static_cast<Eigen::Index>(row);
        const AdjustedSection& section = *adjustment.sections[index];
        if (!isNear(section.residual, static_cast<double>(oracle.residuals[place]), 1e-5))
            return QStringLiteral("residual of section %1").arg(index);
        const auto redundancy = static_cast<double>(oracle.cofactors(place, place));
        if (std::abs(section.redundancy - std::max(redundancy, 0.0)) > 1e-6)
            return QStringLiteral("redundancy of section %1").arg(index);
        if (redundancy < 1e-4)
            continue;
        const double normalised = static_cast<double>(oracle.residuals[place]) /
                                  network.sections[index].sigma / std::sqrt(redundancy);
        if (!isNear(*section.normalisedResidual, normalised, 1e-4))
            return QStringLiteral("test of section %1").arg(index);
        const auto own =
            static_cast<std::size_t>(oracle.part[static_cast<std::size_t>(network.sections[index].from)]);
        const double scale =
            network.parameters.sigmaAct == SigmaAct::Aposteriori && oracle.redundancy[own] > 2
                ? std::sqrt(oracle.pvv[own] / oracle.redundancy[own])
                : 1.0;
        if (!isNear(*section.statistic * std::max(scale, 1e-6), normalised, 1e-4))
            return QStringLiteral("scaled test of section %1").arg(index);
    }
    return QString();
}

/// Sections whose residuals are the same but for a factor are one series, and no others. That does not depend
/// on the weights, which are equal here, so that what is nearly the same is not taken for it.
QString compareSeries(Network network, const Adjustment& adjustment)
{
    for (Section& section : network.sections)
        section.sigma = 1.0;
    for (ObservedHeights& observed : network.observedHeights) {
        const std::size_t size = observed.points.size();
        for (std::size_t element = 0; element < size * size; ++element)
            observed.covariance[element] = element % (size + 1) == 0 ? 1.0 : 0.0;
    }
    const DenseOracle oracle(network);
    const auto series = [&](std::size_t place) {
        return adjustment.seriesOfSection[static_cast<std::size_t>(oracle.sections[place])];
    };
    for (std::size_t a = 0; a < oracle.sections.size(); ++a) {
        const auto row = static_cast<Eigen::Index>(a);
        if ((oracle.cofactors(row, row) < 1e-9L) != (series(a) < 0))
            return QStringLiteral("section %1 is checked").arg(oracle.sections[a]);
        for (std::size_t b = 0; b < a; ++b) {
            const auto column = static_cast<Eigen::Index>(b);
            if (series(a) < 0 || series(b) < 0)
                continue;
            const long double correlation =
                oracle.cofactors(row, column) /
                std::sqrt(oracle.cofactors(row, row) * oracle.cofactors(column, column));
            if ((std::abs(correlation) > 1.0L - 1e-9L) != (series(a) == series(b)))
                return QStringLiteral("series of sections %1 and %2")
                    .arg(oracle.sections[a])
                    .arg(oracle.sections[b]);
        }
    }
    return QString();
}

QString compare(const Network& network, const Adjustment& adjustment, const DenseOracle& oracle)
{
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        const auto own = static_cast<std::size_t>(oracle.part[point]);
        const std::optional<AdjustedPoint>& adjusted = adjustment.points[point];
        if (adjusted.has_value() != oracle.isDetermined[point])
            return QStringLiteral("point %1 is determined").arg(point);
        if (!adjusted)
            continue;
        if (!isNear(adjusted->height, oracle.heights[point], 1e-8))
            return QStringLiteral("height of point %1").arg(point);
        if (!isNear(adjusted->sigma, oracle.sigmas[point], 1e-5))
            return QStringLiteral("sigma of point %1").arg(point);
        const PartFit& fit = adjustment.getFit(static_cast<int>(point));
        if (fit.redundancy != oracle.redundancy[own])
            return QStringLiteral("redundancy of part %1").arg(own);
        if (!isNear(fit.pvv, oracle.pvv[own], 1e-5))
            return QStringLiteral("pvv of part %1").arg(own);
    }
    const QString sections = compareSections(network, adjustment, oracle);
    return sections.isEmpty() ? compareSeries(network, adjustment) : sections;
}

} // namespace

/// The adjustment against one that is written by the book, with dense matrices.
class TestOracle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fiveHundredNetworks();
    void extremeWeightsAreNeverSilentlyWrong();
};

void TestOracle::fiveHundredNetworks()
{
    int free = 0;
    int observed = 0;
    for (unsigned seed = 0; seed < 500; ++seed) {
        const Network network = anyNetwork(seed, 2.0);
        const Adjustment adjustment = adjust(network);
        if (adjustment.status == AdjustmentStatus::NothingToAdjust)
            continue;
        QVERIFY(adjustment.status == AdjustmentStatus::Ok);
        const QString difference = compare(network, adjustment, DenseOracle(network));
        QVERIFY2(difference.isEmpty(),
                 qUtf8Printable(QStringLiteral("network %1: %2").arg(seed).arg(difference)));
        for (const Component& component : adjustment.components)
            free += component.getDatum() == Datum::Free ? 1 : 0;
        observed += network.observedHeights.empty() ? 0 : 1;
    }
    QVERIFY(free > 50);
    QVERIFY(observed > 50);
}

void TestOracle::extremeWeightsAreNeverSilentlyWrong()
{
    int warned = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Network network = anyNetwork(seed, 14.0);
        const Adjustment adjustment = adjust(network);
        if (adjustment.status != AdjustmentStatus::Ok)
            continue;
        const DenseOracle oracle(network);
        for (std::size_t point = 0; point < network.points.size(); ++point) {
            if (!adjustment.points[point])
                continue;
            const PartFit& fit = adjustment.getFit(static_cast<int>(point));
            warned += fit.isIllConditioned() ? 1 : 0;
            // What is not warned of has all digits that are shown.
            if (!fit.isIllConditioned())
                QVERIFY2(std::abs(adjustment.points[point]->height - oracle.heights[point]) < 5e-6,
                         qUtf8Printable(QStringLiteral("network %1, point %2").arg(seed).arg(point)));
        }
    }
    QVERIFY(warned > 0);
}

QTEST_APPLESS_MAIN(TestOracle)
#include "tst_oracle.moc"
