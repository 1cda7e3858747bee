#include "apps/desk/plots/PlotContent.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Components.h"
#include "levelling/LoopBasis.h"
#include "levelling/SectionGraph.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace plots {

namespace {

constexpr double kLargestBar = kBarWidth * kBarCount / 2.0;
constexpr int kCurveSteps = 100;
constexpr double kPi = 3.14159265358979323846;

/// The density of the normal distribution.
double density(double x)
{
    return std::exp(-x * x / 2.0) / std::sqrt(2.0 * kPi);
}

void sortMarks(PlotContent& content)
{
    std::stable_sort(content.marks.begin(), content.marks.end(),
                     [](const PlotMark& a, const PlotMark& b) { return a.place.x() < b.place.x(); });
}

int findBar(double value)
{
    const double bar = std::floor((value + kLargestBar) / kBarWidth);
    return static_cast<int>(std::clamp(bar, 0.0, kBarCount - 1.0));
}

QString describeBar(int bar)
{
    const double from = -kLargestBar + bar * kBarWidth;
    const QString lower = numbers::fixed(from, 1);
    const QString upper = numbers::fixed(from + kBarWidth, 1);
    if (bar == 0)
        return Desk::tr("меньше %1").arg(upper);
    return bar == kBarCount - 1 ? Desk::tr("от %1").arg(lower) : Desk::tr("от %1 до %2").arg(lower, upper);
}

using SourcePointer = std::shared_ptr<const Source>;
using IsStopped = std::function<bool()>;

bool isToStop(const IsStopped& isStopped)
{
    return isStopped && isStopped();
}

PlotContent makeHistogram(const SourcePointer& source, const IsStopped& isStopped)
{
    const std::vector<Residual>& residuals = source->residuals;
    PlotContent content;
    content.title = Desk::tr("Нормированные поправки");
    content.xTitle = Desk::tr("Нормированная поправка");
    content.yTitle = Desk::tr("Число секций");
    content.emptyText =
        residuals.empty()
            ? Desk::tr("Поправок ещё нет: сначала выполните уравнивание (F6)")
            : Desk::tr("Секции не контролируются другими измерениями: нормированных поправок нет");
    content.barWidth = kBarWidth;
    std::array<int, kBarCount> counts{};
    std::array<const Residual*, kBarCount> worst{};
    int all = 0;
    for (const Residual& residual : residuals) {
        if (isToStop(isStopped))
            return content;
        if (!residual.normalised)
            continue;
        const auto bar = static_cast<std::size_t>(findBar(*residual.normalised));
        ++counts[bar];
        ++all;
        if (worst[bar] == nullptr || std::abs(*residual.normalised) > std::abs(*worst[bar]->normalised))
            worst[bar] = &residual;
    }
    if (all == 0)
        return content;
    for (int bar = 0; bar < kBarCount; ++bar) {
        const auto index = static_cast<std::size_t>(bar);
        PlotMark mark;
        mark.place = {-kLargestBar + (bar + 0.5) * kBarWidth, static_cast<double>(counts[index])};
        mark.number = index;
        if (worst[index] != nullptr) {
            mark.item = worst[index]->section;
            mark.isBad = source->isBad(*worst[index]);
        }
        content.marks.push_back(mark);
    }
    // The residuals are the source's.
    content.describe = [source, counts, worst](std::size_t bar) {
        const QString text = Desk::tr("Нормированная поправка %1: секций %2")
                                 .arg(describeBar(static_cast<int>(bar)), QString::number(counts[bar]));
        return worst[bar] == nullptr
                   ? text
                   : Desk::tr("%1; наибольшая %2 у секции %3")
                         .arg(text, numbers::fixed(*worst[bar]->normalised, 2), worst[bar]->name);
    };
    PlotCurve curve;
    for (int step = 0; step <= kCurveSteps; ++step) {
        const double x = -kLargestBar + 2.0 * kLargestBar * step / kCurveSteps;
        curve.push_back({x, all * kBarWidth * density(x)});
    }
    content.curves.push_back(curve);
    return content;
}

PlotContent makeResidualPlot(const SourcePointer& source, const IsStopped& isStopped)
{
    const std::vector<Residual>& residuals = source->residuals;
    PlotContent content;
    content.title = Desk::tr("Поправки по длине");
    content.xTitle = Desk::tr("Длина секции, км");
    content.yTitle = Desk::tr("Поправка v, мм");
    content.emptyText = residuals.empty() ? Desk::tr("Поправок ещё нет: сначала выполните уравнивание (F6)")
                                          : Desk::tr("У секций нет длин: показать поправки по длине нельзя");
    std::size_t number = 0;
    for (const Residual& residual : residuals) {
        if (isToStop(isStopped))
            return content;
        if (residual.length)
            content.marks.push_back(
                {{*residual.length, residual.residual}, residual.section, source->isBad(residual), number});
        ++number;
    }
    sortMarks(content);
    content.describe = [source, format = NumberFormat(source->rules.tolerances)](std::size_t index) {
        const Residual& residual = source->residuals[index];
        const QString text =
            Desk::tr("Секция %1: длина %2\u00A0км, v = %3\u00A0мм")
                .arg(residual.name, numbers::length(*residual.length), format.misclosure(residual.residual));
        return source->isBad(residual) ? Desk::tr("%1; ошибка в протоколе").arg(text) : text;
    };
    return content;
}

/// The limit by the root of the extent, from nothing to the largest mark.
PlotCurve makeLimitCurve(const PlotContent& content, double factor)
{
    PlotCurve curve;
    const double largest = content.marks.empty() ? 0.0 : content.marks.back().place.x();
    for (int step = 0; step <= kCurveSteps; ++step) {
        const double x = largest * step / kCurveSteps;
        curve.push_back({x, factor * std::sqrt(x)});
    }
    return curve;
}

PlotCurve mirror(PlotCurve curve)
{
    for (QPointF& point : curve)
        point.setY(-point.y());
    return curve;
}

/// The plots of misclosures and discrepancies, found as the pre-processing does.
class MisclosurePlots
{
public:
    MisclosurePlots(const SourcePointer& givenSource, const IsStopped& isStopRequested)
        : source(givenSource)
        , isStopped(isStopRequested)
        , network(givenSource->snapshot->network)
        , format(givenSource->rules.tolerances)
        , limits(givenSource->rules.tolerances.of(givenSource->rules.levellingClass))
    {
        for (const Residual& residual : source->residuals)
            sizes.insert(residual.section, std::abs(residual.normalised.value_or(0.0)));
    }

