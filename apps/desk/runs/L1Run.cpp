#include "apps/desk/runs/L1Run.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/GrossErrors.h"
#include "levelling/L1Analysis.h"

#include <algorithm>

namespace orvel::desk {

namespace {

using levelling::L1Section;
using levelling::L1Status;

class L1Report
{
public:
    L1Report(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot, const SurveyRules& givenRules,
             WorstLine* worst)
        : monitor(runMonitor)
        , network(snapshot.network)
        , rules(givenRules)
        , format(givenRules.tolerances)
        , lines(runMonitor, snapshot, worst)
    {}

    QString run()
    {
        lines.service(Desk::tr("Минимум суммы Σ|v|/σ, вес измерения 1/σ, v — поправка, σ — априорная СКО "
                               "измерения; исходные реперы удерживаются"));
        lines.service(Desk::tr("Грубые ошибки: последовательная проверка наибольших поправок уравнивания, "
                               "доверительная вероятность %1")
                          .arg(describeConfidence()));
        if (const QString level = tolerances::describeOwnLevel(rules.tolerances); !level.isEmpty())
            lines.service(level);
        monitor.startStage(Desk::tr("Поиск минимума").toStdWString());
        const auto isStopped = [this] { return !lines.isRunning(); };
        const levelling::L1Analysis analysis = levelling::analyseL1(network, isStopped);
        monitor.finishCurrentStage();
        writeUndetermined(analysis);
        if (analysis.status != L1Status::NothingToAdjust && lines.isRunning()) {
            monitor.startStage(Desk::tr("Поиск грубых ошибок").toStdWString());
            writeGrossErrors(levelling::findGrossErrors(network, isStopped));
            monitor.finishCurrentStage();
        }
        if (analysis.status == L1Status::Ok)
            writeSolution(analysis);
        const QString failure = describeFailure(analysis.status);
        if (!failure.isEmpty())
            lines.error(failure);
        return failure;
    }

private:
    static QString describeFailure(L1Status status)
    {
        switch (status) {
        case L1Status::NothingToAdjust:
            return Desk::tr("Анализировать нечего: ни одна секция не ведёт от исходного репера к "
                            "определяемому пункту");
        case L1Status::TooLarge:
            return Desk::tr("Невязки слишком велики для анализа, проверьте отметки и превышения");
        default:
            return QString();
        }
    }

    void writeUndetermined(const levelling::L1Analysis& analysis)
    {
        for (const levelling::UndeterminedPoint& undetermined : analysis.undetermined)
            lines.warning(Desk::tr("Пункт %1 не участвует: его высота не определяется")
                              .arg(lines.point(undetermined.point)));
    }

    QString describeConfidence() const { return numbers::shortest(network.parameters.confidence); }

    void writeGrossErrors(const levelling::GrossErrorSearch& search)
    {
        if (search.status == levelling::GrossErrorSearch::Status::Singular)
            lines.error(Desk::tr("Грубые ошибки не искались: веса измерений различаются слишком сильно, "
                                 "проверьте СКО и длины секций"));
        if (search.status != levelling::GrossErrorSearch::Status::Ok)
            return;
        if (search.errors.empty())
            lines.message(Desk::tr("Грубых ошибок не обнаружено, доверительная вероятность %1")
                              .arg(describeConfidence()));
        for (const levelling::GrossError& error : search.errors) {
            if (lines.isRunning())
                writeGrossError(error);
        }
        if (!search.isComplete)
            lines.warning(Desk::tr("Поиск прекращён после %1 грубых ошибок; проверьте априорную СКО")
                              .arg(QString::number(search.errors.size())));
    }

    void writeGrossError(const levelling::GrossError& error)
    {
        const QString test = Desk::tr("%1 %2, больше предела %3")
                                 .arg(error.isStudentised ? Desk::tr("стьюдентизированная поправка")
                                                          : Desk::tr("нормированная поправка"),
                                      numbers::fixed(error.statistic, 2), numbers::fixed(error.limit, 2));
        const QString size = format.misclosure(error.size);
        const double ratio = error.statistic / error.limit;
        if (error.sections.size() == 1)
            lines.error(Desk::tr("Секция %1: грубая ошибка, оценка %2\u00A0мм, %3")
                            .arg(lines.section(error.sections.front()), size, test),
                        ratio);
        else
            lines.error(
                Desk::tr(
                    "Грубая ошибка в одной из секций %1: измерения их не различают, оценка %2\u00A0мм, %3")
                    .arg(lines.listSections(error.sections), size, test),
                ratio);
    }

    void writeSolution(const levelling::L1Analysis& analysis)
    {
        const std::vector<int> order = orderBySize(analysis);
        lines.message(Desk::tr("Σ|v|/σ = %1; секций с ненулевой поправкой: %2, с нулевой: %3")
                          .arg(numbers::fixed(analysis.objective, 4), QString::number(order.size()),
                               QString::number(countParticipants(analysis) - order.size())));
        writeUniqueness(analysis);
        std::size_t done = 0;
        const std::size_t all = order.size() + network.points.size();
        for (const int index : order) {
            if (!lines.isRunning())
                return;
            writeSection(index, *analysis.sections[static_cast<std::size_t>(index)]);
            lines.setProgress(++done, all);
        }
        for (std::size_t i = 0; i < network.points.size() && lines.isRunning(); ++i) {
            if (analysis.heights[i] && !network.points[i].fixed)
                lines.message(
                    Desk::tr("Пункт %1: H = %2\u00A0м")
                        .arg(lines.point(static_cast<int>(i)), format.height(*analysis.heights[i])));
            lines.setProgress(++done, all);
        }
    }

    void writeUniqueness(const levelling::L1Analysis& analysis)
    {
        if (analysis.isUnique()) {
            lines.message(Desk::tr("Решение единственное"));
            return;
        }
        lines.warning(
            Desk::tr("Решение не единственное: ту же сумму дают и другие высоты, например этих пунктов: %1")
                .arg(lines.listPoints(analysis.ambiguous)));
    }

    static std::size_t countParticipants(const levelling::L1Analysis& analysis)
    {
        return static_cast<std::size_t>(
            std::count_if(analysis.sections.begin(), analysis.sections.end(),
                          [](const auto& section) { return section.has_value(); }));
    }

    /// The sections that the solution corrects, the largest scaled residual first.
    static std::vector<int> orderBySize(const levelling::L1Analysis& analysis)
    {
        std::vector<int> order;
        for (std::size_t i = 0; i < analysis.sections.size(); ++i) {
            if (analysis.sections[i] && analysis.sections[i]->scaledResidual > 0.0)
                order.push_back(static_cast<int>(i));
        }
        const auto size = [&](int index) {
            return analysis.sections[static_cast<std::size_t>(index)]->scaledResidual;
        };
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return size(a) > size(b); });
        return order;
    }

    void writeSection(int index, const L1Section& section)
    {
        const QString residual = format.misclosure(section.residual);
        const QString size = numbers::fixed(section.scaledResidual, 2);
        lines.message(
            Desk::tr("Секция %1: v = %2\u00A0мм, |v|/σ = %3").arg(lines.section(index), residual, size));
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    SurveyRules rules;
    NumberFormat format;
    RunLines lines;
};

} // namespace

QString runL1Analysis(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                      const SurveyRules& rules, WorstLine* worst)
{
    return L1Report(monitor, snapshot, rules, worst).run();
}

} // namespace orvel::desk
