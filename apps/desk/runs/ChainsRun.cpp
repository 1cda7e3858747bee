#include "apps/desk/runs/ChainsRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/ChainTexts.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Chains.h"
#include "levelling/Components.h"

#include <algorithm>
#include <tuple>

namespace orvel::desk {

namespace {

// A line leads to all of its points; beyond so many, nobody would find one in it any more.
constexpr std::size_t kMostPoints = 1000;

using levelling::Chain;
using levelling::ChainKind;
using levelling::Node;
using levelling::NodeHeight;

class ChainsReport
{
public:
    ChainsReport(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& snapshot,
                 const SurveyRules& givenRules, WorstLine* worst)
        : monitor(runMonitor)
        , network(snapshot.network)
        , rules(givenRules)
        , format(givenRules.tolerances)
        , lines(runMonitor, snapshot, worst)
    {}

    QString run()
    {
        if (network.sections.empty()) {
            const QString failure = Desk::tr("В проекте нет ни одной секции, или все они отключены.");
            lines.error(failure);
            return failure;
        }
        monitor.startStage(Desk::tr("Трассирование ходов").toStdWString());
        merged = levelling::mergeRepeatedSections(network);
        found = levelling::traceChains(merged.network, [this] { return !lines.isRunning(); });
        monitor.finishCurrentStage();
        if (found.status == levelling::Chains::Status::Ok)
            write();
        return QString();
    }

private:
    /// What a line of the protocol is about, in the order of the protocol.
    struct Entry
    {
        enum Gravity { Error, Warning, Message };

        Gravity gravity;
        bool isNode;
        double ratio;
        std::size_t index;

        bool operator<(const Entry& other) const
        {
            return std::make_tuple(gravity, isNode, -ratio, index) <
                   std::make_tuple(other.gravity, other.isNode, -other.ratio, other.index);
        }
    };

    void write()
    {
        lines.service(Desk::tr(
            "Ход соединяет секции через определяемые пункты, в которых сходятся только две; узловой пункт — "
            "тот, где сходятся три или больше. Повторные измерения секции, в том числе прямо и обратно, — "
            "одна "
            "секция, их среднее"));
        lines.service(Desk::tr("Допуск невязок ходов: %1").arg(tolerances::describeLoopRule(rules)));
        lines.service(describeCounts());
        if (!found.hasHeights)
            lines.error(Desk::tr("Высоты узловых пунктов не вычислены: веса измерений различаются слишком "
                                 "сильно, проверьте СКО и длины секций"));
        const std::vector<Entry> entries = makeEntries();
        auto entry = entries.begin();
        std::size_t done = 0;
        const auto writeAll = [&](Entry::Gravity last) {
            for (; entry != entries.end() && entry->gravity <= last && lines.isRunning(); ++entry) {
                writeEntry(*entry);
                lines.setProgress(++done, entries.size());
            }
        };
        writeAll(Entry::Warning);
        writeIsolated();
        writeAll(Entry::Message);
    }

    std::ptrdiff_t count(ChainKind kind) const
    {
        return std::count_if(found.chains.begin(), found.chains.end(),
                             [kind](const Chain& chain) { return chain.kind == kind; });
    }

    QString describeCounts() const
    {
        QStringList kinds;
        const auto add = [&](const QString& text, ChainKind kind) {
            if (const std::ptrdiff_t number = count(kind); number > 0)
                kinds.append(text.arg(QString::number(number)));
        };
        add(Desk::tr("между исходными реперами %1"), ChainKind::BetweenBenchmarks);
        add(Desk::tr("от репера к узловому пункту %1"), ChainKind::BenchmarkToNode);
        add(Desk::tr("между узловыми пунктами %1"), ChainKind::BetweenNodes);
        add(Desk::tr("замкнутых %1"), ChainKind::Closed);
        add(Desk::tr("висячих %1"), ChainKind::Hanging);
        add(Desk::tr("отдельных %1"), ChainKind::Isolated);
        add(Desk::tr("колец %1"), ChainKind::Ring);
        return Desk::tr("Ходов: %1 (%2); узловых пунктов: %3; секций: %4, каждая входит в один ход")
            .arg(QString::number(found.chains.size()), kinds.join(QStringLiteral(", ")),
                 QString::number(found.nodes.size()), QString::number(merged.network.sections.size()));
    }

    std::vector<Entry> makeEntries() const
    {
        std::vector<Entry> entries;
        entries.reserve(found.chains.size() + found.nodes.size());
        for (std::size_t index = 0; index < found.chains.size(); ++index) {
            const Chain& chain = found.chains[index];
            Entry entry{Entry::Message, false, 0.0, index};
            if (chain.misclosure) {
                const Tolerance tolerance = judge(*chain.misclosure, chain);
                entry.ratio = tolerance.ratio;
                entry.gravity = tolerance.isExceeded ? Entry::Error : Entry::Message;
            }
            if (entry.gravity == Entry::Message && isUnchecked(chain))
                entry.gravity = Entry::Warning;
            entries.push_back(entry);
        }
        for (std::size_t index = 0; index < found.nodes.size(); ++index) {
            const NodeHeight* worst = findWorst(found.nodes[index]);
            Entry entry{Entry::Message, true, 0.0, index};
            if (worst) {
                const Tolerance tolerance = judge(*worst);
                entry.ratio = tolerance.ratio;
                entry.gravity = tolerance.isExceeded ? Entry::Warning : Entry::Message;
            }
            entries.push_back(entry);
        }
        std::sort(entries.begin(), entries.end());
        return entries;
    }