    PlotContent makeMisclosures() const
    {
        PlotContent content = begin(limits.loops);
        content.title = Desk::tr("Невязки ходов и полигонов");
        content.yTitle = Desk::tr("Невязка, мм");
        content.emptyText =
            describeLack(limits.loops, Desk::tr("Ходов и полигонов, которые замыкаются, нет"));
        const levelling::MergedNetwork merged = levelling::mergeRepeatedSections(network);
        std::vector<LoopFacts> facts;
        for (const levelling::Loop& loop :
             levelling::findLoopBasis(levelling::SectionGraph(merged.network), isStopped)) {
            if (isToStop(isStopped))
                return content;
            std::vector<int> sections;
            for (const levelling::RouteSection& step : loop.sections) {
                const std::vector<int>& members = merged.members[static_cast<std::size_t>(step.section)];
                sections.insert(sections.end(), members.begin(), members.end());
            }
            const ToleranceBasis basis{loop.length, loop.stations, loop.sigma};
            const Tolerance tolerance = tolerances::judgeLoop(loop.misclosure, basis, source->rules);
            if (add(content, limits.loops, basis, loop.misclosure, tolerance, sections, facts.size()))
                facts.push_back({loop.points.front() == loop.points.back(), loop.points.front(),
                                 loop.sections.size(), loop.misclosure, tolerance});
        }
        finish(content, limits.loops);
        content.curves.push_back(mirror(content.curves.front()));
        content.describe = [facts, given = source, numberFormat = format](std::size_t number) {
            const LoopFacts& loop = facts[number];
            const levelling::Point& start =
                given->snapshot->network.points[static_cast<std::size_t>(loop.start)];
            return Desk::tr("%1 от %2, секций %3: невязка %4\u00A0мм, %5")
                .arg(loop.isClosed ? Desk::tr("Полигон") : Desk::tr("Ход"), start.id,
                     QString::number(loop.sectionCount), numberFormat.misclosure(loop.misclosure),
                     tolerances::describeSignedLimit(loop.tolerance, numberFormat));
        };
        return content;
    }

