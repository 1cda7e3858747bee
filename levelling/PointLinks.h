#pragma once

#include "levelling/Network.h"

#include <cstddef>
#include <vector>

namespace levelling {

/// Which sections meet at each point.
class PointLinks
{
public:
    explicit PointLinks(const Network& network) : first(network.points.size() + 1, 0)
    {
        for (const Section& section : network.sections) {
            ++first[static_cast<std::size_t>(section.from) + 1];
            ++first[static_cast<std::size_t>(section.to) + 1];
        }
        for (std::size_t point = 1; point < first.size(); ++point)
            first[point] += first[point - 1];
        sections.resize(first.back());
        std::vector<std::size_t> next(first.begin(), first.end() - 1);
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            for (const int point : {network.sections[index].from, network.sections[index].to})
                sections[next[static_cast<std::size_t>(point)]++] = static_cast<int>(index);
        }
    }

    /// Sections of one point, ascending.
    const int* begin(int point) const { return sections.data() + first[static_cast<std::size_t>(point)]; }
    const int* end(int point) const { return sections.data() + first[static_cast<std::size_t>(point) + 1]; }
    int count(int point) const { return static_cast<int>(end(point) - begin(point)); }

private:
    std::vector<std::size_t> first;
    std::vector<int> sections;
};

/// The point at the other end of a section.
inline int getOtherEnd(const Section& section, int point)
{
    return section.from == point ? section.to : section.from;
}

} // namespace levelling
