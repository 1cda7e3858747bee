#pragma once

#include <cstddef>
#include <vector>

namespace levelling {

/// Gaussian elimination over the field of two elements on sets of sections: tells whether a cycle is a sum of
/// earlier ones.
class CycleElimination
{
public:
    explicit CycleElimination(int sectionCount);

    /// Takes the cycle (distinct numbers of sections) if it is independent of those taken before; says
    /// whether it was.
    bool add(std::vector<int> cycle);
    /// Count of elements that all sums so far had.
    std::size_t getWork() const { return work; }

private:
    /// The taken cycles, reduced and ascending, each at its highest number, which no other has as highest.
    std::vector<std::vector<int>> cycleOfPivot;
    std::vector<int> sum;
    std::size_t work = 0;
};

} // namespace levelling
