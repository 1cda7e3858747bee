#include "apps/desk/picture/OverLimitLoops.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Components.h"
#include "levelling/LoopBasis.h"
#include "levelling/SectionGraph.h"

#include <algorithm>
#include <cmath>

namespace orvel::desk::picture {

std::vector<OverLimitLoop> findOverLimitLoops(const NetworkSnapshot& snapshot, const SurveyRules& rules,
                                              const std::function<bool()>& isStopped)
{
    const levelling::MergedNetwork merged = levelling::mergeRepeatedSections(snapshot.network);
    const levelling::SectionGraph graph(merged.network);
    const NumberFormat format(rules.tolerances);
    std::vector<OverLimitLoop> found;
    for (const levelling::Loop& loop : levelling::findLoopBasis(graph, isStopped)) {
        const Tolerance tolerance =
            tolerances::judgeLoop(loop.misclosure, {loop.length, loop.stations, loop.sigma}, rules);
        if (!tolerance.isExceeded)
            continue;
        OverLimitLoop over;
        for (const int point : loop.points)
            over.points.push_back(snapshot.pointIds[static_cast<std::size_t>(point)]);
        over.misclosure = loop.misclosure;
        over.limit = tolerance.limit;
        over.text = Desk::tr("%1\u00A0мм, допуск ±%2\u00A0мм")
                        .arg(format.misclosure(loop.misclosure), format.sigma(tolerance.limit));
        found.push_back(std::move(over));
    }
    std::stable_sort(found.begin(), found.end(), [](const OverLimitLoop& one, const OverLimitLoop& other) {
        return std::abs(one.misclosure) * other.limit > std::abs(other.misclosure) * one.limit;
    });
    return found;
}

} // namespace orvel::desk::picture
