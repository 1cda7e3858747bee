#include "apps/desk/runs/AdjustRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/Tolerances.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace orvel::desk {

namespace {

using levelling::AdjustedPoint;
using levelling::AdjustedSection;
using levelling::AdjustmentStatus;
using levelling::Component;
using levelling::Datum;
using levelling::PartFit;

class AdjustmentReport
{
public:
    AdjustmentReport(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot,
                     const SurveyRules& givenRules, const std::vector<HandChange>& networkChanges,
                     WorstLine* worst)
        : monitor(runMonitor)
        , network(snapshot.network)
        , rules(givenRules)
        , format(givenRules.tolerances)
        , handChanges(networkChanges)
        , lines(runMonitor, snapshot, worst)
    {}

    std::optional<levelling::Adjustment> run()
    {
        monitor.startStage(Desk::tr("Уравнивание").toStdWString());
        adjustment = levelling::adjust(network);
        monitor.finishCurrentStage();
        lines.service(Desk::tr("Метод наименьших квадратов, веса обратны квадратам СКО измерений"));
        if (const QString level = tolerances::describeOwnLevel(rules.tolerances); !level.isEmpty())
            lines.service(level);

        if (!handChanges.empty())
            writeHandChanges();
        writeComposition();
        if (adjustment.status == AdjustmentStatus::Ok && lines.isRunning()) {
            writeResults();
            writeResiduals();
        }
        if (!lines.isRunning())
            return std::nullopt;
        monitor.setPercentage(100);
        return std::move(adjustment);
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

    const levelling::Section& getSection(int index) const
    {
        return network.sections[static_cast<std::size_t>(index)];
    }

    const AdjustedSection& getAdjusted(int index) const
    {
        return *adjustment.sections[static_cast<std::size_t>(index)];
    }

    const PartFit& getFitOfSection(int index) const { return adjustment.getFit(getSection(index).from); }

    int getSeries(int section) const { return adjustment.seriesOfSection[static_cast<std::size_t>(section)]; }

    void writeHandChanges()
    {
        startStage(Desk::tr("Изменено вручную"));
        for (const HandChange& change : handChanges) {
            if (!lines.isRunning())
                break;
            const QString name = change.kind == HandChange::Kind::SectionDeleted
                                     ? RunLines::escape(change.name)
                                     : lines.item(change.id, change.name);
            lines.message(handchanges::describe(change, name, RunLines::escape));
        }
        finishStage();
    }

    void writeComposition()
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
        for (std::size_t part = 0; part < adjustment.components.size(); ++part) {
            if (adjustment.components[part].getDatum() == Datum::Free)
                writeFreePart(part);
        }
        for (std::size_t i = 0; i < network.points.size() && lines.isRunning(); ++i) {
            if (adjustment.points[i])
                writeApproximateHeight(static_cast<int>(i), *adjustment.points[i]);
        }
        for (const levelling::ImplausibleSections& implausible : adjustment.implausible) {
            if (lines.isRunning())
                writeImplausible(implausible);
        }
        finishStage();
    }

    void writeUndetermined(const levelling::UndeterminedPoint& undetermined)
    {
        const bool hasSections = undetermined.reason != levelling::UndeterminedReason::NoSections;
        lines.error(Desk::tr("Высота пункта %1 не определяется: %2")
                        .arg(lines.point(undetermined.point),
                             hasSections
                                 ? Desk::tr("в его части сети нет ни исходного репера, ни пункта с высотой")
                                 : Desk::tr("с ним не связана ни одна секция")));
    }

    void writeFreePart(std::size_t part)
    {
        const std::vector<int>& points = adjustment.components[part].datumPoints;
        const bool isAsked = network.points[static_cast<std::size_t>(points.front())].constrained;
        const QString text =
            Desk::tr("Часть %1 — свободная сеть без исходных реперов; сохраняется средняя высота (минимум "
                     "следа) %2: %3")
                .arg(QString::number(part + 1),
                     isAsked ? Desk::tr("пунктов с adj=\"Z\"")
                             : Desk::tr("всех пунктов, у которых есть высота"),
                     lines.listPoints(points));
        if (isAsked)
            lines.message(text);
        else
            lines.warning(text);
    }

