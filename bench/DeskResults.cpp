#include "bench/DeskResults.h"

namespace orvel::bench {

levelling::Adjustment makeResults(const levelling::Network& network)
{
    const auto scatter = [](std::size_t number) { return static_cast<double>(number * 7919 % 99991); };
    levelling::Adjustment adjustment;
    for (std::size_t i = 0; i < network.points.size(); ++i)
        adjustment.points.push_back(
            levelling::AdjustedPoint{100, 100 + 0.001 * scatter(i), 1 + 1e-4 * scatter(i)});
    for (std::size_t i = 0; i < network.sections.size(); ++i) {
        levelling::AdjustedSection section;
        section.residual = 1e-4 * scatter(i) - 5;
        section.statistic = section.residual / 2;
        section.redundancy = 1e-5 * scatter(i);
        adjustment.sections.push_back(section);
    }
    return adjustment;
}

} // namespace orvel::bench
