#include "apps/desk/runs/AdjustRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvel::desk {

namespace {

using levelling::AdjustedPoint;
using levelling::AdjustedSection;
using levelling::AdjustmentStatus;
using levelling::FitStatistics;

// Normalised residuals beyond these are reported.
constexpr double kErrorLimit = 3.0;
constexpr double kWarningLimit = 2.0;

/// Largest plausible ratio of the a posteriori to the a priori sigma0, 95 %: the root of the chi-square
/// quantile over the degrees of freedom, by the approximation of E. B. Wilson and M. M. Hilferty (The
/// distribution of chi-square, Proc. Nat. Acad. Sci. 17, 1931).
double sigma0Limit(int redundancy)
{
    constexpr double normalQuantile = 1.6449;
    const double part = 2.0 / (9.0 * redundancy);
    const double root = 1.0 - part + normalQuantile * std::sqrt(part);
    return std::sqrt(root * root * root);
}

class AdjustmentReport
{
public:
    AdjustmentReport(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot)
        : monitor(runMonitor)
        , network(snapshot.network)
        , lines(runMonitor, snapshot)
    {}

    std::optional<levelling::Adjustment> run()
    {
        monitor.startStage(Desk::tr("Уравнивание").toStdWString());
        const levelling::Adjustment adjustment = levelling::adjust(network);
        monitor.finishCurrentStage();
        lines.service(Desk::tr("Метод наименьших квадратов, веса обратны квадратам СКО измерений"));

        writeComposition(adjustment);
        if (adjustment.status == AdjustmentStatus::Ok && lines.isRunning()) {
            writeResults(adjustment);
            writeResiduals(adjustment);
        }
        if (!lines.isRunning())
            return std::nullopt;
        monitor.setPercentage(100);
        return adjustment;
    }

private:
    void startStage(const QString& name)
    {
        monitor.startStage(name.toStdWString());
        monitor.startProtocolStage(name.toStdWString());
    }

    void finishStage()
    {
        monitor.finishProtocolStage();
        monitor.finishCurrentStage();
    }

    void writeComposition(const levelling::Adjustment& adjustment)
    {
        startStage(Desk::tr("Состав сети и приближённые высоты"));
        const QString failure = describeFailure(adjustment.status);
        if (!failure.isEmpty())
            lines.error(failure);
        for (const levelling::UndeterminedPoint& undetermined : adjustment.undetermined)
            writeUndetermined(undetermined);
        lines.message(Desk::tr("Пунктов: %1, секций: %2, неизвестных: %3, не определяется пунктов: %4")
                          .arg(QString::number(network.points.size()),
                               QString::number(network.sections.size()), QString::number(adjustment.unknowns),
                               QString::number(adjustment.undetermined.size())));
        for (std::size_t i = 0; i < network.points.size() && lines.isRunning(); ++i) {
            if (adjustment.points[i])
                writeApproximateHeight(static_cast<int>(i), *adjustment.points[i]);
        }
        for (std::size_t i = 0; i < network.sections.size() && lines.isRunning(); ++i) {
            if (adjustment.sections[i])
                checkAbsoluteTerm(static_cast<int>(i), *adjustment.sections[i]);
        }
        finishStage();
    }

    void writeUndetermined(const levelling::UndeterminedPoint& undetermined)
    {
        const bool hasSections = undetermined.reason != levelling::UndeterminedReason::NoSections;
        lines.error(Desk::tr("Высота пункта %1 не определяется: %2")
                        .arg(lines.point(undetermined.point),
                             hasSections ? Desk::tr("его часть сети не связана ни с одним исходным репером")
                                         : Desk::tr("с ним не связана ни одна секция")));
    }

    void writeApproximateHeight(int index, const AdjustedPoint& point)
    {
        if (network.points[static_cast<std::size_t>(index)].fixed)
            lines.message(Desk::tr("Исходный репер %1: отметка %2 м")
                              .arg(lines.point(index), numbers::height(point.height)));
        else
            lines.message(Desk::tr("Пункт %1: приближённая высота %2 м")
                              .arg(lines.point(index), numbers::height(point.approximateHeight)));
    }

