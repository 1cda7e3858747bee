#include "apps/desk/runs/FixedPointsRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/BenchmarkLines.h"
#include "levelling/Components.h"
#include "levelling/FixedPoints.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvel::desk {

namespace {

using levelling::BenchmarkFit;
using levelling::BenchmarkLine;
using levelling::BenchmarkPart;
using levelling::FixedPoints;
using Verdict = BenchmarkPart::Verdict;

class FixedPointsReport
{
public:
    FixedPointsReport(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot,
                      const SurveyRules& givenRules, WorstLine* worst)
        : monitor(runMonitor)
        , network(snapshot.network)
        , rules(givenRules)
        , format(givenRules.tolerances)
        , lines(runMonitor, snapshot, worst)
    {}

    QString run()
    {
        lines.service(Desk::tr("Измерения уравнены без исходных отметок (свободная сеть); верные отметки "
                               "отличаются от её высот все на одну величину. Доверительная вероятность %1")
                          .arg(describeConfidence()));
        if (const QString level = tolerances::describeOwnLevel(rules.tolerances); !level.isEmpty())
            lines.service(level);
        lines.service(
            Desk::tr("Допуск невязок ходов между реперами: %1").arg(tolerances::describeLoopRule(rules)));
        const auto isStopped = [this] { return !lines.isRunning(); };
        monitor.startStage(Desk::tr("Свободное уравнивание").toStdWString());
        analysis = levelling::analyseFixedPoints(network, isStopped);
        monitor.finishCurrentStage();
        const QString failure = describeFailure();
        if (!failure.isEmpty())
            lines.error(failure);
        if (analysis.status != FixedPoints::Status::Ok)
            return failure;
        monitor.startStage(Desk::tr("Ходы между исходными реперами").toStdWString());
        found = levelling::findBenchmarkLines(levelling::mergeRepeatedSections(network).network, isStopped);
        monitor.finishCurrentStage();
        if (!found.isStopped)
            write();
        return failure;
    }

private:
    QString describeConfidence() const { return numbers::shortest(network.parameters.confidence); }

    QString describeFailure() const
    {
        switch (analysis.status) {
        case FixedPoints::Status::NoBenchmarks:
            return Desk::tr("Анализировать нечего: в сети нет исходных реперов");
        case FixedPoints::Status::Singular:
            return Desk::tr("Свободная сеть не уравнивается: веса измерений различаются слишком сильно, "
                            "проверьте СКО и длины секций");
        case FixedPoints::Status::Ok:
            return analysis.parts.empty()
                       ? Desk::tr("Анализировать нечего: ни одна секция не ведёт к исходному реперу")
                       : QString();
        default:
            return QString();
        }
    }

    /// What is to be done first, then what it rests on, the worst first.
    void write()
    {
        for (const BenchmarkPart& part : analysis.parts)
            writeVerdict(part);
        for (const BenchmarkPart& part : analysis.parts)
            writeMeasurements(part);
        writeRest();
        const std::vector<std::size_t> order = orderLines();
        const auto firstWithin = std::find_if(order.begin(), order.end(),
                                              [&](std::size_t line) { return !judge(line).isExceeded; });
        stepCount = order.size();
        for (const BenchmarkPart& part : analysis.parts)
            stepCount += part.benchmarks.size();
        for (auto line = order.begin(); line != firstWithin; ++line)
            writeLine(*line);
        for (const BenchmarkPart& part : analysis.parts)
            writeBenchmarks(part);
        for (auto line = firstWithin; line != order.end(); ++line)
            writeLine(*line);
    }

    bool mayGoOn()
    {
        lines.setProgress(step++, stepCount);
        return lines.isRunning();
    }

    /// Of several parts each is called by its first benchmark.
    QString namePart(const BenchmarkPart& part)
    {
        return analysis.parts.size() == 1
                   ? QString()
                   : Desk::tr("Часть сети с репером %1. ").arg(lines.point(part.benchmarks.front().point));
    }

    std::vector<int> listBenchmarks(const BenchmarkPart& part) const
    {
        std::vector<int> points;
        for (const BenchmarkFit& fit : part.benchmarks)
            points.push_back(fit.point);
        return points;
    }

    void writeVerdict(const BenchmarkPart& part)
    {
        const QString name = namePart(part);
        const QString count = QString::number(part.benchmarks.size());
        switch (part.verdict) {
        case Verdict::SingleBenchmark:
            lines.warning(Desk::tr("%1Исходный репер один, %2: его отметку сравнить не с чем; чтобы найти "
                                   "ошибочную, нужны хотя бы три")
                              .arg(name, lines.point(part.benchmarks.front().point)));
            break;
        case Verdict::TooMany:
            lines.warning(
                Desk::tr("%1Исходных реперов %2, вместе проверяется не больше 2000; проверены только "
                         "ходы между ними")
                    .arg(name, count));
            break;
        case Verdict::Consistent:
            lines.message(Desk::tr("%1Исходные отметки согласуются, реперов %2; %3")
                              .arg(name, count, describeVariance(part)));
            break;
        case Verdict::Excluded:
            writeExcluded(name, part);
            break;
        case Verdict::Ambiguous:
            writeAmbiguous(name, part);
            break;
        case Verdict::NoneAgree:
            writeNoneAgree(name, part);
            break;
        }
    }

