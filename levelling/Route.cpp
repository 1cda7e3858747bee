#include "levelling/Route.h"

#include <cmath>

namespace levelling {

Route makeRoute(const Network& network, int start, const std::vector<int>& sections)
{
    Route route;
    route.points.push_back(start);
    route.length = 0.0;
    route.stations = 0;
    double variance = 0.0;
    for (const int index : sections) {
        const Section& section = network.sections[static_cast<std::size_t>(index)];
        const bool forward = section.from == route.points.back();
        route.sections.push_back({index, forward});
        route.points.push_back(forward ? section.to : section.from);
        route.sum += forward ? section.difference : -section.difference;
        variance += section.sigma * section.sigma;
        if (!section.distance)
            route.length.reset();
        else if (route.length)
            *route.length += *section.distance;
        if (!section.stations)
            route.stations.reset();
        else if (route.stations)
            *route.stations += *section.stations;
    }
    route.sigma = std::sqrt(variance);
    return route;
}

} // namespace levelling