    void writeApproximateHeight(int index, const AdjustedPoint& point)
    {
        const levelling::Point& given = network.points[static_cast<std::size_t>(index)];
        const QString link = lines.point(index);
        if (given.fixed)
            lines.message(
                Desk::tr("Исходный репер %1: отметка %2\u00A0м").arg(link, format.height(point.height)));
        else if (given.observed)
            lines.message(
                Desk::tr("Исходный репер %1: отметка %2\u00A0м, известна с ковариациями и уравнивается")
                    .arg(link, format.height(*given.height)));
        else
            lines.message(Desk::tr("Пункт %1: приближённая высота %2\u00A0м")
                              .arg(link, format.height(point.approximateHeight)));
    }

    void writeImplausible(const levelling::ImplausibleSections& implausible)
    {
        const double limit = network.parameters.toleranceAbsolute;
        // Without results no section has an absolute term; the difference from the others is as large.
        const auto& first = adjustment.sections[static_cast<std::size_t>(implausible.sections.front())];
        const QString difference = format.misclosure(first ? first->absoluteTerm : implausible.difference);
        if (implausible.sections.size() == 1)
            lines.warning(
                Desk::tr("Секция %1: измеренное превышение отличается от вычисленного по "
                         "приближённым высотам на %2\u00A0мм, допуск ±%3\u00A0мм (tol-abs)")
                    .arg(lines.section(implausible.sections.front()), difference, numbers::fixed(limit, 0)));
        else
            lines.warning(
                Desk::tr("В одной из секций %1 измеренное превышение отличается от вычисленного по "
                         "приближённым высотам на %2\u00A0мм, допуск ±%3\u00A0мм (tol-abs); измерения не "
                         "различают, в которой")
                    .arg(lines.listSections(implausible.sections), difference, numbers::fixed(limit, 0)));
    }

    void writeResults()
    {
        startStage(Desk::tr("Результаты уравнивания"));
        for (std::size_t part = 0; part < adjustment.fits.size() && lines.isRunning(); ++part) {
            if (adjustment.fits[part] && !adjustment.components[part].sections.empty())
                writePart(part);
        }
        writeLargestResidual();
        for (std::size_t i = 0; i < network.points.size() && lines.isRunning(); ++i) {
            if (adjustment.points[i] && !network.points[i].fixed)
                writeHeight(static_cast<int>(i), *adjustment.points[i]);
            lines.setProgress(i, network.points.size() + network.sections.size());
        }
        finishStage();
    }

    void writePart(std::size_t part)
    {
        const PartFit& fit = *adjustment.fits[part];
        const QString name = Desk::tr("Часть %1").arg(QString::number(part + 1));
        lines.message(Desk::tr("%1: неизвестных %2, избыточных измерений %3, [pvv] = %4 (веса 1/σ²)")
                          .arg(name, QString::number(fit.unknowns), QString::number(fit.redundancy),
                               numbers::fixed(fit.pvv, 5)));
        writeSigma0(name, adjustment.components[part], fit);
        if (fit.redundancy > 0)
            writeTests(name, fit);
        if (fit.isIllConditioned())
            lines.warning(
                Desk::tr(
                    "%1: СКО измерений различаются в %2\u00A0раз, от %3\u00A0мм (%4) до %5\u00A0мм (%6); "
                    "последние цифры высот и СКО недостоверны, проверьте эти СКО")
                    .arg(name, numbers::significant(fit.getSigmaRatio(), 2),
                         numbers::significant(fit.leastSigma.sigma, 3), nameMeasurement(fit.leastSigma),
                         numbers::significant(fit.largestSigma.sigma, 3), nameMeasurement(fit.largestSigma)));
    }