    void writeMeasurements(const BenchmarkPart& part)
    {
        const QString name = namePart(part);
        if (!part.sigma0) {
            if (part.benchmarks.size() > 1)
                lines.message(
                    Desk::tr("%1Измерения друг друга не проверяют, СКО взяты априорные; расхождение "
                             "отметок может быть и ошибкой измерения")
                        .arg(name));
            return;
        }
        const QString values =
            Desk::tr("%1Свободное уравнивание: избыточных измерений %2, μ апостериорная к априорной %3")
                .arg(name, QString::number(part.redundancy), numbers::fixed(*part.sigma0, 3));
        const QString sigmas = part.isScaled ? Desk::tr("СКО вычислены по апостериорной")
                                             : Desk::tr("СКО вычислены по априорной");
        if (*part.sigma0 > part.sigma0Limit)
            lines.warning(
                Desk::tr("%1, больше предела %2: измерения не согласуются и без исходных отметок, сначала "
                         "найдите их ошибки L1-анализом; %3")
                    .arg(values, numbers::fixed(part.sigma0Limit, 3), sigmas));
        else
            lines.message(
                Desk::tr("%1, предел %2; %3").arg(values, numbers::fixed(part.sigma0Limit, 3), sigmas));
    }

    static QString describeVariance(const BenchmarkPart& part)
    {
        const QString value = numbers::fixed(part.variance, 2);
        const QString limit = numbers::fixed(part.varianceLimit, 2);
        return part.variance > part.varianceLimit
                   ? Desk::tr("отношение дисперсий %1, больше предела %2").arg(value, limit)
                   : Desk::tr("отношение дисперсий %1, предел %2").arg(value, limit);
    }

    void writeExcluded(const QString& name, const BenchmarkPart& part)
    {
        QStringList errors;
        for (const BenchmarkFit& fit : part.benchmarks) {
            if (fit.error)
                errors.append((*fit.error > 0.0
                                   ? Desk::tr("%1 (отметка больше на %2\u00A0мм, СКО %3\u00A0мм)")
                                   : Desk::tr("%1 (отметка меньше на %2\u00A0мм, СКО %3\u00A0мм)"))
                                  .arg(lines.point(fit.point), format.sigma(std::abs(*fit.error)),
                                       format.sigma(fit.errorSigma)));
        }
        const std::size_t rest = part.benchmarks.size() - part.excluded.size();
        lines.error(
            Desk::tr("%1Исходные отметки не согласуются, %2. Исключите из исходных или проверьте: %3. "
                     "Остальные согласуются, реперов %4")
                .arg(name, describeVariance(part), errors.join(QStringLiteral(", ")), QString::number(rest)),
            part.variance / part.varianceLimit);
        if (!part.isLargest)
            lines.message(Desk::tr("%1Перебрать все наборы реперов нельзя, слишком много; возможен и больший "
                                   "согласованный набор")
                              .arg(name));
    }

    void writeAmbiguous(const QString& name, const BenchmarkPart& part)
    {
        QStringList sets(lines.listPoints(part.excluded));
        for (const std::vector<int>& alternative : part.alternatives)
            sets.append(lines.listPoints(alternative));
        lines.error(
            Desk::tr("%1Исходные отметки не согласуются, %2, но какие неверны, измерения не решают: "
                     "остальные согласуются без %3. Свяжите их с другими реперами или проверьте отметки")
                .arg(name, describeVariance(part), sets.join(Desk::tr(", или без "))),
            part.variance / part.varianceLimit);
    }

    void writeNoneAgree(const QString& name, const BenchmarkPart& part)
    {
        if (part.benchmarks.size() > 2) {
            lines.error(
                Desk::tr("%1Никакие два исходных репера не согласуются, %2: %3. Проверьте отметки, их "
                         "систему высот и имена пунктов")
                    .arg(name, describeVariance(part), lines.listPoints(listBenchmarks(part))),
                part.variance / part.varianceLimit);
            return;
        }
        const BenchmarkFit& second = part.benchmarks.back();
        lines.error(
            Desk::tr("%1Отметки двух исходных реперов расходятся: %2 относительно %3 на %4\u00A0мм, СКО "
                     "%5\u00A0мм, критерий %6, больше предела %7. Какая неверна, решить нельзя: нужен "
                     "третий репер")
                .arg(name, lines.point(second.point), lines.point(part.benchmarks.front().point),
                     format.misclosure(*second.shift), format.sigma(second.shiftSigma),
                     numbers::fixed(std::abs(second.statistic), 2), numbers::fixed(part.limit, 2)),
            std::abs(second.statistic) / part.limit);
    }

