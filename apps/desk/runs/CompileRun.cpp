#include "apps/desk/runs/CompileRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Components.h"
#include "levelling/LoopBasis.h"
#include "levelling/SectionGraph.h"

#include <algorithm>

namespace orvel::desk {

namespace {

using levelling::Component;
using levelling::Loop;
using levelling::RepeatedSections;

class Compilation
{
public:
    Compilation(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot,
                const SurveyRules& givenRules, WorstLine* worst)
        : monitor(runMonitor)
        , network(snapshot.network)
        , rules(givenRules)
        , format(givenRules.tolerances)
        , lines(runMonitor, snapshot, worst)
    {}

    void run()
    {
        if (network.sections.empty()) {
            lines.error(Desk::tr("В проекте нет ни одной секции, или все они отключены."));
            return;
        }
        monitor.startStage(Desk::tr("Связность сети").toStdWString());
        checkComponents();
        monitor.finishCurrentStage();
        if (!lines.isRunning())
            return;
        monitor.startStage(Desk::tr("Расхождения измерений секций").toStdWString());
        checkRepeatedSections();
        monitor.finishCurrentStage();
        if (!lines.isRunning())
            return;
        monitor.startStage(Desk::tr("Невязки ходов и полигонов").toStdWString());
        checkLoops();
        monitor.finishCurrentStage();
    }

private:
    void checkComponents()
    {
        const std::vector<Component> components = levelling::findComponents(network);
        int redundancy = 0;
        int benchmarks = 0;
        int parts = 0;
        for (const Component& component : components) {
            parts += isLevelled(component) ? 1 : 0;
            redundancy += component.hasDatum() ? component.getRedundancy() : 0;
            benchmarks += component.fixedPoints + component.observedPoints;
        }
        lines.service(Desk::tr("Пунктов: %1, исходных реперов: %2, секций: %3, частей сети: %4, избыточных "
                               "измерений: %5")
                          .arg(QString::number(network.points.size()), QString::number(benchmarks),
                               QString::number(network.sections.size()), QString::number(parts),
                               QString::number(redundancy)));
        lines.service(tolerances::describeRules(rules.tolerances, rules.levellingClass));
        std::size_t number = 0;
        std::size_t done = 0;
        for (const Component& component : components) {
            if (!lines.isRunning())
                return;
            if (isLevelled(component))
                checkComponent(component, ++number);
            lines.setProgress(++done, components.size());
        }
    }

    /// Whether it is more than a point of tacheometry that no section need lead to.
    bool isLevelled(const Component& component) const
    {
        return !component.sections.empty() ||
               !network.points[static_cast<std::size_t>(component.points.front())].surveyed;
    }

    void checkComponent(const Component& component, std::size_t number)
    {
        if (component.sections.empty()) {
            checkIsolatedPoint(component.points.front());
            return;
        }
        if (!component.hasDatum()) {
            lines.error(
                Desk::tr("Часть %1 не связана ни с одним исходным репером, высоты её пунктов определить "
                         "нельзя: %2")
                    .arg(QString::number(number), lines.listPoints(component.points)));
            return;
        }
        if (component.getDatum() == levelling::Datum::Free)
            lines.warning(Desk::tr("Часть %1 не связана ни с одним исходным репером и будет уравнена как "
                                   "свободная сеть: %2")
                              .arg(QString::number(number), lines.listPoints(component.points)));
        const int redundancy = component.getRedundancy();
        if (redundancy == 0) {
            lines.warning(Desk::tr("В части %1 нет избыточных измерений, ошибки в ней не обнаруживаются: %2")
                              .arg(QString::number(number), lines.listPoints(component.points)));
            return;
        }
        lines.message(
            Desk::tr("Часть %1: пунктов %2, исходных реперов %3, секций %4, избыточных измерений %5")
                .arg(QString::number(number), QString::number(component.points.size()),
                     QString::number(component.fixedPoints + component.observedPoints),
                     QString::number(component.sections.size()), QString::number(redundancy)));
    }