    QString nameMeasurement(const levelling::MeasurementSigma& measurement)
    {
        return measurement.section < 0 ? lines.point(measurement.point) : lines.section(measurement.section);
    }

    /// Where weights come from standard deviations, sigma-apr is that of no length.
    bool isPerKilometre(const Component& part) const
    {
        return std::none_of(part.sections.begin(), part.sections.end(),
                            [&](int section) { return getSection(section).stdev.has_value(); });
    }

    void writeSigma0(const QString& part, const Component& component, const PartFit& fit)
    {
        const double apriori = network.parameters.sigmaApriori;
        const QString quantity = isPerKilometre(component) ? Desk::tr("СКО единицы веса μ на 1\u00A0км хода")
                                                           : Desk::tr("СКО единицы веса μ");
        const std::optional<double> sigma0 = fit.getSigma0();
        if (!sigma0) {
            lines.warning(Desk::tr("%1, %2: априорная %3\u00A0мм; апостериорная не определяется, так как "
                                   "избыточных измерений нет")
                              .arg(part, quantity, numbers::unitWeight(apriori)));
            return;
        }
        const QString values =
            Desk::tr("%1, %2: априорная %3\u00A0мм, апостериорная %4\u00A0мм, отношение %5")
                .arg(part, quantity, numbers::unitWeight(apriori), numbers::unitWeight(*sigma0 * apriori),
                     numbers::fixed(*sigma0, 3));
        const QString limits = Desk::tr("пределы %1 и %2 (критерий χ², доверительная вероятность %3)")
                                   .arg(numbers::fixed(*fit.lowerRatio, 3),
                                        numbers::fixed(*fit.upperRatio, 3), describeConfidence());
        if (*sigma0 > *fit.upperRatio)
            lines.warning(Desk::tr("%1, больше верхнего предела, %2; проверьте L1-анализом и априорную СКО")
                              .arg(values, limits));
        else if (*sigma0 < *fit.lowerRatio)
            lines.warning(Desk::tr("%1, меньше нижнего предела, %2; априорная СКО, по-видимому, завышена")
                              .arg(values, limits));
        else
            lines.message(Desk::tr("%1, %2").arg(values, limits));
    }

    void writeTests(const QString& part, const PartFit& fit)
    {
        const QString single = numbers::fixed(fit.warningLimit, 2);
        const QString limit = numbers::fixed(fit.errorLimit, 2);
        QString text;
        if (fit.isStudentised)
            text = Desk::tr("%1: поправки делятся на апостериорные СКО (τ-критерий Поупа, sigma-act); предел "
                            "наибольшей из %2 — %3, предел предупреждения %4");
        else if (fit.isScaled)
            text = Desk::tr("%1: поправки делятся на априорные СКО, так как при одном избыточном измерении "
                            "τ-критерий ничего не проверяет; предел наибольшей из %2 — %3, предел "
                            "предупреждения %4");
        else
            text = Desk::tr("%1: поправки делятся на априорные СКО (sigma-act); предел наибольшей из %2 — "
                            "%3, предел предупреждения %4");
        lines.message(text.arg(part, QString::number(adjustment.testCount), limit, single));
        lines.message(fit.isScaled
                          ? Desk::tr("%1: СКО высот вычислены по апостериорной μ (sigma-act)").arg(part)
                          : Desk::tr("%1: СКО высот вычислены по априорной μ (sigma-act)").arg(part));
    }

    QString describeConfidence() const { return numbers::shortest(network.parameters.confidence); }

    void writeLargestResidual()
    {
        const std::vector<int> order = orderBySize();
        if (order.empty() || !getAdjusted(order.front()).statistic)
            return;
        const int largest = order.front();
        const std::vector<int> series = listSeries(largest);
        const QString size = describeSize(largest);
        writeBySize(
            largest,
            series.size() == 1
                ? Desk::tr("Наибольшая %1: секция %2").arg(size, lines.section(largest))
                : Desk::tr("Наибольшая %1: одинакова у секций %2").arg(size, lines.listSections(series)));
    }