    /// What could not be compared.
    void writeRest()
    {
        for (const int point : analysis.isolated) {
            if (!network.points[static_cast<std::size_t>(point)].surveyed)
                lines.warning(
                    Desk::tr("Исходный репер %1 не связан ни с одной секцией").arg(lines.point(point)));
        }
        for (const int point : analysis.withoutBenchmark)
            lines.warning(Desk::tr("В части сети с пунктом %1 нет исходных реперов").arg(lines.point(point)));
        if (!found.areAllPairs)
            lines.message(Desk::tr("Исходных реперов много: ходы показаны только между соседними, числом %1")
                              .arg(QString::number(found.lines.size())));
    }

    Tolerance judge(std::size_t line) const
    {
        const BenchmarkLine& judged = found.lines[line];
        return tolerances::judgeLoop(judged.misclosure, {judged.length, judged.stations, judged.sigma},
                                     rules);
    }

    /// The worst first.
    std::vector<std::size_t> orderLines() const
    {
        std::vector<std::size_t> order(found.lines.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return judge(a).ratio > judge(b).ratio; });
        return order;
    }

    void writeLine(std::size_t index)
    {
        if (!mayGoOn())
            return;
        const BenchmarkLine& line = found.lines[index];
        const Tolerance tolerance = judge(index);
        const QString text =
            Desk::tr("Ход %1: Σh = %2\u00A0м, по отметкам %3\u00A0м, невязка %4\u00A0мм, %5, %6")
                .arg(lines.listWay(line.points), format.rise(line.sum),
                     format.rise(line.sum - line.misclosure / 1000.0), format.misclosure(line.misclosure),
                     tolerances::describeSignedLimit(tolerance, format),
                     tolerances::describeLength(line.length));
        if (tolerance.isExceeded)
            lines.error(text, tolerance.ratio);
        else
            lines.message(text);
    }

    void writeBenchmarks(const BenchmarkPart& part)
    {
        if (part.verdict == Verdict::SingleBenchmark || part.verdict == Verdict::TooMany)
            return;
        std::vector<const BenchmarkFit*> order;
        for (const BenchmarkFit& fit : part.benchmarks)
            order.push_back(&fit);
        std::stable_sort(order.begin(), order.end(), [](const BenchmarkFit* a, const BenchmarkFit* b) {
            return std::make_pair(a->error.has_value(), std::abs(a->statistic)) >
                   std::make_pair(b->error.has_value(), std::abs(b->statistic));
        });
        for (const BenchmarkFit* fit : order) {
            if (!mayGoOn())
                return;
            writeBenchmark(part, *fit);
        }
    }

    void writeBenchmark(const BenchmarkPart& part, const BenchmarkFit& fit)
    {
        const double given = *network.points[static_cast<std::size_t>(fit.point)].height;
        const double size = std::abs(fit.statistic);
        const QString limit = numbers::fixed(part.limit, 2);
        const bool isExceeded = size > part.limit;
        const QString shift =
            Desk::tr("Репер %1: отметка %2\u00A0м, по всем другим реперам %3\u00A0м, сдвиг %4\u00A0мм, СКО "
                     "%5\u00A0мм, критерий %6, %7")
                .arg(lines.point(fit.point), format.height(given), format.height(given - *fit.shift / 1000.0),
                     format.misclosure(*fit.shift), format.sigma(fit.shiftSigma), numbers::fixed(size, 2),
                     isExceeded ? Desk::tr("больше предела %1").arg(limit)
                                : Desk::tr("предел %1").arg(limit));
        const QString free = Desk::tr("в свободной сети %1\u00A0м, разность %2\u00A0мм, СКО %3\u00A0мм")
                                 .arg(format.height(fit.freeHeight), format.misclosure(fit.difference),
                                      format.sigma(fit.differenceSigma));
        const bool isDecided = part.verdict == Verdict::Excluded;
        const QString text = isExceeded && isDecided && !fit.error
                                 ? Desk::tr("%1 (из-за исключённых реперов); %2").arg(shift, free)
                                 : QStringLiteral("%1; %2").arg(shift, free);
        if (fit.error)
            lines.error(text, size / part.limit);
        else if (isExceeded && !isDecided)
            lines.warning(text, size / part.limit);
        else
            lines.message(text);
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    SurveyRules rules;
    NumberFormat format;
    RunLines lines;
    FixedPoints analysis;
    levelling::BenchmarkLines found;
    std::size_t step = 0;
    std::size_t stepCount = 0;
};

} // namespace

QString runFixedPoints(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                       const SurveyRules& rules, WorstLine* worst)
{
    return FixedPointsReport(monitor, snapshot, rules, worst).run();
}

} // namespace orvel::desk
