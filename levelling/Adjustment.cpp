#include "levelling/Adjustment.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/GrossErrors.h"
#include "levelling/NormalEquations.h"
#include "levelling/Quantiles.h"
#include "levelling/SectionGraph.h"
#include "levelling/SectionSeries.h"

#include <algorithm>
#include <cmath>

namespace levelling {

namespace {

// Below this redundancy a residual is only rounding.
constexpr double kLeastRedundancy = 1e-6;
// Below this sigma0 the residuals are only rounding, and so would be their ratio to it.
constexpr double kLeastSigma0 = 1e-6;
// Ratio of standard deviations up to which the heights keep all digits that are shown.
constexpr double kLargestSigmaRatio = 1e5;
// Probability with which the test finds the detectable error.
constexpr double kPower = 0.8;

void setResidual(AdjustedMeasurement& measurement, double residual, double sigma, double redundancy)
{
    measurement.residual = residual;
    measurement.redundancy = std::clamp(redundancy, 0.0, 1.0);
    if (measurement.redundancy > kLeastRedundancy) {
        measurement.residualSigma = sigma * std::sqrt(measurement.redundancy);
        measurement.normalisedResidual = residual / *measurement.residualSigma;
    }
}

/// Takes the results from solved equations, in steps of which each uses the ones before.
class AdjustmentBuilder
{
public:
    AdjustmentBuilder(const Network& adjustedNetwork,
                      const std::vector<std::optional<double>>& approximateHeights,
                      const NormalEquations& solvedEquations, Adjustment& adjustment)
        : network(adjustedNetwork)
        , heights(approximateHeights)
        , equations(solvedEquations)
        , result(adjustment)
    {}

    void build()
    {
        takePoints();
        moveToDatums();
        takeSections();
        takeObservedHeights();
        takeFits();
        test();
    }

private:
    void takePoints()
    {
        for (std::size_t index = 0; index < network.points.size(); ++index) {
            if (!heights[index])
                continue;
            const auto point = static_cast<int>(index);
            AdjustedPoint adjusted;
            adjusted.approximateHeight = *heights[index];
            adjusted.height = *heights[index] + equations.getCorrection(point) / 1000.0;
            adjusted.sigma = std::sqrt(equations.getVariance(point));
            result.points[index] = adjusted;
        }
    }

    /// So far one point of each free component is held. With Q its cofactors and c the share of each datum
    /// point in the mean, heights of which this mean is held have the variances q - 2 Qc + c'Qc (W. Baarda,
    /// S-transformations and criterion matrices, 1973).
    void moveToDatums()
    {
        std::vector<double> shares(network.points.size(), 0.0);
        bool hasFree = false;
        for (const Component& component : result.components) {
            for (const int point : component.datumPoints) {
                shares[static_cast<std::size_t>(point)] =
                    1.0 / static_cast<double>(component.datumPoints.size());
                hasFree = true;
            }
        }
        if (!hasFree)
            return;
        const std::vector<double> covariances = equations.applyInverse(shares);
        for (const Component& component : result.components) {
            if (component.getDatum() == Datum::Free)
                moveToDatum(component, covariances);
        }
    }

    void moveToDatum(const Component& component, const std::vector<double>& covariances)
    {
        double shift = 0.0;
        double variance = 0.0;
        for (const int point : component.datumPoints) {
            const auto index = static_cast<std::size_t>(point);
            shift += *network.points[index].height - result.points[index]->height;
            variance += covariances[index];
        }
        const auto count = static_cast<double>(component.datumPoints.size());
        for (const int point : component.points) {
            const auto index = static_cast<std::size_t>(point);
            AdjustedPoint& adjusted = *result.points[index];
            adjusted.height += shift / count;
            const double moved = equations.getVariance(point) - 2.0 * covariances[index] + variance / count;
            adjusted.sigma = std::sqrt(std::max(moved, 0.0));
        }
    }

    void takeSections()
    {
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            const Section& section = network.sections[index];
            if (!equations.contains(static_cast<int>(index)))
                continue;
            const double variance = section.sigma * section.sigma;
            AdjustedSection adjusted;
            adjusted.absoluteTerm = equations.getTerm(section);
            setResidual(adjusted, equations.getResidual(section), section.sigma,
                        1.0 - equations.getDifferenceVariance(section) / variance);
            result.sections[index] = adjusted;
        }
    }

