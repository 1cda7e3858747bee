#include "levelling/HeldPoints.h"

#include "levelling/Components.h"

#include <algorithm>

namespace levelling {

std::vector<int> holdPartsWithoutDatum(Network& network, const std::vector<bool>& isConcerned)
{
    std::vector<int> held;
    // Nothing to look for in networks of other files.
    if (std::find(isConcerned.begin(), isConcerned.end(), true) == isConcerned.end())
        return held;
    for (const Component& component : findComponents(network)) {
        const bool isLevelled =
            std::any_of(component.sections.begin(), component.sections.end(),
                        [&](int section) { return isConcerned[static_cast<std::size_t>(section)]; });
        if (component.hasDatum() || !isLevelled)
            continue;
        Point& point = network.points[static_cast<std::size_t>(component.points.front())];
        point.height = 0.0;
        point.constrained = true;
        held.push_back(component.points.front());
    }
    return held;
}

} // namespace levelling
