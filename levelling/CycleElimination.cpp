#include "levelling/CycleElimination.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace levelling {

CycleElimination::CycleElimination(int sectionCount) : cycleOfPivot(static_cast<std::size_t>(sectionCount))
{}

bool CycleElimination::add(std::vector<int> cycle)
{
    std::sort(cycle.begin(), cycle.end());
    while (!cycle.empty()) {
        std::vector<int>& other = cycleOfPivot[static_cast<std::size_t>(cycle.back())];
        if (other.empty()) {
            other = std::move(cycle);
            return true;
        }
        work += cycle.size() + other.size();
        sum.clear();
        std::set_symmetric_difference(cycle.begin(), cycle.end(), other.begin(), other.end(),
                                      std::back_inserter(sum));
        cycle.swap(sum);
    }
    return false;
}

} // namespace levelling