    /// Residuals that hang together: with P the inverse covariances and Q those of the residuals, the part
    /// that a residual shows of its own error is that of QP, and the test takes Pv over its standard
    /// deviation.
    void takeObservedHeights()
    {
        for (const ObservedHeights& observed : network.observedHeights) {
            const auto size = static_cast<Eigen::Index>(observed.points.size());
            const Eigen::Map<const Eigen::MatrixXd> covariance(observed.covariance.data(), size, size);
            Eigen::MatrixXd cofactors = covariance;
            Eigen::VectorXd residuals(size);
            for (Eigen::Index row = 0; row < size; ++row) {
                const int point = observed.points[static_cast<std::size_t>(row)];
                residuals[row] = equations.getCorrection(point);
                for (Eigen::Index column = 0; column < size; ++column)
                    cofactors(row, column) -=
                        equations.getCovariance(point, observed.points[static_cast<std::size_t>(column)]);
            }
            const Eigen::MatrixXd weights = covariance.llt().solve(Eigen::MatrixXd::Identity(size, size));
            const Eigen::VectorXd weighted = weights * residuals;
            const Eigen::MatrixXd shares = cofactors * weights;
            const Eigen::MatrixXd weightedCofactors = weights * shares;
            pvvOfObserved.push_back(residuals.dot(weighted));
            for (Eigen::Index row = 0; row < size; ++row) {
                AdjustedHeight adjusted;
                adjusted.point = observed.points[static_cast<std::size_t>(row)];
                adjusted.residual = residuals[row];
                adjusted.redundancy = std::clamp(shares(row, row), 0.0, 1.0);
                if (adjusted.redundancy > kLeastRedundancy && weightedCofactors(row, row) > 0.0) {
                    adjusted.residualSigma = std::sqrt(std::max(cofactors(row, row), 0.0));
                    adjusted.normalisedResidual = weighted[row] / std::sqrt(weightedCofactors(row, row));
                }
                result.observedHeights.push_back(adjusted);
            }
        }
    }

    void takeFits()
    {
        for (const Component& component : result.components) {
            result.fits.emplace_back();
            if (!component.hasDatum())
                continue;
            PartFit& fit = result.fits.back().emplace();
            fit.unknowns = component.getUnknowns();
            fit.defect = component.getDefect();
            fit.redundancy = component.getRedundancy();
            for (const int index : component.sections)
                takeSection(index, fit);
        }
        for (std::size_t group = 0; group < pvvOfObserved.size(); ++group)
            takeObservedGroup(group);
    }

    void takeSection(int index, PartFit& fit) const
    {
        const double sigma = network.sections[static_cast<std::size_t>(index)].sigma;
        const double scaled = result.sections[static_cast<std::size_t>(index)]->residual / sigma;
        fit.pvv += scaled * scaled;
        takeSigma({index, -1, sigma}, fit);
    }

    void takeObservedGroup(std::size_t group)
    {
        const ObservedHeights& observed = network.observedHeights[group];
        PartFit& fit = getFit(observed.points.front());
        fit.pvv += pvvOfObserved[group];
        for (std::size_t row = 0; row < observed.points.size(); ++row) {
            const double variance = observed.covariance[row * (observed.points.size() + 1)];
            takeSigma({-1, observed.points[row], std::sqrt(variance)}, fit);
        }
    }

    static void takeSigma(const MeasurementSigma& measured, PartFit& fit)
    {
        const bool isFirst = fit.leastSigma.section < 0 && fit.leastSigma.point < 0;
        if (isFirst || measured.sigma < fit.leastSigma.sigma)
            fit.leastSigma = measured;
        if (isFirst || measured.sigma > fit.largestSigma.sigma)
            fit.largestSigma = measured;
    }

    void test()
    {
        const SectionSeries series = findSectionSeries(network);
        result.seriesOfSection = series.seriesOfSection;
        result.testCount = series.countTests(network, result.components);
        const double error = 1.0 - network.parameters.confidence;
        const double share = quantiles::shareOfEach(error, std::max(result.testCount, 1));
        for (std::optional<PartFit>& fit : result.fits) {
            if (fit && fit->redundancy > 0)
                setLimits(*fit, error, share);
        }
        const double shift = quantiles::normalLimit(share) + quantiles::normalQuantile(kPower);
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            if (result.sections[index] && result.sections[index]->normalisedResidual)
                testSection(network.sections[index], *result.sections[index], shift);
        }
        for (AdjustedHeight& height : result.observedHeights)
            setStatistic(height, getFit(height.point));
        for (std::size_t index = 0; index < network.points.size(); ++index) {
            if (!result.points[index])
                continue;
            const PartFit& fit = getFit(static_cast<int>(index));
            result.points[index]->sigmaScale = fit.sigmaScale;
            result.points[index]->isScaled = fit.isScaled;
        }
    }