    void checkAbsoluteTerm(int index, const AdjustedSection& section)
    {
        const double limit = network.parameters.toleranceAbsolute;
        if (std::abs(section.absoluteTerm) <= limit)
            return;
        lines.warning(
            Desk::tr("Секция %1: превышение отличается от приближённых высот на %2 мм, допуск ±%3 мм "
                     "(tol-abs)")
                .arg(lines.section(index), numbers::misclosure(section.absoluteTerm),
                     numbers::fixed(limit, 0)));
    }

    void writeResults(const levelling::Adjustment& adjustment)
    {
        startStage(Desk::tr("Результаты уравнивания"));
        writeFit(adjustment);
        writeLargestResidual(adjustment);
        for (std::size_t i = 0; i < network.points.size() && lines.isRunning(); ++i) {
            if (adjustment.points[i] && !network.points[i].fixed)
                writeHeight(static_cast<int>(i), *adjustment.points[i], adjustment);
            lines.setProgress(i, network.points.size() + network.sections.size());
        }
        finishStage();
    }

    void writeFit(const levelling::Adjustment& adjustment)
    {
        const double apriori = network.parameters.sigmaApriori;
        const FitStatistics& fit = adjustment.total;
        lines.message(Desk::tr("Число степеней свободы: %1").arg(QString::number(fit.redundancy)));
        lines.message(Desk::tr("[pvv] = %1 (веса 1/σ²)").arg(numbers::fixed(fit.pvv, 5)));
        const std::optional<double> sigma0 = fit.getSigma0();
        if (!sigma0) {
            lines.warning(Desk::tr("СКО единицы веса σ₀ (1 км хода): априорная %1 мм; апостериорная не "
                                   "определяется, так как избыточных измерений нет")
                              .arg(numbers::significant(apriori, 5)));
            return;
        }
        const double limit = sigma0Limit(fit.redundancy);
        const QString limitText = numbers::fixed(limit, 3);
        const QString text =
            Desk::tr(
                "СКО единицы веса σ₀ (1 км хода): априорная %1 мм, апостериорная %2 мм; отношение %3, %4 "
                "(вероятность 95 %)")
                .arg(numbers::significant(apriori, 5), numbers::significant(*sigma0 * apriori, 5),
                     numbers::significant(*sigma0, 5),
                     *sigma0 > limit ? Desk::tr("больше предела %1").arg(limitText)
                                     : Desk::tr("предел %1").arg(limitText));
        if (*sigma0 > limit)
            lines.warning(text);
        else
            lines.message(text);
        writeComponentFits(adjustment);
        lines.message(network.parameters.sigmaAct == levelling::SigmaAct::Apriori
                          ? Desk::tr("СКО высот вычислены по априорной σ₀ (sigma-act)")
                          : Desk::tr("СКО высот вычислены по апостериорной σ₀ (sigma-act)"));
    }

    void writeComponentFits(const levelling::Adjustment& adjustment)
    {
        const auto count = std::count_if(adjustment.components.begin(), adjustment.components.end(),
                                         [](const auto& fit) { return fit && fit->getSigma0(); });
        if (count < 2)
            return;
        std::size_t number = 0;
        for (const auto& fit : adjustment.components) {
            ++number;
            const std::optional<double> sigma0 = fit ? fit->getSigma0() : std::nullopt;
            if (sigma0)
                lines.message(Desk::tr("Часть %1: степеней свободы %2, апостериорная σ₀ %3 мм")
                                  .arg(QString::number(number), QString::number(fit->redundancy),
                                       numbers::significant(*sigma0 * network.parameters.sigmaApriori, 5)));
        }
    }

    void writeLargestResidual(const levelling::Adjustment& adjustment)
    {
        const std::vector<int> order = orderBySize(adjustment);
        if (order.empty())
            return;
        const AdjustedSection& largest = *adjustment.sections[static_cast<std::size_t>(order.front())];
        if (!largest.normalisedResidual)
            return;
        const double size = std::abs(*largest.normalisedResidual);
        writeBySize(size, Desk::tr("Наибольшая нормированная поправка: секция %1, %2")
                              .arg(lines.section(order.front()), describeSize(size)));
    }