    PlotContent makeDiscrepancies() const
    {
        PlotContent content = begin(limits.repeated);
        content.title = Desk::tr("Прямо и обратно");
        content.yTitle = Desk::tr("Расхождение, мм");
        content.emptyText =
            describeLack(limits.repeated, Desk::tr("Секций, измеренных прямо и обратно или повторно, нет"));
        std::vector<RepeatedFacts> facts;
        for (const levelling::RepeatedSections& repeated : levelling::findRepeatedSections(network)) {
            if (isToStop(isStopped))
                return content;
            std::vector<int> sections = repeated.forward;
            sections.insert(sections.end(), repeated.back.begin(), repeated.back.end());
            const ToleranceBasis basis{repeated.length, repeated.stations, repeated.discrepancySigma};
            const Tolerance tolerance = tolerances::judgeRepeated(repeated.discrepancy, basis, source->rules);
            if (add(content, limits.repeated, basis, repeated.discrepancy, tolerance, sections, facts.size()))
                facts.push_back({sections.front(), sections.size(), repeated.discrepancy, tolerance});
        }
        finish(content, limits.repeated);
        content.describe = [facts, given = source, numberFormat = format](std::size_t number) {
            const RepeatedFacts& repeated = facts[number];
            return Desk::tr("Секция %1, измерений %2: расхождение %3\u00A0мм, %4")
                .arg(given->snapshot->sectionNames[repeated.first], QString::number(repeated.count),
                     numberFormat.sigma(repeated.discrepancy),
                     tolerances::describeLimit(repeated.tolerance, numberFormat));
        };
        return content;
    }

private:
    /// What is told of a loop or a line.
    struct LoopFacts
    {
        bool isClosed = false;
        int start = 0;
        std::size_t sectionCount = 0;
        double misclosure = 0.0;
        Tolerance tolerance;
    };

    /// What is told of a section that was measured several times.
    struct RepeatedFacts
    {
        int first = 0;
        std::size_t count = 0;
        double discrepancy = 0.0;
        Tolerance tolerance;
    };

    static PlotContent begin(const ToleranceRule& rule)
    {
        PlotContent content;
        content.xTitle =
            rule.measure == ToleranceMeasure::Length ? Desk::tr("Длина, км") : Desk::tr("Число станций");
        return content;
    }

    static void finish(PlotContent& content, const ToleranceRule& rule)
    {
        sortMarks(content);
        content.curves = {makeLimitCurve(content, rule.factor)};
    }

    QString describeLack(const ToleranceRule& rule, const QString& nothing) const
    {
        if (network.points.empty())
            return Desk::tr("Сначала импортируйте нивелирную сеть (Ctrl+I)");
        if (network.sections.empty())
            return Desk::tr("В проекте нет ни одной секции, или все они отключены.");
        return rule.measure == ToleranceMeasure::Length
                   ? Desk::tr("%1, или у их секций нет длин").arg(nothing)
                   : Desk::tr("%1, или у их секций нет числа станций").arg(nothing);
    }

    /// Adds a mark that leads to the worst of the sections. False if there is no length, or no stations, and
    /// so no place for it.
    bool add(PlotContent& content, const ToleranceRule& rule, const ToleranceBasis& basis, double value,
             const Tolerance& tolerance, const std::vector<int>& sections, std::size_t number) const
    {
        const std::optional<double>& extent =
            rule.measure == ToleranceMeasure::Length ? basis.length : basis.stations;
        if (!extent)
            return false;
        const auto size = [this](int section) { return sizes.value(getId(section)); };
        const int worst = *std::max_element(sections.begin(), sections.end(),
                                            [&](int a, int b) { return size(a) < size(b); });
        content.marks.push_back({{*extent, value}, getId(worst), tolerance.isExceeded, number});
        return true;
    }

    LONGID getId(int section) const
    {
        return source->snapshot->sectionIds[static_cast<std::size_t>(section)];
    }

    const SourcePointer& source;
    const IsStopped& isStopped;
    const levelling::Network& network;
    NumberFormat format;
    ClassTolerances limits;
    QHash<LONGID, double> sizes; ///< of the normalised residuals
};

} // namespace

PlotContent make(Kind kind, const std::shared_ptr<const Source>& source,
                 const std::function<bool()>& isStopped)
{
    switch (kind) {
    case NormalisedResiduals:
        return makeHistogram(source, isStopped);
    case ResidualsByLength:
        return makeResidualPlot(source, isStopped);
    case Misclosures:
        return MisclosurePlots(source, isStopped).makeMisclosures();
    case Discrepancies:
        return MisclosurePlots(source, isStopped).makeDiscrepancies();
    }
    return {};
}

} // namespace plots

} // namespace orvel::desk