    QString nameStatistic(int section) const
    {
        return getFitOfSection(section).isStudentised ? Desk::tr("стьюдентизированная поправка")
                                                      : Desk::tr("нормированная поправка");
    }

    /// The test of the residual beside its limit.
    QString describeSize(int section) const
    {
        const PartFit& fit = getFitOfSection(section);
        const double size = std::abs(*getAdjusted(section).statistic);
        const QString value = numbers::fixed(size, 2);
        const QString name = nameStatistic(section);
        if (size > fit.errorLimit)
            return Desk::tr("%1 %2, больше предела %3").arg(name, value, numbers::fixed(fit.errorLimit, 2));
        if (size > fit.warningLimit)
            return Desk::tr("%1 %2, больше предела предупреждения %3")
                .arg(name, value, numbers::fixed(fit.warningLimit, 2));
        return Desk::tr("%1 %2, предел %3").arg(name, value, numbers::fixed(fit.errorLimit, 2));
    }

    bool isSuspicious(int section) const
    {
        const auto& statistic = getAdjusted(section).statistic;
        return statistic && std::abs(*statistic) > getFitOfSection(section).warningLimit;
    }

    void writeBySize(int section, const QString& text)
    {
        const PartFit& fit = getFitOfSection(section);
        const double size = std::abs(*getAdjusted(section).statistic);
        const double ratio = size / fit.errorLimit;
        if (size > fit.errorLimit)
            lines.error(text, ratio);
        else if (size > fit.warningLimit)
            lines.warning(text, ratio);
        else
            lines.message(text);
    }

    void writeHeight(int index, const AdjustedPoint& point)
    {
        const QString values =
            Desk::tr("Пункт %1: H = %2\u00A0м, СКО априорная %3\u00A0мм")
                .arg(lines.point(index), format.height(point.height), format.sigma(point.sigma));
        const std::optional<double> sigma0 = adjustment.getFit(index).getSigma0();
        lines.message(
            sigma0 ? Desk::tr("%1, апостериорная %2\u00A0мм").arg(values, format.sigma(point.sigma * *sigma0))
                   : Desk::tr("%1, апостериорная не определяется").arg(values));
    }

    void writeResiduals()
    {
        startStage(Desk::tr("Поправки в измеренные превышения"));
        for (const levelling::AdjustedHeight& height : adjustment.observedHeights)
            writeObservedHeight(height);
        const std::vector<int> order = orderBySize();
        std::set<int> namedSeries;
        std::size_t done = network.points.size();
        for (const int index : order) {
            if (!lines.isRunning())
                break;
            const std::vector<int> series = listSeries(index);
            if (series.size() > 1 && isSuspicious(index) && namedSeries.insert(getSeries(index)).second)
                writeSeries(index, series);
            writeResidual(index, series.size() == 1);
            lines.setProgress(done++, network.points.size() + order.size());
        }
        finishStage();
    }

    /// The sections with results, the largest test statistic first.
    std::vector<int> orderBySize()
    {
        if (!orderedSections.empty())
            return orderedSections;
        for (std::size_t i = 0; i < adjustment.sections.size(); ++i) {
            if (!adjustment.sections[i])
                continue;
            orderedSections.push_back(static_cast<int>(i));
            if (const int series = adjustment.seriesOfSection[i]; series >= 0) {
                membersOfSeries.resize(
                    std::max(membersOfSeries.size(), static_cast<std::size_t>(series) + 1));
                membersOfSeries[static_cast<std::size_t>(series)].push_back(static_cast<int>(i));
            }
        }
        const auto size = [&](int index) { return std::abs(getAdjusted(index).statistic.value_or(0.0)); };
        // Sections of one series differ only by rounding.
        const auto rounded = [&](int index) { return std::round(size(index) * 1e6); };
        std::stable_sort(orderedSections.begin(), orderedSections.end(),
                         [&](int a, int b) { return rounded(a) > rounded(b); });
        return orderedSections;
    }