    /// The normalised residual beside its limit.
    static QString describeSize(double size)
    {
        const QString value = numbers::fixed(size, 2);
        const QString limit = numbers::fixed(kErrorLimit, 0);
        return size > kErrorLimit ? Desk::tr("%1, больше предела %2").arg(value, limit)
                                  : Desk::tr("%1, предел %2").arg(value, limit);
    }

    void writeBySize(double size, const QString& text)
    {
        if (size > kErrorLimit)
            lines.error(text);
        else if (size > kWarningLimit)
            lines.warning(text);
        else
            lines.message(text);
    }

    void writeHeight(int index, const AdjustedPoint& point, const levelling::Adjustment& adjustment)
    {
        const std::optional<double> sigma0 = adjustment.total.getSigma0();
        const QString aposteriori = sigma0 ? Desk::tr("%1 мм").arg(numbers::sigma(point.sigma * *sigma0))
                                           : Desk::tr("не определяется");
        lines.message(Desk::tr("Пункт %1: H = %2 м, СКО априорная %3 мм, апостериорная %4")
                          .arg(lines.point(index), numbers::height(point.height),
                               numbers::fixed(point.sigma, 3), aposteriori));
    }

    void writeResiduals(const levelling::Adjustment& adjustment)
    {
        startStage(Desk::tr("Поправки измеренных превышений"));
        const std::vector<int> order = orderBySize(adjustment);
        std::size_t done = network.points.size();
        for (const int index : order) {
            if (!lines.isRunning())
                break;
            writeResidual(index, *adjustment.sections[static_cast<std::size_t>(index)]);
            lines.setProgress(done++, network.points.size() + order.size());
        }
        finishStage();
    }

    /// The sections with results, the largest normalised residual first.
    static std::vector<int> orderBySize(const levelling::Adjustment& adjustment)
    {
        std::vector<int> order;
        for (std::size_t i = 0; i < adjustment.sections.size(); ++i) {
            if (adjustment.sections[i])
                order.push_back(static_cast<int>(i));
        }
        const auto size = [&](int index) {
            return std::abs(
                adjustment.sections[static_cast<std::size_t>(index)]->normalisedResidual.value_or(0.0));
        };
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return size(a) > size(b); });
        return order;
    }

    void writeResidual(int index, const AdjustedSection& section)
    {
        const QString difference =
            numbers::height(network.sections[static_cast<std::size_t>(index)].difference);
        const QString residual = numbers::misclosure(section.residual);
        if (!section.normalisedResidual) {
            lines.warning(Desk::tr("Секция %1: h = %2 м, v = %3 мм, не контролируется другими измерениями")
                              .arg(lines.section(index), difference, residual));
            return;
        }
        const double size = std::abs(*section.normalisedResidual);
        writeBySize(size,
                    Desk::tr("Секция %1: h = %2 м, v = %3 мм, СКО поправки %4 мм, нормированная поправка %5")
                        .arg(lines.section(index), difference, residual,
                             numbers::sigma(*section.residualSigma), describeSize(size)));
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    RunLines lines;
};

} // namespace

std::optional<levelling::Adjustment> runAdjust(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot)
{
    return AdjustmentReport(monitor, snapshot).run();
}

QString describeFailure(AdjustmentStatus status)
{
    switch (status) {
    case AdjustmentStatus::NothingToAdjust:
        return Desk::tr("Уравнивать нечего: ни одна секция не ведёт от исходного репера к определяемому "
                        "пункту");
    case AdjustmentStatus::Singular:
        return Desk::tr("Система нормальных уравнений не решается: веса измерений различаются слишком "
                        "сильно, проверьте СКО и длины секций");
    case AdjustmentStatus::Ok:
        break;
    }
    return QString();
}

} // namespace orvel::desk
