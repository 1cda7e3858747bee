#pragma once

#include "levelling/Components.h"
#include "levelling/Network.h"

#include <vector>

namespace levelling {

/// Sections whose gross errors no measurement can tell apart: every loop that has one of them has all, as the
/// sections of one line between two nodes. Their normalised residuals are equal in size.
struct SectionSeries
{
    /// By index of the section the number of its series, from 0; -1 for a section that no loop has: nothing
    /// checks it.
    std::vector<int> seriesOfSection;
    /// Their count, those of one section included.
    int count = 0;

    /// How many tests the measurements allow that can be told apart: the series of the parts that have a
    /// datum, and the observed heights.
    int countTests(const Network& network, const std::vector<Component>& components) const;
};

/// Finds the series. Observed heights count as ways between the datum and their points.
///
/// In a graph two edges are in the same loops exactly if they cover the same edges outside a spanning tree,
/// or lie on the way between the ends of the same ones. Each edge outside the tree gets a random number, each
/// edge of the tree the sum (exclusive or) of those whose way leads over it; equal sums of 128 bits are the
/// same sets.
SectionSeries findSectionSeries(const Network& network);

} // namespace levelling
