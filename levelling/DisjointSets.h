#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

namespace levelling {

/// Disjoint sets of the numbers 0..count-1. The smallest member stands for its set.
class DisjointSets
{
public:
    explicit DisjointSets(int count) : parents(static_cast<std::size_t>(count))
    {
        std::iota(parents.begin(), parents.end(), 0);
    }

    /// The member that stands for the set.
    int find(int member)
    {
        while (parent(member) != member) {
            parent(member) = parent(parent(member));
            member = parent(member);
        }
        return member;
    }

    /// Joins two sets; false if they are one set already.
    bool unite(int a, int b)
    {
        const auto [low, high] = std::minmax({find(a), find(b)});
        parent(high) = low;
        return low != high;
    }

private:
    int& parent(int member) { return parents[static_cast<std::size_t>(member)]; }

    std::vector<int> parents;
};

} // namespace levelling