    static bool isUnchecked(const Chain& chain)
    {
        return chain.kind == ChainKind::Hanging || chain.kind == ChainKind::Isolated ||
               chain.kind == ChainKind::Ring;
    }

    Tolerance judge(double value, const Chain& chain) const
    {
        return tolerances::judgeLoop(value, {chain.length, chain.stations, chain.sigma}, rules);
    }

    Tolerance judge(const NodeHeight& height) const
    {
        return judge(height.deviation, found.chains[static_cast<std::size_t>(height.chain)]);
    }

    /// The line that deviates most from the node's height, measured by its tolerance.
    const NodeHeight* findWorst(const Node& node) const
    {
        const auto worst = std::max_element(
            node.heights.begin(), node.heights.end(),
            [&](const NodeHeight& a, const NodeHeight& b) { return judge(a).ratio < judge(b).ratio; });
        return worst == node.heights.end() ? nullptr : &*worst;
    }

    void writeEntry(const Entry& entry)
    {
        const QString text =
            entry.isNode ? describeNode(found.nodes[entry.index]) : describeChain(found.chains[entry.index]);
        switch (entry.gravity) {
        case Entry::Error:
            lines.error(text, entry.ratio);
            break;
        case Entry::Warning:
            lines.warning(text, entry.ratio);
            break;
        case Entry::Message:
            lines.message(text);
            break;
        }
    }

    QString describeChain(const Chain& chain)
    {
        QStringList values;
        if (const QString lack = chaintexts::describeLack(chain.kind); !lack.isEmpty())
            values.append(lack);
        if (chain.misclosure) {
            const Tolerance tolerance = judge(*chain.misclosure, chain);
            values.append(Desk::tr("невязка %1\u00A0мм, %2, отношение %3")
                              .arg(format.misclosure(*chain.misclosure),
                                   tolerances::describeSignedLimit(tolerance, format),
                                   numbers::fixed(tolerance.ratio, 2)));
        }
        values.append(Desk::tr("Σh = %1\u00A0м").arg(format.rise(chain.sum)));
        values.append(tolerances::describeLength(chain.length));
        values.append(describeSections(chain));
        if (chain.stations)
            values.append(Desk::tr("станций %1").arg(QString::number(*chain.stations)));
        const QString start = lines.point(chain.points.front());
        const QString ends =
            chain.isClosed() ? start : QStringLiteral("%1 – %2").arg(start, lines.point(chain.points.back()));
        const QString text =
            QStringLiteral("%1 %2: %3")
                .arg(chaintexts::nameKind(chain.kind), ends, values.join(QStringLiteral(", ")));
        // Of one section both points are named already.
        return chain.sections.size() == 1
                   ? text
                   : Desk::tr("%1; пункты: %2").arg(text, lines.listWay(chain.points, kMostPoints));
    }

    QString describeSections(const Chain& chain) const
    {
        std::size_t measured = 0;
        for (const levelling::RouteSection& step : chain.sections)
            measured += merged.members[static_cast<std::size_t>(step.section)].size();
        const QString sections = QString::number(chain.sections.size());
        return measured == chain.sections.size()
                   ? Desk::tr("секций %1").arg(sections)
                   : Desk::tr("секций %1, измерений %2").arg(sections, QString::number(measured));
    }

    QString describeNode(const Node& node)
    {
        if (!node.height)
            return Desk::tr("Узловой пункт %1: высоты нет, он не связан с исходными реперами")
                .arg(lines.point(node.point));
        QStringList heights;
        double least = 0.0;
        double largest = 0.0;
        for (const NodeHeight& height : node.heights) {
            least = std::min(least, height.deviation);
            largest = std::max(largest, height.deviation);
            heights.append(Desk::tr("от %1 %2\u00A0м (%3\u00A0мм, %4)")
                               .arg(lines.point(height.from), format.height(height.height),
                                    format.misclosure(height.deviation),
                                    tolerances::describeSignedLimit(judge(height), format)));
        }
        return Desk::tr("Узловой пункт %1: уравненная H = %2\u00A0м, по ходам с размахом %3\u00A0мм: %4")
            .arg(lines.point(node.point), format.height(*node.height), format.sigma(largest - least),
                 heights.join(QStringLiteral(", ")));
    }

    void writeIsolated()
    {
        for (const int point : found.isolated) {
            const levelling::Point& isolated = network.points[static_cast<std::size_t>(point)];
            if (isolated.surveyed || !lines.isRunning())
                continue;
            lines.warning((isolated.isBenchmark() ? Desk::tr("Исходный репер %1 не связан ни с одной секцией")
                                                  : Desk::tr("Пункт %1 не связан ни с одной секцией"))
                              .arg(lines.point(point)));
        }
    }

    qor::IProcessMonitor& monitor;
    const levelling::Network& network;
    SurveyRules rules;
    NumberFormat format;
    RunLines lines;
    levelling::MergedNetwork merged;
    levelling::Chains found;
};

} // namespace

QString runChains(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const SurveyRules& rules,
                  WorstLine* worst)
{
    return ChainsReport(monitor, snapshot, rules, worst).run();
}

} // namespace orvel::desk
