#include "apps/desk/runs/L1Run.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "levelling/L1Analysis.h"

#include <algorithm>

namespace orvel::desk {

namespace {

using levelling::L1Section;
using levelling::L1Status;

// A residual of that many standard deviations is a gross error.
constexpr double kGrossLimit = 3.0;

class L1Report
{
public:
    L1Report(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot)
        : monitor(runMonitor)
        , network(snapshot.network)
        , lines(runMonitor, snapshot)
    {}

    QString run()
    {
        lines.service(Desk::tr("Минимум суммы Σ|v|/σ, вес измерения 1/σ, v — поправка, σ — априорная СКО "
                               "измерения; грубой считается ошибка с |v|/σ больше %1")
                          .arg(numbers::fixed(kGrossLimit, 0)));
        monitor.startStage(Desk::tr("Поиск минимума").toStdWString());
        const levelling::L1Analysis analysis =
            levelling::analyseL1(network, kGrossLimit, [this] { return !lines.isRunning(); });
        monitor.finishCurrentStage();
        writeUndetermined(analysis);
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

    void writeSolution(const levelling::L1Analysis& analysis)
    {
        const std::vector<int> order = orderBySize(analysis);
        const auto isGross = [&](int index) {
            return analysis.sections[static_cast<std::size_t>(index)]->isGross;
        };
        const auto grossCount = std::count_if(order.begin(), order.end(), isGross);
        lines.message(Desk::tr("Σ|v|/σ = %1; секций с грубой ошибкой: %2, с поправкой: %3, без поправки: %4")
                          .arg(numbers::fixed(analysis.objective, 4), QString::number(grossCount),
                               QString::number(order.size()),
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
                    Desk::tr("Пункт %1: H = %2 м")
                        .arg(lines.point(static_cast<int>(i)), numbers::height(*analysis.heights[i])));
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
            Desk::tr("Решение не единственное: ту же сумму дают и другие высоты, например этих пунктов: %1. "
                     "Грубая ошибка может быть в другой секции тех же полигонов.")
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
        const QString residual = numbers::misclosure(section.residual);
        const QString size = numbers::fixed(section.scaledResidual, 2);
        const QString limit = numbers::fixed(kGrossLimit, 0);
        if (section.isGross)
            lines.error(Desk::tr("Секция %1: грубая ошибка, v = %2 мм, |v|/σ = %3, больше предела %4")
                            .arg(lines.section(index), residual, size, limit));
        else
            lines.message(Desk::tr("Секция %1: v = %2 мм, |v|/σ = %3, предел %4")
                              .arg(lines.section(index), residual, size, limit));
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    RunLines lines;
};

} // namespace

QString runL1Analysis(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot)
{
    return L1Report(monitor, snapshot).run();
}

} // namespace orvel::desk