    void setLimits(PartFit& fit, double error, double share) const
    {
        const quantiles::RatioLimits ratio = quantiles::sigmaRatioLimits(fit.redundancy, error);
        fit.lowerRatio = ratio.lower;
        fit.upperRatio = ratio.upper;
        fit.isScaled = network.parameters.sigmaAct == SigmaAct::Aposteriori;
        if (fit.isScaled)
            fit.sigmaScale = *fit.getSigma0();
        fit.isStudentised = fit.isScaled && fit.redundancy >= quantiles::kLeastTauRedundancy;
        const auto limit = [&](double probability) {
            return fit.isStudentised ? quantiles::tauLimit(fit.redundancy, probability)
                                     : quantiles::normalLimit(probability);
        };
        fit.errorLimit = limit(share);
        fit.warningLimit = limit(error);
    }

    static void setStatistic(AdjustedMeasurement& measurement, const PartFit& fit)
    {
        if (!measurement.normalisedResidual)
            return;
        const double scale = fit.isStudentised ? std::max(fit.sigmaScale, kLeastSigma0) : 1.0;
        measurement.statistic = *measurement.normalisedResidual / scale;
    }

    void testSection(const Section& section, AdjustedSection& adjusted, double shift)
    {
        const PartFit& fit = getFit(section.from);
        setStatistic(adjusted, fit);
        adjusted.grossError = -adjusted.residual / adjusted.redundancy;
        const double scale = fit.isStudentised ? fit.sigmaScale : 1.0;
        adjusted.detectableError = shift * scale * section.sigma / std::sqrt(adjusted.redundancy);
    }

    PartFit& getFit(int point)
    {
        return *result
                    .fits[static_cast<std::size_t>(result.componentOfPoint[static_cast<std::size_t>(point)])];
    }

    const Network& network;
    const std::vector<std::optional<double>>& heights;
    const NormalEquations& equations;
    Adjustment& result;
    std::vector<double> pvvOfObserved;
};

std::vector<int> findComponentOfPoint(const Network& network, const std::vector<Component>& components)
{
    std::vector<int> componentOfPoint(network.points.size());
    int number = 0;
    for (const Component& component : components) {
        for (const int point : component.points)
            componentOfPoint[static_cast<std::size_t>(point)] = number;
        ++number;
    }
    return componentOfPoint;
}

/// Approximate heights that sections beyond the tolerance do not carry on, as far as others can.
std::vector<std::optional<double>> avoidImplausible(const SectionGraph& graph,
                                                    const std::vector<ImplausibleSections>& implausible)
{
    std::vector<bool> avoided(graph.getNetwork().sections.size(), false);
    for (const ImplausibleSections& found : implausible)
        avoided[static_cast<std::size_t>(found.sections.front())] = true;
    return approximateHeights(graph, avoided);
}

bool isWithinTolerance(const Network& network, const std::vector<std::optional<double>>& heights)
{
    const double limit = network.parameters.toleranceAbsolute / 1000.0;
    return std::all_of(network.sections.begin(), network.sections.end(), [&](const Section& section) {
        const std::optional<double>& from = heights[static_cast<std::size_t>(section.from)];
        const std::optional<double>& to = heights[static_cast<std::size_t>(section.to)];
        return !from || std::abs(section.difference - (*to - *from)) <= limit;
    });
}

} // namespace

std::optional<double> PartFit::getSigma0() const
{
    if (redundancy < 1)
        return std::nullopt;
    return std::sqrt(pvv / redundancy);
}

bool PartFit::isIllConditioned() const
{
    return getSigmaRatio() > kLargestSigmaRatio;
}

const PartFit& Adjustment::getFit(int point) const
{
    return *fits[static_cast<std::size_t>(componentOfPoint[static_cast<std::size_t>(point)])];
}

int Adjustment::countRedundant() const
{
    int count = 0;
    for (const std::optional<PartFit>& fit : fits)
        count += fit ? fit->redundancy : 0;
    return count;
}

Adjustment adjust(const Network& network)
{
    Adjustment result;
    result.components = findComponents(network);
    result.componentOfPoint = findComponentOfPoint(network, result.components);
    result.points.resize(network.points.size());
    result.sections.resize(network.sections.size());
    result.undetermined = findUndeterminedPoints(network, result.components);

    const SectionGraph graph(network);
    std::vector<std::optional<double>> heights = approximateHeights(graph);
    for (const Component& component : result.components)
        result.unknowns += component.hasDatum() ? component.getUnknowns() : 0;
    if (!isWithinTolerance(network, heights)) {
        result.implausible = findImplausibleSections(network);
        heights = avoidImplausible(graph, result.implausible);
    }
    NormalEquations equations(graph, heights);
    if (equations.getUnknownCount() == 0) {
        result.status = AdjustmentStatus::NothingToAdjust;
        return result;
    }
    if (!equations.solve()) {
        result.status = AdjustmentStatus::Singular;
        return result;
    }
    equations.invert();
    AdjustmentBuilder(network, heights, equations, result).build();
    return result;
}

} // namespace levelling