    /// The sections that cannot be told apart from that one, itself included.
    std::vector<int> listSeries(int section) const
    {
        const int series = getSeries(section);
        return series < 0 ? std::vector<int>{section} : membersOfSeries[static_cast<std::size_t>(series)];
    }

    void writeSeries(int index, const std::vector<int>& series)
    {
        const AdjustedSection& section = getAdjusted(index);
        const bool isError = std::abs(*section.statistic) > getFitOfSection(index).errorLimit;
        const QString found =
            isError ? Desk::tr("Ошибка в одной из секций %1: измерения их не различают")
                    : Desk::tr("Возможна ошибка в одной из секций %1: измерения их не различают");
        writeBySize(index,
                    Desk::tr("%1; %2; оценка ошибки %3\u00A0мм, обнаруживается от %4\u00A0мм")
                        .arg(found.arg(lines.listSections(series)), describeSize(index),
                             format.misclosure(*section.grossError), format.sigma(*section.detectableError)));
    }

    /// @param isJudged whether the section can be told apart from all others
    void writeResidual(int index, bool isJudged)
    {
        const AdjustedSection& section = getAdjusted(index);
        const QString values = Desk::tr("Секция %1: h = %2\u00A0м, v = %3\u00A0мм")
                                   .arg(lines.section(index), format.height(getSection(index).difference),
                                        format.misclosure(section.residual));
        if (!section.statistic) {
            lines.warning(Desk::tr("%1, не контролируется другими измерениями").arg(values));
            return;
        }
        const double scale = getFitOfSection(index).isStudentised ? getFitOfSection(index).sigmaScale : 1.0;
        const QString sigma = format.sigma(*section.residualSigma * scale);
        if (isSuspicious(index) && isJudged)
            writeBySize(
                index,
                Desk::tr("%1, СКО поправки %2\u00A0мм, %3; r = %4, оценка ошибки %5\u00A0мм, обнаруживается "
                         "от %6\u00A0мм")
                    .arg(values, sigma, describeSize(index), numbers::fixed(section.redundancy, 2),
                         format.misclosure(*section.grossError), format.sigma(*section.detectableError)));
        else if (isSuspicious(index))
            lines.message(Desk::tr("%1, СКО поправки %2\u00A0мм, %3 %4")
                              .arg(values, sigma, nameStatistic(index),
                                   numbers::fixed(std::abs(*section.statistic), 2)));
        else
            lines.message(
                Desk::tr("%1, СКО поправки %2\u00A0мм, %3").arg(values, sigma, describeSize(index)));
    }

    void writeObservedHeight(const levelling::AdjustedHeight& height)
    {
        const QString values = Desk::tr("Исходный репер %1: поправка в отметку %2\u00A0мм")
                                   .arg(lines.point(height.point), format.misclosure(height.residual));
        if (!height.statistic) {
            lines.message(Desk::tr("%1, не контролируется другими измерениями").arg(values));
            return;
        }
        const PartFit& fit = adjustment.getFit(height.point);
        const double size = std::abs(*height.statistic);
        const QString test = Desk::tr("%1, проверка %2, предел %3")
                                 .arg(values, numbers::fixed(size, 2), numbers::fixed(fit.errorLimit, 2));
        if (size > fit.errorLimit)
            lines.error(test, size / fit.errorLimit);
        else
            lines.message(test);
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    SurveyRules rules;
    NumberFormat format;
    const std::vector<HandChange>& handChanges;
    RunLines lines;
    levelling::Adjustment adjustment;
    std::vector<int> orderedSections;
    std::vector<std::vector<int>> membersOfSeries;
};

} // namespace

std::optional<levelling::Adjustment> runAdjust(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                                               const SurveyRules& rules,
                                               const std::vector<HandChange>& handChanges, WorstLine* worst)
{
    return AdjustmentReport(monitor, snapshot, rules, handChanges, worst).run();
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
