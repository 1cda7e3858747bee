#pragma once

#include "levelling/LevelBook.h"
#include "tests/fuzz/Finding.h"

#include <algorithm>
#include <cmath>

/// Holds whatever a field file of a level holds: a network as the computations need it, or one failure and
/// nothing else; and what is told of its lines fits the network.
inline void checkLevelResult(const levelling::LevelResult& result)
{
    const levelling::Network& network = result.file.network;
    if (result.file.fatal) {
        mustHold(network.points.empty() && network.sections.empty() && result.file.problems.empty() &&
                     result.findings.lines.empty() && result.findings.checks.empty(),
                 "a failure comes alone");
        return;
    }
    const auto pointCount = static_cast<int>(network.points.size());
    for (const levelling::Point& point : network.points) {
        mustHold(!point.id.isEmpty(), "a point has a name");
        mustHold(point.height.has_value() == point.fixed, "a height makes a benchmark");
        mustHold(std::isfinite(point.height.value_or(0.0)), "a height is a number");
    }
    for (const levelling::Section& section : network.sections) {
        mustHold(section.from >= 0 && section.from < pointCount, "a section begins at a point");
        mustHold(section.to >= 0 && section.to < pointCount, "a section ends at a point");
        mustHold(section.from != section.to, "a section has two ends");
        mustHold(std::isfinite(section.difference), "a difference is a number");
        mustHold(std::isfinite(section.sigma) && section.sigma > 0.0, "a sigma is positive");
        mustHold(section.distance && *section.distance > 0.0, "a section has a length");
        mustHold(section.stations && *section.stations > 0, "a section has stations");
    }
    const auto byLine = [](const auto& a, const auto& b) { return a.line < b.line; };
    mustHold(std::is_sorted(result.file.problems.begin(), result.file.problems.end(), byLine),
             "the problems are in the order of their lines");
    mustHold(std::is_sorted(result.findings.checks.begin(), result.findings.checks.end(), byLine),
             "the checks are in the order of their lines");
    int sections = 0;
    for (const levelling::LevelLine& line : result.findings.lines) {
        mustHold(line.firstSection == sections || line.sectionCount == 0, "sections follow their lines");
        sections += line.sectionCount;
        mustHold(line.from < pointCount && line.to < pointCount, "a line has its ends");
        mustHold((line.from >= 0) == (line.stations > 0), "a line with stations has ends");
    }
    mustHold(sections == static_cast<int>(network.sections.size()), "every section is of a line");
    for (const levelling::LevelCheck& check : result.findings.checks)
        mustHold(std::isfinite(check.first) && std::isfinite(check.second) && check.limit > 0.0,
                 "a check has numbers");
}