    void checkIsolatedPoint(int index)
    {
        const QString point = lines.point(index);
        if (network.points[static_cast<std::size_t>(index)].isBenchmark())
            lines.warning(Desk::tr("Исходный репер %1 не связан ни с одной секцией").arg(point));
        else
            lines.error(
                Desk::tr("Пункт %1 не связан ни с одной секцией, его высоту определить нельзя").arg(point));
    }

    void checkRepeatedSections()
    {
        const std::vector<RepeatedSections> repeatedSections = levelling::findRepeatedSections(network);
        if (const auto precision = levelling::findDoubleRunPrecision(repeatedSections))
            lines.message(
                Desk::tr(
                    "Случайная СКО на 1\u00A0км по расхождениям прямых и обратных ходов, секций: %1; одного "
                    "хода %2\u00A0мм, среднего из двух %3\u00A0мм")
                    .arg(QString::number(precision->count), format.sigma(precision->single),
                         format.sigma(precision->mean)));
        for (const RepeatedSections& repeated : repeatedSections) {
            if (!lines.isRunning())
                return;
            checkRepeated(repeated);
        }
    }

    void checkRepeated(const RepeatedSections& repeated)
    {
        std::vector<int> sections = repeated.forward;
        sections.insert(sections.end(), repeated.back.begin(), repeated.back.end());
        const QString kind = repeated.back.empty() || repeated.forward.empty()
                                 ? Desk::tr("Повторные измерения")
                                 : Desk::tr("Прямой и обратный ход");
        const Tolerance tolerance = tolerances::judgeRepeated(
            repeated.discrepancy, {repeated.length, repeated.stations, repeated.discrepancySigma}, rules);
        const QString text = Desk::tr("%1 %2: расхождение %3\u00A0мм, %4")
                                 .arg(kind, lines.listSections(sections), format.sigma(repeated.discrepancy),
                                      tolerances::describeLimit(tolerance, format));
        write(tolerance, text);
    }

    void write(const Tolerance& tolerance, const QString& text)
    {
        if (tolerance.isExceeded)
            lines.error(text, tolerance.ratio);
        else
            lines.message(text);
    }

    void checkLoops()
    {
        // What was measured several times goes into lines and loops as its mean.
        merged = levelling::mergeRepeatedSections(network);
        const levelling::SectionGraph graph(merged.network);
        const std::vector<Loop> loops =
            levelling::findLoopBasis(graph, [this] { return !lines.isRunning(); });
        std::size_t done = 0;
        for (const Loop& loop : loops) {
            if (!lines.isRunning())
                return;
            checkLoop(loop);
            lines.setProgress(++done, loops.size());
        }
    }

    void checkLoop(const Loop& loop)
    {
        const Tolerance tolerance =
            tolerances::judgeLoop(loop.misclosure, {loop.length, loop.stations, loop.sigma}, rules);
        const bool isClosed = loop.points.front() == loop.points.back();
        const QString text =
            Desk::tr("%1 %2: невязка %3\u00A0мм, %4, %5; секции: %6")
                .arg(isClosed ? Desk::tr("Полигон") : Desk::tr("Ход"), lines.listWay(loop.points),
                     format.misclosure(loop.misclosure), tolerances::describeSignedLimit(tolerance, format),
                     tolerances::describeLength(loop.length), lines.listSections(sectionsOf(loop)));
        write(tolerance, text);
    }

    std::vector<int> sectionsOf(const Loop& loop) const
    {
        std::vector<int> sections;
        for (const levelling::RouteSection& step : loop.sections) {
            const std::vector<int>& members = merged.members[static_cast<std::size_t>(step.section)];
            sections.insert(sections.end(), members.begin(), members.end());
        }
        return sections;
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    SurveyRules rules;
    NumberFormat format;
    RunLines lines;
    levelling::MergedNetwork merged;
};

} // namespace

void runCompile(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const SurveyRules& rules,
                WorstLine* worst)
{
    Compilation(monitor, snapshot, rules, worst).run();
}

} // namespace orvel::desk
