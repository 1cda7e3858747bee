#include "levelling/Adjustment.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/Components.h"
#include "levelling/NormalEquations.h"
#include "levelling/SectionGraph.h"

#include <algorithm>
#include <cmath>

namespace levelling {

namespace {

// Below this redundancy a residual is only rounding.
constexpr double kLeastRedundancy = 1e-6;

AdjustedSection adjustSection(const Section& section, double term, double correction,
                              double differenceVariance)
{
    const double variance = section.sigma * section.sigma;
    AdjustedSection adjusted;
    adjusted.absoluteTerm = term;
    adjusted.residual = correction - term;
    adjusted.redundancy = std::clamp(1.0 - differenceVariance / variance, 0.0, 1.0);
    if (adjusted.redundancy > kLeastRedundancy) {
        adjusted.residualSigma = section.sigma * std::sqrt(adjusted.redundancy);
        adjusted.normalisedResidual = adjusted.residual / *adjusted.residualSigma;
    }
    return adjusted;
}

FitStatistics fitOf(const Network& network, const Component& component, const Adjustment& adjustment)
{
    FitStatistics fit;
    fit.redundancy = component.getRedundancy();
    for (const int index : component.sections) {
        const auto section = static_cast<std::size_t>(index);
        const double scaled = adjustment.sections[section]->residual / network.sections[section].sigma;
        fit.pvv += scaled * scaled;
    }
    return fit;
}

void summarise(const Network& network, const std::vector<Component>& components, Adjustment& result)
{
    for (const Component& component : components) {
        result.components.emplace_back();
        if (!component.hasDatum())
            continue;
        const FitStatistics fit = fitOf(network, component, result);
        result.total.redundancy += fit.redundancy;
        result.total.pvv += fit.pvv;
        result.components.back() = fit;
    }
    if (network.parameters.sigmaAct == SigmaAct::Aposteriori)
        result.sigmaScale = result.total.getSigma0().value_or(1.0);
}

} // namespace

std::optional<double> FitStatistics::getSigma0() const
{
    if (redundancy < 1)
        return std::nullopt;
    return std::sqrt(pvv / redundancy);
}

Adjustment adjust(const Network& network)
{
    const std::vector<Component> components = findComponents(network);
    Adjustment result;
    result.points.resize(network.points.size());
    result.sections.resize(network.sections.size());
    result.undetermined = findUndeterminedPoints(components);

    const SectionGraph graph(network);
    const std::vector<std::optional<double>> heights = approximateHeights(graph);
    NormalEquations equations(graph, heights);
    result.unknowns = equations.getUnknownCount();
    if (result.unknowns == 0) {
        result.status = AdjustmentStatus::NothingToAdjust;
        return result;
    }
    if (!equations.solve()) {
        result.status = AdjustmentStatus::Singular;
        return result;
    }
    equations.invert();

    for (std::size_t index = 0; index < network.points.size(); ++index) {
        if (!heights[index])
            continue;
        const auto point = static_cast<int>(index);
        const double height = *heights[index] + equations.getCorrection(point) / 1000.0;
        result.points[index] =
            AdjustedPoint{*heights[index], height, std::sqrt(equations.getVariance(point))};
    }
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const Section& section = network.sections[index];
        if (!heights[static_cast<std::size_t>(section.from)])
            continue;
        const double correction = equations.getCorrection(section.to) - equations.getCorrection(section.from);
        result.sections[index] = adjustSection(section, equations.getTerm(section), correction,
                                               equations.getDifferenceVariance(section));
    }
    summarise(network, components, result);
    return result;
}

} // namespace levelling
